// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Theme.h"

#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QPointF>

// Every sheet is filled by one call of arg with all its values: a chain of calls would take a
// placeholder inside an earlier value, such as the object name in a selector, for its own.

namespace
{

constexpr int kFieldMaxSaturation = 28; // of 255, so that a vivid seed makes no loud fields
constexpr int kFieldPaddingPx = 8;
constexpr int kDialogShadowBlurPx = 20;
constexpr QPointF kDialogShadowOffset(0.0, 4.0);

QString hover(const QString& baseHex, const QString& onHex)
{
    return Theme::stateLayerOn(baseHex, onHex, Theme::StateHover);
}

QString focus(const QString& baseHex, const QString& onHex)
{
    return Theme::stateLayerOn(baseHex, onHex, Theme::StateFocus);
}

QString pressed(const QString& baseHex, const QString& onHex)
{
    return Theme::stateLayerOn(baseHex, onHex, Theme::StatePressed);
}

QString idleOf(const ColorTokens& c, const QString& idleBgOverride)
{
    return idleBgOverride.isEmpty() ? c.surfaceContainerHighest : idleBgOverride;
}

} // namespace

QString Theme::primaryBtnStyle(const ColorTokens& c)
{
    return QStringLiteral(
               "QPushButton { background-color: %1; border: 1px solid transparent; "
               "border-radius: 16px; padding: 8px 16px; color: %2; font-weight: bold; outline: 0; }"
               "QPushButton:hover { background-color: %3; color: %2; }"
               "QPushButton:focus { background-color: %4; color: %2; outline: 0; }")
        .arg(c.primary, c.onPrimary, hover(c.primary, c.onPrimary), focus(c.primary, c.onPrimary));
}

QString Theme::actionBtnStyle(const ColorTokens& c, const QString& idleBgOverride)
{
    const QString idle = idleOf(c, idleBgOverride);
    return QStringLiteral(
               "QPushButton { background-color: %1; border: 1px solid transparent; "
               "border-radius: 16px; padding: 8px 16px; color: %2; font-weight: bold; outline: 0; }"
               "QPushButton:hover { background-color: %3; color: %2; }"
               "QPushButton:focus { background-color: %4; color: %2; border-color: %5; "
               "outline: 0; }")
        .arg(idle, c.onSurface, hover(idle, c.onSurface), focus(idle, c.onSurface),
             getItemTheme().key);
}

QString Theme::destructiveBtnStyle(const ColorTokens& c)
{
    // Shades of the red itself instead of state layers, which would pale it.
    constexpr int kHoverPercent = 115;
    constexpr int kFocusPercent = 130;
    const QColor error(c.errorColor);
    const bool isDark = isDarkMode();
    const auto shade = [&error, isDark](int percent) {
        return (isDark ? error.lighter(percent) : error.darker(percent)).name();
    };
    return QStringLiteral(
               "QPushButton { background-color: %1; border: 1px solid transparent; "
               "border-radius: 16px; padding: 8px 16px; color: %2; font-weight: bold; outline: 0; }"
               "QPushButton:hover { background-color: %3; }"
               "QPushButton:focus { background-color: %4; outline: 0; }")
        .arg(c.errorColor, c.onError, shade(kHoverPercent), shade(kFocusPercent));
}

QString Theme::activeListeningStyle(const ColorTokens& c)
{
    return QStringLiteral(
               "QPushButton { background-color: %1; border: 1px solid %2; border-radius: 16px; "
               "padding: 8px 16px; color: %3; font-weight: bold; outline: 0; }")
        .arg(c.primaryContainer, c.primary, c.onPrimaryContainer);
}

QString Theme::iconBtnStyle(const ColorTokens& c, const QString& idleBgOverride)
{
    const QString idle = idleOf(c, idleBgOverride);
    return QStringLiteral("QPushButton { background-color: %1; border: none; border-radius: 16px; "
                          "padding: 0px; color: %2; outline: 0; }"
                          "QPushButton:hover { background-color: %3; color: %2; }"
                          "QPushButton:focus { background-color: %4; color: %2; outline: 0; }"
                          "QPushButton::menu-indicator { image: none; width: 0px; }")
        .arg(idle, c.onSurface, hover(idle, c.onSurface), focus(idle, c.onSurface));
}

