// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// The bar of the colour picker with all hues, left to right, and a handle on the choice. Worked by
/// the mouse alone; takes no focus. GUI thread only.
class HueSlider : public QWidget
{
    Q_OBJECT

public:
    static constexpr int Height = 22; ///< px, also the span of the handle

    explicit HueSlider(QWidget* parent = nullptr);

    int hue() const { return m_hue; } ///< 0 to 359

    /// Sets what is shown, bounded to the range. Nothing is emitted.
    void setHue(int hue);

signals:
    /// The mouse has chosen another hue.
    void hueChanged(int hue);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    /// Middle of the handle, which stays inside the bar at both ends.
    qreal handleX() const;
    void pick(int x);

    int m_hue = 0;
};
