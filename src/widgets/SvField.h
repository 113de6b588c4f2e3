// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HsvPainting.h"

#include <QImage>
#include <QWidget>

/// The field of the colour picker: all saturations, left to right, and values, bottom to top, of
/// one hue, with a marker on the choice. Worked by the mouse alone; takes no focus. GUI thread
/// only.
class SvField : public QWidget
{
    Q_OBJECT

public:
    explicit SvField(QWidget* parent = nullptr);

    int hue() const { return m_hue; } ///< 0 to 359, not a part of the choice
    int sat() const { return m_sat; } ///< 0 to 255
    int val() const { return m_val; } ///< 0 to 255

    /// Set what is shown, bounded to its range. Nothing is emitted.
    void setHue(int hue);
    void setSv(int sat, int val);

    QSize sizeHint() const override;

signals:
    /// The mouse has chosen another saturation or value.
    void svChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void buildCache();
    void pick(const QPoint& point);
    QPointF markerCentre() const;

    int m_hue = 0;
    int m_sat = HsvPainting::MaxLevel;
    int m_val = HsvPainting::MaxLevel;
    QImage m_cache; ///< the field without its marker, in pixels of the screen; null if out of date
};
