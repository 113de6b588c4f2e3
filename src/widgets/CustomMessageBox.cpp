// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomMessageBox.h"

#include "Keys.h"
#include "Localization.h"
#include "ModalRun.h"
#include "SoftBreaks.h"
#include "Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int kMinCardWidth = 350;
// A text that names what failed can be of any length; the buttons have to stay on the screen.
constexpr int kMaxTextWidth = 560;
constexpr int kMaxTextHeight = 400;
constexpr int kMaxStretch = 40;

struct StandardEntry
{
    CustomMessageBox::StandardButton code;
    const char* textKey;
};

// In the order in which they are shown.
constexpr StandardEntry kStandardButtons[] = {{CustomMessageBox::Yes, "dialog.btn_yes"},
                                              {CustomMessageBox::No, "dialog.btn_no"},
                                              {CustomMessageBox::Ok, "dialog.btn_ok"},
                                              {CustomMessageBox::Cancel, "dialog.btn_cancel"}};

QString titleColor(CustomMessageBox::Severity severity, const ColorTokens& c)
{
    switch (severity) {
    case CustomMessageBox::Warning:
        return c.warning;
    case CustomMessageBox::Critical:
        return c.errorColor;
    case CustomMessageBox::Info:
        break;
    }
    return c.onSurface;
}

QLabel* makeLabel(const QString& text, const QString& style)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

/// A view of `kMaxTextHeight` on `text`, as wide as the text would like to be.
QScrollArea* makeScroll(QLabel* text)
{
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // the sign that there is more
    scroll->verticalScrollBar()->setStyleSheet(Theme::shownScrollBarStyle(Theme::colors()));
    scroll->setWidgetResizable(true);
    scroll->setFixedHeight(kMaxTextHeight);
    text->setContentsMargins(0, 0, Theme::Sp_Sm, 0); // off the scroll bar
    scroll->setMinimumWidth(std::min(text->sizeHint().width(), kMaxTextWidth) +
                            scroll->verticalScrollBar()->sizeHint().width());
    scroll->setWidget(text);
    // Both would be filled with the colour of windows, which is not the card's.
    scroll->viewport()->setAutoFillBackground(false);
    text->setAutoFillBackground(false);
    text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return scroll;
}

} // namespace

