// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class CardHeader;
class LauncherModel;
class MainWindow;
class QFrame;
class QKeyEvent;
class QListWidget;
class QPushButton;
class QStackedWidget;

/// The settings page of the main window: a list of categories, the page of the current one beside
/// it, and a button that leads back to the home page. The keyboard works it on two levels: the
/// focus is in the list, or on a control of one of the page's cards. The window hands it the keys,
/// see `MainWindow::eventFilter`. Before `setupUI` its operations do nothing. GUI thread only.
class SettingsView : public QWidget
{
    Q_OBJECT

public:
    /// \param model, mainWindow not owned; have to outlive this.
    SettingsView(LauncherModel* model, MainWindow* mainWindow, QWidget* parent);

    /// Builds everything in the page. To be called once.
    void setupUI();

    /// What the keys of the page do. \returns whether the key is consumed; otherwise it is the
    /// widget's, or that of the card's `SettingsCardFilter`.
    bool handleKeyPress(QObject* obj, QKeyEvent* e);
    /// Follows the focus: a card hands it on to its control. Never consumes the event.
    bool handleEvent(QObject* obj, QEvent* e);

    /// Gives the focus to the list. \returns true, for the key that has led there is consumed.
    bool focusCategoryPane();
    /// Goes to the first category, where each show of the window begins. A visit by key or button
    /// finds the category that the one before has left.
    void resetToTop();
    /// Goes to the category that bears this text, which is a translated one, and into its page.
    /// \returns false if there is none.
    bool openCategoryByTitle(const QString& title);
    /// Gives the focus to what had it before the page was built anew, and scrolls its card into
    /// view. \param widget may be null.
    void focusAfterRebuild(QWidget* widget) const;
    /// The title is that of the settings as a whole, whatever the category.
    void updateHeaderTitle();
    /// Gives the focus to the first control of the current page.
    void openSelectedCategory();

    /// The card on the current page that holds `widget` or is it; null if there is none.
    QFrame* rowOf(QWidget* widget) const;
    /// All cards of the current page, from the top.
    QList<QFrame*> detailRows() const;
    /// Gives the focus to the control to begin with in that card and scrolls it into view.
    /// \returns false if the card has none.
    bool focusRowControl(QFrame* row);

    QListWidget* categoryList() const { return m_settingsCatList; }
    QStackedWidget* detailStack() const { return m_settingsDetailStack; }
    QPushButton* backButton() const { return m_settingsBackBtn; }

private:
    QWidget* buildHeader();
    QPushButton* buildBackButton();
    QWidget* buildBody();
    void buildCategoryList();
    void buildPages();
    void addCategory(const char* key, uint glyph, QWidget* page);
    QWidget* buildDisplayPage();
    QWidget* buildAppPage();
    QWidget* buildTemplatePage();
    QWidget* buildAboutPage();
    void goBack();

    bool isInCategoryList(const QObject* obj) const;
    bool handleEnter(QWidget* widget, bool isRepeated);
    bool handleSideways(QWidget* widget, int step);
    bool handleBack(const QWidget* widget, int key);
    bool handleVertical(QWidget* widget, int step);
    bool handleBackButtonKey(int key);
    void syncToCurrentCategory();
    void focusRow(QFrame* row);
    static void scrollTo(QFrame* row);

    QPushButton* m_settingsBackBtn = nullptr;
    CardHeader* m_settingsHeader = nullptr;
    QListWidget* m_settingsCatList = nullptr;
    QStackedWidget* m_settingsDetailStack = nullptr;
    LauncherModel* m_model;
    MainWindow* m_mainWindow;
};
