// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AddEditCategoryDialog.h"
#include "CustomColorPickerDialog.h"
#include "CustomMessageBox.h"
#include "FittingText.h"
#include "FolderPickerDialog.h"
#include "IconPickerDialog.h"
#include "Localization.h"
#include "SpotlightSettingsDialog.h"
#include "SpotlightWindow.h"
#include "TemplateEditorDialog.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>

namespace
{

/// Opens a dialog, lets the test look at it, and closes it.
using Show = std::function<void(QWidget* parent, const std::function<void(QWidget&)>& look)>;

struct NamedDialog
{
    const char* name;
    Show show;
};

void showNow(QDialog& dialog, const std::function<void(QWidget&)>& look)
{
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    look(dialog);
}

Show sectionDialog(const char* titleKey, const char* labelKey)
{
    return [titleKey, labelKey](QWidget* parent, const std::function<void(QWidget&)>& look) {
        AddEditCategoryDialog dialog(parent, Tr::t(titleKey), QString(), Glyph::Folder,
                                     Tr::t(labelKey));
        showNow(dialog, look);
    };
}

Show question(const char* titleKey, const char* textKey, const QStringList& buttonKeys)
{
    return [=](QWidget* parent, const std::function<void(QWidget&)>& look) {
        QStringList buttons;
        for (const QString& key : buttonKeys)
            buttons.append(Tr::t(key));
        const ModalDriver driver([&look](QWidget* modal) {
            look(*modal);
            pressKey(*modal, Qt::Key_Escape);
        });
        CustomMessageBox::customQuestion(parent, Tr::t(titleKey), Tr::t(textKey), buttons, 1, {0});
    };
}

Show spotlightSettings(const QVector<int>& chosen)
{
    return [chosen](QWidget* parent, const std::function<void(QWidget&)>& look) {
        QVector<SpotlightSettingsDialog::Option> options;
        for (const SpotlightWindow::ScopeDef& def : SpotlightWindow::scopeDefs())
            options.append({SpotlightWindow::scopeLabel(def), SpotlightWindow::scopeGlyph(def)});
        SpotlightSettingsDialog dialog(parent, options, chosen, options.constFirst());
        showNow(dialog, look);
    };
}

/// Its list of items.
Show templateEditor(const QVector<LauncherElement>& items)
{
    return [items](QWidget* parent, const std::function<void(QWidget&)>& look) {
        TemplateEditorDialog dialog(nullptr, {"Kit", Glyph::Folder, items},
                                    Tr::t("template.edit_contents_title"), parent);
        showNow(dialog, look);
    };
}

/// Its form for an item.
Show itemOfTemplate(const QString& type)
{
    return [type](QWidget* parent, const std::function<void(QWidget&)>& look) {
        TemplateEditorDialog dialog(nullptr, {"Kit", Glyph::Folder, {{{}, "Lid", type, "lid", {}}}},
                                    Tr::t("template.edit_contents_title"), parent);
        auto* list = dialog.findChild<QListWidget*>();
        list->setCurrentRow(0);
        QTest::keyClick(list, Qt::Key_Return);
        QVERIFY(!list->isVisibleTo(&dialog));
        showNow(dialog, look);
    };
}

/// Every dialog that the program opens, with every set of texts that is its own.
QList<NamedDialog> everyDialog()
{
    const auto box = [](QWidget* parent, const std::function<void(QWidget&)>& look) {
        CustomMessageBox dialog(parent, "Validation", Tr::t("dialog.err_section_empty"),
                                CustomMessageBox::Yes | CustomMessageBox::No |
                                    CustomMessageBox::Ok | CustomMessageBox::Cancel,
                                CustomMessageBox::Ok, CustomMessageBox::Warning);
        showNow(dialog, look);
    };
    const auto picker = [](QWidget* parent, const std::function<void(QWidget&)>& look) {
        IconPickerDialog dialog(parent, QString());
        showNow(dialog, look);
    };
    const auto folders = [](QWidget* parent, const std::function<void(QWidget&)>& look) {
        FolderPickerDialog dialog(parent);
        showNow(dialog, look);
    };
    const auto colors = [](QWidget* parent, const std::function<void(QWidget&)>& look) {
        CustomColorPickerDialog dialog(parent, QString());
        showNow(dialog, look);
    };
    return {
        {"accent colour", colors},
        {"settings of Spotlight, all types", spotlightSettings({})},
        {"settings of Spotlight, one type", spotlightSettings({1})},
        {"settings of Spotlight, several types", spotlightSettings({1, 2, 3})},
        {"folder picker", folders},
        {"icon picker", picker},
        {"new section", sectionDialog("dialog.add_section_title", "dialog.lbl_section_name")},
        {"section", sectionDialog("dialog.edit_section_title", "dialog.lbl_section_name")},
        {"new template", sectionDialog("template.create_dialog_title", "template.lbl_name")},
        {"template", sectionDialog("template.edit_dialog_title", "template.lbl_name")},
        {"new items of a template", templateEditor({})},
        {"items of a template", templateEditor({{{}, "Lid", ItemType::Url, "lid", {}}})},
        {"address in a template", itemOfTemplate(ItemType::Url)},
        {"file in a template", itemOfTemplate(ItemType::File)},
        {"files in a template", itemOfTemplate(ItemType::Bulk)},
        {"text in a template", itemOfTemplate(ItemType::Snippet)},
        {"message box", box},
        {"deletion of a section", question("settings.del_section_title", "settings.del_section_msg",
                                           {"dialog.btn_delete", "dialog.btn_cancel"})},
        {"deletion of a template",
         question("template.confirm_delete_title", "template.confirm_delete_msg",
                  {"dialog.btn_delete", "dialog.btn_cancel"})},
        {"another template of that name",
         question("template.confirm_overwrite_title", "template.confirm_overwrite_msg",
                  {"dialog.btn_save", "dialog.btn_cancel"})},
        {"import",
         question("settings.data.import_confirm_title", "settings.data.import_confirm_msg",
                  {"dialog.btn_yes", "dialog.btn_cancel"})},
        {"deletion of everything",
         question("settings.data.reset_confirm_title", "settings.data.reset_confirm_msg",
                  {"settings.data.btn_reset_confirm", "dialog.btn_cancel"})},
    };
}

/// The buttons on the page in view that show a text.
QList<QPushButton*> labelledButtons(const QWidget& dialog)
{
    QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
    buttons.removeIf(
        [](const QPushButton* button) { return button->text().isEmpty() || !button->isVisible(); });
    return buttons;
}

} // namespace