QString Theme::pillSecondaryStyle(const ColorTokens& c)
{
    const QString& idle = c.surfaceContainerHighest;
    return QStringLiteral(
               "QPushButton { background-color: %1; border: 1px solid transparent; "
               "border-radius: 12px; padding: 4px 12px; color: %2; font-weight: bold; outline: 0; }"
               "QPushButton:hover { background-color: %3; color: %2; }"
               "QPushButton:focus { background-color: %4; color: %2; border-color: %6; "
               "outline: 0; }"
               "QPushButton:pressed { background-color: %5; color: %2; }")
        .arg(idle, c.onSurface, hover(idle, c.onSurface), focus(idle, c.onSurface),
             pressed(idle, c.onSurface), getItemTheme().key);
}

QString Theme::iconChoiceStyle(const ColorTokens& c, bool selected)
{
    const ColorTokens t = getItemTheme();
    const QString bg = selected ? t.key : fieldIdleBg(c);
    const QString onBg = iconChoiceFg(c, selected);
    // On a filled cell a ring in the fill's own colour would not show.
    const QString ring = selected ? t.onKey : t.key;
    return QStringLiteral(
               "QPushButton { background-color: %1; border: 2px solid transparent; "
               "border-radius: 18px; outline: 0; }"
               "QPushButton:hover { background-color: %2; }"
               "QPushButton:focus { background-color: %3; border-color: %4; outline: 0; }")
        .arg(bg, hover(bg, onBg), focus(bg, onBg), ring);
}

QString Theme::choiceBtnStates(const ColorTokens& c, const QString& sel,
                               const QString& idleBgOverride)
{
    const ColorTokens t = getItemTheme();
    const QString idle = idleOf(c, idleBgOverride);
    return QStringLiteral(
               "%1:hover { background-color: %2; color: %3; }"
               "%1:focus { background-color: %4; color: %3; border-color: %5; }"
               "%1:checked { background-color: %6; color: %7; border-color: transparent; }"
               "%1:checked:hover { background-color: %8; color: %7; }"
               "%1:checked:focus { background-color: %9; color: %7; border-color: %10; }")
        .arg(sel, hover(idle, c.onSurface), c.onSurface, focus(idle, c.onSurface), t.key, t.key,
             t.onKey, hover(t.key, t.onKey), focus(t.key, t.onKey), t.onKey);
}

QString Theme::fieldInputStyle(const ColorTokens& c)
{
    return QStringLiteral(
               "QLineEdit { background-color: %1; border: none; border-radius: 18px; "
               "padding: 10px 16px; color: %2; font-size: %3; }"
               "QPlainTextEdit { background-color: %1; border: none; border-radius: %4px; "
               "padding: %5px; color: %2; font-size: %3; }"
               "QLineEdit:focus, QPlainTextEdit:focus { background-color: %6; color: %2; }")
        .arg(fieldIdleBg(c), c.onSurface, FontTokens::SizeMd, QString::number(Rad_Md),
             QString::number(kFieldPaddingPx), fieldFocusBg(c));
}

QString Theme::fieldLabelStyle(const ColorTokens& c)
{
    return QStringLiteral("color: %1; font-size: %2; font-weight: 600; letter-spacing: 0.3px; "
                          "border: none;")
        .arg(c.onSurfaceVariant, FontTokens::SizeSm);
}

QString Theme::dialogTitleStyle(const ColorTokens& c)
{
    return textStyle(c.onSurface, FontTokens::SizeLg, Weight::Bold);
}

QString Theme::groupHeaderStyle(const ColorTokens& c)
{
    return QStringLiteral("color: %1; font-size: %2; font-weight: bold; letter-spacing: 0.6px; "
                          "background: transparent; border: none;")
        .arg(c.onSurfaceVariant, FontTokens::SizeSm);
}

