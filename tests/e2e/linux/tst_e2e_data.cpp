// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "SettingsKeys.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <sys/stat.h>

/// The document as its user takes it out of the program, puts another in its place and empties it,
/// by keys; each looked at on disk, on the page and after a restart.
class E2eData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void exportIsACopy_data();
    void exportIsACopy();
    void importTakesTheOtherDocument_data();
    void importTakesTheOtherDocument();
    void importOfNoDocumentCanBeTakenBack_data();
    void importOfNoDocumentCanBeTakenBack();
    void importOfWhatCannotBeReadChangesNothing_data();
    void importOfWhatCannotBeReadChangesNothing();
    void deletionCanBeTakenBack();

private:
    static QByteArray document(const QString& section, const QString& snippet);
    static QByteArray contentOf(const QString& path);
    static QString inHome(SettingsKeys& settings, const QString& name);
    static void writeInHome(SettingsKeys& settings, const QString& name, const QByteArray& content);
    void begin(SettingsKeys& settings) const;
    void import(SettingsKeys& settings, const QString& file) const;
    void verifyFirstItem(SettingsKeys& settings, const QString& snippet) const;

    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

const QString kDocument = QStringLiteral("data.json");
const QString kPrevious = QStringLiteral("data.json.previous");
const QStringList kEmptyDocument{QStringLiteral("Default")};

} // namespace

void E2eData::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

QByteArray E2eData::document(const QString& section, const QString& snippet)
{
    return Profile::documentOfSections(
        {{section, {Profile::item(QStringLiteral("Note"), QStringLiteral("Snippet"), snippet)}}});
}

QByteArray E2eData::contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString E2eData::inHome(SettingsKeys& settings, const QString& name)
{
    return QDir(settings.program().homeDir()).filePath(name);
}

void E2eData::writeInHome(SettingsKeys& settings, const QString& name, const QByteArray& content)
{
    QFile file(inHome(settings, name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void E2eData::begin(SettingsKeys& settings) const
{
    settings.program().writeData(kDocument,
                                 document(QStringLiteral("Work"), QStringLiteral("old")));
    m_desktop->setClipboard(QStringLiteral("from before"));
    settings.start();
}

/// From the home page to the message at the end, which is answered.
void E2eData::import(SettingsKeys& settings, const QString& file) const
{
    settings.openRow(SettingsKeys::AppCategory, SettingsKeys::ImportRow);
    settings.press({HomePage::Return});
    settings.waitForNextDialog();
    settings.chooseFile(file);
    settings.waitForNextDialog();
    settings.press({HomePage::Escape}); // answers like the first button
    settings.waitForNextDialog();
    settings.press({HomePage::Return});
    settings.waitForSettings();
    settings.settledScreenshot(); // all is built anew
}

/// From the home page, which goes: the program has the document of that snippet.
void E2eData::verifyFirstItem(SettingsKeys& settings, const QString& snippet) const
{
    settings.press({HomePage::Down, HomePage::Return});
    settings.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), snippet);
}

void E2eData::exportIsACopy_data()
{
    QTest::addColumn<bool>("exists");
    QTest::newRow("to a new file") << false;
    QTest::newRow("over an existing file") << true;
}

void E2eData::exportIsACopy()
{
    QFETCH(bool, exists);
    const QString name = QStringLiteral("copy.json");
    SettingsKeys settings(*m_desktop);
    if (exists)
        writeInHome(settings, name, QByteArray(100'000, 'x'));
    begin(settings);
    const QByteArray before = settings.program().readData(kDocument);
    settings.openRow(SettingsKeys::AppCategory, SettingsKeys::ExportRow);
    settings.press({HomePage::Return});
    settings.waitForNextDialog();
    settings.chooseFile(name);
    if (exists) {
        settings.waitForNextDialog();
        settings.chord({SettingsKeys::Alt, 'y'}); // the chooser asks whether to replace it
    }
    settings.waitForNextDialog();
    QCOMPARE(contentOf(inHome(settings, name)), before);
    settings.press({HomePage::Return});
    settings.waitForSettings();
    QCOMPARE(settings.program().readData(kDocument), before);
    QVERIFY(settings.program().readData(kPrevious).isEmpty());
    settings.restart();
    verifyFirstItem(settings, QStringLiteral("old"));
}

void E2eData::importTakesTheOtherDocument_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("present shape") << document(QStringLiteral("Play"), QStringLiteral("new"));
    QTest::newRow("older shape") << Profile::legacyDocument(
        {Profile::item(QStringLiteral("Note"), QStringLiteral("Snippet"), QStringLiteral("new"))});
}

void E2eData::importTakesTheOtherDocument()
{
    QFETCH(QByteArray, content);
    const QString name = QStringLiteral("other.json");
    SettingsKeys settings(*m_desktop);
    writeInHome(settings, name, content);
    begin(settings);
    import(settings, name);
    QCOMPARE(contentOf(inHome(settings, name)), content);
    const QString section = settings.sections().value(0);
    QCOMPARE(settings.sections().size(), 1);
    QCOMPARE(settings.itemNames(section), QStringList{QStringLiteral("Note")});
    QCOMPARE(settings.item(section, 0).value(QStringLiteral("value")).toString(),
             QStringLiteral("new"));
    QVERIFY(settings.program().readData(kPrevious).contains("old"));
    settings.showAgain(); // on the home page
    verifyFirstItem(settings, QStringLiteral("new"));
    m_desktop->setClipboard(QStringLiteral("from before"));
    settings.restart();
    verifyFirstItem(settings, QStringLiteral("new"));
}

void E2eData::importOfNoDocumentCanBeTakenBack_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("movedTo"); // empty if it stays
    QTest::newRow("broken") << QByteArray("{\"categories\": [") << "other.json.bak";
    QTest::newRow("empty") << QByteArray() << "";
}

void E2eData::importOfNoDocumentCanBeTakenBack()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, movedTo);
    const QString name = QStringLiteral("other.json");
    SettingsKeys settings(*m_desktop);
    writeInHome(settings, name, content);
    begin(settings);
    import(settings, name);
    QCOMPARE(settings.sections(), kEmptyDocument);
    QCOMPARE(QFileInfo::exists(inHome(settings, name)), movedTo.isEmpty());
    QCOMPARE(contentOf(inHome(settings, movedTo.isEmpty() ? name : movedTo)), content);
    settings.restart();
    QCOMPARE(settings.sections(), kEmptyDocument);
    import(settings, QDir(settings.program().dataDir()).filePath(kPrevious));
    QCOMPARE(settings.sections(), QStringList{QStringLiteral("Work")});
    settings.restart();
    verifyFirstItem(settings, QStringLiteral("old"));
}

