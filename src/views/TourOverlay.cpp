// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TourOverlay.h"

#include "FloatingCard.h"
#include "Localization.h"
#include "Theme.h"

#include <QEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int kMargin = 12; // between the card and whatever it stands beside
constexpr int kNextHeight = 32;
constexpr int kDimInTheDark = 150; // of 255
constexpr int kDimInTheLight = 110;

/// `value`, or as near to it as lies between the two; the first if nothing does.
int kept(int value, int first, int last)
{
    return std::clamp(value, first, std::max(first, last));
}

QLabel* makeLabel(const QString& objectName, const QString& style)
{
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

} // namespace

TourOverlay::TourOverlay(QWidget* window)
    : QWidget(window),
      m_cardWin(new FloatingCard(window, Qt::Tool, QStringLiteral("tourCard"))),
      m_card(m_cardWin->card())
{
    setObjectName(QStringLiteral("tourOverlay"));
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    buildCard();
    window->installEventFilter(this);
    hide();
}

TourOverlay::~TourOverlay()
{
    delete m_cardWin;
}

void TourOverlay::buildCard()
{
    const ColorTokens c = Theme::colors();
    m_card->setStyleSheet(QStringLiteral("QFrame#tourCard { background-color: %1; border: none; "
                                         "border-radius: %2px; }")
                              .arg(c.surfaceContainerHighest)
                              .arg(Theme::Rad_Md));
    m_titleLbl =
        makeLabel(QStringLiteral("tourTitle"),
                  Theme::textOnCardStyle(c.onSurface, FontTokens::SizeMd, Theme::Weight::Bold));
    m_descLbl = makeLabel(QStringLiteral("tourText"),
                          Theme::textOnCardStyle(c.onSurfaceVariant, FontTokens::SizeSm));
    auto* column = new QVBoxLayout(m_card);
    column->setContentsMargins(Theme::Sp_Lg, Theme::Sp_Md, Theme::Sp_Lg, Theme::Sp_Md);
    column->setSpacing(Theme::Sp_Sm);
    for (QLabel* label : {m_titleLbl, m_descLbl}) {
        label->setWordWrap(true);
        column->addWidget(label);
    }
    column->addLayout(buildBottomRow());
}

QBoxLayout* TourOverlay::buildBottomRow()
{
    m_stepLbl = makeLabel(QStringLiteral("tourCounter"), m_descLbl->styleSheet());
    m_nextBtn = new QPushButton;
    m_nextBtn->setFixedHeight(kNextHeight);
    m_nextBtn->setCursor(Qt::PointingHandCursor);
    m_nextBtn->setFocusPolicy(Qt::NoFocus);
    m_nextBtn->setStyleSheet(Theme::primaryBtnStyle(Theme::colors()));
    connect(m_nextBtn, &QPushButton::clicked, this, &TourOverlay::advanced);
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::Sp_Md);
    row->addWidget(m_stepLbl);
    row->addStretch(1);
    row->addWidget(m_nextBtn);
    return row;
}

void TourOverlay::showStep(const QRect& target, const QString& title, const QString& desc,
                           int stepNo, int stepCount, const QString& nextLabel)
{
    m_target = target;
    m_stepNo = stepNo;
    m_stepCount = stepCount;
    m_companion = false;
    setTexts(title, desc, nextLabel);
    relayout();
    update();
    show();
    raise();
    showCard();
}

