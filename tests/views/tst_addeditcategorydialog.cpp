// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AddEditCategoryDialog.h"
#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "GlyphWidgets.h"
#include "Localization.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace
{

constexpr uint kFolder = 0xE2C7;
constexpr int kIconCount = 10;

// Positions of the widgets that take the focus, in the tables of keys.
constexpr int kCancel = 100;
constexpr int kSave = 101;
constexpr int kName = 102;

QStringList labelTexts(const QWidget& dialog)
{
    QStringList texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        texts.append(label->text());
    return texts;
}

} // namespace

class AddEditCategoryDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void looksLikeEveryDialog();
    void hasItsExactSize();
    void layoutFollowsTheMeasures();
    void header();
    void textsOfASection();
    void textsOfATemplate();
    void startsInTheName();
    void tabOrderIsReadingOrder();
    void namesForScreenReaders();

    void palette();
    void startsWithTheFolder();
    void startsWithTheExistingIcon_data();
    void startsWithTheExistingIcon();
    void clickChoosesAnIcon();
    void iconStyles();

    void nameIsTrimmed_data();
    void nameIsTrimmed();
    void longNameIsKeptWhole();
    void emptyNameIsRefused_data();
    void emptyNameIsRefused();
    void warningHasTheCallersText();
    void warningKeepsWindowsOpen();

    void endsByKey_data();
    void endsByKey();
    void backspaceInTheNameEditsIt();
    void keysMoveTheFocus_data();
    void keysMoveTheFocus();
    void downFromTheNameFindsTheIcon_data();
    void downFromTheNameFindsTheIcon();
    void keysChooseAnIcon_data();
    void keysChooseAnIcon();
    void enterClicksTheButtons_data();
    void enterClicksTheButtons();
    void execWithTheKeyboardAlone();

private:
    void open(const QString& name = QString(), uint icon = kFolder);
    QLineEdit* name() const { return m_dialog->findChild<QLineEdit*>(); }
    QList<GlyphButton*> icons() const { return m_dialog->findChildren<GlyphButton*>(); }
    QPushButton* button(const QString& text) const;
    QWidget* at(int position) const;

    std::unique_ptr<AddEditCategoryDialog> m_dialog;
};

void AddEditCategoryDialogTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
}

void AddEditCategoryDialogTest::cleanup()
{
    m_dialog.reset();
}

