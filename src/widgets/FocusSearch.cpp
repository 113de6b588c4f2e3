// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FocusSearch.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QKeySequenceEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <algorithm>

namespace
{

/// The descendants of `root` whose focus policy has one of the bits of `policy`.
QList<QWidget*> withPolicy(const QWidget* root, int policy)
{
    QList<QWidget*> found = root->findChildren<QWidget*>();
    found.removeIf([root, policy](const QWidget* widget) {
        return (widget->focusPolicy() & policy) == 0 || !widget->isVisibleTo(root) ||
               !widget->isEnabledTo(root);
    });
    return found;
}

bool isChecked(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button && button->isCheckable() && button->isChecked();
}

} // namespace

QList<QWidget*> FocusSearch::focusables(const QWidget* root)
{
    return withPolicy(root, Qt::StrongFocus);
}

QList<QWidget*> FocusSearch::tabStops(const QWidget* root)
{
    return withPolicy(root, Qt::TabFocus);
}

QWidget* FocusSearch::firstControl(const QWidget* root)
{
    const QList<QWidget*> stops = tabStops(root);
    const auto checked = std::find_if(stops.begin(), stops.end(), isChecked);
    return checked != stops.end() ? *checked : stops.value(0);
}

bool FocusSearch::isTextInput(const QWidget* widget)
{
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
           qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QKeySequenceEdit*>(widget);
}

bool FocusSearch::isInItemView(const QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (qobject_cast<const QAbstractItemView*>(widget))
            return true;
    }
    return false;
}