void TourOverlay::showCompanion(const QRect& anchor, const QString& title, const QString& desc)
{
    m_companion = true;
    setTexts(title, desc, {});
    m_selfHiding = true;
    hide();
    m_selfHiding = false;
    sizeCard(CardWidth);
    const QScreen* screen = QGuiApplication::screenAt(anchor.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : anchor;
    if (m_cardWin)
        m_cardWin->move(companionPlace(area, anchor, m_cardWin->size()));
    showCard();
}

void TourOverlay::dismiss()
{
    m_selfHiding = false;
    hide();
    if (m_cardWin)
        m_cardWin->hide();
}

QColor TourOverlay::backdropColor() const
{
    return {0, 0, 0, Theme::isDarkMode() ? kDimInTheDark : kDimInTheLight};
}

QPainterPath TourOverlay::holePath() const
{
    QPainterPath path;
    if (m_target.isNull())
        return path;
    const QRectF hole = m_target.adjusted(-HolePad, -HolePad, HolePad, HolePad);
    const qreal radius = std::min(std::min(hole.width(), hole.height()) / 2, qreal(HoleRadiusCap));
    path.addRoundedRect(hole, radius, radius);
    return path;
}

QWidget* TourOverlay::cardWindow() const
{
    return m_cardWin;
}

QPoint TourOverlay::cardPlace(const QSize& overlay, const QRect& target, const QSize& card)
{
    QPoint place((overlay.width() - card.width()) / 2, (overlay.height() - card.height()) / 2);
    if (!target.isNull() && 3 * target.width() <= overlay.width()) {
        const bool isLeft = 2 * target.center().x() < overlay.width();
        place = {isLeft ? overlay.width() - kMargin - card.width() : kMargin, target.top()};
    } else if (!target.isNull()) {
        place = {target.left(), target.top() + target.height() + kMargin};
        if (place.y() + card.height() > overlay.height() - kMargin)
            place.setY(target.top() - kMargin - card.height());
    }
    return {kept(place.x(), kMargin, overlay.width() - kMargin - card.width()),
            kept(place.y(), kMargin, overlay.height() - kMargin - card.height())};
}

QPoint TourOverlay::companionPlace(const QRect& area, const QRect& anchor, const QSize& card)
{
    const int areaRight = area.x() + area.width();
    int x = anchor.x() + anchor.width() + kMargin;
    if (x + card.width() > areaRight)
        x = anchor.x() - kMargin - card.width();
    return {kept(x, area.x(), areaRight - card.width()),
            kept(anchor.y(), area.y(), area.y() + area.height() - card.height())};
}

void TourOverlay::setTexts(const QString& title, const QString& desc, const QString& nextLabel)
{
    m_titleLbl->setText(title);
    m_descLbl->setText(desc);
    m_stepLbl->setText(Tr::t("tour.step_counter").arg(m_stepNo).arg(m_stepCount));
    m_nextBtn->setText(nextLabel);
    m_nextBtn->setVisible(!nextLabel.isEmpty());
}

void TourOverlay::relayout()
{
    if (m_companion || size().isEmpty())
        return;
    QRegion solid(rect());
    if (!m_target.isNull())
        solid -= QRegion(holePath().toFillPolygon().toPolygon());
    setMask(solid);
    sizeCard(std::min(CardWidth, std::max(width() - 2 * kMargin, 1)));
    placeCard();
}

void TourOverlay::sizeCard(int width)
{
    if (!m_cardWin)
        return;
    for (QLabel* label : {m_titleLbl, m_descLbl, m_stepLbl})
        label->ensurePolished(); // its font comes from its style sheet
    m_nextBtn->ensurePolished();
    QLayout* column = m_card->layout();
    column->invalidate();
    column->activate();
    m_cardWin->layout()->activate(); // or the window would stay as high as the last text wanted it
    int height = column->sizeHint().height();
    if (column->hasHeightForWidth())
        height = std::max(height, column->heightForWidth(width));
    m_cardWin->resize(width, height);
}

void TourOverlay::placeCard()
{
    if (m_cardWin)
        m_cardWin->move(mapToGlobal(cardPlace(size(), m_target, m_cardWin->size())));
}

void TourOverlay::showCard()
{
    if (!m_cardWin)
        return;
    m_cardWin->show();
    m_cardWin->raise();
}

bool TourOverlay::eventFilter(QObject* watched, QEvent* event)
{
    // The card is no part of the window that moves, or goes while the card stands beside a dialog.
    if (event->type() == QEvent::Move && !m_companion)
        placeCard();
    if (event->type() == QEvent::Hide && m_cardWin)
        m_cardWin->hide();
    return QWidget::eventFilter(watched, event);
}

void TourOverlay::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    relayout();
}

void TourOverlay::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!m_selfHiding && m_cardWin)
        m_cardWin->hide();
}

void TourOverlay::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath dimmed;
    dimmed.addRoundedRect(rect(), Theme::Rad_Lg, Theme::Rad_Lg);
    painter.fillPath(dimmed.subtracted(holePath()), backdropColor());
    if (m_target.isNull())
        return;
    painter.setPen(QPen(QColor(Theme::colors().outline), RingWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(holePath());
}
