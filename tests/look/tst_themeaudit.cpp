// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestHome.h"
#include "Theme.h"
#include "ThemeAudit.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace
{

constexpr int kForceLight = 1;
constexpr int kForceDark = 2;
constexpr int kSampleCount = 8;
constexpr int kRowsPerSample = 33;
const QString kOwnSeed = QStringLiteral("#123456");

QStringList* s_log = nullptr;

void noteMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Q_UNUSED(context);
    const QString level = type == QtWarningMsg ? QStringLiteral("WARN ") : QString();
    s_log->append(level + text);
}

/// What is logged while it lives, warnings marked as such.
class LogOfAudit
{
public:
    LogOfAudit()
    {
        s_log = &m_lines;
        m_former = qInstallMessageHandler(noteMessage);
    }
    ~LogOfAudit() { qInstallMessageHandler(m_former); }
    LogOfAudit(const LogOfAudit&) = delete;
    LogOfAudit& operator=(const LogOfAudit&) = delete;

    const QStringList& lines() const { return m_lines; }

private:
    QStringList m_lines;
    QtMessageHandler m_former;
};

/// The lines of a text file, whatever the line ends of the system are.
QList<QByteArray> linesOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    if (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast(); // what follows the last line end
    return lines;
}

QString outPath()
{
    return QDir(TestHome::path()).filePath(QStringLiteral("colours.txt"));
}

QByteArray settingsFile()
{
    QFile file(Theme::settingsFilePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class ThemeAuditTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void samples();
    void colorsAreThoseOfTheStoredTable();
    void colorsKeepTheirOrder();
    void pathThatCantBeWritten_data();
    void pathThatCantBeWritten();
    void olderReportIsReplaced();

    void contrastReport();
    void contrastLine_data();
    void contrastLine();

    void sweepRows_data();
    void sweepRows();
    void tally_data();
    void tally();
    void sweepReport();
};

void ThemeAuditTest::init()
{
    Theme::forceTheme = kForceLight;
    Theme::seedColorHex = kOwnSeed;
    TestHome::writeDataFile("settings.ini", "[Theme]\nForceTheme=2\nSeedColor=#abcdef\n");
    QFile::remove(outPath());
}

// No audit leaves a trace in what the user has set.
void ThemeAuditTest::cleanup()
{
    QCOMPARE(settingsFile(), QByteArray("[Theme]\nForceTheme=2\nSeedColor=#abcdef\n"));
    if (QByteArray(QTest::currentTestFunction()) == "sweepRows")
        return; // sets both itself
    QCOMPARE(Theme::forceTheme, kForceLight);
    QCOMPARE(Theme::seedColorHex, kOwnSeed);
}

void ThemeAuditTest::samples()
{
    const QStringList expected{"biru bawaan #0284c7", "kuning #ffd400", "kuning murni #ffff00",
                               "hijau limau #7cfc00", "sian #00ffff",   "hijau #22c55e",
                               "merah #ef4444",       "ungu #8b5cf6"};
    int count = 0;
    const Theme::Sample* samples = Theme::auditSamples(&count);
    QCOMPARE(count, kSampleCount);
    QStringList texts;
    for (int i = 0; i < count; ++i)
        texts << QStringLiteral("%1 %2").arg(QLatin1String(samples[i].name),
                                             QLatin1String(samples[i].hex));
    QCOMPARE(texts, expected);
    QCOMPARE(Theme::auditSamples(nullptr), samples);
}

void ThemeAuditTest::colorsAreThoseOfTheStoredTable()
{
    // Whoever changes the palette on purpose writes the table anew; the program gives the same one
    // on every system.
    const LogOfAudit log;
    Theme::auditColor(outPath());
    QCOMPARE(log.lines(), QStringList{"AUDIT WARNA ditulis ke " + outPath()});
    const QList<QByteArray> lines = linesOf(outPath());
    const QList<QByteArray> expected = linesOf(QStringLiteral(ORLIMO_TEST_DATA_DIR "/palette.tsv"));
    QCOMPARE(expected.size(), 2 + 2 * kSampleCount * kRowsPerSample);
    QCOMPARE(lines.size(), expected.size());
    for (qsizetype i = 0; i < lines.size(); ++i)
        QCOMPARE(lines.at(i), expected.at(i));
}

void ThemeAuditTest::colorsKeepTheirOrder()
{
    Theme::auditColor(outPath());
    const QList<QByteArray> lines = linesOf(outPath());
    QCOMPARE(lines.value(0), QByteArray("# Orlimo audit warna v1"));
    QCOMPARE(lines.value(1), QByteArray("# mode\tseed\tperan\thex"));
    const QByteArrayList roles{"primary",
                               "onPrimary",
                               "primaryContainer",
                               "onPrimaryContainer",
                               "surface",
                               "surfaceContainer",
                               "surfaceContainerLowest",
                               "surfaceContainerLow",
                               "surfaceContainerHigh",
                               "surfaceContainerHighest",
                               "onSurface",
                               "surfaceVariant",
                               "onSurfaceVariant",
                               "outline",
                               "outlineVariant",
                               "errorColor",
                               "onError",
                               "errorContainer",
                               "onErrorContainer",
                               "warning",
                               "onWarning",
                               "container",
                               "key",
                               "onContainer",
                               "onKey",
                               "boxActiveBg",
                               "catTrackBg",
                               "stateHoverControl",
                               "stateFocusControl",
                               "stateHoverKey",
                               "stateFocusKey",
                               "fieldIdleBg",
                               "fieldFocusBg"};
    QCOMPARE(roles.size(), kRowsPerSample);
    const Theme::Sample* samples = Theme::auditSamples(nullptr);
    qsizetype line = 2;
    for (const char* mode : {"TERANG", "GELAP"}) {
        for (int sample = 0; sample < kSampleCount; ++sample) {
            for (const QByteArray& role : roles) {
                const QByteArrayList columns = lines.value(line++).split('\t');
                QCOMPARE(columns.mid(0, 3), (QByteArrayList{mode, samples[sample].hex, role}));
                QCOMPARE(columns.size(), 4);
                QVERIFY2(QRegularExpression(QStringLiteral("^#[0-9a-f]{6}$"))
                             .match(QString::fromLatin1(columns.at(3)))
                             .hasMatch(),
                         columns.at(3).constData());
            }
        }
    }
}

void ThemeAuditTest::pathThatCantBeWritten_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("in no directory") << QDir(TestHome::path()).filePath("none/colours.txt");
    QTest::newRow("a directory") << TestHome::path();
    QTest::newRow("empty") << QString();
}

