// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IconHelper.h"

#include <QColor>
#include <QWidget>

/// A round tick that floats beside an open menu. It takes neither focus nor mouse events, so the
/// menu keeps both and tests clicks against the dot's geometry itself.
class ConfirmDot : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Size = 40;               ///< side of its square window, in pixels
    static constexpr uint Glyph = ::Glyph::Check; ///< what it shows

    explicit ConfirmDot(QWidget* parent = nullptr);

    /// \param bg fill of the circle.
    /// \param fg the tick.
    void setColors(const QColor& bg, const QColor& fg);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_bg;
    QColor m_fg;
};
