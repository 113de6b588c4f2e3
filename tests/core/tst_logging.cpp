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
#include <QHash>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

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
    void textCantForgeALine_data();
    void textCantForgeALine();
    void lineIsOnDiskAtOnce();
    void threadsWriteWholeLines();
    void fileIsChosenAnewOnRequestAlone();
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

constexpr int kThreads = 8;
constexpr int kLinesOfAThread = 200;

int logFromThreads(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back(QThread::create([i] {
            for (int k = 0; k < kLinesOfAThread; ++k)
                qInfo().noquote() << QString::number(i).repeated(500);
        }));
        threads.back()->start();
    }
    for (const auto& thread : threads)
        thread->wait();
    return EXIT_SUCCESS;
}

/// Prints where the lines went that were written under another name.
int logUnderTwoNames(const QStringList&)
{
    qInstallMessageHandler(fileMessageHandler);
    const QString name = QCoreApplication::applicationName();
    QCoreApplication::setApplicationName("early");
    qInfo("one");
    std::printf("%s\n", qPrintable(logPath()));
    QCoreApplication::setApplicationName(name);
    qInfo("two");
    reopenLog();
    qInfo("three");
    return EXIT_SUCCESS;
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

void LoggingTest::textCantForgeALine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("written");
    const QString forged = "2026-01-01 00:00:00.000 [FATAL] forged";
    const auto row = [&](const char* name, const QString& end, const QString& escaped) {
        QTest::newRow(name) << "text" + end + forged << "text" + escaped + forged;
    };
    row("line feed", "\n", "\\n");
    row("carriage return", "\r", "\\r");
    row("both", "\r\n", "\\r\\n");
    row("line separator", QString(QChar(0x2028)), "\\u2028");
    row("paragraph separator", QString(QChar(0x2029)), "\\u2029");
    row("next line", QString(QChar(0x85)), "\\u0085");
    row("form feed", "\f", "\\u000c");
    row("escape sequence", "\x1B[2K", "\\u001b[2K");
    row("tab stays", "\t", "\t");
}

void LoggingTest::textCantForgeALine()
{
    QFETCH(QString, text);
    QFETCH(QString, written);
    runToTheEnd("text", {text});
    QCOMPARE(logLines().size(), 1);
    verifyLine(logLines().value(0), "[INFO] " + written);
}

void LoggingTest::threadsWriteWholeLines()
{
    runToTheEnd("from threads");
    QHash<QString, int> counts;
    const QStringList lines = logLines();
    for (const QString& line : lines)
        ++counts[line.mid(kStampLength)];
    QCOMPARE(lines.size(), kThreads * kLinesOfAThread);
    QCOMPARE(counts.size(), kThreads);
    for (int i = 0; i < kThreads; ++i)
        QCOMPARE(counts.value(" [INFO] " + QString::number(i).repeated(500)), kLinesOfAThread);
}

void LoggingTest::fileIsChosenAnewOnRequestAlone()
{
    const FreshProcess::Outcome outcome = FreshProcess::run("under two names", {});
    QCOMPARE(outcome.exitCode, 0);
    QFile early(QString::fromUtf8(outcome.output).trimmed());
    QVERIFY(early.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromUtf8(early.readAll()).split('\n', Qt::SkipEmptyParts);
    QVERIFY(early.remove());
    QCOMPARE(lines.size(), 2);
    verifyLine(lines.at(0), "[INFO] one");
    verifyLine(lines.at(1), "[INFO] two");
    QCOMPARE(logLines().size(), 1);
    verifyLine(logLines().value(0), "[INFO] three");
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
         {"from threads", logFromThreads},
         {"under two names", logUnderTwoNames},
         {"from a destructor", logFromADestructor},
         {"fatal", logFatal},
         {"in the way", logInTheWay}});
}

#include "tst_logging.moc"
