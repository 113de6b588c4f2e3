// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyRecorderFilter.h"

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "GlobalHotkeyController.h"
#include "Localization.h"
#include "RowPainting.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace
{

// More than every combination takes that can be recorded; what stands in the settings may be
// longer.
constexpr int kMaxComboWidth = 240;

bool isModifier(int key)
{
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt ||
           key == Qt::Key_Meta;
}

/// The word for a key in the text of a combination; empty for one that can't be recorded.
QString wordOf(int key)
{
    const bool isLetter = key >= Qt::Key_A && key <= Qt::Key_Z;
    const bool isDigit = key >= Qt::Key_0 && key <= Qt::Key_9;
    if (isLetter || isDigit)
        return QString(QChar(key));
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return QStringLiteral("F%1").arg(key - Qt::Key_F1 + 1);
    switch (key) {
    case Qt::Key_Space:
        return QStringLiteral("Space");
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return QStringLiteral("Enter");
    case Qt::Key_Tab:
        return QStringLiteral("Tab");
    case Qt::Key_Delete:
        return QStringLiteral("Delete");
    default:
        return {};
    }
}

QString modifierWordsOf(Qt::KeyboardModifiers modifiers)
{
    QString words;
    if (modifiers & Qt::ControlModifier)
        words += QLatin1String("Ctrl+");
    if (modifiers & Qt::AltModifier)
        words += QLatin1String("Alt+");
    if (modifiers & Qt::ShiftModifier)
        words += QLatin1String("Shift+");
    if (modifiers & Qt::MetaModifier)
        words += QLatin1String("Win+");
    return words;
}

} // namespace

HotkeyRecorderFilter::HotkeyRecorderFilter(QPushButton* recordButton, QLabel* displayLabel,
                                           QLabel* hintLabel, const ColorTokens& colors,
                                           QWidget* dialogParent, ControllerGetter controllerGetter,
                                           HotkeyManager::Slot* editedSlot,
                                           const QString& idleButtonStyle)
    : QObject(recordButton),
      recordBtn(recordButton),
      displayLbl(displayLabel),
      hintLbl(hintLabel),
      c(colors),
      parentDialog(dialogParent),
      getController(std::move(controllerGetter)),
      slot(editedSlot),
      idleBtnStyle(idleButtonStyle),
      listeningBtnStyle(Theme::activeListeningStyle(colors)),
      idleDisplayStyle(displayStyle(colors, false)),
      listeningDisplayStyle(displayStyle(colors, true))
{
    displayLbl->setTextFormat(Qt::PlainText);
    if (hintLbl)
        hintLbl->setText(Tr::t(QStringLiteral("settings.system.hotkey_hint")));
    stopListening();
    recordBtn->installEventFilter(this);
    connect(recordBtn, &QPushButton::clicked, this, &HotkeyRecorderFilter::startListening);
}

QString HotkeyRecorderFilter::displayStyle(const ColorTokens& c, bool listening)
{
    return QStringLiteral(
               "QLabel { background-color: %1; color: %2; border: none; border-radius: 18px; "
               "padding: 8px 16px; font-size: 12px; font-weight: bold; }")
        .arg(listening ? c.primaryContainer : c.surfaceContainerHighest,
             listening ? c.onPrimaryContainer : c.onSurface);
}

bool HotkeyRecorderFilter::isListeningOn(const QObject* object)
{
    const auto* filter =
        object ? object->findChild<HotkeyRecorderFilter*>({}, Qt::FindDirectChildrenOnly) : nullptr;
    return filter && filter->isListening;
}

void HotkeyRecorderFilter::startListening()
{
    isListening = true;
    // The filter that was installed last comes first: no other one takes a key away.
    recordBtn->installEventFilter(this);
    recordBtn->setText(Tr::t(QStringLiteral("settings.system.hotkey_recording")));
    recordBtn->setStyleSheet(listeningBtnStyle);
    displayLbl->setStyleSheet(listeningDisplayStyle);
    if (hintLbl)
        hintLbl->show();
}

void HotkeyRecorderFilter::stopListening()
{
    isListening = false;
    recordBtn->setText(Tr::t(QStringLiteral("settings.system.hotkey_record_btn")));
    recordBtn->setStyleSheet(idleBtnStyle);
    displayLbl->setStyleSheet(idleDisplayStyle);
    showCombo();
    if (hintLbl)
        hintLbl->hide();
}

void HotkeyRecorderFilter::showCombo()
{
    displayLbl->setText(
        slot ? RowPainting::elidedLine(displayLbl->fontMetrics(), slot->combo, kMaxComboWidth)
             : QString());
}

bool HotkeyRecorderFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != recordBtn || !isListening)
        return QObject::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress) {
        handleKey(static_cast<QKeyEvent*>(event));
        return true; // by now a message may have been up, and the page rebuilt
    }
    if (event->type() == QEvent::FocusOut)
        stopListening();
    return QObject::eventFilter(watched, event);
}

void HotkeyRecorderFilter::handleKey(const QKeyEvent* event)
{
    // The key that has pressed the button may still be held.
    if (isModifier(event->key()) || event->isAutoRepeat())
        return;
    if (event->key() == Qt::Key_Escape) {
        stopListening();
        return;
    }
    const QString word = wordOf(event->key());
    if (!word.isEmpty())
        record(modifierWordsOf(event->modifiers()) + word);
}

void HotkeyRecorderFilter::record(const QString& combo)
{
    GlobalHotkeyController* controller = getController ? getController() : nullptr;
    if (!controller || !slot) {
        stopListening();
        return;
    }
    const HotkeyManager::ValidationResult result =
        HotkeyManager::validateForChange(combo, controller->windowId(), *slot);
    const bool isRecorded = result.valid && controller->changeHotkeyAndSave(combo);
    stopListening();
    if (!isRecorded)
        showRefusal(result.valid ? QStringLiteral("Gagal mendaftarkan kombinasi ini ke Windows.")
                                 : result.message);
}

void HotkeyRecorderFilter::showRefusal(const QString& text)
{
    const AutoQuitBlocker blocker;
    // Not above the page: it may be rebuilt meanwhile, and would take the message along.
    CustomMessageBox::warning(parentDialog ? parentDialog->window() : nullptr,
                              QStringLiteral("Invalid Hotkey"), text);
}
