// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LauncherModelFixture.h"
#include "TestHome.h"

#include <QDir>
#include <QTest>

/// An import and a reset, which put another document in the place of the present one, and the copy
/// that they leave of it.
class ModelReplacementTest : public QObject, private LauncherModelFixture
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { makeModel(); }
    void cleanup() { removeModel(); }

    void resetData();
    void importReplacesEverything();
    void importKeepsTheCurrentCategoryIfItCan();
    void importOfABrokenFile();
    void importOfTheOwnFile();
    void importOfTheOwnFileThatIsBroken();
    void importOfTheDocumentBefore();
    void importOfTheBrokenDocumentBefore();
    void brokenDocumentBeforeThatCannotBeKept();
    void documentBeforeIsKept();
    void documentBeforeThatCannotBeKept();
    void importOfWhatCannotBeRead_data();
    void importOfWhatCannotBeRead();

private:
    LauncherData previous() const { return StorageManager::loadData(path("data.json.previous")); }
};

void ModelReplacementTest::resetData()
{
    m_model->resetData();
    LauncherData expected;
    expected.categories = {"Default"};
    expected.defaultCategory = "Default";
    QCOMPARE(m_model->data(), expected);
    QCOMPARE(m_model->currentCategory(), "Default");
    QCOMPARE(onDisk(), expected);
    // Resetting again changes no current category.
    QCOMPARE(recordSignals(*m_model, [](LauncherModel& m) { m.resetData(); }),
             QStringList{"categories"});
}

void ModelReplacementTest::importReplacesEverything()
{
    LauncherData other;
    other.categories = {"A", "B"};
    other.defaultCategory = "B";
    other.sectionElements = {{"A", {item("In A")}}};
    StorageManager::saveData(path("other.json"), other);
    m_model->setCurrentCategory("Work");

    m_model->importData(path("other.json"));
    QCOMPARE(m_model->data(), other);
    QCOMPARE(onDisk(), other);
    QCOMPARE(m_model->currentCategory(), "B");
    QVERIFY(QFile::exists(path("other.json")));
}

void ModelReplacementTest::importKeepsTheCurrentCategoryIfItCan()
{
    LauncherData other = document();
    other.defaultCategory = "Bare";
    StorageManager::saveData(path("other.json"), other);
    m_model->setCurrentCategory("Work");
    QCOMPARE(
        recordSignals(*m_model, [this](LauncherModel& m) { m.importData(path("other.json")); }),
        QStringList{"categories"});
    QCOMPARE(m_model->currentCategory(), "Work");
}

void ModelReplacementTest::importOfABrokenFile()
{
    QFile broken(path("broken.json"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("[1, 2");
    broken.close();
    m_model->importData(path("broken.json"));
    QCOMPARE(m_model->data().categories, QStringList{"Default"});
    QVERIFY(m_model->templates().isEmpty());
    QCOMPARE(onDisk(), m_model->data());
    QVERIFY(!QFile::exists(path("broken.json")));
    QCOMPARE(contentOf(path("broken.json.bak")), "[1, 2");
    QVERIFY(!QFile::exists(path("data.json.bak")));
}

void ModelReplacementTest::importOfTheOwnFile()
{
    m_model->importData(path());
    QCOMPARE(m_model->data(), document());
    QCOMPARE(onDisk(), document());
}

void ModelReplacementTest::importOfTheOwnFileThatIsBroken()
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{]");
    file.close();
    QCOMPARE(m_model->importData(path()), LauncherModel::Replacement::Done);
    QCOMPARE(contentOf(path("data.json.bak")), "{]");
    QCOMPARE(onDisk(), StorageManager::emptyDocument());
    QCOMPARE(previous(), document());
}

void ModelReplacementTest::importOfTheDocumentBefore()
{
    // There and back, as often as one likes.
    QCOMPARE(m_model->resetData(), LauncherModel::Replacement::Done);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(m_model->importData(path("data.json.previous")), LauncherModel::Replacement::Done);
        QCOMPARE(onDisk(), document());
        QCOMPARE(previous(), StorageManager::emptyDocument());
        QCOMPARE(m_model->importData(path("data.json.previous")), LauncherModel::Replacement::Done);
        QCOMPARE(onDisk(), StorageManager::emptyDocument());
        QCOMPARE(previous(), document());
    }
}

