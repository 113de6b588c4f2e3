// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Desktop.h"

#include <QJsonObject>
#include <QProcess>
#include <QSettings>

#include <functional>
#include <initializer_list>

/// The program under test on a desktop of its own, driven from outside only.
class Program
{
public:
    /// Where the visible card of Spotlight begins: a quarter down the screen, inside the margin
    /// that the shadow has.
    static constexpr QPoint SpotlightCard{(Desktop::ScreenWidth - 584) / 2 + 32,
                                          Desktop::ScreenHeight / 4 + 32};

    /// Its profile is that of somebody who has had the welcome and has done nothing since, its home
    /// is empty.
    explicit Program(Desktop& desktop);
    ~Program();

    /// The program's data directory; exists.
    QString dataDir() const;
    void writeData(const QString& fileName, const QByteArray& content) const;
    /// The bytes of a file in the data directory; empty if there is none.
    QByteArray readData(const QString& fileName) const;
    void setSetting(const QString& key, const QVariant& value) const;
    QVariant setting(const QString& key) const;
    /// Empties the profile; call before the start. Whoever starts it then is welcomed.
    void beNewUser() const;
    /// What is remembered of launches, by usage key.
    QJsonObject usage() const;

    /// The user's home, which the program searches for files.
    QString homeDir() const;
    /// Creates a file in the home, and the folders that lead to it.
    void writeHomeFile(const QString& fileName) const;

    /// Changes the environment of the program; call before the start.
    void setVariable(const QString& name, const QString& value);

    /// Shows it larger than it is by this factor; call before the start.
    void setScale(qreal factor);

    /// Starts the binary and waits for its first window. Call after the profile is written.
    void start();
    /// The same without waiting for anything.
    void startWithoutWaiting(const QString& binary = QString());
    /// The home window is gone and another client has the focus: where a user's day begins.
    void startAndSettle();

    QProcess& process() { return m_process; }
    qint64 processId() const { return m_process.processId(); }
    static QString binary();

    XClient::Window homeWindow() const;
    XClient::Window spotlight() const;
    bool isSpotlightUp() const; ///< on the screen and with the keyboard

    /// Presses the hotkey of Spotlight and waits until it is up.
    void openSpotlight();
    void waitUntilSpotlightIsGone();

    /// Types as fast as the server takes it.
    void type(const QString& text) const;
    /// Puts a text into the field by way of the clipboard: one that no keyboard has the keys for.
    void paste(const QString& text) const;
    void key(const QString& combination) const;

    /// Waits until the program has dealt with all keys and the picture of the screen stops
    /// changing, and returns that. A program or a compositor that stands still for a while in the
    /// middle of a change isn't at rest.
    QImage settledScreenshot() const;

    /// Waits for what has to happen; ends the test run if it doesn't.
    void waitFor(const std::function<bool()>& condition, const char* failure) const;

    /// Ends the test run and tells what the screen looks like and which windows there are.
    [[noreturn]] void giveUp(const char* failure) const;

    /// Keeps a picture to be looked at after the run.
    static void keep(const QImage& picture, const QString& name);

    /// Waits until the program has dealt with all keys, but for what it has put off by a timer.
    void waitForKeysToBeHandled() const;

private:
    void waitForAnswer() const;
    QImage nextPicture() const;

    /// The first of the widths that a window has.
    XClient::Window windowOfWidth(std::initializer_list<int> widths) const;

    Desktop& m_desktop;
    QProcessEnvironment m_environment;
    QProcess m_process;
    qreal m_scale = 1;
    mutable xcb_window_t m_answeringWindow = XCB_WINDOW_NONE;
};
