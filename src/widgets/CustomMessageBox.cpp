// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomMessageBox.h"

#include "Keys.h"
#include "Localization.h"
#include "Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTextBoundaryFinder>
#include <QVBoxLayout>

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

/// `text` with places to break in stretches that no line could hold, such as a long file name. A
/// label wraps at natural places alone, so it would push the dialog over the edge of the screen.
QString withSoftBreaks(const QString& text)
{
    constexpr QChar kZeroWidthSpace(0x200B);
    QString result;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    qsizetype stretchLength = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        breaks.setPosition(i);
        stretchLength = breaks.isAtBoundary() ? 1 : stretchLength + 1;
        if (stretchLength > kMaxStretch && !text.at(i).isLowSurrogate()) {
            result += kZeroWidthSpace;
            stretchLength = 1;
        }
        result += text.at(i);
    }
    return result;
}

QLabel* makeLabel(const QString& text, const QString& style)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
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
    QLabel* body =
        makeLabel(withSoftBreaks(text), Theme::textStyle(c.onSurfaceVariant, FontTokens::SizeMd));
    body->setWordWrap(true);
    body->setMaximumSize(kMaxTextWidth, kMaxTextHeight);
    body->setAccessibleName(text);
    rows()->addWidget(body);
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
    CustomMessageBox box(parent, title, text, Ok, Ok, severity);
    return box.exec();
}

int CustomMessageBox::customQuestion(QWidget* parent, const QString& title, const QString& text,
                                     const QStringList& btns, int defaultIdx,
                                     const QVector<int>& destructiveIndices)
{
    const ColorTokens c = Theme::colors();
    CustomMessageBox box(parent, title, text, NoButton, NoButton, Info);
    for (int i = 0; i < btns.size(); ++i) {
        QString style = i == defaultIdx ? Theme::primaryBtnStyle(c) : Theme::actionBtnStyle(c);
        if (destructiveIndices.contains(i))
            style = Theme::destructiveBtnStyle(c); // a default that destroys still warns
        box.addButton(btns.at(i), style, i == defaultIdx, i);
    }
    box.adjustSize();
    return box.exec();
}

void CustomMessageBox::keyPressEvent(QKeyEvent* event)
{
    const int focused = focusedButton();
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
