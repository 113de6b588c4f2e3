// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Explorer.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>

namespace
{

// Set for the programs that are started, which are this test once more: they write down their
// arguments, one a line, into this file.
constexpr char kRecordVariable[] = "ORLIMO_TEST_RECORD";

int recordArguments(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QSaveFile record(qEnvironmentVariable(kRecordVariable));
    const QByteArray lines = QCoreApplication::arguments().mid(1).join('\n').toUtf8() + '\n';
    const bool isWritten =
        record.open(QIODevice::WriteOnly) && record.write(lines) == lines.size() && record.commit();
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

class ShellLaunchTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void explorerIsTheSystems();
    void itemIsOneArgument_data();
    void itemIsOneArgument();
    void missingProgramIsTold();
};

void ShellLaunchTest::explorerIsTheSystems()
{
    const QFileInfo explorer(Platform::explorerPath());
    QVERIFY2(explorer.isAbsolute(), qPrintable(explorer.filePath()));
    QVERIFY2(explorer.isFile(), qPrintable(explorer.filePath()));
    QCOMPARE(explorer.fileName(), "explorer.exe");
    QCOMPARE(QDir(explorer.path()), QDir(qEnvironmentVariable("SystemRoot")));
}

void ShellLaunchTest::itemIsOneArgument_data()
{
    QTest::addColumn<QString>("item");
    QTest::newRow("application of the shell's folder")
        << R"(shell:AppsFolder\Example.App_8wekyb3d8bbwe!App)";
    QTest::newRow("blanks") << R"(shell:AppsFolder\{6D809377}\Some App\app.exe)";
    QTest::newRow("class of the shell") << "::{645FF040-5081-101B-9F08-00AA002F954E}";
    QTest::newRow("quotes") << R"(a "b" c\)";
    QTest::newRow("empty") << "";
}

void ShellLaunchTest::itemIsOneArgument()
{
    QFETCH(QString, item);
    const QTemporaryDir dir;
    const QString record = dir.filePath("record");
    qputenv(kRecordVariable, QFile::encodeName(record));
    const bool isStarted = Platform::startWithItem(QCoreApplication::applicationFilePath(), item);
    qunsetenv(kRecordVariable);
    QVERIFY(isStarted);
    QTRY_VERIFY(QFile::exists(record));
    QFile file(record);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), item + '\n');
}

void ShellLaunchTest::missingProgramIsTold()
{
    const QTemporaryDir dir;
    QVERIFY(!Platform::startWithItem(dir.filePath("missing.exe"), "item"));
    QVERIFY(!Platform::startWithItem(QString(), "item"));
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(kRecordVariable))
        return recordArguments(argc, argv);
    ShellLaunchTest::initMain();
    QCoreApplication application(argc, argv);
    ShellLaunchTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_shelllaunch_windows.moc"