void ThemeAuditTest::pathThatCantBeWritten()
{
    QFETCH(QString, path);
    const LogOfAudit log;
    Theme::auditColor(path);
    QVERIFY2(log.lines().contains("WARN AUDIT WARNA GAGAL: tidak bisa menulis " + path),
             qPrintable(log.lines().join('\n')));
    QVERIFY(!log.lines().join('\n').contains("ditulis ke"));
}

void ThemeAuditTest::olderReportIsReplaced()
{
    QFile older(outPath());
    QVERIFY(older.open(QIODevice::WriteOnly));
    older.write(QByteArray(100000, 'x'));
    older.close();
    Theme::auditColor(outPath());
    QCOMPARE(linesOf(outPath()).size(), 2 + 2 * kSampleCount * kRowsPerSample);
}

void ThemeAuditTest::contrastReport()
{
    const LogOfAudit log;
    Theme::auditContrast();
    const QStringList& lines = log.lines();
    // A heading for each mode, and for each sample its name and four pairs.
    QCOMPARE(lines.size(), 2 * (1 + kSampleCount * 5) + 1);
    QCOMPARE(lines.at(0), QStringLiteral("=== AUDIT KONTRAS -- mode TERANG ==="));
    QCOMPARE(lines.at(1), QStringLiteral("  biru bawaan #0284c7"));
    const QString first =
        QStringLiteral("      onKey                    #0a6ba1 #237aaa  teks #ffffff  =  4.73 "
                       "OK      (putih 4.73 / hitam 3.63)");
    QCOMPARE(lines.at(2), first);
    for (int i = 0; i < 4; ++i) {
        const QStringList labels{"onKey", "onSurface di kontrol", "onPrimary",
                                 "onSurface di kotak isian"};
        QVERIFY2(lines.at(2 + i).trimmed().startsWith(labels.at(i) + ' '),
                 qPrintable(lines.at(2 + i)));
    }
    QCOMPARE(lines.at(1 + kSampleCount * 5), QStringLiteral("=== AUDIT KONTRAS -- mode GELAP ==="));
    // What the palette promises.
    QCOMPARE(lines.constLast(),
             QStringLiteral("=== AUDIT SELESAI -- pelanggaran tersisa setelah onColorFor: 0 ==="));
}