void AddEditCategoryDialogTest::open(const QString& name, uint icon)
{
    m_dialog = std::make_unique<AddEditCategoryDialog>(nullptr, "A title", name, icon);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

QPushButton* AddEditCategoryDialogTest::button(const QString& text) const
{
    for (QPushButton* candidate : m_dialog->findChildren<QPushButton*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

QWidget* AddEditCategoryDialogTest::at(int position) const
{
    switch (position) {
    case kCancel:
        return button("Cancel");
    case kSave:
        return button("Save");
    case kName:
        return name();
    default:
        return icons().at(position);
    }
}

void AddEditCategoryDialogTest::looksLikeEveryDialog()
{
    QWidget parent;
    const AddEditCategoryDialog dialog(&parent, "t");
    verifyDialogLook(dialog, parent, 0, 60);
}

void AddEditCategoryDialogTest::hasItsExactSize()
{
    QCOMPARE(AddEditCategoryDialog::IconCols, 5);
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        open(QString(200, 'W'));
        QCOMPARE(m_dialog->size(), QSize(320, 386));
        QCOMPARE(m_dialog->minimumSize(), QSize(320, 386));
        QCOMPARE(m_dialog->maximumSize(), QSize(320, 386));
    }
}

void AddEditCategoryDialogTest::layoutFollowsTheMeasures()
{
    open();
    const int left = 10 + 1 + 24; // shadow margin, border, padding
    const int width = 320 - 2 * left;
    const QWidget& dialog = *m_dialog;
    QCOMPARE(rectIn(dialog, dialog.findChild<QFrame*>("sectionDialogHeader")),
             QRect(11, 11, 298, 56));
    const auto labels = dialog.findChildren<QLabel*>();
    QCOMPARE(rectIn(dialog, labels.at(1)), QRect(left, 91, width, 20));
    QCOMPARE(rectIn(dialog, name()), QRect(left, 123, width, 40));
    QCOMPARE(rectIn(dialog, labels.at(2)), QRect(left, 175, width, 20));
    const QList<GlyphButton*> cells = icons();
    for (int i = 0; i < cells.size(); ++i) {
        QCOMPARE(cells.at(i)->size(), QSize(36, 36));
        QCOMPARE(rectIn(dialog, cells.at(i)).top(), i < 5 ? 207 : 259);
        QCOMPARE(rectIn(dialog, cells.at(i)).left(), rectIn(dialog, cells.at(i % 5)).left());
    }
    const QRect cancel = rectIn(dialog, button("Cancel"));
    const QRect save = rectIn(dialog, button("Save"));
    QCOMPARE(cancel.top(), 315);
    QCOMPARE(cancel.height(), 36);
    QCOMPARE(cancel.left(), left);
    QCOMPARE(save.top(), 315);
    QCOMPARE(save.right(), left + width - 1);
    QVERIFY(qAbs(cancel.width() - save.width()) <= 1);
    QCOMPARE(save.bottom() + 1, 386 - left);
}

void AddEditCategoryDialogTest::header()
{
    open();
    const auto* band = m_dialog->findChild<QFrame*>("sectionDialogHeader");
    QVERIFY(band);
    QCOMPARE(band->styleSheet(),
             QStringLiteral("QFrame#sectionDialogHeader { background-color: %1; border: none; "
                            "border-top-left-radius: 23px; border-top-right-radius: 23px; "
                            "border-bottom-left-radius: 0px; border-bottom-right-radius: 0px; }")
                 .arg(Theme::shellBg()));
    QCOMPARE(band->layout()->contentsMargins(), QMargins(12, 0, 12, 0));
    const auto* title = band->findChild<QLabel*>();
    QCOMPARE(title->text(), "A title");
    QCOMPARE(title->styleSheet(),
             QStringLiteral("color: %1; font-size: 18px; font-weight: bold; border: none; "
                            "background: transparent;")
                 .arg(Theme::colors().onSurface));
}

void AddEditCategoryDialogTest::textsOfASection()
{
    open();
    QCOMPARE(labelTexts(*m_dialog), (QStringList{"A title", "Section Name:", "Icon:"}));
    QCOMPARE(name()->placeholderText(), "Enter Section Name...");
    QCOMPARE(name()->text(), "");
    QVERIFY(button("Cancel"));
    QVERIFY(button("Save"));
    const ColorTokens c = Theme::colors();
    QCOMPARE(name()->styleSheet(), Theme::fieldInputStyle(c));
    QCOMPARE(button("Cancel")->styleSheet(), Theme::actionBtnStyle(c, "transparent"));
    QCOMPARE(button("Save")->styleSheet(), Theme::primaryBtnStyle(c));
}

void AddEditCategoryDialogTest::textsOfATemplate()
{
    Tr::currentLang = Lang::Ja;
    const AddEditCategoryDialog dialog(nullptr, "t", "x", kFolder, "template.lbl_name",
                                       "template.name_placeholder", "template.err_name_empty");
    QCOMPARE(labelTexts(dialog),
             (QStringList{"t", Tr::t("template.lbl_name"), Tr::t("dialog.lbl_icon")}));
    QVERIFY(labelTexts(dialog).at(1) != "template.lbl_name");
    QCOMPARE(dialog.findChild<QLineEdit*>()->placeholderText(), Tr::t("template.name_placeholder"));
}

void AddEditCategoryDialogTest::startsInTheName()
{
    open();
    QCOMPARE(m_dialog->focusWidget(), name());
    QTest::keyClicks(m_dialog->focusWidget(), "abc");
    QCOMPARE(m_dialog->getName(), "abc");
}

void AddEditCategoryDialogTest::tabOrderIsReadingOrder()
{
    open();
    QList<QWidget*> order{name()};
    for (GlyphButton* icon : icons())
        order.append(icon);
    order << button("Cancel") << button("Save") << name();
    for (QWidget* expected : std::as_const(order)) {
        QCOMPARE(m_dialog->focusWidget(), expected);
        pressKey(*m_dialog, Qt::Key_Tab);
    }
}

void AddEditCategoryDialogTest::namesForScreenReaders()
{
    open();
    QCOMPARE(m_dialog->windowTitle(), "A title");
    QCOMPARE(name()->accessibleName(), "Section Name:");
    QCOMPARE(icons().first()->accessibleName(), "Icon: 1");
    QCOMPARE(icons().last()->accessibleName(), "Icon: 10");
}

void AddEditCategoryDialogTest::palette()
{
    open();
    const QList<uint> expected{0xE2C7, 0xE40A, 0xE429, 0xF20E, 0xE943,
                               0xEA28, 0xE86F, 0xE684, 0xE66B, 0xF09A};
    QList<uint> found;
    for (const GlyphButton* icon : icons()) {
        found.append(icon->property("glyph").toUInt());
        QCOMPARE(icon->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(icon->focusPolicy(), Qt::StrongFocus);
    }
    QCOMPARE(found, expected);
}

void AddEditCategoryDialogTest::startsWithTheFolder()
{
    const AddEditCategoryDialog dialog(nullptr, "t");
    QCOMPARE(dialog.getIcon(), kFolder);
    QCOMPARE(dialog.getName(), "");
}

void AddEditCategoryDialogTest::startsWithTheExistingIcon_data()
{
    QTest::addColumn<uint>("icon");
    QTest::newRow("offered") << 0xE86Fu;
    QTest::newRow("not offered here") << 0xE250u;
}

void AddEditCategoryDialogTest::startsWithTheExistingIcon()
{
    QFETCH(uint, icon);
    open("x", icon);
    QCOMPARE(m_dialog->getIcon(), icon);
    QTest::mouseClick(button("Save"), Qt::LeftButton);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QCOMPARE(m_dialog->getIcon(), icon);
}

void AddEditCategoryDialogTest::clickChoosesAnIcon()
{
    open();
    QTest::mouseClick(icons().at(3), Qt::LeftButton);
    QCOMPARE(m_dialog->getIcon(), 0xF20Eu);
    QTest::mouseClick(icons().at(9), Qt::LeftButton);
    QCOMPARE(m_dialog->getIcon(), 0xF09Au);
    QVERIFY(m_dialog->isVisible());
}

void AddEditCategoryDialogTest::iconStyles()
{
    const ColorTokens c = Theme::colors();
    open("x", 0xE429);
    for (int i = 0; i < kIconCount; ++i)
        QCOMPARE(icons().at(i)->styleSheet(), Theme::iconChoiceStyle(c, i == 2));
    icons().at(7)->click();
    for (int i = 0; i < kIconCount; ++i)
        QCOMPARE(icons().at(i)->styleSheet(), Theme::iconChoiceStyle(c, i == 7));
    open("x", 0xE250);
    for (const GlyphButton* icon : icons())
        QCOMPARE(icon->styleSheet(), Theme::iconChoiceStyle(c, false));
}

void AddEditCategoryDialogTest::nameIsTrimmed_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "Work"
                           << "Work";
    QTest::newRow("blanks at the ends") << "  My work \t"
                                        << "My work";
    QTest::newRow("wide blank") << QString::fromUtf8("　仕事　") << QString::fromUtf8("仕事");
    QTest::newRow("markup") << "<b>&amp;</b>"
                            << "<b>&amp;</b>";
}

void AddEditCategoryDialogTest::nameIsTrimmed()
{
    QFETCH(QString, typed);
    open(typed);
    QTEST(m_dialog->getName(), "name");
    QTest::mouseClick(button("Save"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QTEST(m_dialog->getName(), "name");
}

void AddEditCategoryDialogTest::longNameIsKeptWhole()
{
    const QString given(1'000'000, 'W');
    open(given);
    icons().constLast()->click(); // only the icon is to change
    QCOMPARE(m_dialog->getName(), given);
    name()->end(false);
    QTest::keyClick(name(), Qt::Key_Backspace);
    QVERIFY(m_dialog->getName() != given);
    name()->setText("short");
    QCOMPARE(m_dialog->getName(), "short");
}

void AddEditCategoryDialogTest::emptyNameIsRefused_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("position"); // of the widget with the focus when Enter is pressed
    QTest::newRow("nothing, in the name") << "" << kName;
    QTest::newRow("blanks, in the name") << "   " << kName;
    QTest::newRow("wide blanks, in the name") << QString::fromUtf8("　　") << kName;
    QTest::newRow("nothing, on Save") << "" << kSave;
}

void AddEditCategoryDialogTest::emptyNameIsRefused()
{
    QFETCH(QString, typed);
    QFETCH(int, position);
    open(typed);
    at(position)->setFocus();
    QStringList texts;
    const ModalDriver driver([&texts](QWidget* modal) {
        QVERIFY(qobject_cast<CustomMessageBox*>(modal));
        texts = labelTexts(*modal);
        pressKey(*modal, Qt::Key_Escape);
    });
    pressKey(*m_dialog, Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(texts, (QStringList{"Validation", "Section name cannot be empty."}));
    QVERIFY(m_dialog->isVisible());
    m_dialog->activateWindow(); // what a window manager does, but not the offscreen platform
    QCOMPARE(m_dialog->focusWidget(), at(position));
    QTRY_VERIFY(at(position)->hasFocus());
}

void AddEditCategoryDialogTest::warningHasTheCallersText()
{
    Tr::currentLang = Lang::Ja;
    m_dialog = std::make_unique<AddEditCategoryDialog>(
        nullptr, "t", QString(), kFolder, "template.lbl_name", "template.name_placeholder",
        "template.err_name_empty");
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QStringList texts;
    QString titleStyle;
    QWidget* owner = nullptr;
    const ModalDriver driver([&](QWidget* modal) {
        texts = labelTexts(*modal);
        titleStyle = modal->findChild<QLabel*>()->styleSheet();
        owner = modal->parentWidget();
        pressKey(*modal, Qt::Key_Return);
    });
    pressKey(*m_dialog, Qt::Key_Enter);
    QCOMPARE(texts, (QStringList{"Validation", Tr::t("template.err_name_empty")}));
    QVERIFY(texts.at(1) != "template.err_name_empty");
    QVERIFY(titleStyle.contains(Theme::colors().warning));
    QCOMPARE(owner, m_dialog.get());
}

void AddEditCategoryDialogTest::warningKeepsWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    open();
    QVERIFY(!g_blockAutoQuit); // the dialog itself leaves that to its caller
    bool isBlocked = false;
    const ModalDriver driver([&isBlocked](QWidget* modal) {
        isBlocked = g_blockAutoQuit;
        pressKey(*modal, Qt::Key_Escape);
    });
    pressKey(*m_dialog, Qt::Key_Return);
    QVERIFY(isBlocked);
    QTRY_VERIFY(!g_blockAutoQuit);
}

void AddEditCategoryDialogTest::endsByKey_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("result");
    const int accepted = QDialog::Accepted;
    const int rejected = QDialog::Rejected;
    QTest::newRow("Return in the name") << kName << int(Qt::Key_Return) << accepted;
    QTest::newRow("Enter in the name") << kName << int(Qt::Key_Enter) << accepted;
    QTest::newRow("Esc in the name") << kName << int(Qt::Key_Escape) << rejected;
    QTest::newRow("Esc on an icon") << 3 << int(Qt::Key_Escape) << rejected;
    QTest::newRow("Backspace on an icon") << 3 << int(Qt::Key_Backspace) << rejected;
    QTest::newRow("Backspace on Save") << kSave << int(Qt::Key_Backspace) << rejected;
}

void AddEditCategoryDialogTest::endsByKey()
{
    QFETCH(int, position);
    QFETCH(int, key);
    open("Work");
    m_dialog->setResult(-1);
    at(position)->setFocus();
    pressKey(*m_dialog, static_cast<Qt::Key>(key));
    QVERIFY(!m_dialog->isVisible());
    QTEST(m_dialog->result(), "result");
}

void AddEditCategoryDialogTest::backspaceInTheNameEditsIt()
{
    open("ab");
    name()->deselect();
    name()->end(false);
    for (const QString& left : {QStringLiteral("a"), QString(), QString()}) {
        pressKey(*m_dialog, Qt::Key_Backspace);
        QCOMPARE(name()->text(), left);
        QVERIFY(m_dialog->isVisible());
    }
}

void AddEditCategoryDialogTest::keysMoveTheFocus_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to");
    QTest::newRow("Left") << 3 << int(Qt::Key_Left) << 2;
    QTest::newRow("Right") << 3 << int(Qt::Key_Right) << 4;
    QTest::newRow("Left into the row above") << 5 << int(Qt::Key_Left) << 4;
    QTest::newRow("Right into the row below") << 4 << int(Qt::Key_Right) << 5;
    QTest::newRow("Left on the first") << 0 << int(Qt::Key_Left) << 0;
    QTest::newRow("Right on the last") << 9 << int(Qt::Key_Right) << 9;
    QTest::newRow("Up") << 7 << int(Qt::Key_Up) << 2;
    QTest::newRow("Up from the beginning of the second row") << 5 << int(Qt::Key_Up) << 0;
    QTest::newRow("Up from the first row") << 4 << int(Qt::Key_Up) << kName;
    QTest::newRow("Down") << 2 << int(Qt::Key_Down) << 7;
    QTest::newRow("Down from the end of the first row") << 4 << int(Qt::Key_Down) << 9;
    QTest::newRow("Down from the last row") << 5 << int(Qt::Key_Down) << kCancel;
    QTest::newRow("Down from the last") << 9 << int(Qt::Key_Down) << kCancel;
    QTest::newRow("Right on Cancel") << kCancel << int(Qt::Key_Right) << kSave;
    QTest::newRow("Left on Save") << kSave << int(Qt::Key_Left) << kCancel;
    QTest::newRow("Up from Cancel") << kCancel << int(Qt::Key_Up) << 9;
    QTest::newRow("Up from Save") << kSave << int(Qt::Key_Up) << 9;
    QTest::newRow("Left in the name moves the cursor") << kName << int(Qt::Key_Left) << kName;
    QTest::newRow("Up in the name") << kName << int(Qt::Key_Up) << kName;
}

void AddEditCategoryDialogTest::keysMoveTheFocus()
{
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, to);
    open("x");
    at(from)->setFocus();
    pressKey(*m_dialog, static_cast<Qt::Key>(key));
    QCOMPARE(m_dialog->focusWidget(), at(to));
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_dialog->getIcon(), kFolder); // moving chooses nothing
}