QString Theme::contextMenuStyle(const ColorTokens& c)
{
    return QStringLiteral(
               "QMenu { background-color: %1; border: none; border-radius: %2px; padding: 6px; "
               "font-family: %3; font-size: %4; color: %5; letter-spacing: 0.3px; }"
               "QMenu::item { padding: 0px; margin: 0px; background: transparent; }"
               "QMenu::separator { height: 1px; background-color: %6; margin: 4px 10px; }")
        .arg(c.surfaceContainerHighest, QString::number(Rad_Md), FontTokens::Family,
             FontTokens::SizeMd, c.onSurface, c.outlineVariant);
}

QString Theme::textStyle(const QString& color, const QString& size, Weight weight)
{
    const bool isBold = weight == Weight::Bold;
    return QStringLiteral("color: %1; font-size: %2; %3border: none;")
        .arg(color, size, isBold ? QStringLiteral("font-weight: bold; ") : QString());
}

QString Theme::textOnCardStyle(const QString& color, const QString& size, Weight weight)
{
    return QStringLiteral("%1 background: transparent;").arg(textStyle(color, size, weight));
}

QString Theme::staticTitleStyle(const ColorTokens& c)
{
    return QStringLiteral("QLabel#titleStatic { background-color: transparent; color: %1; "
                          "font-size: %2; font-weight: bold; border: none; }")
        .arg(c.onSurface, FontTokens::SizeMd);
}

QString Theme::shownScrollBarStyle(const ColorTokens& c)
{
    return QStringLiteral(
               "QScrollBar:vertical { background: transparent; width: 6px; }"
               "QScrollBar::handle:vertical { background: %1; border-radius: 3px; "
               "min-height: 24px; }"
               "QScrollBar::handle:vertical:hover { background: %2; }"
               "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0px; }"
               "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: none; }")
        .arg(c.outline, c.onSurfaceVariant);
}

QString Theme::separatorStyle(const ColorTokens& c)
{
    return QStringLiteral("background-color: %1; border: none;").arg(c.outlineVariant);
}

QString Theme::smallPillStyle(const ColorTokens& c)
{
    return pillSecondaryStyle(c) +
           QStringLiteral("QPushButton { border-radius: 18px; padding: 0 16px; font-size: 12px; }");
}

QString Theme::pickerPillStyle(const QString& sel, const ColorTokens& c, const QString& activeBg,
                               const QString& activeFg, int leftPad, int minWidth)
{
    return QStringLiteral(
               "%1 { background-color: %2; border: none; border-radius: 18px; "
               "padding: 6px 14px 6px %6px; color: %3; font-weight: bold; letter-spacing: 0.3px; "
               "outline: 0; min-width: %7px; text-align: left; }"
               "%1:hover { background-color: %4; color: %5; }"
               "%1:focus { background-color: %4; color: %5; outline: 0; }")
        .arg(sel, fieldIdleBg(c), c.onSurface, activeBg, activeFg, QString::number(leftPad),
             QString::number(minWidth));
}

QString Theme::choicePillStyle(const ColorTokens& c, const QString& sel,
                               const QString& idleBgOverride)
{
    return QStringLiteral("%1 { background-color: %2; color: %3; border: 2px solid transparent; "
                          "border-radius: 18px; padding: 0 14px; font-size: 12px; "
                          "font-weight: bold; outline: 0; }")
               .arg(sel, idleOf(c, idleBgOverride), c.onSurface) +
           choiceBtnStates(c, sel, idleBgOverride);
}

QString Theme::choiceRoundStyle(const ColorTokens& c, const QString& sel,
                                const QString& idleBgOverride)
{
    return QStringLiteral("%1 { background-color: %2; color: %3; border: 2px solid transparent; "
                          "border-radius: 20px; font-weight: bold; }")
               .arg(sel, idleOf(c, idleBgOverride), c.onSurface) +
           choiceBtnStates(c, sel, idleBgOverride);
}

