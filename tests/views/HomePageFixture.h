// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ActionsPanel.h"
#include "AutoQuitBlocker.h"
#include "HomeView.h"
#include "IconHelper.h"
#include "ItemEditorPanel.h"
#include "ItemRoles.h"
#include "Localization.h"
#include "MainWindowFixture.h"
#include "MenuSteps.h"
#include "StorageManager.h"
#include "UiDriver.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>

#include <functional>
#include <utility>

/// The main window with a document of its own: three sections, two of them with items, and two
/// templates. What stands on the home page, and how the menus over it are worked.
class HomePageFixture : public MainWindowFixture, protected MenuSteps
{
    Q_OBJECT

public:
    static constexpr uint AlphaIcon = 0xE40A;
    static constexpr uint KitIcon = 0xE86F;

protected:
    static LauncherElement snippet(const QString& id, const QString& name)
    {
        return {id, name, ItemType::Snippet, name + QStringLiteral(" text"), {}};
    }

    static LauncherData standardDocument()
    {
        LauncherData document;
        document.categories = QStringList{"Alpha", "Beta", "Gamma"};
        document.defaultCategory = QStringLiteral("Beta");
        document.categoryIcons = {{"Alpha", AlphaIcon}};
        document.sectionElements = {
            {"Alpha", {snippet("a1", "One"), snippet("a2", "Two"), snippet("a3", "Three")}},
            {"Beta", {snippet("b1", "Bee")}}};
        document.templates = {{"Kit", KitIcon, {snippet({}, "Tool"), snippet({}, "Nail")}},
                              {"Box", SectionTemplate::DefaultIcon, {snippet({}, "Lid")}}};
        return document;
    }

    /// Starts with this document, in its first section.
    void open(const LauncherData& document = standardDocument())
    {
        StorageManager::saveData(documentPath(), document);
        constructAndShow();
        QTRY_COMPARE(focused(), strip());
    }

    static QString documentPath()
    {
        return QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json"));
    }
    static LauncherData onDisk() { return StorageManager::loadData(documentPath()); }

    LauncherModel* model() const { return m_window->model(); }
    HomeView* home() const { return m_window->findChild<HomeView*>(); }
    QListWidget* list() const { return home()->list(); }
    QWidget* strip() const { return home()->categoryStrip(); }
    QLineEdit* searchField() const { return home()->searchInput(); }
    ActionsPanel* panel() const { return home()->actionsPanel(); }
    ItemEditorPanel* editor() const { return home()->itemEditorPanel(); }
    template <typename T = QWidget>
    T* named(const char* name) const
    {
        return m_window->findChild<T*>(QString::fromLatin1(name));
    }
    QWidget* card() const { return named("rightCard"); }
    QWidget* backdrop() const { return named("gridOverlayBackdrop"); }
    int previewPage() const { return home()->previewStack()->currentIndex(); }
    static QWidget* focused() { return QApplication::focusWidget(); }

    QString cardTitle() const { return named("previewCardHeader")->findChild<QLabel*>()->text(); }

    /// The names on the grid, in order.
    QStringList rows() const
    {
        QStringList names;
        for (int row = 0; row < list()->count(); ++row)
            names.append(list()->item(row)->text());
        return names;
    }

    QString currentRow() const
    {
        const QListWidgetItem* item = list()->currentItem();
        return item ? item->text() : QString();
    }

    /// Puts keyboard and selection on a row of the grid.
    void goToRow(int row) const
    {
        list()->setFocus();
        list()->setCurrentRow(row);
        QCOMPARE(focused(), list());
    }

    /// The names of a section's items, as the document holds them.
    QStringList itemsOf(const QString& category) const
    {
        QStringList names;
        for (const LauncherElement& item : model()->getItems(category))
            names.append(item.name);
        return names;
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        pressKey(*m_window, key, modifiers);
    }

    /// Gives the keyboard back to the window: here, unlike on a desktop, a menu or a dialog takes
    /// it and leaves it to nobody.
    void regainKeyboard() const
    {
        m_window->activateWindow();
        QTRY_VERIFY(m_window->isActiveWindow());
    }

    /// Does something that opens these menus, one in the other.
    void inMenus(const std::function<void()>& opening, QList<MenuScript::Action> actions) const
    {
        const MenuScript script(std::move(actions));
        opening();
        QTRY_VERIFY(script.isDone());
        regainKeyboard();
    }
};