/// Whether the texts of the dialogs fit where they are shown, in all languages.
class DialogTextsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void buttonFits_data();
    void buttonFits();
    void labelsFit_data();
    void labelsFit();

private:
    QWidget m_parent; ///< brings the font, as the main window does
};

void DialogTextsTest::initTestCase()
{
    FittingText::useProgramFont();
    m_parent.setStyleSheet(QStringLiteral("QWidget { font-family: %1; }").arg(FontTokens::Family));
    QCOMPARE(QFontInfo(QApplication::font()).family(), "Plus Jakarta Sans");
}

void DialogTextsTest::buttonFits_data()
{
    QTest::addColumn<Show>("show");
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<int>("index");
    for (const NamedDialog& dialog : everyDialog()) {
        for (const Lang lang : Tr::all()) {
            Tr::currentLang = lang;
            QStringList texts;
            dialog.show(&m_parent, [&texts](QWidget& shown) {
                for (const QPushButton* button : labelledButtons(shown))
                    texts.append(button->text());
            });
            QVERIFY(texts.size() >= 2);
            for (int i = 0; i < texts.size(); ++i)
                QTest::addRow("%s, %s, %s", dialog.name, qPrintable(Tr::codeFor(lang)),
                              qPrintable(texts.at(i)))
                    << dialog.show << lang << i;
        }
    }
}

void DialogTextsTest::buttonFits()
{
    QFETCH(Show, show);
    QFETCH(Lang, lang);
    QFETCH(int, index);
    Tr::currentLang = lang;
    show(&m_parent, [index](QWidget& dialog) {
        const QPushButton* button = labelledButtons(dialog).at(index);
        const QRect contents = FittingText::contentsOf(*button);
        QVERIFY(contents.width() < button->width()); // border and padding are in it
        const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
        QVERIFY2(text.width() <= contents.width(),
                 qPrintable(QStringLiteral("%1 of %2 px").arg(contents.width()).arg(text.width())));
        QVERIFY(text.height() <= contents.height());
        QVERIFY(
            dialog.rect().contains(QRect(button->mapTo(&dialog, QPoint(0, 0)), button->size())));
    });
}

void DialogTextsTest::labelsFit_data()
{
    QTest::addColumn<Show>("show");
    QTest::addColumn<Lang>("lang");
    for (const NamedDialog& dialog : everyDialog()) {
        for (const Lang lang : Tr::all())
            QTest::addRow("%s, %s", dialog.name, qPrintable(Tr::codeFor(lang)))
                << dialog.show << lang;
    }
}

void DialogTextsTest::labelsFit()
{
    QFETCH(Show, show);
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    show(&m_parent, [](QWidget& dialog) {
        QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        labels.removeIf([](const QLabel* label) { return !label->isVisible(); });
        QVERIFY(!labels.isEmpty());
        for (const QLabel* label : labels) {
            const QRect room = label->contentsRect();
            const QRect text = label->fontMetrics().boundingRect(
                QRect(0, 0, room.width(), 0), label->wordWrap() ? Qt::TextWordWrap : 0,
                label->text());
            QVERIFY2(text.width() <= room.width() && text.height() <= room.height(),
                     qPrintable(label->text()));
        }
    });
}

QTEST_MAIN(DialogTextsTest)
#include "tst_dialogtexts.moc"
