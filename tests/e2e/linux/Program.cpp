// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Program.h"

#include "MainWindow.h"
#include "SpotlightWindow.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTest>
#include <QThread>

#include <utility>

namespace
{

/// Looks more often than QTest does: for what stands behind each key of long sequences and before
/// each picture.
bool comesWithin(int patienceMs, const std::function<bool()>& condition)
{
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.hasExpired(patienceMs))
            return false;
        QThread::usleep(500);
    }
    return true;
}

} // namespace

Program::Program(Desktop& desktop) : m_desktop(desktop), m_environment(desktop.environment())
{
    // Each case has a profile and a home of its own.
    for (const QString& dir : {dataDir(), homeDir()}) {
        QDir(dir).removeRecursively();
        QDir().mkpath(dir);
    }
    setSetting(QStringLiteral("Onboarding/Completed"), true);
    QFile::remove(desktop.path(QStringLiteral("opened")));
}

Program::~Program()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(Desktop::PatienceMs);
}

QString Program::binary()
{
    return QStringLiteral(ORLIMO_BINARY);
}

QString Program::dataDir() const
{
    return m_desktop.path(QStringLiteral("data/Orlimo/Orlimo"));
}

void Program::writeData(const QString& fileName, const QByteArray& content) const
{
    QFile file(QDir(dataDir()).filePath(fileName));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

QByteArray Program::readData(const QString& fileName) const
{
    QFile file(QDir(dataDir()).filePath(fileName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Program::setSetting(const QString& key, const QVariant& value) const
{
    QSettings settings(QDir(dataDir()).filePath(QStringLiteral("settings.ini")),
                       QSettings::IniFormat);
    settings.setValue(key, value);
    settings.sync();
}

QVariant Program::setting(const QString& key) const
{
    const QSettings settings(QDir(dataDir()).filePath(QStringLiteral("settings.ini")),
                             QSettings::IniFormat);
    return settings.value(key);
}

void Program::beNewUser() const
{
    QDir(dataDir()).removeRecursively();
    QDir().mkpath(dataDir());
}

QJsonObject Program::usage() const
{
    return QJsonDocument::fromJson(readData(QStringLiteral("usage.json"))).object();
}

QString Program::homeDir() const
{
    return m_desktop.path(QStringLiteral("home"));
}

void Program::writeHomeFile(const QString& fileName) const
{
    QFile file(QDir(homeDir()).filePath(fileName));
    QDir().mkpath(QFileInfo(file).path());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

void Program::setVariable(const QString& name, const QString& value)
{
    m_environment.insert(name, value);
}

void Program::setScale(qreal factor)
{
    m_scale = factor;
    setVariable(QStringLiteral("QT_SCALE_FACTOR"), QString::number(factor));
}

void Program::startWithoutWaiting(const QString& binaryPath)
{
    Desktop::dieWithParent(m_process);
    m_process.setProcessEnvironment(m_environment);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setWorkingDirectory(homeDir()); // where a file dialog begins
    m_answeringWindow = XCB_WINDOW_NONE;
    m_process.start(binaryPath.isEmpty() ? binary() : binaryPath, QStringList());
    if (!m_process.waitForStarted(Desktop::PatienceMs))
        qFatal("cannot start the program");
}

void Program::start()
{
    startWithoutWaiting();
    waitFor(
        [this] {
            const XClient::Window home = homeWindow();
            return home.isViewable && m_desktop.client().focus() == home.id;
        },
        "the home window doesn't come up");
}

void Program::startAndSettle()
{
    start();
    // The hotkey hides it at once; losing the focus would do so only after the guard.
    key(QStringLiteral("ctrl+alt+space"));
    waitFor([this] { return !homeWindow().isViewable; }, "the home window doesn't go away");
    m_desktop.focusOtherWindow();
}

XClient::Window Program::windowOfWidth(std::initializer_list<int> widths) const
{
    const QVector<XClient::Window> windows = m_desktop.client().windowsOf(m_process.processId());
    for (const int width : widths) {
        for (const XClient::Window& window : windows) {
            if (window.geometry.width() == qRound(width * m_scale))
                return window;
        }
    }
    return {};
}

XClient::Window Program::homeWindow() const
{
    // It is as wide as the page that it shows. Looked for at once: between two looks it may change
    // from the second width to the first, and would be nowhere.
    return windowOfWidth({MainWindow::WINDOW_WIDTH_GRID, MainWindow::WINDOW_WIDTH_SETTINGS});
}

XClient::Window Program::spotlight() const
{
    return windowOfWidth({SpotlightWindow::WINDOW_WIDTH});
}

bool Program::isSpotlightUp() const
{
    const XClient::Window window = spotlight();
    return window.isViewable && m_desktop.client().focus() == window.id;
}

void Program::openSpotlight()
{
    key(QStringLiteral("ctrl+alt+y"));
    waitFor([this] { return isSpotlightUp(); }, "Spotlight doesn't come up");
}

void Program::waitUntilSpotlightIsGone()
{
    waitFor([this] { return !spotlight().isViewable; }, "Spotlight doesn't go away");
}

void Program::type(const QString& text) const
{
    m_desktop.xdotool(
        {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("0"), text});
}

void Program::paste(const QString& text) const
{
    m_desktop.setClipboard(text);
    key(QStringLiteral("ctrl+v"));
}

void Program::key(const QString& combination) const
{
    m_desktop.xdotool(
        {QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("0"), combination});
}

void Program::waitForKeysToBeHandled() const
{
    // The first answer may come when the keys have only been read. The second question is read in a
    // later turn of the program's event loop. A key pressed in between may be lost: a menu that is
    // about to close still holds the keyboard then, and its window goes before the key is looked
    // at.
    waitForAnswer();
    waitForAnswer();
}

void Program::waitForAnswer() const
{
    // It answers for the others too, even while it is hidden: all are on one connection. And asked
    // again, because a window that goes away meanwhile has been seen to take the question along.
    constexpr int kAskAgainMs = 1000;
    if (m_answeringWindow == XCB_WINDOW_NONE)
        m_answeringWindow = homeWindow().id;
    for (int attempt = 0; attempt < Desktop::PatienceMs / kAskAgainMs; ++attempt) {
        m_desktop.client().ping(m_answeringWindow);
        if (comesWithin(kAskAgainMs, [this] { return m_desktop.client().hasAnswered(); }))
            return;
    }
    giveUp("the program doesn't read its keys");
}

/// The screen as it is once the program has had a turn and the compositor has painted what came of
/// it.
QImage Program::nextPicture() const
{
    waitForAnswer();
    XClient& client = m_desktop.client();
    client.switchLamp();
    if (!comesWithin(Desktop::PatienceMs, [&client] { return client.hasLampChanged(); }))
        giveUp("the compositor doesn't paint");
    return client.screenshot();
}

QImage Program::settledScreenshot() const
{
    waitForKeysToBeHandled();
    QImage last = nextPicture();
    QImage before = last; // the other of the two pictures that a blinking caret makes
    int knownPictures = 0;
    waitFor(
        [&] {
            const QImage next = nextPicture();
            knownPictures = next == last || next == before ? knownPictures + 1 : 0;
            if (next != last)
                before = std::exchange(last, next);
            return knownPictures >= 10;
        },
        "the screen doesn't come to rest");
    return last;
}

void Program::waitFor(const std::function<bool()>& condition, const char* failure) const
{
    if (!QTest::qWaitFor(condition, Desktop::PatienceMs))
        giveUp(failure);
}

void Program::giveUp(const char* failure) const
{
    XClient& client = m_desktop.client();
    keep(client.screenshot(), QCoreApplication::applicationName() + QStringLiteral("-stuck"));
    QString state;
    QDebug text(&state);
    text << "process" << m_process.state() << "with focus" << client.focus();
    for (const XClient::Window& window : client.windowsOf(m_process.processId()))
        text << "\nwindow" << window.id << window.geometry << "viewable" << window.isViewable;
    qFatal("%s: %s", failure, qPrintable(state));
}

void Program::keep(const QImage& picture, const QString& name)
{
    if (!picture.save(QStringLiteral(ORLIMO_ARTIFACTS "/") + name + QStringLiteral(".png")))
        qFatal("cannot keep the picture %s", qPrintable(name));
}
