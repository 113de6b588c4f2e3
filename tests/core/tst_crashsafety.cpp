// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"
#include "LauncherModel.h"
#include "StorageManager.h"
#include "TestHome.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>

/// Kills a process in the middle of its changes, again and again, and looks at the document it
/// left behind.
class CrashSafetyTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void killedProcessesLeaveAWholeDocument();
};

namespace
{

constexpr int kKills = 300;
constexpr quint32 kSeed = 20230417;
constexpr int kLongestLifeMs = 20; ///< after the first change of the child
constexpr int kTimeoutMs = 30000;
constexpr int kBallastItems = 200; ///< makes a write long enough to be caught in the middle

const QString kCategory = QStringLiteral("Counter");

/// The counter goes in turn into an item, a template and an icon, so that it takes the largest.
int counterOf(const LauncherData& data)
{
    int counter = static_cast<int>(data.categoryIcons.value(kCategory));
    if (!data.templates.isEmpty())
        counter = std::max(counter, static_cast<int>(data.templates.first().icon));
    const QList<LauncherElement> items = data.sectionElements.value(kCategory);
    return items.isEmpty() ? counter : std::max(counter, items.first().name.toInt());
}

void change(LauncherModel& model, int counter)
{
    if (counter % 3 == 0)
        model.saveItem(kCategory, {"id", QString::number(counter), "Snippet", {}, {}}, 0);
    else if (counter % 3 == 1)
        model.saveTemplate({kCategory, static_cast<uint>(counter), {}});
    else
        model.editCategory(kCategory, kCategory, static_cast<uint>(counter));
}

/// The child's side: counts up for ever, and says each number when its change has been made.
int changeForEver(const QStringList& arguments)
{
    LauncherModel model(arguments.first(), nullptr);
    for (int counter = counterOf(model.data());; ++counter) {
        std::printf("%d\n", counter);
        std::fflush(stdout);
        change(model, counter + 1);
    }
}

/// The number on the last whole line, or `fallback` if there is none.
int lastAnnounced(const QByteArray& output, int fallback)
{
    const qsizetype end = output.lastIndexOf('\n');
    if (end < 0)
        return fallback;
    const qsizetype start = end == 0 ? 0 : output.lastIndexOf('\n', end - 1) + 1;
    return output.mid(start, end - start).trimmed().toInt();
}

/// Starts a child and kills it `lifeMs` after its first change, which is what the second line says,
/// so that every life takes the counter further, however slow the machine. Gives what it said.
QByteArray outputOfAShortLife(const QString& path, int lifeMs)
{
    QProcess child;
    FreshProcess::start(child, "change", {path});
    QByteArray output;
    while (output.count('\n') < 2 && child.waitForReadyRead(kTimeoutMs))
        output += child.readAllStandardOutput();
    // Reads on until the end, or the child would soon wait for room in the pipe.
    const QDeadlineTimer death(lifeMs, Qt::PreciseTimer);
    while (!death.hasExpired()) {
        child.waitForReadyRead(static_cast<int>(death.remainingTime()));
        output += child.readAllStandardOutput();
    }
    child.kill();
    child.waitForFinished(kTimeoutMs);
    return output + child.readAllStandardOutput();
}

LauncherData ballast()
{
    LauncherData data;
    data.categories = QStringList{"Ballast", kCategory};
    data.defaultCategory = "Ballast";
    data.sectionElements[kCategory] = {{"id", "0", "Snippet", {}, {}}};
    for (int i = 0; i < kBallastItems; ++i) {
        data.sectionElements["Ballast"].append(
            {LauncherElement::createId(), QString("Item %1").arg(i), "URL", QString(200, 'x'), {}});
    }
    return data;
}

} // namespace

void CrashSafetyTest::killedProcessesLeaveAWholeDocument()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("data.json");
    const LauncherData original = ballast();
    StorageManager::saveData(path, original);

    QRandomGenerator random(kSeed);
    int counter = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        const QByteArray output = outputOfAShortLife(path, random.bounded(kLongestLifeMs));
        const int announced = lastAnnounced(output, -1);
        QVERIFY2(announced > counter, "the child never got to work, or lost a change");

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
        QVERIFY2(document.isObject(), qPrintable(error.errorString()));
        file.close();

        const LauncherData data = StorageManager::loadData(path);
        counter = counterOf(data);
        // The change that was going on may have come through; every announced one has.
        QVERIFY2(counter == announced || counter == announced + 1,
                 qPrintable(QString("announced %1, found %2").arg(announced).arg(counter)));
        QCOMPARE(data.sectionElements["Ballast"], original.sectionElements["Ballast"]);
    }
    QVERIFY(!QFile::exists(path + ".bak"));
}

int main(int argc, char** argv)
{
    return FreshProcess::main<CrashSafetyTest>(argc, argv, {{"change", changeForEver}});
}

#include "tst_crashsafety.moc"
