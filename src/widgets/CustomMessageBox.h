// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"

#include <QList>
#include <QStringList>
#include <QVector>

class QHBoxLayout;
class QPushButton;
class QScrollArea;

/// The one message box of the program: a themed card with a title, a text and a row of buttons,
/// worked by keyboard. Title and text are shown as they stand, never read as markup. A text that
/// is too long for the screen scrolls, also by the keys for that, while the focus stays with the
/// buttons.
class CustomMessageBox : public FramelessDialog
{
    Q_OBJECT

public:
    /// Values may be combined where a set of buttons is meant.
    enum StandardButton {
        NoButton = 0, ///< also the result of a box that was closed by Esc or Backspace
        Ok = 1,
        Yes = 2,
        No = 4,
        Cancel = 8
    };

    /// Decides the colour of the title.
    enum Severity { Info = 0, Warning = 1, Critical = 2 };

    /// \param buttons combination of `StandardButton`; shown as Yes, No, Ok, Cancel in any case.
    /// \param defaultButton the one that Enter triggers.
    CustomMessageBox(QWidget* parent, const QString& title, const QString& text, int buttons,
                     int defaultButton, Severity severity);

    /// Show a message with an OK button and wait for its end.
    /// \returns `Ok`, or `NoButton` if the user closed the box otherwise.
    static StandardButton information(QWidget* parent, const QString& title, const QString& text);
    static StandardButton warning(QWidget* parent, const QString& title, const QString& text);
    static StandardButton critical(QWidget* parent, const QString& title, const QString& text);
    static int showMessage(QWidget* parent, const QString& title, const QString& text,
                           Severity severity);

    static constexpr int NoAnswer = -1; ///< of a question that went with its parent

    /// Asks a question with buttons of the caller's and waits for the answer.
    /// \param defaultIdx the button that Enter triggers.
    /// \param destructiveIndices the buttons that are shown in red, even the default one.
    /// \returns the index of the button. Esc, Backspace and closing give 0, like the first button;
    /// a parent that is deleted meanwhile gives `NoAnswer`.
    static int customQuestion(QWidget* parent, const QString& title, const QString& text,
                              const QStringList& btns, int defaultIdx,
                              const QVector<int>& destructiveIndices);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildTexts(const QString& title, const QString& text, Severity severity);
    void addStandardButtons(int buttons, int defaultButton);
    /// A button that ends the box with `code`.
    void addButton(const QString& text, const QString& style, bool isDefault, int code);
    /// Index in `m_buttons` of the button with the focus; -1 if none has it.
    int focusedButton() const;
    void moveFocus(int step);
    /// Scrolls the text; false if it needs none or `key` is not one for that.
    bool scrollBy(int key);

    QList<QPushButton*> m_buttons; ///< as shown, left to right
    QHBoxLayout* m_btnLayout = nullptr;
    QScrollArea* m_textScroll = nullptr; ///< null if the whole text is in view
};
