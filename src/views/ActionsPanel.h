// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QWidget>

class LauncherModel;
class QLabel;
class QListWidget;
class QListWidgetItem;

/// What an `ActionsPanel` asks at the moment.
enum ItemActionsStep { ActionsNone = 0, ActionsList = 1, ActionsConfirmDelete = 2 };

/// A short list of what can be done to one item: edit it or, after a question of its own, delete
/// it. Rows are run by Enter or a double click; a single click only selects. The panel never hides
/// itself: whoever shows it answers `closeRequested`. GUI thread only.
class ActionsPanel : public QWidget
{
    Q_OBJECT

public:
    /// \param model not owned.
    explicit ActionsPanel(LauncherModel* model, QWidget* parent = nullptr);

    /// Lists the actions.
    /// \param takeFocus false shows them only, with no row selected and no step begun.
    void openItemMenu(const QString& category, const QString& itemId, bool takeFocus);

    /// Asks whether to delete the item. An item that is not there is asked for all the same.
    void openDeleteConfirm(const QString& category, const QString& itemId);

    /// Forgets the item and empties the list. Sends no signal.
    void reset();

    ItemActionsStep currentStep() const { return m_step; }

signals:
    void closeRequested();
    void editItemRequested(const QString& id);
    /// The item has been deleted.
    void dataChanged();
    void stepChanged(ItemActionsStep step);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setupUI();
    void buildList();
    void addRow(const QString& text, const QString& actionId, const QString& description,
                int iconKind);
    void enterStep(ItemActionsStep step);
    QString currentName() const;
    void buildDeleteConfirm();
    void finalizeActionsList(bool selectFirst, bool takeFocus);
    void executeSelection(QListWidgetItem* item);
    void executeListed(const QString& actionId);
    void deleteCurrentItem();
    void goBack(int key);
    bool handleListKey(int key);

    LauncherModel* m_model;
    ItemActionsStep m_step = ActionsNone;
    QString m_currentCategory;
    QString m_currentItemId;
    QLabel* m_actionsTitleLabel = nullptr;
    QListWidget* m_actionsListWidget = nullptr;
};
