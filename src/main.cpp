// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Console.h"
#include "Display.h"
#include "FontResource.h"
#include "HotkeyBackend.h"
#include "IconHelper.h"
#include "InstanceLock.h"
#include "Logging.h"
#include "MainWindow.h"
#include "SingleInstance.h"
#include "SpotlightWindow.h"
#include "SystemFonts.h"
#include "Theme.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QLocalServer>
#include <QStringList>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr QLatin1String kAuditContrast("--audit-contrast");
constexpr QLatin1String kAuditColor("--audit-color");

void loadFonts()
{
    Platform::endReadingFonts();
    loadTextFont();
    // Now and not with the first glyph: each further font makes Qt forget what it has made of all
    // others, and every text of the window would be measured with one set and painted with another.
    IconHelper::initFonts();
}

void connectWindows(MainWindow& window, SpotlightWindow& spotlight, QLocalServer& server)
{
    QObject::connect(&window, &MainWindow::becameVisible, &spotlight,
                     &SpotlightWindow::hideForOtherWindow);
    QObject::connect(&spotlight, &SpotlightWindow::becameVisible, &window,
                     &MainWindow::hideForOtherWindow);
    QObject::connect(&spotlight, &SpotlightWindow::appearanceChanged, &window,
                     &MainWindow::rebuildUIPreservingFocus);
    SingleInstance::serve(server, &window, [&window] { window.wake(); });
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orlimo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orlimo"));
    reopenLog();
}

/// False if another process is the one instance of this install, which has been woken then.
bool isPrimaryInstance(const QString& instanceKey)
{
    if (Platform::acquireInstanceLock(SingleInstance::mutexName(instanceKey)))
        return true;
    SingleInstance::handOver(SingleInstance::ipcServerName(instanceKey));
    return false;
}

/// A running instance has a display of its own, so a further start wakes it from anywhere.
int startWithoutDisplay(int argc, char** argv, const QString& problem)
{
    const QCoreApplication app(argc, argv);
    nameApplication();
    if (!isPrimaryInstance(SingleInstance::instanceKey(QCoreApplication::applicationDirPath())))
        return EXIT_SUCCESS;
    std::fprintf(stderr, "%s\n", qPrintable(problem));
    return EXIT_FAILURE;
}

bool isAuditWanted(int argc, const char* const* argv)
{
    for (int i = 1; i < argc; ++i) {
        if (argv[i] == kAuditContrast || argv[i] == kAuditColor)
            return true;
    }
    return false;
}

/// What follows the switch, unless that is a switch again; else a file beside the program.
QString auditColorPath(const QStringList& arguments)
{
    const qsizetype index = arguments.indexOf(kAuditColor) + 1;
    if (index < arguments.size() && !arguments.at(index).startsWith(QLatin1String("--")))
        return arguments.at(index);
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("audit-warna.txt"));
}

/// Needs neither a display nor to be the one instance, and shows no window.
int runAudits(int argc, char** argv)
{
    Platform::forgoDisplay(argc, argv);
    const QApplication app(argc, argv);
    nameApplication();
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.contains(kAuditContrast)) {
        Theme::auditContrast();
        Theme::auditContrastSweep();
    } else if (arguments.contains(kAuditColor)) {
        Theme::auditColor(auditColorPath(arguments));
    }
    return EXIT_SUCCESS;
}

int runPrimary(const QString& instanceKey)
{
    QLocalServer server;
    SingleInstance::listen(server, SingleInstance::ipcServerName(instanceKey));
    HotkeyBackend::instance(); // it finds its way to the desktop while the fonts are loaded
    loadFonts();
    qApp->setStyleSheet(Theme::scrollBarStyle());

    MainWindow window(nullptr);
    SpotlightWindow spotlight(window.model(), nullptr);
    window.setSpotlightHotkeyController(spotlight.hotkeyController());
    connectWindows(window, spotlight, server);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(fileMessageHandler);
    Platform::detachFromConsole();
    if (isAuditWanted(argc, argv))
        return runAudits(argc, argv);
    const QString problem = Platform::prepareDisplay(argc, argv);
    if (!problem.isEmpty())
        return startWithoutDisplay(argc, argv, problem);

    Platform::beginReadingFonts();
    QApplication app(argc, argv);
    Platform::watchDisplay();
    QApplication::setQuitOnLastWindowClosed(false);
    nameApplication();

    const QString instanceKey = SingleInstance::instanceKey(QCoreApplication::applicationDirPath());
    return isPrimaryInstance(instanceKey) ? runPrimary(instanceKey) : EXIT_SUCCESS;
}
