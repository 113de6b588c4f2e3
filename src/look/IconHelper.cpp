// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconHelper.h"

#include "FontResource.h"
#include "PathLocality.h"
#include "Types.h"

#include <QColor>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPointF>
#include <QSize>

#include <array>
#include <utility>

namespace
{

constexpr char kRegularFontFile[] = ":/fonts/MaterialSymbolsRounded-600.ttf";
constexpr char kFilledFontFile[] = ":/fonts/MaterialSymbolsRounded-600-Filled.ttf";
constexpr char kFallbackFamily[] = "Segoe MDL2 Assets";

constexpr int kTokenBase = 16;

struct TypeGlyph
{
    QLatin1String type;
    uint code;
};

constexpr std::array kTypeGlyphs{
    TypeGlyph{ItemType::Url, Glyph::Link},
    TypeGlyph{ItemType::Application, Glyph::DesktopWindows},
    TypeGlyph{QLatin1String("App"), Glyph::DesktopWindows},
    TypeGlyph{ItemType::File, Glyph::Description},
    TypeGlyph{ItemType::Bulk, Glyph::FolderCopy},
    TypeGlyph{ItemType::Snippet, Glyph::TextSnippet},
};

QString loadFamily(const char* fontFile)
{
    const int id = addFontResource(QString::fromLatin1(fontFile));
    const QStringList families =
        id < 0 ? QStringList() : QFontDatabase::applicationFontFamilies(id);
    return families.isEmpty() ? QString::fromLatin1(kFallbackFamily) : families.first();
}

QPainterPath glyphPath(const QFont& font, const QString& glyph)
{
    QPainterPath path;
    path.addText(0, 0, font, glyph);
    return path;
}

/// Room between the middle of a box and content of extent `content`, on one side.
double roomOnOneSide(double box, double content)
{
    return qMax(0.0, (box - content) / 2);
}

/// One-sided padding that pushes content back by `offset`: on the leading side if the content sits
/// too far to the front, on the trailing side otherwise. It counts double because padding on one
/// side moves centred content by half its value.
std::pair<int, int> paddingAgainst(double offset)
{
    return {offset < 0 ? qRound(-2 * offset) : 0, offset > 0 ? qRound(2 * offset) : 0};
}

} // namespace

QString IconHelper::regularFontFamily;
QString IconHelper::filledFontFamily;

void IconHelper::initFonts()
{
    if (regularFontFamily.isEmpty())
        regularFontFamily = loadFamily(kRegularFontFile);
    if (filledFontFamily.isEmpty())
        filledFontFamily = loadFamily(kFilledFontFile);
}