void ThemeAuditTest::contrastLine_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("end");
    // Black on white is 21; #767676 on it 4.54, #777777 4.48, #949494 3.03, #959595 2.996.
    QTest::newRow("one background, named once")
        << "#ffffff"
        << "#ffffff"
        << "#000000"
        << "#ffffff          teks #000000  =  21.00 OK      (putih 1.00 / hitam 21.00)";
    QTest::newRow("the worse of two counts")
        << "#ffffff"
        << "#767676"
        << "#000000"
        << "#ffffff #767676  teks #000000  =  4.62 OK      (putih 1.00 / hitam 4.62)";
    QTest::newRow("just enough")
        << "#ffffff"
        << "#ffffff"
        << "#767676"
        << "#ffffff          teks #767676  =  4.54 OK      (putih 1.00 / hitam 21.00)";
    QTest::newRow("just too little")
        << "#ffffff"
        << "#ffffff"
        << "#777777"
        << "#ffffff          teks #777777  =  4.48 tipis   (putih 1.00 / hitam 21.00)";
    QTest::newRow("just enough for an icon")
        << "#ffffff"
        << "#ffffff"
        << "#949494"
        << "#ffffff          teks #949494  =  3.03 tipis   (putih 1.00 / hitam 21.00)";
    QTest::newRow("not even for an icon")
        << "#ffffff"
        << "#ffffff"
        << "#959595"
        << "#ffffff          teks #959595  =  3.00 GAGAL   (putih 1.00 / hitam 21.00)";
}

void ThemeAuditTest::contrastLine()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(QString, text);
    const QString line = ThemeAudit::pairLine({QLatin1String("onKey"), a, b, text});
    QVERIFY(line.startsWith(QStringLiteral("      onKey  ")));
    QTEST(line.mid(line.indexOf('#')), "end");
}

// Worked out apart from the program: the former colours by the HSL formula, the present ones from
// the stored table, the ratios by the formula of WCAG.
void ThemeAuditTest::sweepRows_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("seed");
    QTest::addColumn<QList<double>>("now");
    QTest::addColumn<QList<double>>("before");
    QTest::newRow("yellow, light")
        << kForceLight << "#ffff00" << QList<double>{4.6665, 10.3854, 10.8092, 5.7991, 13.8783}
        << QList<double>{2.0514, 1.3694, 2.9600, 1.7207, 4.2116};
    QTest::newRow("violet, dark") << kForceDark << "#8b5cf6"
                                  << QList<double>{8.2534, 8.8436, 9.3993, 9.8787, 8.1905}
                                  << QList<double>{3.0097, 10.1637, 11.6622, 10.2461, 10.2937};
}

void ThemeAuditTest::sweepRows()
{
    QFETCH(int, mode);
    QFETCH(QString, seed);
    QFETCH(QList<double>, now);
    QFETCH(QList<double>, before);
    Theme::forceTheme = mode;
    Theme::seedColorHex = seed;
    const auto rows = ThemeAudit::sweepRows();
    QCOMPARE(qsizetype(rows.size()), now.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto verifyRatio = [i](double actual, double expected) {
            QVERIFY2(qAbs(actual - expected) < 0.0001,
                     qPrintable(QStringLiteral("%1: %2 instead of %3")
                                    .arg(QLatin1String(ThemeAudit::kNames.at(i)))
                                    .arg(actual)
                                    .arg(expected)));
        };
        verifyRatio(rows.at(i).now, now.at(qsizetype(i)));
        verifyRatio(rows.at(i).before, before.at(qsizetype(i)));
    }
}

