// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Program.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <csignal>
#include <memory>

#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int kPatienceMs = 60000; // the sweep of a sanitized binary on a busy machine
constexpr int kColorLines = 2 + 528;
const QString kDefaultReport = QStringLiteral("audit-warna.txt");

} // namespace

/// The audits of the palette as they are asked for on the command line.
class E2eAudits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void colors_data();
    void colors();
    void fileInAClosedDirectory();
    void contrast_data();
    void contrast();
    void besideARunningInstance();
    void noSwitchWithoutDisplay();

private:
    QByteArray run(const QStringList& arguments, const QString& platform = QString()) const;
    QByteArray log() const;
    QString copyOfProgram() const { return m_desktop->path(QStringLiteral("copy/Orlimo")); }

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
};

void E2eAudits::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    // One report goes to where the program lies.
    QVERIFY(QDir().mkpath(m_desktop->path(QStringLiteral("copy"))));
    QVERIFY(QFile::copy(Program::binary(), copyOfProgram()));
}

void E2eAudits::init()
{
    m_program = std::make_unique<Program>(*m_desktop);
    m_program->setSetting(QStringLiteral("Theme/SeedColor"), QStringLiteral("#ef4444"));
    QFile::remove(m_desktop->path(QStringLiteral("copy/") + kDefaultReport));
}

/// Starts an audit where there is no display. \returns what went wrong; empty if nothing did.
QByteArray E2eAudits::run(const QStringList& arguments, const QString& platform) const
{
    QProcessEnvironment environment = m_desktop->environment();
    environment.remove(QStringLiteral("DISPLAY"));
    if (!platform.isEmpty())
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    QProcess process;
    Desktop::dieWithParent(process);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(m_program->homeDir());
    const QByteArray settings = m_program->readData(QStringLiteral("settings.ini"));
    process.start(copyOfProgram(), arguments);
    if (!process.waitForFinished(kPatienceMs))
        return "still runs";
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return "failed: " + process.readAll();
    if (m_program->readData(QStringLiteral("settings.ini")) != settings)
        return "the settings have changed";
    return process.readAll();
}

QByteArray E2eAudits::log() const
{
    return m_program->readData(QStringLiteral("debug.log"));
}

void E2eAudits::colors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("report"); // from the home, or the program's own directory
    QTest::newRow("no path") << QStringList{"--audit-color"} << QString();
    QTest::newRow("a path") << QStringList{"--audit-color", "my colours.txt"} << "my colours.txt";
    QTest::newRow("another switch is no path")
        << QStringList{"--audit-color", "--other"} << QString();
    QTest::newRow("after other arguments")
        << QStringList{"some", "--thing", "--audit-color", "-x"} << "-x";
}

void E2eAudits::colors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, report);
    QCOMPARE(run(arguments), QByteArray());
    const QString beside = m_desktop->path(QStringLiteral("copy/") + kDefaultReport);
    const QString path = report.isEmpty() ? beside : QDir(m_program->homeDir()).filePath(report);
    QFile file(path);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
    QCOMPARE(file.readAll().count('\n'), kColorLines);
    QCOMPARE(QFile::exists(beside), report.isEmpty());
    QVERIFY2(log().contains("AUDIT WARNA ditulis ke"), log().constData());
}

/// A report that may be written, though nothing may be put beside it.
void E2eAudits::fileInAClosedDirectory()
{
    // Nothing is closed to the superuser.
    const uid_t user = ::geteuid() == 0 ? 65533 : ::geteuid();
    QFile::setPermissions(m_desktop->path(QString()),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeOther);
    const QString dir = m_desktop->path(QStringLiteral("closed"));
    const QString path = dir + QStringLiteral("/report.txt");
    QVERIFY(QDir().mkpath(dir));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("what stood there before\n") > 0);
    file.close();
    for (const QString& owned : {path, dir})
        QCOMPARE(::chown(QFile::encodeName(owned).constData(), user, user), 0);
    QCOMPARE(::chmod(QFile::encodeName(dir).constData(), 0555), 0);

    QProcess process;
    process.setProcessEnvironment(m_desktop->environment());
    process.setChildProcessModifier([user] {
        if (::geteuid() == 0 &&
            (::setresgid(user, user, user) != 0 || ::setresuid(user, user, user) != 0))
            ::_exit(EXIT_FAILURE);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    });
    process.start(copyOfProgram(), {QStringLiteral("--audit-color"), path});
    QVERIFY(process.waitForFinished(kPatienceMs));
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count('\n'), kColorLines);
    QCOMPARE(::chmod(QFile::encodeName(dir).constData(), 0755), 0);
}

void E2eAudits::contrast_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("platform");
    QTest::newRow("alone") << QStringList{"--audit-contrast"} << QString();
    QTest::newRow("before the colours")
        << QStringList{"--audit-contrast", "--audit-color"} << QString();
    QTest::newRow("after the colours")
        << QStringList{"--audit-color", "--audit-contrast"} << QString();
    QTest::newRow("in a session on Wayland") << QStringList{"--audit-contrast"} << "wayland";
}

void E2eAudits::contrast()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, platform);
    QCOMPARE(run(arguments, platform), QByteArray());
    const qsizetype first = log().indexOf("=== AUDIT SELESAI");
    const qsizetype second = log().indexOf("=== SAPUAN SELESAI");
    QVERIFY2(first >= 0, log().constData());
    QVERIFY2(second > first, log().constData());
    QVERIFY(!log().contains("AUDIT WARNA"));
    QVERIFY(!QFile::exists(m_desktop->path(QStringLiteral("copy/") + kDefaultReport)));
}

void E2eAudits::besideARunningInstance()
{
    m_program->startWithoutWaiting(copyOfProgram());
    QTRY_VERIFY_WITH_TIMEOUT(m_program->homeWindow().isViewable, kPatienceMs);
    m_program->key(QStringLiteral("ctrl+alt+space"));
    QTRY_VERIFY_WITH_TIMEOUT(!m_program->homeWindow().isViewable, kPatienceMs);
    QCOMPARE(run({"--audit-color", "colours.txt"}), QByteArray());
    QVERIFY(QFile::exists(QDir(m_program->homeDir()).filePath(QStringLiteral("colours.txt"))));
    // Unlike a further start it wakes nobody.
    QVERIFY(!m_program->homeWindow().isViewable);
    QCOMPARE(m_program->process().state(), QProcess::Running);
}

void E2eAudits::noSwitchWithoutDisplay()
{
    const QByteArray said = run({"--audit-colour"});
    QVERIFY2(said.startsWith("failed: ") && said.contains("DISPLAY"), said.constData());
}

QTEST_GUILESS_MAIN(E2eAudits)
#include "tst_e2e_audits.moc"
