// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "Program.h"
#include "Theme.h"

#include <QFile>
#include <QtTest>

/// From hotkey to launch, with the real binary and real keys.
class E2eLaunch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void applicationGetsItsExactArguments();
    void snippetLandsOnTheClipboard();
    void fileAndUrlReachTheirHandler_data();
    void fileAndUrlReachTheirHandler();
    void bulkFollowsTheLineRules();
    void shellItemGoesToTheDesktopsLauncher();
    void legacyDocumentIsLaunched();
    void legacyItemsReachTheirHandler_data();
    void legacyItemsReachTheirHandler();
    void launchIsRememberedAndRanksFirst();
    void calculatorAnswerLandsOnTheClipboard();
    void divisionByZeroShowsTheHeaderAlone();
    void failingApplicationKeepsEverything();

private:
    std::unique_ptr<Desktop> m_desktop;
};

void E2eLaunch::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eLaunch::applicationGetsItsExactArguments()
{
    m_desktop->addRecorder(QStringLiteral("recorder"));
    Program program(*m_desktop);
    program.writeData(
        QStringLiteral("data.json"),
        Profile::document({Profile::item(
            QStringLiteral("Recorder"), QStringLiteral("Application"),
            QStringLiteral("recorder plain \"two words\" \"say \"\"\"hi\"\"\"\" čeština 日本"))}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("reco"));
    program.key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("recorder")),
                 QStringLiteral("[plain]\n[two words]\n[say \"hi\"]\n[čeština]\n[日本]\n"));
    program.waitUntilSpotlightIsGone();
    QVERIFY(program.usage().contains(QStringLiteral("id-Recorder")));
}

void E2eLaunch::snippetLandsOnTheClipboard()
{
    const QString text = QStringLiteral("line one\nzweite Zeile — 日本");
    Program program(*m_desktop);
    program.writeData(QStringLiteral("data.json"),
                      Profile::document({Profile::item(QStringLiteral("Greeting"),
                                                       QStringLiteral("Snippet"), text)}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("GREET"));
    program.key(QStringLiteral("Return"));
    program.waitUntilSpotlightIsGone();
    QTRY_COMPARE(m_desktop->clipboard(), text);
    const QJsonObject record = program.usage().value(QStringLiteral("id-Greeting")).toObject();
    QCOMPARE(record.value(QStringLiteral("c")).toInt(), 1);
}

void E2eLaunch::fileAndUrlReachTheirHandler_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("opened");
    QTest::newRow("file") << "File"
                          << "/tmp/some report.pdf"
                          << "file:///tmp/some%20report.pdf";
    QTest::newRow("web address") << "URL"
                                 << "https://example.org/a?b=c"
                                 << "https://example.org/a?b=c";
    QTest::newRow("bare domain") << "URL"
                                 << "example.org"
                                 << "http://example.org";
}

void E2eLaunch::fileAndUrlReachTheirHandler()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    QFETCH(QString, opened);
    Program program(*m_desktop);
    program.writeData(QStringLiteral("data.json"),
                      Profile::document({Profile::item(QStringLiteral("Target"), type, value)}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("target"));
    program.key(QStringLiteral("KP_Enter"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{opened});
    program.waitUntilSpotlightIsGone();
}

void E2eLaunch::bulkFollowsTheLineRules()
{
    m_desktop->addRecorder(QStringLiteral("bulky.exe"));
    QFile present(m_desktop->path(QStringLiteral("present.txt")));
    QVERIFY(present.open(QIODevice::WriteOnly));
    present.close();
    const QString value = QStringLiteral("  HTTPS://example.org/x;\n\n;\nbulky.exe one \"t w o\"\n"
                                         "%1\nexample.com/page\nnothing-here")
                              .arg(present.fileName());
    Program program(*m_desktop);
    program.writeData(QStringLiteral("data.json"),
                      Profile::document({Profile::item(QStringLiteral("Morning"),
                                                       QStringLiteral("Bulk"), value)}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("morning"));
    program.key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("bulky.exe")),
                 QStringLiteral("[one]\n[t w o]\n"));
    // Each opening is a process of its own, so they may note themselves in any order.
    QStringList expected{
        QStringLiteral("https://example.org/x"), QStringLiteral("file://") + present.fileName(),
        QStringLiteral("http://example.com/page"), QStringLiteral("file:nothing-here")};
    expected.sort();
    QTRY_COMPARE(
        [this] {
            QStringList opened = m_desktop->opened();
            opened.sort();
            return opened;
        }(),
        expected);
    program.waitUntilSpotlightIsGone();
}

void E2eLaunch::legacyDocumentIsLaunched()
{
    const QByteArray legacy = Profile::legacyDocument(
        {Profile::item(QStringLiteral("Old snippet"), QStringLiteral("Snippet"),
                       QStringLiteral("from long ago"))});
    Program program(*m_desktop);
    program.writeData(QStringLiteral("data.json"), legacy);
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("old"));
    program.key(QStringLiteral("Return"));
    program.waitUntilSpotlightIsGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("from long ago"));
    QCOMPARE(program.readData(QStringLiteral("data.json")), legacy); // loading saves nothing
}

