// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "SystemTheme.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <cstdio>

// This process plays the desktop: a message bus of its own with a settings portal on it. The
// program is played by child processes, since each asks its desktop once in its life.

namespace
{

constexpr char kBusAddress[] = "DBUS_SESSION_BUS_ADDRESS";
const QString kPortalConnection = QStringLiteral("portal");
const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kColorScheme = QStringLiteral("color-scheme");
const QString kMarker = QStringLiteral("marker");
const QString kAskTwiceTask = QStringLiteral("ask twice");
const QString kWatchTask = QStringLiteral("watch");
const QString kAwaitChangeTask = QStringLiteral("await change");
constexpr int kPatienceMs = 30000;
constexpr uint kNoPreference = 0;
constexpr uint kDark = 1;
constexpr uint kLight = 2;

/// What the portal puts round its value.
QVariant wrapped(const QVariant& value, int times)
{
    QVariant result = value;
    for (int i = 0; i < times; ++i)
        result = QVariant::fromValue(QDBusVariant(result));
    return result;
}

void say(bool isDark)
{
    std::puts(isDark ? "dark" : "light");
    std::fflush(stdout);
}

/// Prints the first answer, and one more each time the portal announces `kMarker`.
class Watcher : public QObject
{
    Q_OBJECT

public:
    explicit Watcher(int lines) : m_linesLeft(lines)
    {
        const bool isDark = Platform::prefersDark();
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                    SLOT(onSettingChanged(QString)));
        // The answer to a call tells that the bus knows of the subscriptions made before it.
        bus.call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
        sayOneOf(isDark);
    }

private slots:
    void onSettingChanged(const QString& group)
    {
        // All signals sent before the marker have been heard by now.
        if (group == kMarker)
            sayOneOf(Platform::prefersDark());
    }

private:
    void sayOneOf(bool isDark)
    {
        say(isDark);
        if (--m_linesLeft == 0)
            QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    }

    int m_linesLeft;
};

int watch(const QStringList& arguments)
{
    const Watcher watcher(arguments.at(0).toInt());
    return QCoreApplication::exec();
}

int awaitChange(const QStringList&)
{
    const bool first = Platform::prefersDark();
    say(first);
    while (Platform::prefersDark() == first)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    say(!first);
    return 0;
}

int askTwice(const QStringList&)
{
    say(Platform::prefersDark());
    say(Platform::prefersDark());
    return 0;
}

class FakePortal : public QDBusVirtualObject
{
public:
    enum class Manner {
        Answers,
        Refuses,
        KeepsSilent,
    };

    Manner manner = Manner::Answers;
    QVariant answer;
    QList<QDBusMessage> unanswered;
    QStringList lastArguments;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.interface() != kInterface || message.member() != QLatin1String("Read"))
            return false;
        lastArguments.clear();
        for (const QVariant& argument : message.arguments())
            lastArguments << argument.toString();
        if (manner == Manner::KeepsSilent)
            unanswered << message;
        else if (manner == Manner::Refuses)
            connection.send(message.createErrorReply(QDBusError::UnknownProperty, "no such"));
        else
            connection.send(message.createReply(answer));
        return true;
    }

    void answerTheUnanswered()
    {
        for (const QDBusMessage& message : std::as_const(unanswered))
            QDBusConnection(kPortalConnection).send(message.createReply(answer));
        unanswered.clear();
    }

    struct Change
    {
        QString group;
        QString key;
        QVariant value;
    };

    static void announce(const Change& change)
    {
        QDBusMessage signal = QDBusMessage::createSignal(kPath, kInterface, "SettingChanged");
        signal << change.group << change.key << QVariant::fromValue(QDBusVariant(change.value));
        QDBusConnection(kPortalConnection).send(signal);
    }
};

} // namespace

class SystemThemeTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void withoutABus_data();
    void withoutABus();
    void withoutAPortal();
    void firstAnswer_data();
    void firstAnswer();
    void refusal();
    void lateAnswer();
    void changeSignals();

private:
    void openPortal(FakePortal::Manner manner, const QVariant& answer);
    void finish(QProcess& child, const QByteArray& expectedLines);

    QProcess m_bus;
    QString m_address;
    FakePortal m_portal;
};

void SystemThemeTest::initTestCase()
{
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address"),
                 QStringLiteral("--address=unix:tmpdir=") + TestHome::path()});
    QVERIFY2(m_bus.waitForStarted(), "dbus-daemon is not installed");
    QTRY_VERIFY_WITH_TIMEOUT(m_bus.canReadLine(), kPatienceMs);
    m_address = QString::fromLatin1(m_bus.readLine()).trimmed();
    auto connection = QDBusConnection::connectToBus(m_address, kPortalConnection);
    QVERIFY(connection.isConnected());
    QVERIFY(connection.registerVirtualObject(kPath, &m_portal));
    qputenv(kBusAddress, m_address.toLatin1());
}

void SystemThemeTest::cleanup()
{
    QDBusConnection(kPortalConnection).unregisterService(kService);
    m_portal.unanswered.clear();
    qputenv(kBusAddress, m_address.toLatin1());
}

void SystemThemeTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(kPortalConnection);
    m_bus.terminate();
    m_bus.waitForFinished();
}

void SystemThemeTest::openPortal(FakePortal::Manner manner, const QVariant& answer)
{
    m_portal.manner = manner;
    m_portal.answer = answer;
    QVERIFY(QDBusConnection(kPortalConnection).registerService(kService));
}

void SystemThemeTest::finish(QProcess& child, const QByteArray& expectedLines)
{
    // The event loop turns here, since it is this process that answers the child.
    QTRY_COMPARE_WITH_TIMEOUT(child.state(), QProcess::NotRunning, kPatienceMs);
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(child.readAllStandardOutput(), expectedLines);
}

void SystemThemeTest::withoutABus_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("no address") << QByteArray();
    QTest::newRow("nobody there") << QByteArray("unix:path=/nonexistent/bus");
    QTest::newRow("no address at all") << QByteArray("nonsense");
}

void SystemThemeTest::withoutABus()
{
    QFETCH(QByteArray, address);
    openPortal(FakePortal::Manner::Answers, wrapped(kDark, 2)); // dark, if it were found
    qputenv(kBusAddress, address);
    QProcess child;
    FreshProcess::start(child, kAskTwiceTask, {});
    finish(child, "light\nlight\n");
}

void SystemThemeTest::withoutAPortal()
{
    QProcess child;
    FreshProcess::start(child, kAskTwiceTask, {});
    finish(child, "light\nlight\n");
}

void SystemThemeTest::firstAnswer_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("dark") << wrapped(kDark, 2) << QByteArray("dark\n");
    QTest::newRow("light") << wrapped(kLight, 2) << QByteArray("light\n");
    QTest::newRow("no preference") << wrapped(kNoPreference, 2) << QByteArray("light\n");
    QTest::newRow("unknown scheme") << wrapped(99u, 2) << QByteArray("light\n");
    QTest::newRow("wrapped once") << wrapped(kDark, 1) << QByteArray("dark\n");
    QTest::newRow("not wrapped") << wrapped(kDark, 0) << QByteArray("dark\n");
    QTest::newRow("wrapped ten times") << wrapped(kDark, 10) << QByteArray("dark\n");
    QTest::newRow("a text") << wrapped(QStringLiteral("1"), 2) << QByteArray("light\n");
    QTest::newRow("a list") << wrapped(QStringList{"1"}, 2) << QByteArray("light\n");
}

void SystemThemeTest::firstAnswer()
{
    QFETCH(QVariant, answer);
    QFETCH(QByteArray, line);
    openPortal(FakePortal::Manner::Answers, answer);
    QProcess child;
    FreshProcess::start(child, kAskTwiceTask, {});
    finish(child, line + line);
    QCOMPARE(m_portal.lastArguments, QStringList({kAppearance, kColorScheme}));
}

void SystemThemeTest::refusal()
{
    openPortal(FakePortal::Manner::Refuses, {});
    QProcess child;
    FreshProcess::start(child, kAskTwiceTask, {});
    finish(child, "light\nlight\n");
}

void SystemThemeTest::lateAnswer()
{
    openPortal(FakePortal::Manner::KeepsSilent, wrapped(kDark, 2));
    QProcess child;
    FreshProcess::start(child, kAwaitChangeTask, {});
    // Left alone, a call to a silent portal ends after 25 seconds.
    QTRY_VERIFY_WITH_TIMEOUT(child.canReadLine(), kPatienceMs / 2);
    QTRY_COMPARE_WITH_TIMEOUT(m_portal.unanswered.size(), 2, kPatienceMs);
    m_portal.answerTheUnanswered();
    finish(child, "light\ndark\n");
}

void SystemThemeTest::changeSignals()
{
    const QList<std::pair<FakePortal::Change, QByteArray>> road{
        {{QStringLiteral("org.example"), kColorScheme, kDark}, "light\n"},
        {{kAppearance, QStringLiteral("accent-color"), kDark}, "light\n"},
        {{kAppearance, kColorScheme, kDark}, "dark\n"},
        {{QStringLiteral("org.example"), kColorScheme, kLight}, "dark\n"},
        {{kAppearance, kColorScheme, kLight}, "light\n"},
        {{kAppearance, kColorScheme, wrapped(kDark, 1)}, "dark\n"},
        {{kAppearance, kColorScheme, QStringLiteral("dark")}, "light\n"},
    };
    openPortal(FakePortal::Manner::Answers, wrapped(kLight, 2));
    QProcess child;
    FreshProcess::start(child, kWatchTask, {QString::number(road.size() + 1)});
    QTRY_VERIFY_WITH_TIMEOUT(child.canReadLine(), kPatienceMs); // from here on it listens
    QByteArray lines = "light\n";
    for (const auto& [change, line] : road) {
        FakePortal::announce(change);
        FakePortal::announce({kMarker, QString(), 0});
        lines += line;
    }
    finish(child, lines);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<SystemThemeTest, QCoreApplication>(
        argc, argv,
        {{kAskTwiceTask, askTwice}, {kAwaitChangeTask, awaitChange}, {kWatchTask, watch}});
}

#include "tst_systemtheme.moc"
