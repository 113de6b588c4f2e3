// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "Logging.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <cstdio>
#include <cstdlib>

// The handler keeps its file open for as long as the process lives, so each test that looks at how
// the file comes into being lets a process of its own do the logging.

class LoggingTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void lineOfEachType_data();
    void lineOfEachType();
    void everythingIsLogged();
    void timeStampIsLocal();
    void contextIsNotWritten();
    void textIsWrittenAsItIs_data();
    void textIsWrittenAsItIs();
    void lineIsOnDiskAtOnce();
    void messageAfterTheEndOfMain();

    void fatalMessageAborts();
    void fatalMessageAbortsWithoutAFile();

    void noMessageNoFile();
    void directoryIsMade();
    void appendsAcrossRuns();
    void triesAgainAtTheNextMessage_data();
    void triesAgainAtTheNextMessage();
};

namespace
{

Q_LOGGING_CATEGORY(lcOdd, "orlimo.odd.category")

const QString kStampFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
constexpr qsizetype kStampLength = 23;

QString dataPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

QString logPath()
{
    return QDir(dataPath()).filePath("debug.log");
}

QString logText()
{
    QFile file(logPath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    return QString::fromUtf8(file.readAll());
}

QStringList logLines()
{
    QStringList lines = logText().split('\n');
    // Every line is ended, so nothing stands behind the last line feed.
    return lines.takeLast().isEmpty() ? lines : QStringList{"the last line has no end"};
}

void verifyLine(const QString& line, const QString& rest)
{
    static const QRegularExpression s_stamp(
        QRegularExpression::anchoredPattern("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}"));
    QVERIFY2(s_stamp.match(line.left(kStampLength)).hasMatch(), qPrintable(line.left(200)));
    QCOMPARE(line.mid(kStampLength), " " + rest);
}

/// What `abort()` is seen as: a signal, or on Windows an exit with a code of its own.
bool isAborted(const FreshProcess::Outcome& outcome)
{
    constexpr int kExitCodeOfAbort = 3;
    return !outcome.hasExited || outcome.exitCode == kExitCodeOfAbort;
}

void runToTheEnd(const QString& task, const QStringList& arguments = {})
{
    const FreshProcess::Outcome outcome = FreshProcess::run(task, arguments);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
}

// What the processes do.

int install(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    return EXIT_SUCCESS;
}

int logTexts(const QStringList& arguments)
{
    qInstallMessageHandler(fileMessageHandler);
    for (const QString& text : arguments)
        qInfo().noquote().nospace() << text;
    return EXIT_SUCCESS;
}

int logTextsAndTellOffset(const QStringList& arguments)
{
    std::printf("%d\n", QDateTime::currentDateTime().offsetFromUtc());
    return logTexts(arguments);
}

int logOfType(const QStringList& arguments)
{
    fileMessageHandler(static_cast<QtMsgType>(arguments.first().toInt()), {}, "text");
    return EXIT_SUCCESS;
}

int logAllLevels(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    qDebug("one");
    qInfo("two");
    qWarning("three");
    qCritical("four");
    return EXIT_SUCCESS;
}

int logWithContext(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    QMessageLogger("some_file.cpp", 4711, "some_function").warning(lcOdd(), "text");
    return EXIT_SUCCESS;
}

int logAndLook(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    qInfo("first");
    if (logLines().size() != 1)
        return 1;
    qInfo("second");
    return logLines().size() == 2 ? EXIT_SUCCESS : 2;
}

class LastWords
{
public:
    ~LastWords() { qInfo("last"); }
};

int logFromADestructor(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    // Older than anything that the handler keeps, so it goes later.
    static const LastWords s_lastWords;
    qInfo("first");
    return EXIT_SUCCESS;
}

int logFatal(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    qInfo("before");
    // Not by way of `qFatal`, which would abort even if the handler returned.
    fileMessageHandler(QtFatalMsg, {}, "the end");
    return EXIT_SUCCESS;
}

int logInTheWay(const QStringList& arguments)
{
    const QString& obstacle = arguments.first();
    qInstallMessageHandler(fileMessageHandler);
    qWarning("lost");
    qWarning("lost as well");
    if (QFileInfo(obstacle).isDir() ? !QDir().rmdir(obstacle) : !QFile::remove(obstacle))
        return 1;
    qWarning("kept");
    return EXIT_SUCCESS;
}

} // namespace

void LoggingTest::init()
{
    QFile::remove(dataPath());
    QVERIFY(QDir(dataPath()).removeRecursively());
}

void LoggingTest::lineOfEachType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("word");
    QTest::newRow("debug") << int(QtDebugMsg) << "DEBUG";
    QTest::newRow("info") << int(QtInfoMsg) << "INFO";
    QTest::newRow("warning") << int(QtWarningMsg) << "WARN";
    QTest::newRow("critical") << int(QtCriticalMsg) << "CRITICAL";
    QTest::newRow("unknown") << 7 << "DEBUG";
}

void LoggingTest::lineOfEachType()
{
    QFETCH(int, type);
    QFETCH(QString, word);
    runToTheEnd("of type", {QString::number(type)});
    QCOMPARE(logLines().size(), 1);
    verifyLine(logLines().value(0), "[" + word + "] text");
}

