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
    static constexpr int RowsAtOnce = 32; ///< more than a page shows; the others follow

    /// \param model outlives the page and is not owned; null shows no templates.
    explicit TemplateSettingsPage(LauncherModel* model, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// A card, and what it shows.
    struct Row
    {
        QString name;
        uint icon;
        qsizetype count; ///< of items
        QFrame* card;

        bool shows(const SectionTemplate& tpl) const;
    };

    void rebuildRows();
    void rebuildEmptyState(QList<QWidget*>& gone);
    /// Takes over the cards that still show a template, and makes the first of the others.
    void rebuildCards(QList<QWidget*>& gone);
    void appendRow(const SectionTemplate& tpl, const ColorTokens& c);
    /// Makes the cards for which there was no time at once, a few in each turn of the event loop.
    void scheduleWaitingRows();
    void appendWaitingRows();
    bool isComplete() const;
    /// Of the widget in the layout that has the keyboard; -1 if it is elsewhere.
    int focusedRow() const;
    /// Gives the focus to the control in that row, or else to the next one above.
    void focusRow(int row);
    QFrame* makeCreateRow(const ColorTokens& c) const;
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
    QLabel* m_emptyState = nullptr; ///< null while there are templates
    QList<Row> m_rows;              ///< of the first templates, mostly of all
    bool m_isAppending = false;     ///< a turn for waiting rows is to come
};
