// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QEvent>
#include <QImage>
#include <QObject>
#include <QPainter>
#include <QWidget>

#include <functional>
#include <utility>

/// Looks at what widgets paint.
namespace Pixels
{

/// A white picture.
inline QImage canvas(const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

/// What a widget and its children draw, on white instead of on the window's background.
inline QImage imageOf(QWidget& widget)
{
    QImage image = canvas(widget.size());
    QPainter painter(&image);
    widget.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

/// The bounding box of the pixels whose `QColor` fulfils a condition; empty if none does.
template <typename Condition>
QRect boxWhere(const QImage& image, Condition condition)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (condition(image.pixelColor(x, y)))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

/// The bounding box of everything that is not white.
inline QRect inkBox(const QImage& image)
{
    return boxWhere(image, [](const QColor& color) { return color != QColor(Qt::white); });
}

/// True if no channel of two colours differs by more than `tolerance`.
inline bool isNear(const QColor& a, const QColor& b, int tolerance)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance;
}

/// The bounding box of the pixels near one colour. A wide tolerance takes in the pixels at an
/// antialiased edge that are mostly covered.
inline QRect boxOfColor(const QImage& image, const QColor& wanted, int tolerance = 0)
{
    return boxWhere(image, [&wanted, tolerance](const QColor& color) {
        return isNear(color, wanted, tolerance);
    });
}

/// True if a box is not empty and has its centre within one pixel of `point`.
inline bool isCentredOn(const QRect& box, const QPointF& point)
{
    const QPointF off = QRectF(box).center() - point;
    return !box.isEmpty() && qAbs(off.x()) <= 1.0 && qAbs(off.y()) <= 1.0;
}

/// By how much one channel of two pictures of the same size differs at most, transparency included.
inline int largestDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb first = a.pixel(x, y);
            const QRgb second = b.pixel(x, y);
            for (const int shift : {0, 8, 16, 24}) {
                const int left = int(first >> shift & 0xff);
                largest = qMax(largest, qAbs(left - int(second >> shift & 0xff)));
            }
        }
    }
    return largest;
}

/// Paints the handle that a choice of colour is made with: a sample in a white ring, and a dark
/// hairline around that.
inline void drawHandle(QImage& image, const QPointF& centre, const QColor& fill, qreal ringRadius,
                       qreal hairlineRadius)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(fill);
    painter.setPen(QPen(QColor(255, 255, 255, 235), 2));
    painter.drawEllipse(centre, ringRadius, ringRadius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0, 0, 0, 55), 1));
    painter.drawEllipse(centre, hairlineRadius, hairlineRadius);
}

} // namespace Pixels

/// Counts how often a widget paints itself.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget* watched) { watched->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

/// Asks a question at each paint of a widget.
class PaintWatcher : public QObject
{
public:
    PaintWatcher(QWidget* watched, std::function<bool()> question) : m_question(std::move(question))
    {
        watched->installEventFilter(this);
    }

    bool wasTrue() const { return m_wasTrue; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_wasTrue = m_wasTrue || (event->type() == QEvent::Paint && m_question());
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<bool()> m_question;
    bool m_wasTrue = false;
};