void LoggingTest::everythingIsLogged()
{
    runToTheEnd("all levels");
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 4);
    verifyLine(lines.at(0), "[DEBUG] one");
    verifyLine(lines.at(1), "[INFO] two");
    verifyLine(lines.at(2), "[WARN] three");
    verifyLine(lines.at(3), "[CRITICAL] four");
}

void LoggingTest::timeStampIsLocal()
{
    const bool hadZone = qEnvironmentVariableIsSet("TZ");
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "JST-9");
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const FreshProcess::Outcome outcome = FreshProcess::run("text and offset", {"x"});
    const QDateTime after = QDateTime::currentDateTimeUtc();
    if (hadZone)
        qputenv("TZ", zone);
    else
        qunsetenv("TZ");

    QCOMPARE(outcome.exitCode, 0);
    QDateTime stamp = QDateTime::fromString(logLines().value(0).left(kStampLength), kStampFormat);
    // Windows has the zone from its settings alone, so the process is asked which one it was in.
    const int offset = outcome.output.trimmed().toInt();
    QVERIFY2(offset != 0, "this says nothing where the local time is that of Greenwich");
    stamp.setOffsetFromUtc(offset);
    QVERIFY(stamp.isValid());
    QVERIFY2(stamp >= before && stamp <= after, qPrintable(stamp.toString(Qt::ISODateWithMs)));
}

void LoggingTest::contextIsNotWritten()
{
    runToTheEnd("with context");
    verifyLine(logLines().value(0), "[WARN] text");
}

void LoggingTest::textIsWrittenAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("blanks at both ends") << "  x  ";
    QTest::newRow("placeholders") << "%1 %s %n";
    QTest::newRow("every language") << QStringLiteral("ñ 表示 😀 ߷");
    // As long as a command line can be everywhere.
    QTest::newRow("long") << QString(30'000, 'x');
}

void LoggingTest::textIsWrittenAsItIs()
{
    QFETCH(QString, text);
    runToTheEnd("text", {text});
    QCOMPARE(logLines().size(), 1);
    verifyLine(logLines().value(0), "[INFO] " + text);
}

void LoggingTest::lineIsOnDiskAtOnce()
{
    runToTheEnd("log and look");
}

void LoggingTest::messageAfterTheEndOfMain()
{
    runToTheEnd("from a destructor");
    QCOMPARE(logLines().size(), 2);
    // Without the time, which is no longer to be had by then.
    QVERIFY(logLines().value(1).endsWith("[INFO] last"));
}

void LoggingTest::fatalMessageAborts()
{
    const FreshProcess::Outcome outcome = FreshProcess::run("fatal", {});
    QVERIFY(isAborted(outcome));
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 2);
    verifyLine(lines.at(0), "[INFO] before");
    verifyLine(lines.at(1), "[FATAL] the end");
}

void LoggingTest::fatalMessageAbortsWithoutAFile()
{
    QVERIFY(QDir().mkpath(QFileInfo(dataPath()).path()));
    QFile obstacle(dataPath());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    const FreshProcess::Outcome outcome = FreshProcess::run("fatal", {});
    QVERIFY(isAborted(outcome));
}

void LoggingTest::noMessageNoFile()
{
    runToTheEnd("install");
    QVERIFY(!QFileInfo::exists(dataPath()));
}

void LoggingTest::directoryIsMade()
{
    QVERIFY(!QFileInfo::exists(dataPath()));
    runToTheEnd("text", {"x"});
    QVERIFY(QFileInfo(logPath()).isFile());
}

void LoggingTest::appendsAcrossRuns()
{
    TestHome::writeDataFile("debug.log", "from long ago\n");
    runToTheEnd("text", {"one"});
    runToTheEnd("text", {"two"});
    const QStringList lines = logLines();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.at(0), "from long ago");
    verifyLine(lines.at(1), "[INFO] one");
    verifyLine(lines.at(2), "[INFO] two");
}

void LoggingTest::triesAgainAtTheNextMessage_data()
{
    QTest::addColumn<bool>("isFileInTheWay");
    QTest::newRow("file in place of the directory") << true;
    QTest::newRow("directory in place of the file") << false;
}

void LoggingTest::triesAgainAtTheNextMessage()
{
    QFETCH(bool, isFileInTheWay);
    const QString obstacle = isFileInTheWay ? dataPath() : logPath();
    if (isFileInTheWay) {
        QVERIFY(QDir().mkpath(QFileInfo(obstacle).path()));
        QFile file(obstacle);
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(QDir().mkpath(obstacle));
    }
    runToTheEnd("in the way", {obstacle});
    QCOMPARE(logLines().size(), 1);
    verifyLine(logLines().value(0), "[WARN] kept");
}

int main(int argc, char** argv)
{
    return FreshProcess::main<LoggingTest, QCoreApplication>(
        argc, argv,
        {{"install", install},
         {"text", logTexts},
         {"text and offset", logTextsAndTellOffset},
         {"of type", logOfType},
         {"all levels", logAllLevels},
         {"with context", logWithContext},
         {"log and look", logAndLook},
         {"from a destructor", logFromADestructor},
         {"fatal", logFatal},
         {"in the way", logInTheWay}});
}

#include "tst_logging.moc"