void ThemeAuditTest::tally_data()
{
    using Ratios = QList<QPair<double, double>>; // of one hue after the other: now, before
    QTest::addColumn<Ratios>("ratios");
    QTest::addColumn<int>("below");
    QTest::addColumn<int>("regressions");
    QTest::addColumn<QString>("line");
    QTest::newRow("all well") << Ratios{{5.0, 4.0}, {4.6, 9.0}} << 0 << 0
                              << "   onKey di bawah 4.5: 0/360  -   terburuk 4.60 @hue 1   "
                                 "kemunduran: 0";
    QTest::newRow("exactly the threshold") << Ratios{{4.5, 9.0}} << 0 << 0
                                           << "   onKey di bawah 4.5: 0/360  -   terburuk 4.50 "
                                              "@hue 0   kemunduran: 0";
    QTest::newRow("below, but better than before")
        << Ratios{{9.0, 1.0}, {4.0, 3.0}, {8.0, 1.0}, {4.2, 4.2}} << 2 << 0
        << "   onKey di bawah 4.5: 2/360  hue 1..3   terburuk 4.00 @hue 1   kemunduran: 0";
    QTest::newRow("a loss too small to count")
        << Ratios{{4.0, 4.004}} << 1 << 0
        << "   onKey di bawah 4.5: 1/360  hue 0..0   terburuk 4.00 @hue 0   kemunduran: 0";
    QTest::newRow("losses")
        << Ratios{{4.0, 4.1}, {4.2, 5.7}, {3.9, 4.4}} << 3 << 3
        << "   onKey di bawah 4.5: 3/360  hue 0..2   terburuk 3.90 @hue 2   kemunduran: 3 "
           "(terparah -1.50 @hue 1)";
}

void ThemeAuditTest::tally()
{
    using Ratios = QList<QPair<double, double>>;
    QFETCH(Ratios, ratios);
    ThemeAudit::RowTally tally;
    for (qsizetype hue = 0; hue < ratios.size(); ++hue)
        tally.add(int(hue), {ratios.at(hue).first, ratios.at(hue).second});
    QTEST(tally.below(), "below");
    QTEST(tally.regressions(), "regressions");
    QTEST(tally.line("onKey"), "line");
}

void ThemeAuditTest::sweepReport()
{
    const LogOfAudit log;
    Theme::auditContrastSweep();
    const QStringList& lines = log.lines();
    QCOMPARE(lines.size(), 4 * 6 + 2);
    const QStringList rounds{"TERANG, saturasi 255", "TERANG, saturasi 128", "GELAP, saturasi 255",
                             "GELAP, saturasi 128"};
    for (int round = 0; round < rounds.size(); ++round) {
        QCOMPARE(lines.at(6 * round),
                 QStringLiteral("=== SAPUAN -- mode %1 (360 hue) ===").arg(rounds.at(round)));
        for (int row = 0; row < ThemeAudit::SweepRows; ++row) {
            const QString& line = lines.at(6 * round + 1 + row);
            QVERIFY2(
                line.startsWith(QStringLiteral("   %1 di bawah 4.5: 0/360  -   terburuk ")
                                    .arg(QLatin1String(ThemeAudit::kNames.at(std::size_t(row))))),
                qPrintable(line));
        }
    }
    // What the palette promises.
    QCOMPARE(lines.at(24), QStringLiteral("=== SAPUAN SELESAI -- 5760 pasangan | di bawah ambang: "
                                          "0 | KEMUNDURAN: 0 ==="));
    QCOMPARE(lines.at(25), QStringLiteral("    (kemunduran WAJIB 0; sisa di bawah ambang = "
                                          "pekerjaan latar, Bagian 7)"));
}

QTEST_MAIN(ThemeAuditTest)
#include "tst_themeaudit.moc"