void E2eLaunch::shellItemGoesToTheDesktopsLauncher()
{
    m_desktop->addRecorder(QStringLiteral("gio"));
    QDir().mkpath(m_desktop->path(QStringLiteral("data/applications")));
    QFile entry(m_desktop->path(QStringLiteral("data/applications/sample.desktop")));
    QVERIFY(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\nName=Sample\nExec=sh\n");
    entry.close();
    Program program(*m_desktop);
    program.writeData(
        QStringLiteral("data.json"),
        Profile::document({Profile::item(QStringLiteral("Sample"), QStringLiteral("ShellItem"),
                                         QStringLiteral("sample.desktop"))}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("sample"));
    program.key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(QStringLiteral("gio")),
                 QStringLiteral("[launch]\n[%1]\n").arg(entry.fileName()));
    program.waitUntilSpotlightIsGone();
}

void E2eLaunch::legacyItemsReachTheirHandler_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("opened");
    QTest::newRow("web address") << "URL"
                                 << "https://example.org" << QStringList{"https://example.org"};
    QTest::newRow("file") << "File"
                          << "/tmp/old.txt" << QStringList{"file:///tmp/old.txt"};
    QTest::newRow("bulk") << "Bulk"
                          << "https://example.org/one" << QStringList{"https://example.org/one"};
    QTest::newRow("application") << "Application"
                                 << "xdg-open \"from an application\""
                                 << QStringList{"from an application"};
}

void E2eLaunch::legacyItemsReachTheirHandler()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    QFETCH(QStringList, opened);
    Program program(*m_desktop);
    program.writeData(
        QStringLiteral("data.json"),
        Profile::legacyDocument({Profile::item(QStringLiteral("Old one"), type, value)}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("old"));
    program.key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), opened);
    program.waitUntilSpotlightIsGone();
}

void E2eLaunch::launchIsRememberedAndRanksFirst()
{
    Program program(*m_desktop);
    program.writeData(
        QStringLiteral("data.json"),
        Profile::document({Profile::item(QStringLiteral("Mail one"), QStringLiteral("Snippet"),
                                         QStringLiteral("first")),
                           Profile::item(QStringLiteral("Mail two"), QStringLiteral("Snippet"),
                                         QStringLiteral("second"))}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("mail"));
    program.key(QStringLiteral("Down"));
    program.key(QStringLiteral("Return"));
    program.waitUntilSpotlightIsGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("second"));

    program.openSpotlight();
    program.type(QStringLiteral("mail"));
    program.key(QStringLiteral("Down"));
    program.key(QStringLiteral("Return"));
    program.waitUntilSpotlightIsGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("first")); // now the lower one
    const QJsonObject records = program.usage();
    QCOMPARE(records.size(), 2);
}

void E2eLaunch::calculatorAnswerLandsOnTheClipboard()
{
    Program program(*m_desktop);
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("12*3"));
    program.key(QStringLiteral("Return"));
    program.waitUntilSpotlightIsGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("36"));
    QCOMPARE(program.readData(QStringLiteral("usage.json")), QByteArray());
    QCOMPARE(program.readData(QStringLiteral("data.json")), QByteArray()); // nothing was changed
}

void E2eLaunch::divisionByZeroShowsTheHeaderAlone()
{
    Theme::forceTheme = 1; // for the colours that are expected
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    program.startAndSettle();
    program.openSpotlight();
    const int closedHeight = program.spotlight().geometry.height();
    program.type(QStringLiteral("7/0"));
    QTRY_COMPARE(program.spotlight().geometry.height(), closedHeight + 328);
    const QImage picture = program.settledScreenshot();
    Program::keep(picture, QStringLiteral("spotlight-division"));
    // Between the calculator's header and the only row there is nothing but another header.
    const QPoint row = Program::SpotlightCard + QPoint(6 + 4, 80 + 4 + 2 * 30 + 4);
    QCOMPARE(picture.pixelColor(row + QPoint(200, -2)), QColor(Theme::panelBg()));
    QCOMPARE(picture.pixelColor(row + QPoint(200, 2)), QColor(Theme::boxActiveBg()));
    program.key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(),
                 QStringList{QStringLiteral("https://www.google.com/search?q=7%2F0")});
    program.waitUntilSpotlightIsGone();
}

void E2eLaunch::failingApplicationKeepsEverything()
{
    Program program(*m_desktop);
    program.writeData(
        QStringLiteral("data.json"),
        Profile::document({Profile::item(QStringLiteral("Broken"), QStringLiteral("Application"),
                                         QStringLiteral("/nowhere/at/all"))}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("broken"));
    program.key(QStringLiteral("Return"));
    // The message box is a third window of the program, and has the keyboard.
    QTRY_VERIFY(program.spotlight().isViewable && !program.isSpotlightUp() &&
                m_desktop->client().focus() != XCB_WINDOW_NONE);
    Program::keep(program.settledScreenshot(), QStringLiteral("message-box-error"));
    program.key(QStringLiteral("Return"));
    QTRY_VERIFY(program.isSpotlightUp());
    QCOMPARE(program.readData(QStringLiteral("usage.json")), QByteArray());
    // The text is still there to be corrected.
    program.key(QStringLiteral("ctrl+a"));
    program.key(QStringLiteral("ctrl+c"));
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("broken"));
}

QTEST_GUILESS_MAIN(E2eLaunch)
#include "tst_e2e_launch.moc"
