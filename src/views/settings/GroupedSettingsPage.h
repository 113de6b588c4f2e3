// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class QFrame;

/// Small pages of settings one below the other, each under the title of its group, as one page that
/// scrolls. GUI thread only.
class GroupedSettingsPage : public QWidget
{
    Q_OBJECT

public:
    struct Group
    {
        QString title;           ///< no header if empty
        QWidget* page = nullptr; ///< with a layout, whose margins it loses; null is left out
    };

    /// Takes the pages over.
    explicit GroupedSettingsPage(const QList<Group>& groups, QWidget* parent = nullptr);
    explicit GroupedSettingsPage(const QList<QWidget*>& pages, QWidget* parent = nullptr);

    /// \param topSpace leaves room to the group above.
    static QFrame* makeGroupHeader(const QString& title, bool topSpace);

private:
    static QList<Group> withoutTitles(const QList<QWidget*>& pages);
};
