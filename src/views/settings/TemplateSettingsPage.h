// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class LauncherModel;
class QFrame;
class QLabel;
class QPushButton;
class QVBoxLayout;
struct ColorTokens;
struct SectionTemplate;

/// The settings page that lists the saved templates and makes, renames, refills and deletes them.
/// It may be deleted while a menu or dialog of its is open. GUI thread only.
class TemplateSettingsPage : public QWidget
{
    Q_OBJECT

public:
    /// \param model outlives the page and is not owned; null shows no templates.
    explicit TemplateSettingsPage(LauncherModel* model, QWidget* parent = nullptr);

private:
    /// Where the keyboard is on the page.
    struct FocusPlace
    {
        int row = -1; ///< -1 if it is elsewhere
        QString name; ///< of the control
    };

    void rebuildRows();
    QList<QWidget*> takeRows();
    void addRows();
    FocusPlace focusPlace() const;
    /// Gives the focus to the same control of the new rows, or else to the one in its place.
    void restoreFocus(const FocusPlace& place);
    QFrame* makeCreateRow(const ColorTokens& c);
    QLabel* makeEmptyState(const ColorTokens& c);
    QFrame* makeTemplateRow(const SectionTemplate& tpl, const ColorTokens& c);
    QPushButton* makeMenuButton(const QString& name, const ColorTokens& c);

    void showRowMenu(QPushButton* anchor, const QString& name);
    void createTemplateFromScratch();
    // These return whether something has changed. A template of that name may be gone by now.
    bool editTemplate(const QString& name);
    bool editTemplateContents(const QString& name);
    bool deleteTemplateWithConfirm(const QString& name);

    LauncherModel* m_model;
    QVBoxLayout* m_layout;
};
