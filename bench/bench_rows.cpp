// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What painting one row of the Spotlight list costs: with a short name and a glyph as the measure
// of all, with a name of a megabyte, and with a large picture, whose first paint is told apart from
// those after it has been read.

#include "SpotlightResultDelegate.h"
#include "TestHome.h"
#include "Theme.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

using Delegate = SpotlightResultDelegate;

constexpr int kRounds = 101;
constexpr int kForceLight = 1;
constexpr int kRowWidth = 560;
constexpr int kPictureSide = 5500;
constexpr int kNameLength = 1024 * 1024;
constexpr int kReadLimitMs = 30000;
constexpr double kNsPerMs = 1e6;

/// A list of one row, and a picture of it.
class Row
{
public:
    Row(const QString& name, const QString& iconToken, qreal ratio)
        : m_image(QSize(kRowWidth, Delegate::RowHeight) * ratio,
                  QImage::Format_ARGB32_Premultiplied)
    {
        m_image.setDevicePixelRatio(ratio);
        m_model.appendRow(new QStandardItem(name));
        m_model.setData(m_model.index(0, 0), iconToken, Delegate::RoleIconToken);
        m_option.rect = QRect(0, 0, kRowWidth, Delegate::RowHeight);
        m_option.state = QStyle::State_Enabled;
    }

    const QImage& paint()
    {
        QPainter painter(&m_image);
        m_delegate.paint(&painter, m_option, m_model.index(0, 0));
        return m_image;
    }

    double timePaint()
    {
        QElapsedTimer timer;
        timer.start();
        paint();
        return static_cast<double>(timer.nsecsElapsed()) / kNsPerMs;
    }

private:
    Delegate m_delegate{nullptr};
    QStandardItemModel m_model;
    QStyleOptionViewItem m_option;
    QImage m_image;
};

/// Paints until the row shows something red. False if that doesn't happen.
bool paintUntilPictureShows(Row& row)
{
    const auto isRed = [](QRgb pixel) { return pixel == QColor(Qt::red).rgb(); };
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kReadLimitMs) {
        const QImage image = row.paint().convertToFormat(QImage::Format_RGB32);
        const auto* pixels = reinterpret_cast<const QRgb*>(image.constBits());
        if (std::any_of(pixels, pixels + image.width() * image.height(), isRed))
            return true;
        QCoreApplication::processEvents();
    }
    return false;
}

void report(const char* what, Row& row)
{
    const double firstMs = row.timePaint();
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round)
        times.push_back(row.timePaint());
    std::sort(times.begin(), times.end());
    std::printf("%-36s first %8.3f ms  median %8.3f ms  worst %8.3f ms\n", what, firstMs,
                times[times.size() / 2], times.back());
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QApplication application(argc, argv);
    Theme::forceTheme = kForceLight;
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/PlusJakartaSans-SemiBold.ttf"));

    Row plain(QStringLiteral("Name"), QString(), 1.0);
    report("short name, glyph", plain);
    Row longName(QStringLiteral("wide ").repeated(kNameLength / 5), QString(), 1.0);
    report("name of a megabyte", longName);

    const QString path = TestHome::writeDataFile(QStringLiteral("large.png"), {});
    QImage picture(kPictureSide, kPictureSide, QImage::Format_RGB32);
    picture.fill(Qt::red);
    if (!picture.save(path))
        return EXIT_FAILURE;
    picture = QImage();
    for (const qreal ratio : {1.0, 2.0}) {
        Row row(QStringLiteral("Name"), path, ratio);
        std::printf("picture of %d x %d px, screen ratio %.0f\n", kPictureSide, kPictureSide,
                    ratio);
        std::printf("  first paint %37.3f ms\n", row.timePaint());
        if (!paintUntilPictureShows(row))
            return EXIT_FAILURE;
        report("  once it has been read", row);
    }
    return EXIT_SUCCESS;
}
