// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "SettingsKeys.h"

#include <QDir>
#include <QFile>
#include <QtTest>

/// The document as its user takes it out of the program and puts another in its place, by keys;
/// each looked at on disk, on the page and after a restart.
class E2eData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void exportIsACopy_data();
    void exportIsACopy();
    void importTakesTheOtherDocument();

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

void E2eData::importTakesTheOtherDocument()
{
    const QByteArray content = document(QStringLiteral("Play"), QStringLiteral("new"));
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

QTEST_GUILESS_MAIN(E2eData)
#include "tst_e2e_data.moc"
