// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Desktop.h"

#include <QJsonObject>
#include <QProcess>
#include <QSettings>

/// The program under test on a desktop of its own, driven from outside only.
class Program
{
public:
    explicit Program(Desktop& desktop);
    ~Program();

    /// The program's data directory; exists.
    QString dataDir() const;
    void writeData(const QString& fileName, const QByteArray& content) const;
    /// The bytes of a file in the data directory; empty if there is none.
    QByteArray readData(const QString& fileName) const;
    void setSetting(const QString& key, const QVariant& value) const;
    QVariant setting(const QString& key) const;

    /// Starts the binary and waits for its first window. Call after the profile is written.
    void start();
    /// The same without waiting for anything.
    void startWithoutWaiting(const QString& binary = QString());
    /// The home window is gone and another client has the focus: where a user's day begins.
    void startAndSettle();

    QProcess& process() { return m_process; }
    static QString binary();

    XClient::Window homeWindow() const;
    XClient::Window spotlight() const;
    bool isSpotlightUp() const; ///< on the screen and with the keyboard

    /// Presses the hotkey of Spotlight and waits until it is up.
    void openSpotlight();
    void waitUntilSpotlightIsGone();

    /// Types as fast as the server takes it.
    void type(const QString& text) const;
    void key(const QString& combination) const;

    /// Waits until the picture of the screen stops changing, and returns it.
    QImage settledScreenshot() const;

private:
    XClient::Window windowOfWidth(int width) const;

    Desktop& m_desktop;
    QProcess m_process;
};