QFont IconHelper::glyphFont(int px)
{
    initFonts();
    QFont font(regularFontFamily);
    font.setPixelSize(px);
    // Hinting would snap the outline to whole pixels and undo the centring.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

const QString& IconHelper::glyphScheme()
{
    static const QString scheme = QStringLiteral("glyph:");
    return scheme;
}

QString IconHelper::glyphToken(uint code)
{
    return glyphScheme() + QString::number(code, kTokenBase);
}

bool IconHelper::isGlyphToken(const QString& iconPath)
{
    return iconPath.startsWith(glyphScheme());
}

uint IconHelper::glyphCode(const QString& token)
{
    if (!isGlyphToken(token))
        return 0;
    bool isNumber = false;
    const uint code = token.mid(glyphScheme().size()).toUInt(&isNumber, kTokenBase);
    return isNumber && !glyphText(code).isEmpty() ? code : 0;
}

bool IconHelper::hasCustomImage(const QString& iconPath)
{
    return !iconPath.isEmpty() && !isGlyphToken(iconPath) && Platform::isLocalPath(iconPath) &&
           QFile::exists(iconPath);
}

uint IconHelper::codepointForType(const QString& type)
{
    for (const TypeGlyph& entry : kTypeGlyphs) {
        if (type == entry.type)
            return entry.code;
    }
    return Glyph::Link;
}

QString IconHelper::glyphForType(const QString& type)
{
    return glyphText(codepointForType(type));
}

uint IconHelper::codepointForItem(const QString& iconPath, const QString& type)
{
    const uint chosen = glyphCode(iconPath);
    return chosen != 0 ? chosen : codepointForType(type);
}

QString IconHelper::glyphForItem(const QString& iconPath, const QString& type)
{
    return glyphText(codepointForItem(iconPath, type));
}

QString IconHelper::glyphText(uint code)
{
    if (code == 0 || code > QChar::LastValidCodePoint || QChar::isSurrogate(char32_t(code)))
        return {};
    const char32_t character = code;
    return QString::fromUcs4(&character, 1);
}

QList<unsigned int> IconHelper::pickableGlyphs()
{
    return {Glyph::Folder,         Glyph::Palette,       Glyph::Tune,       Glyph::Database,
            Glyph::Work,           Glyph::SportsEsports, Glyph::Code,       Glyph::Movie,
            Glyph::SpaceDashboard, Glyph::Star,          Glyph::Link,       Glyph::DesktopWindows,
            Glyph::Description,    Glyph::FolderCopy,    Glyph::TextSnippet};
}

QIcon IconHelper::getGlyphIcon(QChar glyph, int canvasSize, int fontSize, const QString& color)
{
    if (canvasSize < 1)
        return {};
    const qreal dpr = qGuiApp->devicePixelRatio();
    const int side = qRound(canvasSize * dpr);
    QPixmap pixmap(side, side);
    pixmap.setDevicePixelRatio(dpr);
    pixmap.fill(Qt::transparent);

    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath path = glyphPath(glyphFont(fontSize), glyph);
    const QPointF inkCenter = path.boundingRect().center();
    painter.translate(canvasSize / 2.0 - inkCenter.x(), canvasSize / 2.0 - inkCenter.y());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(color));
    painter.drawPath(path);
    painter.end();
    return QIcon(pixmap);
}

void IconHelper::drawGlyphCentered(QPainter* painter, const QPointF& center, const QString& glyph)
{
    if (!painter || glyph.isEmpty())
        return;
    QPainterPath path = glyphPath(painter->font(), glyph);
    const QRectF ink = path.boundingRect();
    if (ink.isEmpty())
        return;
    path.translate(center - ink.center());

    const QColor color = painter->pen().color();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(color);
    painter->drawPath(path);
    painter->restore();
}

void IconHelper::drawGlyph(QPainter* painter, const QPointF& center, uint code, int px,
                           const QColor& color)
{
    if (!painter || px < 1)
        return;
    painter->save();
    painter->setFont(glyphFont(px));
    painter->setPen(color);
    drawGlyphCentered(painter, center, glyphText(code));
    painter->restore();
}

QString IconHelper::glyphCenteringPad(const QFont& font, const QString& glyph, const QSize& box)
{
    const QFontMetricsF metrics(font);
    const QPointF inkCenter = metrics.tightBoundingRect(glyph).center();
    const double advance = metrics.horizontalAdvance(glyph);

    // How far the ink lies from where centring by the font's metrics would want it.
    const double dy = inkCenter.y() + (metrics.ascent() - metrics.descent()) / 2;
    const double dx = inkCenter.x() - advance / 2;

    const double vRoom = roomOnOneSide(box.height(), metrics.height());
    const double hRoom = roomOnOneSide(box.width(), advance);
    const auto [top, bottom] = paddingAgainst(qBound(-vRoom, dy, vRoom));
    const auto [left, right] = paddingAgainst(qBound(-hRoom, dx, hRoom));
    return QStringLiteral(
               "padding-top: %1px; padding-bottom: %2px; padding-left: %3px; padding-right: %4px;")
        .arg(top)
        .arg(bottom)
        .arg(left)
        .arg(right);
}
