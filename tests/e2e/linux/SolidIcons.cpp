// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SolidIcons.h"

#include "Desktop.h"
#include "SpotlightWindow.h"

#include <QColor>
#include <QDir>
#include <QFile>

namespace
{

// From the window's left edge: margin, padding of the list, inset of the row, half a circle.
constexpr int kIconMiddle = SpotlightWindow::SHADOW_MARGIN + 6 + 4 + 12 + 18;
constexpr int kLeastHeight = 5; // of what is left of an icon at the end of the panel

QRgb colorOfNumber(qsizetype number)
{
    // As pure as no colour of the theme is. The step has no divisor in common with the circle, so
    // that no two are the same, and neighbours look different to who looks at the picture.
    return QColor::fromHsv(int(number * 37 % 360), 255, 255).rgb();
}

int lengthOfRun(const QImage& picture, QPoint position, const QPoint& step)
{
    const QRgb color = picture.pixel(position);
    int length = 0;
    for (; picture.valid(position) && picture.pixel(position) == color; position += step)
        ++length;
    return length;
}

} // namespace

SolidIcons::SolidIcons(const QString& dataFolder)
    : m_theme(dataFolder + QStringLiteral("/icons/hicolor"))
{
    QDir().mkpath(m_theme);
    QFile index(m_theme + QStringLiteral("/index.theme"));
    QByteArray text("[Icon Theme]\nName=hicolor\nDirectories=apps,mimetypes,places\n");
    for (const char* context : {"apps", "mimetypes", "places"})
        text +=
            QByteArray("[") + context + "]\nType=Fixed\nSize=" + QByteArray::number(SizePx) + '\n';
    if (!index.open(QIODevice::WriteOnly) || index.write(text) != text.size())
        qFatal("cannot write the icon theme");
}

void SolidIcons::addToTheme(const QString& name, const QString& context)
{
    const QString folder = m_theme + QLatin1Char('/') + context + QLatin1Char('/');
    QDir().mkpath(folder);
    addFile(name, folder + name + QStringLiteral(".png"));
}

void SolidIcons::addFile(const QString& name, const QString& path)
{
    const QRgb color = colorOfNumber(m_names.size());
    QImage image(SizePx, SizePx, QImage::Format_RGB32);
    image.fill(color);
    if (m_names.contains(color) || !image.save(path))
        qFatal("cannot make the icon %s", qPrintable(name));
    m_names.insert(color, name);
}

QVector<SolidIcons::Shown> SolidIcons::shownIn(const QImage& screen) const
{
    const int x = (Desktop::ScreenWidth - SpotlightWindow::WINDOW_WIDTH) / 2 + kIconMiddle;
    QVector<Shown> result;
    for (int y = 0; y < screen.height(); ++y) {
        const auto name = m_names.constFind(screen.pixel(x, y));
        if (name == m_names.cend())
            continue;
        const int height = lengthOfRun(screen, QPoint(x, y), QPoint(0, 1));
        const int left = lengthOfRun(screen, QPoint(x, y), QPoint(-1, 0));
        const int right = lengthOfRun(screen, QPoint(x, y), QPoint(1, 0));
        if (height >= kLeastHeight)
            result.append({*name, QRect(x - left + 1, y, left + right - 1, height)});
        y += height;
    }
    return result;
}

QStringList SolidIcons::namesIn(const QImage& screen) const
{
    QStringList names;
    for (const Shown& shown : shownIn(screen))
        names.append(shown.name);
    return names;
}