CustomMessageBox::CustomMessageBox(QWidget* parent, const QString& title, const QString& text,
                                   int buttons, int defaultButton, Severity severity)
    : FramelessDialog(parent, title, StrongShadow, CardPad)
{
    card()->setMinimumWidth(kMinCardWidth);
    buildTexts(title, text, severity);
    m_btnLayout = addButtonRow(rows(), Theme::Sp_Md);
    m_btnLayout->addStretch();
    addStandardButtons(buttons, defaultButton);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void CustomMessageBox::buildTexts(const QString& title, const QString& text, Severity severity)
{
    const ColorTokens c = Theme::colors();
    rows()->addWidget(makeLabel(
        title, Theme::textStyle(titleColor(severity, c), FontTokens::SizeLg, Theme::Weight::Bold)));
    QLabel* body = makeLabel(withSoftBreaks(text, kMaxStretch),
                             Theme::textStyle(c.onSurfaceVariant, FontTokens::SizeMd));
    body->setWordWrap(true);
    body->setMaximumWidth(kMaxTextWidth);
    body->setAccessibleName(text);
    body->setParent(card()); // only there it has the font in which it is measured
    if (body->sizeHint().height() <= kMaxTextHeight) {
        rows()->addWidget(body);
        return;
    }
    m_textScroll = makeScroll(body);
    rows()->addWidget(m_textScroll);
}

void CustomMessageBox::addStandardButtons(int buttons, int defaultButton)
{
    const ColorTokens c = Theme::colors();
    for (const StandardEntry& entry : kStandardButtons) {
        if ((buttons & entry.code) == 0)
            continue;
        const bool isDefault = entry.code == defaultButton;
        const QString idleBg =
            entry.code == Cancel ? QStringLiteral("transparent") : QString(); // a ghost button
        addButton(Tr::t(QString::fromLatin1(entry.textKey)),
                  isDefault ? Theme::primaryBtnStyle(c) : Theme::actionBtnStyle(c, idleBg),
                  isDefault, entry.code);
    }
}

void CustomMessageBox::addButton(const QString& text, const QString& style, bool isDefault,
                                 int code)
{
    auto* button = new QPushButton(text);
    button->setStyleSheet(style);
    button->installEventFilter(this);
    m_btnLayout->addWidget(button);
    // Only now does the button know of the dialog whose default it is to be.
    if (isDefault)
        button->setDefault(true);
    connect(button, &QPushButton::clicked, this, [this, code] { done(code); });
    m_buttons.append(button);
}

CustomMessageBox::StandardButton
CustomMessageBox::information(QWidget* parent, const QString& title, const QString& text)
{
    return static_cast<StandardButton>(showMessage(parent, title, text, Info));
}

CustomMessageBox::StandardButton CustomMessageBox::warning(QWidget* parent, const QString& title,
                                                           const QString& text)
{
    return static_cast<StandardButton>(showMessage(parent, title, text, Warning));
}

CustomMessageBox::StandardButton CustomMessageBox::critical(QWidget* parent, const QString& title,
                                                            const QString& text)
{
    return static_cast<StandardButton>(showMessage(parent, title, text, Critical));
}

int CustomMessageBox::showMessage(QWidget* parent, const QString& title, const QString& text,
                                  Severity severity)
{
    ModalRun<CustomMessageBox> box(parent, title, text, Ok, Ok, severity);
    return box.exec().value_or(NoButton);
}

int CustomMessageBox::customQuestion(QWidget* parent, const QString& title, const QString& text,
                                     const QStringList& btns, int defaultIdx,
                                     const QVector<int>& destructiveIndices)
{
    const ColorTokens c = Theme::colors();
    ModalRun<CustomMessageBox> box(parent, title, text, NoButton, NoButton, Info);
    for (int i = 0; i < btns.size(); ++i) {
        QString style = i == defaultIdx ? Theme::primaryBtnStyle(c) : Theme::actionBtnStyle(c);
        if (destructiveIndices.contains(i))
            style = Theme::destructiveBtnStyle(c); // a default that destroys still warns
        box->addButton(btns.at(i), style, i == defaultIdx, i);
    }
    box->adjustSize();
    return box.exec().value_or(NoAnswer);
}

bool CustomMessageBox::eventFilter(QObject* watched, QEvent* event)
{
    // A button would take the arrows itself, to move the focus.
    if (event->type() == QEvent::KeyPress && scrollBy(static_cast<QKeyEvent*>(event)->key()))
        return true;
    return FramelessDialog::eventFilter(watched, event);
}

void CustomMessageBox::keyPressEvent(QKeyEvent* event)
{
    const int focused = focusedButton();
    if (scrollBy(event->key()))
        return;
    if (event->key() == Qt::Key_Left)
        moveFocus(-1);
    else if (event->key() == Qt::Key_Right)
        moveFocus(1);
    else if (Keys::isEnter(event->key()) && focused >= 0)
        m_buttons.at(focused)->click();
    else
        FramelessDialog::keyPressEvent(event);
}

int CustomMessageBox::focusedButton() const
{
    for (int i = 0; i < m_buttons.size(); ++i) {
        if (m_buttons.at(i)->hasFocus())
            return i;
    }
    return -1;
}

void CustomMessageBox::moveFocus(int step)
{
    if (m_buttons.isEmpty())
        return;
    const int focused = focusedButton();
    const int count = static_cast<int>(m_buttons.size());
    // Without a focused button both keys enter the row at its beginning.
    const int next = focused < 0 ? 0 : (focused + step + count) % count;
    m_buttons.at(next)->setFocus();
}

bool CustomMessageBox::scrollBy(int key)
{
    if (!m_textScroll)
        return false;
    static const QHash<int, QAbstractSlider::SliderAction> actions{
        {Qt::Key_Up, QAbstractSlider::SliderSingleStepSub},
        {Qt::Key_Down, QAbstractSlider::SliderSingleStepAdd},
        {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
        {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, QAbstractSlider::SliderToMinimum},
        {Qt::Key_End, QAbstractSlider::SliderToMaximum}};
    const auto action = actions.find(key);
    if (action == actions.end())
        return false;
    m_textScroll->verticalScrollBar()->triggerAction(*action);
    return true;
}