QString Theme::bandStyle(const QString& fill, int topRadius, int bottomRadius)
{
    return QStringLiteral("background-color: %1; border: none; "
                          "border-top-left-radius: %2px; border-top-right-radius: %2px; "
                          "border-bottom-left-radius: %3px; border-bottom-right-radius: %3px;")
        .arg(fill, QString::number(topRadius), QString::number(bottomRadius));
}

QString Theme::bandTitleStyle(const ColorTokens& c)
{
    return QStringLiteral("color: %1; font-size: 18px; font-weight: bold; border: none; "
                          "background: transparent;")
        .arg(c.onSurface);
}

QString Theme::scrollBarStyle()
{
    return QStringLiteral(
        "QScrollBar:vertical { background: transparent; width: 6px; }"
        "QScrollBar::handle:vertical { background: transparent; border-radius: 3px; }"
        "QScrollBar::handle:vertical:hover { background: rgba(128, 128, 128, 0.6); }"
        "QScrollBar::handle:vertical:pressed { background: rgba(128, 128, 128, 0.6); }"
        "QScrollBar::add-line:vertical { height: 0px; }"
        "QScrollBar::sub-line:vertical { height: 0px; }"
        "QScrollBar::add-page:vertical { background: none; }"
        "QScrollBar::sub-page:vertical { background: none; }"
        "QScrollBar:horizontal { background: transparent; height: 6px; }"
        "QScrollBar::handle:horizontal { background: transparent; border-radius: 3px; }"
        "QScrollBar::handle:horizontal:hover { background: rgba(128, 128, 128, 0.6); }"
        "QScrollBar::handle:horizontal:pressed { background: rgba(128, 128, 128, 0.6); }"
        "QScrollBar::add-line:horizontal { width: 0px; }"
        "QScrollBar::sub-line:horizontal { width: 0px; }"
        "QScrollBar::add-page:horizontal { background: none; }"
        "QScrollBar::sub-page:horizontal { background: none; }");
}

QString Theme::shellBg()
{
    return colors().surfaceContainerHigh;
}

QString Theme::panelBg()
{
    return colors().surfaceContainerLow;
}

QString Theme::boxBg()
{
    return colors().surfaceContainerLowest;
}

QString Theme::boxActiveBg()
{
    return isDarkMode() ? seedShade(seedColor(), 0.45, 110, 76)
                        : seedShade(seedColor(), 0.85, 240, 229);
}

QString Theme::catTrackBg()
{
    return isDarkMode() ? seedShade(seedColor(), 0.18, 50, 40)
                        : seedShade(seedColor(), 0.22, 60, 229);
}

QString Theme::fieldIdleBg(const ColorTokens& c)
{
    const QColor base(c.surfaceContainerHighest);
    return QColor::fromHsl(hslHueOf(base), qMin(base.hslSaturation(), kFieldMaxSaturation),
                           base.lightness(), 255)
        .name();
}

QString Theme::fieldFocusBg(const ColorTokens& c)
{
    return stateLayerOn(fieldIdleBg(c), c.onSurface, StateFocus);
}

QString Theme::iconChoiceFg(const ColorTokens& c, bool selected)
{
    return selected ? getItemTheme().onKey : c.onSurface;
}

QFrame* Theme::createFramelessDialogBackground(QWidget* parent, const ColorTokens& c,
                                               int shadowAlpha, int padding)
{
    auto* frame = new QFrame(parent);
    frame->setObjectName(QStringLiteral("dialogBg"));
    frame->setStyleSheet(
        QStringLiteral("QFrame#dialogBg { background-color: %1; border: 1px solid %2; "
                       "border-radius: %3px; padding: %4px; }")
            .arg(c.surface, c.outline, QString::number(Rad_Lg), QString::number(padding)));
    auto* shadow = new QGraphicsDropShadowEffect(frame);
    shadow->setBlurRadius(kDialogShadowBlurPx);
    shadow->setColor(QColor(0, 0, 0, shadowAlpha));
    shadow->setOffset(kDialogShadowOffset);
    frame->setGraphicsEffect(shadow);
    return frame;
}
