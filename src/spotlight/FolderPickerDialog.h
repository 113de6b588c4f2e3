// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"

#include <QString>
#include <QStringList>

class QListWidget;
class QListWidgetItem;
class QModelIndex;

/// Asks to which folders the file results shall be limited. Offers the usual folders of a home, the
/// ones that are chosen now, and any other below the home. What the user has chosen is the
/// caller's to store.
class FolderPickerDialog : public FramelessDialog
{
    Q_OBJECT

public:
    explicit FolderPickerDialog(QWidget* parent);

    /// The folders that are checked, in the order of the rows: absolute, with native separators.
    /// Empty for all folders.
    QStringList chosen() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addTexts();
    void addList();
    void addButtons();
    /// Makes a row for each folder that is offered.
    void buildRows(const QStringList& checked);
    QListWidgetItem* addRow(const QString& text, const QString& key, const QString& toolTip);
    bool isRowChecked(const QModelIndex& index) const;
    void selectionChanged();
    void addOtherFolder();
    /// Adds a row for a folder, checked. What else is checked stays so.
    void addExtra(const QString& dir);

    /// The usual ones, the chosen ones and those that were added, each once.
    QStringList offeredFolders() const;
    /// What the rows of these folders say: with how much is in each, once that is known.
    static QStringList rowLabels(const QStringList& paths);
    static QStringList defaultFolders();
    static bool containsPath(const QStringList& paths, const QString& path);

    QListWidget* m_list = nullptr;
    QListWidgetItem* m_allItem = nullptr; ///< the row for all folders
    QStringList m_extra;                  ///< folders that were added in this dialog
};