void AddEditCategoryDialogTest::downFromTheNameFindsTheIcon_data()
{
    QTest::addColumn<uint>("icon");
    QTest::addColumn<int>("index");
    QTest::newRow("the first") << kFolder << 0;
    QTest::newRow("in the second row") << 0xE684u << 7;
    QTest::newRow("not offered") << 0xE250u << 0;
    QTest::newRow("none") << 0u << 0;
}

void AddEditCategoryDialogTest::downFromTheNameFindsTheIcon()
{
    QFETCH(uint, icon);
    QFETCH(int, index);
    open("x", icon);
    pressKey(*m_dialog, Qt::Key_Down);
    QCOMPARE(m_dialog->focusWidget(), icons().at(index));
}

void AddEditCategoryDialogTest::keysChooseAnIcon_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Space") << int(Qt::Key_Space);
}

void AddEditCategoryDialogTest::keysChooseAnIcon()
{
    QFETCH(int, key);
    open("x");
    icons().at(6)->setFocus();
    QTest::keyPress(m_dialog->focusWidget(), static_cast<Qt::Key>(key));
    QCOMPARE(m_dialog->getIcon(), 0xE86Fu); // at the press already, even for Space
    QTest::keyRelease(m_dialog->focusWidget(), static_cast<Qt::Key>(key));
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_dialog->focusWidget(), icons().at(6));
}