void E2eData::importOfWhatCannotBeReadChangesNothing_data()
{
    QTest::addColumn<bool>("isPipe");
    QTest::newRow("pipe") << true;
    QTest::newRow("too large") << false;
}

void E2eData::importOfWhatCannotBeReadChangesNothing()
{
    QFETCH(bool, isPipe);
    constexpr qint64 kTooLarge = 256LL * 1024 * 1024 + 1;
    const QString name = QStringLiteral("other.json");
    SettingsKeys settings(*m_desktop);
    QFile file(inHome(settings, name));
    if (isPipe)
        QCOMPARE(::mkfifo(QFile::encodeName(file.fileName()).constData(), 0600), 0);
    else
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(kTooLarge));
    begin(settings);
    const QByteArray before = settings.program().readData(kDocument);
    import(settings, name); // the message is another one, answered by the same keys
    QCOMPARE(settings.program().readData(kDocument), before);
    QVERIFY(settings.program().readData(kPrevious).isEmpty());
    QVERIFY(QFileInfo::exists(file.fileName()));
    QVERIFY(!QFileInfo::exists(file.fileName() + QStringLiteral(".bak")));
    settings.restart();
    verifyFirstItem(settings, QStringLiteral("old"));
}

void E2eData::deletionCanBeTakenBack()
{
    SettingsKeys settings(*m_desktop);
    begin(settings);
    settings.openRow(SettingsKeys::AppCategory, SettingsKeys::DeleteRow);
    // Enter is for the default button, which is to cancel.
    settings.press({HomePage::Return});
    settings.waitForNextDialog();
    settings.press({HomePage::Return});
    settings.waitForSettings();
    QCOMPARE(settings.sections(), QStringList{QStringLiteral("Work")});
    settings.press({HomePage::Return});
    settings.waitForNextDialog();
    settings.press({HomePage::Escape});
    settings.waitForNextDialog();
    settings.press({HomePage::Return});
    settings.waitForSettings();
    QCOMPARE(settings.sections(), kEmptyDocument);
    settings.restart();
    QCOMPARE(settings.sections(), kEmptyDocument);
    import(settings, QDir(settings.program().dataDir()).filePath(kPrevious));
    settings.restart();
    verifyFirstItem(settings, QStringLiteral("old"));
}

QTEST_GUILESS_MAIN(E2eData)
#include "tst_e2e_data.moc"
