// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Desktop.h"

#include <QColor>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <csignal>

#include <sys/prctl.h>

namespace
{

void stop(QProcess& process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(3000);
    }
}

} // namespace

Desktop::Desktop(int features, const QStringList& windowManager, const QSize& screen)
    : m_screenSize(screen)
{
    for (const char* dir : {"bin", "home", "data", "share", "config", "cache", "run"})
        QDir(m_dir.path()).mkpath(QLatin1String(dir));
    QFile::setPermissions(path(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    writeScript(
        QStringLiteral("xdg-open"),
        QStringLiteral("printf '%s\\n' \"$*\" >> '%1'\n").arg(path(QStringLiteral("opened"))));
    startScreen();
    m_client = std::make_unique<XClient>(m_display);
    m_client->paintRoot(QColor(0x80, 0x90, 0xa0));
    if (features & SessionBus)
        startBus();
    if (features & WindowManager) {
        start(m_windowManager, windowManager.first(), windowManager.mid(1));
        if (!QTest::qWaitFor([this] { return m_client->hasWindowManager(); }, PatienceMs))
            qFatal("the window manager doesn't come up");
    }
    if (features & Compositor) {
        start(m_compositor, QStringLiteral("picom"),
              {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
               QStringLiteral("/dev/null"), QStringLiteral("--no-fading-openclose")});
        if (!QTest::qWaitFor([this] { return m_client->hasCompositor(); }, PatienceMs))
            qFatal("the compositor doesn't come up");
    }
}

Desktop::~Desktop()
{
    stop(m_compositor);
    stop(m_windowManager);
    m_client.reset();
    stop(m_bus);
    stop(m_screen);
}

void Desktop::dieWithParent(QProcess& process)
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

void Desktop::writeScript(const QString& name, const QString& text) const
{
    QFile script(path(QStringLiteral("bin/") + name));
    if (!script.open(QIODevice::WriteOnly) || script.write("#!/bin/sh\n" + text.toUtf8()) < 0)
        qFatal("cannot write the script %s", qPrintable(name));
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void Desktop::addRecorder(const QString& name) const
{
    const QString noted = path(name + QStringLiteral(".out"));
    QFile::remove(noted);
    // Moved into place when it is whole, since somebody waits for it to appear.
    writeScript(name, QStringLiteral("for a in \"$@\"; do printf '[%s]\\n' \"$a\"; done > "
                                     "'%1.part'\nmv '%1.part' '%1'\n")
                          .arg(noted));
}

QString Desktop::recorded(const QString& name) const
{
    QFile file(path(name + QStringLiteral(".out")));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void Desktop::startScreen()
{
    dieWithParent(m_screen);
    m_screen.setStandardErrorFile(path(QStringLiteral("xvfb.log")));
    m_screen.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"),
                    QStringLiteral("%1x%2x24").arg(m_screenSize.width()).arg(m_screenSize.height()),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    QByteArray number;
    while (!number.endsWith('\n') && m_screen.waitForReadyRead(PatienceMs))
        number += m_screen.readAllStandardOutput();
    if (!number.endsWith('\n'))
        qFatal("the virtual screen doesn't come up");
    m_display = QLatin1Char(':') + QString::fromLatin1(number.trimmed());
}

void Desktop::startBus()
{
    dieWithParent(m_bus);
    m_bus.setProcessEnvironment(environment());
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address=1")});
    QByteArray address;
    while (!address.endsWith('\n') && m_bus.waitForReadyRead(PatienceMs))
        address += m_bus.readAllStandardOutput();
    if (!address.endsWith('\n'))
        qFatal("the session bus doesn't come up");
    m_busAddress = QString::fromLatin1(address.trimmed());
}

void Desktop::start(QProcess& process, const QString& program, const QStringList& arguments)
{
    dieWithParent(process);
    QProcessEnvironment env = environment();
    // The window manager takes its theme from the machine.
    env.remove(QStringLiteral("XDG_DATA_DIRS"));
    process.setProcessEnvironment(env);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForStarted(PatienceMs))
        qFatal("cannot start %s", qPrintable(program));
}

QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DISPLAY"), m_display);
    env.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
    env.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
    env.insert(QStringLiteral("XDG_DATA_DIRS"), path(QStringLiteral("share")));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
    env.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("run")));
    env.insert(QStringLiteral("TMPDIR"), m_dir.path());
    env.insert(QStringLiteral("PATH"),
               path(QStringLiteral("bin")) + QLatin1Char(':') + env.value(QStringLiteral("PATH")));
    // An address that answers nobody, so that nothing of the machine's own session is reached.
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
               m_busAddress.isEmpty() ? QStringLiteral("disabled:") : m_busAddress);
    env.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    for (const char* inherited :
         {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP",
          "QT_LOGGING_TO_CONSOLE", "LC_ALL", "LC_MESSAGES", "LANGUAGE", "TERMINAL"})
        env.remove(QLatin1String(inherited));
    return env;
}

void Desktop::xdotool(const QStringList& arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(QStringLiteral("xdotool"), arguments);
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        qFatal("xdotool %s: %s", qPrintable(arguments.join(QLatin1Char(' '))),
               process.readAllStandardError().constData());
}

QString Desktop::clipboard() const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(QStringLiteral("xclip"), {QStringLiteral("-out"), QStringLiteral("-selection"),
                                            QStringLiteral("clipboard")});
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished();
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

void Desktop::setClipboard(const QString& text) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QStringLiteral("xclip"), {QStringLiteral("-in"), QStringLiteral("-selection"),
                                            QStringLiteral("clipboard")});
    process.write(text.toUtf8());
    process.closeWriteChannel();
    // It leaves a child behind, which takes the clipboard when it gets round to it and serves it
    // until another does the same.
    if (!process.waitForFinished(PatienceMs) || process.exitCode() != 0 ||
        !QTest::qWaitFor([this, &text] { return clipboard() == text; }, PatienceMs))
        qFatal("cannot fill the clipboard");
}

QStringList Desktop::opened() const
{
    QFile file(path(QStringLiteral("opened")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

xcb_window_t Desktop::focusOtherWindow()
{
    if (!m_otherWindow)
        m_otherWindow = m_client->makeWindow(QRect(20, 60, 300, 200));
    // A window that has just come up may still be asking for the focus itself, which is its right;
    // who wants to go on elsewhere then clicks once more.
    constexpr int kClickAgainMs = 300;
    QElapsedTimer sinceClick;
    const auto hasFocus = [&] {
        if (m_client->focus() == m_otherWindow)
            return true;
        if (!sinceClick.isValid() || sinceClick.hasExpired(kClickAgainMs)) {
            m_client->activate(m_otherWindow);
            sinceClick.start();
        }
        return false;
    };
    if (!QTest::qWaitFor(hasFocus, PatienceMs))
        qFatal("the other window 0x%x doesn't get the focus, 0x%x has it", m_otherWindow,
               m_client->focus());
    m_client->takeKeyPressCount();
    return m_otherWindow;
}
