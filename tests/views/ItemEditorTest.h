// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CustomWidgets.h"
#include "GlyphWidgets.h"
#include "ItemEditorPanel.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "PickerPill.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <memory>

/// An item editor as wide as its card, in a window of its own, over a document with two items in
/// the section "Work" and one in "Home"; "Empty" has none.
class ItemEditorTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

protected slots:
    void init()
    {
        Tr::currentLang = Lang::En;
        Theme::forceTheme = 1;
        Theme::seedColorHex = QStringLiteral("#0284c7");
        m_path = QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json"));
        QFile::remove(m_path);
        m_model = std::make_unique<LauncherModel>(m_path);
        for (const char* name : {"Work", "Home", "Empty"})
            m_model->addCategory(name, 0xE943);
        m_model->deleteCategory("Default");
        m_model->saveItem("Work", {"w1", "Site", "URL", "https://example.org", ""}, -1);
        m_model->saveItem("Work", {"w2", "Lines", "Bulk", "/a\n/b", "glyph:e86f"}, -1);
        m_model->saveItem("Home", {"h1", "Tool", "Application", "/usr/bin/tool", ""}, -1);
        rebuild();
    }

    void cleanup()
    {
        m_window.reset();
        m_model.reset();
    }

protected:
    static constexpr int CardWidth = 460;

    /// A new panel, in the theme and language in force.
    void rebuild()
    {
        m_window = std::make_unique<QWidget>();
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(Theme::panelBg()));
        m_window->setPalette(palette);
        m_panel = new ItemEditorPanel(m_model.get(), m_window.get());
        m_window->resize(CardWidth, 480);
        m_panel->resize(m_window->size());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void makeWithoutSections()
    {
        for (const QString& name : QStringList(m_model->data().categories))
            m_model->deleteCategory(name);
    }

    template <typename Widget>
    Widget* find(const char* name) const
    {
        return m_panel->findChild<Widget*>(QString::fromLatin1(name));
    }
    QLineEdit* name() const { return find<QLineEdit>("editorNameInput"); }
    GlyphButton* icon() const { return find<GlyphButton>("editorIconBtn"); }
    PickerPill* type() const { return find<PickerPill>("editorTypeBtn"); }
    PickerPill* section() const { return find<PickerPill>("editorSectionBtn"); }
    QPushButton* browse() const { return find<QPushButton>("editorBrowseBtn"); }
    NumberedPlainTextEdit* value() const { return find<NumberedPlainTextEdit>("editorValueInput"); }
    QPushButton* cancel() const { return find<QPushButton>("editorCancelBtn"); }
    QPushButton* save() const { return find<QPushButton>("editorSaveBtn"); }
    QLabel* labelOf(const QWidget* field) const
    {
        for (QLabel* label : m_panel->findChildren<QLabel*>()) {
            if (label->buddy() == field)
                return label;
        }
        return nullptr;
    }

    void click(QWidget* button) const { QTest::mouseClick(button, Qt::LeftButton); }
    void type(QWidget* field, const QString& text) const
    {
        field->setFocus();
        QTest::keyClicks(field, text);
    }

    /// Saves, and closes the one message that comes up. \returns its text.
    QString warningOfSave() const
    {
        QString warning;
        const ModalDriver driver([&warning](QWidget* modal) {
            const auto labels = modal->findChildren<QLabel*>();
            warning = labels.at(0)->text() + u'|' + labels.at(1)->accessibleName();
            pressKey(*modal, Qt::Key_Escape);
        });
        click(save());
        return warning;
    }

    QString m_path;
    std::unique_ptr<LauncherModel> m_model;
    std::unique_ptr<QWidget> m_window;
    ItemEditorPanel* m_panel = nullptr;
};
