// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotkeyManager.h"
#include "Theme.h"

#include <QObject>
#include <QString>

#include <functional>

class GlobalHotkeyController;
class QEvent;
class QKeyEvent;
class QLabel;
class QPushButton;

/// Makes a button record a hotkey: once it has been pressed, the next combination typed on it is
/// checked, registered and stored, or refused with a message. While it listens, every key is its
/// own: whoever takes keys before the button gets them has to ask `isListeningOn` first. GUI thread
/// only.
class HotkeyRecorderFilter : public QObject
{
    Q_OBJECT

public:
    /// Gives the controller of the slot as it is at this moment; null if there is none.
    using ControllerGetter = std::function<GlobalHotkeyController*()>;

    /// Dresses the button and the labels, none of which it owns; they have to live as long as it.
    /// \param recordButton becomes the parent.
    /// \param displayLabel shows the combination in force.
    /// \param hintLabel tells how to record while it listens, and is hidden otherwise; may be null.
    /// \param dialogParent a message appears above the window of this.
    /// \param editedSlot may be null: then nothing is ever recorded.
    /// \param idleButtonStyle of the button while it doesn't listen.
    HotkeyRecorderFilter(QPushButton* recordButton, QLabel* displayLabel, QLabel* hintLabel,
                         const ColorTokens& colors, QWidget* dialogParent,
                         ControllerGetter controllerGetter, HotkeyManager::Slot* editedSlot,
                         const QString& idleButtonStyle);

    void startListening();
    void stopListening();

    /// True if `object` is a button that listens for a hotkey at this moment.
    static bool isListeningOn(const QObject* object);

    /// The sheet of the label that shows a combination.
    static QString displayStyle(const ColorTokens& c, bool listening);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void handleKey(const QKeyEvent* event);
    void record(const QString& combo);
    void showCombo();
    void showRefusal(const QString& text);

    QPushButton* recordBtn;
    QLabel* displayLbl;
    QLabel* hintLbl;
    bool isListening = false;
    ColorTokens c;
    QWidget* parentDialog;
    ControllerGetter getController;
    HotkeyManager::Slot* slot;
    QString idleBtnStyle;
    QString listeningBtnStyle;
    QString idleDisplayStyle;
    QString listeningDisplayStyle;
};
