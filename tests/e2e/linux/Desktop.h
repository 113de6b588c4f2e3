// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "XClient.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>

/// A private desktop: virtual screen, window manager, compositor and session bus, and a directory
/// in which everything of it lies. All of it ends with the object.
class Desktop
{
public:
    /// How long tests wait for what has to happen, before they fail: sanitized binaries on a
    /// machine that does other things besides have been seen to need a quarter of it.
    static constexpr int PatienceMs = 60000;

    enum Feature {
        NoFeature = 0,
        WindowManager = 1,
        Compositor = 2,
        SessionBus = 4,
        Everything = WindowManager | Compositor | SessionBus
    };

    static constexpr int ScreenWidth = 1280;
    static constexpr int ScreenHeight = 800;

    /// \param windowManager is started if `features` ask for one: its command line.
    /// \param screen its size in pixels.
    /// Ends the test run if a piece can't be started.
    explicit Desktop(int features = Everything,
                     const QStringList& windowManager = {QStringLiteral("openbox"),
                                                         QStringLiteral("--sm-disable")},
                     const QSize& screen = {ScreenWidth, ScreenHeight});
    ~Desktop();

    QString display() const { return m_display; }
    QSize screen() const { return m_screenSize; }
    XClient& client() { return *m_client; }
    QString path(const QString& name) const { return m_dir.filePath(name); }

    /// What programs on this desktop get as their environment: nothing that the machine's own users
    /// have or have set. The folders for data are "data", the user's own, and "share". The fake
    /// "xdg-open", first in the search path, notes its arguments in the file "opened".
    QProcessEnvironment environment() const;
    QString busAddress() const { return m_busAddress; }

    /// Presses keys or the like: `xdotool` with these arguments. Ends the test run if it fails.
    void xdotool(const QStringList& arguments) const;

    /// Text of the X clipboard; empty if it holds none.
    QString clipboard() const;
    /// Has taken effect on return. `text` must not be empty.
    void setClipboard(const QString& text) const;

    /// Puts a program on the search path that notes its arguments, each in brackets on a line of
    /// its own. What one of that name has noted before is forgotten.
    void addRecorder(const QString& name) const;
    QString recorded(const QString& name) const;

    /// What the fake "xdg-open" was asked to open, one entry a call.
    QStringList opened() const;

    /// Gives the focus to a plain window of another client and returns that window.
    xcb_window_t focusOtherWindow();

    /// Ties a process to this one, so that a test run that ends early leaves nothing behind.
    static void dieWithParent(QProcess& process);

private:
    void startScreen();
    void startBus();
    void start(QProcess& process, const QString& program, const QStringList& arguments);
    void writeScript(const QString& name, const QString& text) const;

    QTemporaryDir m_dir;
    QString m_display;
    QSize m_screenSize;
    QString m_busAddress;
    QProcess m_screen;
    QProcess m_windowManager;
    QProcess m_compositor;
    QProcess m_bus;
    std::unique_ptr<XClient> m_client;
    xcb_window_t m_otherWindow = XCB_WINDOW_NONE;
};
