// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QWidget>

/// A row of buttons of which one is checked: the choice among a few values. GUI thread only.
class ChoiceRow : public QWidget
{
    Q_OBJECT

public:
    enum class Shape {
        Pill, ///< as wide as its text
        Round ///< for a digit
    };

    struct Choice
    {
        int value = 0;
        QString text;
        QString objectName; ///< unique in the window: by it the focus returns after a rebuild
    };

    /// \param current the value to be checked at the start; none is, if no choice has it.
    /// \param idleBgOverride as in `Theme::choiceBtnStates`.
    ChoiceRow(const QList<Choice>& choices, int current, Shape shape,
              const QString& idleBgOverride = QString(), QWidget* parent = nullptr);

    int value() const { return m_value; }

signals:
    /// The user has chosen another value than the one before.
    void chosen(int value);

private:
    void choose(int value);

    int m_value;
};