void AddEditCategoryDialogTest::enterClicksTheButtons_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("result");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QTest::addRow("Cancel by %x", key) << kCancel << int(key) << int(QDialog::Rejected);
        QTest::addRow("Save by %x", key) << kSave << int(key) << int(QDialog::Accepted);
    }
}

void AddEditCategoryDialogTest::enterClicksTheButtons()
{
    QFETCH(int, position);
    QFETCH(int, key);
    open("x");
    m_dialog->setResult(-1);
    at(position)->setFocus();
    pressKey(*m_dialog, static_cast<Qt::Key>(key));
    QVERIFY(!m_dialog->isVisible());
    QTEST(m_dialog->result(), "result");
}

void AddEditCategoryDialogTest::execWithTheKeyboardAlone()
{
    AddEditCategoryDialog dialog(nullptr, "t");
    const ModalDriver driver([](QWidget* modal) {
        QTest::keyClicks(modal->focusWidget(), " Games ");
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Space, Qt::Key_Down,
                                  Qt::Key_Right, Qt::Key_Return})
            pressKey(*modal, key);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(dialog.getName(), "Games");
    QCOMPARE(dialog.getIcon(), 0xEA28u);
}

QTEST_MAIN(AddEditCategoryDialogTest)
#include "tst_addeditcategorydialog.moc"