void ModelReplacementTest::importOfTheBrokenDocumentBefore()
{
    QFile file(path("data.json.previous"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[1");
    file.close();
    QCOMPARE(m_model->importData(file.fileName()), LauncherModel::Replacement::Done);
    QCOMPARE(contentOf(path("data.json.previous.bak")), "[1");
    QCOMPARE(onDisk(), StorageManager::emptyDocument());
    QCOMPARE(previous(), document());
}

void ModelReplacementTest::brokenDocumentBeforeThatCannotBeKept()
{
    QFile file(path("data.json.previous"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[1");
    file.close();
    QVERIFY(QDir(m_dir->path()).mkpath("data.json.previous.bak/in the way"));
    const QByteArray before = contentOf(path());
    QCOMPARE(m_model->importData(file.fileName()), LauncherModel::Replacement::NotKept);
    QCOMPARE(contentOf(file.fileName()), "[1");
    QCOMPARE(contentOf(path()), before);
    QCOMPARE(m_model->data(), document());
}

void ModelReplacementTest::documentBeforeIsKept()
{
    QCOMPARE(StorageManager::previousPath(path()), path("data.json.previous"));
    LauncherData other = document();
    other.categories = {"Other"};
    other.defaultCategory = "Other";
    StorageManager::saveData(path("other.json"), other);
    const QByteArray before = contentOf(path());
    QCOMPARE(m_model->importData(path("other.json")), LauncherModel::Replacement::Done);
    QCOMPARE(contentOf(path("data.json.previous")), before);
    QCOMPARE(m_model->resetData(), LauncherModel::Replacement::Done);
    QCOMPARE(previous(), other); // one only, replaced each time
    m_model->addCategory("New", 1);
    QCOMPARE(previous(), other); // smaller changes leave it alone
    const QStringList files = QDir(m_dir->path()).entryList(QDir::Files, QDir::Name);
    QCOMPARE(files, QStringList({"data.json", "data.json.previous", "other.json"}));
}

void ModelReplacementTest::documentBeforeThatCannotBeKept()
{
    QVERIFY(QDir(m_dir->path()).mkpath("data.json.previous/in the way"));
    m_model->setCurrentCategory("Work");
    const QByteArray before = contentOf(path());
    const Operation everything = [this](LauncherModel& m) {
        QCOMPARE(m.resetData(), LauncherModel::Replacement::NotKept);
        for (const QByteArray& content :
             {QByteArray(R"({"categories": ["A"]})"), QByteArray("{")}) {
            QFile file(path("other.json"));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
            file.close();
            QCOMPARE(m.importData(file.fileName()), LauncherModel::Replacement::NotKept);
            QCOMPARE(contentOf(file.fileName()), content);
        }
    };
    QCOMPARE(recordSignals(*m_model, everything), QStringList());
    QCOMPARE(m_model->data(), document());
    QCOMPARE(m_model->currentCategory(), "Work");
    QCOMPARE(contentOf(path()), before);
}

void ModelReplacementTest::importOfWhatCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing.json";
    QTest::newRow("directory") << "directory";
    QTest::newRow("too large") << "large.json";
    QTest::newRow("no name") << "";
}

void ModelReplacementTest::importOfWhatCannotBeRead()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_dir->path()).mkpath("directory"));
    QFile large(path("large.json"));
    QVERIFY(large.open(QIODevice::WriteOnly));
    QVERIFY(large.resize(StorageManager::MaxDocumentBytes + 1));
    large.close();
    const QStringList before =
        QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    const QString source = name.isEmpty() ? QString() : path(name);
    const Operation import = [&source](LauncherModel& m) {
        QCOMPARE(m.importData(source), LauncherModel::Replacement::Unreadable);
    };
    QCOMPARE(recordSignals(*m_model, import), QStringList());
    QCOMPARE(m_model->data(), document());
    QCOMPARE(onDisk(), document());
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
}

QTEST_GUILESS_MAIN(ModelReplacementTest)
#include "tst_modelreplacement.moc"
