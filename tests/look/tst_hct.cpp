// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Hct.h"
#include "TestHome.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace
{

// Wide enough for the last digits of another math library, far below any wrong constant.
constexpr double kTolerance = 1e-6;
constexpr int kOpaque = static_cast<int>(0xFF000000U);

int opaque(int rgb)
{
    return kOpaque | rgb;
}

int rgbOf(int argb)
{
    return argb & 0xFFFFFF;
}

bool isNear(double actual, double expected, double tolerance = kTolerance)
{
    if (std::abs(actual - expected) <= tolerance)
        return true;
    qWarning("got %.12f, expected %.12f", actual, expected);
    return false;
}

bool isGrey(int argb)
{
    return Hct::redOf(argb) == Hct::greenOf(argb) && Hct::greenOf(argb) == Hct::blueOf(argb);
}

} // namespace

// The expected numbers were worked out by a second, separate implementation of the colour model.
class HctTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void linearized_data();
    void linearized();
    void delinearized_data();
    void delinearized();
    void channelsSurviveTheRoundTrip();
    void lstarAndY_data();
    void lstarAndY();
    void lstarContinuesAtTheThreshold();
    void packing();
    void packingMasksChannels();
    void xyz();
    void xyzOutsideTheScreenIsClipped();
    void sanitizeDegrees_data();
    void sanitizeDegrees();
    void sgn();
    void viewingConditions();
    void oneSetOfViewingConditions();
    void appearance_data();
    void appearance();
    void fromArgb();
    void inverseGivesTheColourBack();
    void inverseOfZeroLightness();
    void inverseTakesAnyHue();
    void uniformCoordinates();
    void distance();
    void findCamByJFinds();
    void findCamByJRefuses();
    void solve_data();
    void solve();
    void nearGreysNeverSearch_data();
    void nearGreysNeverSearch();
    void solveGivesScreenColoursBack();
    void solveKeepsToneAndHue_data();
    void solveKeepsToneAndHue();
};

void HctTest::linearized_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<double>("linear");
    QTest::newRow("black") << 0 << 0.0;
    QTest::newRow("darkest") << 1 << 0.03035269835488375;
    QTest::newRow("last of the straight part") << 10 << 0.3035269835488375;
    QTest::newRow("first of the curve") << 11 << 0.3346535763899161;
    QTest::newRow("middle") << 128 << 21.586050011389926;
    QTest::newRow("white") << 255 << 100.0;
}

void HctTest::linearized()
{
    QFETCH(int, channel);
    QFETCH(double, linear);
    QVERIFY(isNear(Hct::linearized(channel), linear));
}

void HctTest::delinearized_data()
{
    QTest::addColumn<double>("linear");
    QTest::addColumn<int>("channel");
    QTest::newRow("black") << 0.0 << 0;
    QTest::newRow("white") << 100.0 << 255;
    QTest::newRow("middle grey of L* 50") << 18.418651851244416 << 119;
    QTest::newRow("straight part, rounded down") << 0.0151 << 0;
    QTest::newRow("straight part, rounded up") << 0.0152 << 1;
    QTest::newRow("below black") << -0.001 << 0;
    QTest::newRow("far below black") << -1e6 << 0;
    QTest::newRow("beyond what a negative integer holds") << -1e80 << 0;
    QTest::newRow("infinitely dark") << -std::numeric_limits<double>::infinity() << 0;
    QTest::newRow("above white") << 100.5 << 255;
    QTest::newRow("far above white") << 1e6 << 255;
    QTest::newRow("beyond what an integer holds") << 1e80 << 255;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 255;
}

void HctTest::delinearized()
{
    QFETCH(double, linear);
    QTEST(Hct::delinearized(linear), "channel");
}

void HctTest::channelsSurviveTheRoundTrip()
{
    for (int channel = 0; channel <= 255; ++channel)
        QCOMPARE(Hct::delinearized(Hct::linearized(channel)), channel);
}

void HctTest::lstarAndY_data()
{
    QTest::addColumn<double>("lstar");
    QTest::addColumn<double>("y");
    QTest::newRow("black") << 0.0 << 0.0;
    QTest::newRow("straight part") << 4.0 << 0.44282258395178153;
    QTest::newRow("at the threshold") << 8.0 << 0.8856451679035631;
    QTest::newRow("just above the threshold") << 8.1 << 0.8967619239206199;
    QTest::newRow("middle") << 50.0 << 18.418651851244416;
    QTest::newRow("light") << 75.0 << 48.2781043708229;
    QTest::newRow("white") << 100.0 << 100.0;
}

void HctTest::lstarAndY()
{
    QFETCH(double, lstar);
    QFETCH(double, y);
    QVERIFY(isNear(Hct::yFromLstar(lstar), y));
    QVERIFY(isNear(Hct::lstarFromY(y), lstar));
}

void HctTest::lstarContinuesAtTheThreshold()
{
    const double threshold = 100.0 * 216.0 / 24389.0;
    QVERIFY(isNear(Hct::lstarFromY(threshold), 8.0));
    QVERIFY(isNear(Hct::lstarFromY(threshold + 1e-9), 8.0));
}

void HctTest::packing()
{
    const int argb = Hct::argbFromRgb(0x02, 0x84, 0xC7);
    QCOMPARE(argb, opaque(0x0284C7));
    QVERIFY(argb < 0); // alpha 255 is the sign bit of the packed int
    QCOMPARE(Hct::redOf(argb), 0x02);
    QCOMPARE(Hct::greenOf(argb), 0x84);
    QCOMPARE(Hct::blueOf(argb), 0xC7);
    QCOMPARE(Hct::redOf(opaque(0xFF0000)), 0xFF);
}

void HctTest::packingMasksChannels()
{
    QCOMPARE(Hct::argbFromRgb(0x102, 0x384, -1), opaque(0x0284FF));
}

void HctTest::xyz()
{
    double xyz[3] = {-1.0, -1.0, -1.0};
    Hct::xyzFromArgb(opaque(0x0284C7), xyz);
    QVERIFY(isNear(xyz[0], 18.586169866142782));
    QVERIFY(isNear(xyz[1], 20.63895550653833));
    QVERIFY(isNear(xyz[2], 57.02730951580696));
    QCOMPARE(Hct::argbFromXyz(xyz[0], xyz[1], xyz[2]), opaque(0x0284C7));
}

void HctTest::xyzOutsideTheScreenIsClipped()
{
    QCOMPARE(Hct::argbFromXyz(1000.0, 1000.0, 1000.0), opaque(0xFFFFFF));
    QCOMPARE(Hct::argbFromXyz(-10.0, -10.0, -10.0), opaque(0x000000));
    // No light but X: red overflows, green is below black.
    QCOMPARE(Hct::argbFromXyz(50.0, 0.0, 0.0), opaque(0xFF002E));
}

void HctTest::sanitizeDegrees_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("sane");
    QTest::newRow("inside") << 246.04 << 246.04;
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("full circle") << 360.0 << 0.0;
    QTest::newRow("just below the full circle") << 359.5 << 359.5;
    QTest::newRow("negative") << -30.0 << 330.0;
    QTest::newRow("beyond") << 390.0 << 30.0;
    QTest::newRow("minus a full circle") << -360.0 << 0.0;
    QTest::newRow("many turns back") << -1085.0 << 355.0;
}

void HctTest::sanitizeDegrees()
{
    QFETCH(double, degrees);
    QFETCH(double, sane);
    QVERIFY(isNear(Hct::sanitizeDegrees(degrees), sane));
}

void HctTest::sgn()
{
    QCOMPARE(Hct::sgn(-0.25), -1.0);
    QCOMPARE(Hct::sgn(0.0), 0.0);
    QCOMPARE(Hct::sgn(1e-9), 1.0);
}

void HctTest::viewingConditions()
{
    const Hct::ViewingConditions vc = Hct::ViewingConditions::make();
    QVERIFY(isNear(vc.aw, 29.980997194447337));
    QVERIFY(isNear(vc.nbb, 1.0169191804458755));
    QVERIFY(isNear(vc.ncb, 1.0169191804458755));
    QVERIFY(isNear(vc.c, 0.69));
    QVERIFY(isNear(vc.nc, 1.0));
    QVERIFY(isNear(vc.n, 0.18418651851244416));
    QVERIFY(isNear(vc.fl, 0.3884814537800353));
    QVERIFY(isNear(vc.fLRoot, 0.7894826179304937));
    QVERIFY(isNear(vc.z, 1.909169568483652));
    QVERIFY(isNear(vc.rgbD[0], 1.02117770275752));
    QVERIFY(isNear(vc.rgbD[1], 0.9863077294280124));
    QVERIFY(isNear(vc.rgbD[2], 0.9339605082802299));
}

void HctTest::oneSetOfViewingConditions()
{
    QCOMPARE(&Hct::ViewingConditions::standard(), &Hct::ViewingConditions::standard());
    QCOMPARE(Hct::ViewingConditions::standard().aw, Hct::ViewingConditions::make().aw);
}

void HctTest::appearance_data()
{
    QTest::addColumn<int>("rgb");
    QTest::addColumn<double>("hue");
    QTest::addColumn<double>("chroma");
    QTest::addColumn<double>("j");
    QTest::addColumn<double>("m");
    QTest::addColumn<double>("s");
    QTest::addColumn<double>("tone");
    QTest::newRow("default seed") << 0x0284C7 << 246.0390999208 << 51.5444815070 << 41.7821267648
                                  << 40.6934722001 << 63.6238494952 << 52.5520680324;
    QTest::newRow("red") << 0xFF0000 << 27.4082251372 << 113.3578873938 << 46.4451854552
                         << 89.4940817027 << 91.8897746466 << 53.2328817858;
    QTest::newRow("green") << 0x00FF00 << 142.1398935076 << 108.4100605203 << 79.3315766320
                           << 85.5878583896 << 78.6049257986 << 87.7370334735;
    QTest::newRow("blue") << 0x0000FF << 282.7881795619 << 87.2306936803 << 25.4656293564
                          << 68.8671164106 << 93.6747514901 << 32.3025866672;
    QTest::newRow("yellow") << 0xFFD400 << 95.4247326827 << 63.9157340967 << 81.2478988142
                            << 50.4603610816 << 59.9966975918 << 86.1796485787;
    QTest::newRow("a hue where the eccentricity wraps")
        << 0xFF0080 << 2.5451177632 << 102.7368929741 << 48.7056667168 << 81.1089912232
        << 86.4459856715 << 54.8849060185;
    QTest::newRow("a grey keeps a faint chroma")
        << 0x808080 << 209.4938255696 << 1.8960216150 << 43.4725281031 << 1.4968761083
        << 12.0821551364 << 53.5850134522;
    QTest::newRow("white") << 0xFFFFFF << 209.4919594738 << 2.8690352037 << 100.0000000990
                           << 2.2650534235 << 12.0682536198 << 100.0;
    QTest::newRow("darkest red") << 0x010000 << 27.2096931642 << 7.7428268483 << 0.5349534164
                                 << 6.1128272104 << 73.3073081228 << 0.0582895625;
    QTest::newRow("black") << 0x000000 << 0.0 << 0.0 << 0.0 << 0.0 << 0.0 << 0.0;
}

void HctTest::appearance()
{
    QFETCH(int, rgb);
    QFETCH(double, hue);
    QFETCH(double, chroma);
    QFETCH(double, j);
    QFETCH(double, m);
    QFETCH(double, s);
    QFETCH(double, tone);
    const Hct::Cam cam = Hct::Cam::fromArgb(opaque(rgb));
    QVERIFY(isNear(cam.hue, hue));
    QVERIFY(isNear(cam.chroma, chroma));
    QVERIFY(isNear(cam.j, j));
    QVERIFY(isNear(cam.m, m));
    QVERIFY(isNear(cam.s, s));
    QVERIFY(isNear(Hct::lstarFromArgb(opaque(rgb)), tone));
}

void HctTest::fromArgb()
{
    const int translucent = 0x400284C7; // alpha plays no part but is handed through
    const Hct::Color seed = Hct::fromArgb(translucent);
    QCOMPARE(seed.argb, translucent);
    QVERIFY(isNear(seed.hue, 246.04, 0.005));
    QVERIFY(isNear(seed.chroma, 51.54, 0.005));
    QVERIFY(isNear(seed.tone, 52.55, 0.005));
}

void HctTest::inverseGivesTheColourBack()
{
    constexpr int kStep = 15; // 17 * 15 = 255, so every edge of the colour cube is met
    for (int red = 0; red <= 255; red += kStep)
        for (int green = 0; green <= 255; green += kStep)
            for (int blue = 0; blue <= 255; blue += kStep) {
                const int argb = Hct::argbFromRgb(red, green, blue);
                const Hct::Cam cam = Hct::Cam::fromArgb(argb);
                QCOMPARE(Hct::Cam::toArgb(cam.j, cam.chroma, cam.hue), argb);
            }
}

void HctTest::inverseOfZeroLightness()
{
    QCOMPARE(Hct::Cam::toArgb(0.0, 0.0, 0.0), opaque(0x000000));
    QCOMPARE(Hct::Cam::toArgb(0.0, 50.0, 120.0), opaque(0x000000));
}

void HctTest::inverseTakesAnyHue()
{
    const int expected = Hct::Cam::toArgb(50.0, 30.0, 330.0);
    QCOMPARE(Hct::Cam::toArgb(50.0, 30.0, -30.0), expected);
    QCOMPARE(Hct::Cam::toArgb(50.0, 30.0, 690.0), expected);
    QVERIFY(Hct::Cam::toArgb(50.0, 30.0, 30.0) != expected);
}

void HctTest::uniformCoordinates()
{
    const Hct::Cam seed = Hct::Cam::fromArgb(opaque(0x0284C7));
    QVERIFY(isNear(seed.jstar(), 54.956282861014564));
    QVERIFY(isNear(seed.mstar(), 28.788826689877887));
    QVERIFY(isNear(seed.astar(), -11.691520359829301));
    QVERIFY(isNear(seed.bstar(), -26.3078865334242));
}

void HctTest::distance()
{
    const Hct::Cam seed = Hct::Cam::fromArgb(opaque(0x0284C7));
    const Hct::Cam red = Hct::Cam::fromArgb(opaque(0xFF0000));
    QCOMPARE(seed.distance(seed), 0.0);
    QVERIFY(isNear(seed.distance(red), 21.15907578152282));
    QVERIFY(isNear(red.distance(seed), 21.15907578152282));
}

void HctTest::findCamByJFinds()
{
    Hct::Cam cam;
    QVERIFY(Hct::detail::findCamByJ(246.04, 40.0, 52.55, &cam));
    const int argb = Hct::Cam::toArgb(cam.j, cam.chroma, cam.hue);
    QVERIFY(isNear(Hct::lstarFromArgb(argb), 52.55, 0.2));
    QVERIFY(isNear(cam.hue, 246.04, 1.0));
    QVERIFY(isNear(cam.chroma, 40.0, 1.0));
}

void HctTest::findCamByJRefuses()
{
    Hct::Cam cam{1.0, 2.0, 3.0, 4.0, 5.0};
    // No screen shows so strong a green so light.
    QVERIFY(!Hct::detail::findCamByJ(142.0, 150.0, 97.0, &cam));
    QCOMPARE(cam.hue, 1.0);
    QCOMPARE(cam.chroma, 2.0);
    QCOMPARE(cam.j, 3.0);
    QCOMPARE(cam.m, 4.0);
    QCOMPARE(cam.s, 5.0);
}

void HctTest::solve_data()
{
    QTest::addColumn<double>("hue");
    QTest::addColumn<double>("chroma");
    QTest::addColumn<double>("tone");
    QTest::addColumn<int>("rgb");
    QTest::newRow("accent of the default seed") << 246.04 << 49.07 << 43.0 << 0x006BA4;
    QTest::newRow("fits at once") << 0.0 << 40.0 << 50.0 << 0xAD5F79;
    QTest::newRow("hue 360 is hue 0") << 360.0 << 40.0 << 50.0 << 0xAD5F79;
    QTest::newRow("hue one turn back") << -360.0 << 40.0 << 50.0 << 0xAD5F79;
    QTest::newRow("error red, light") << 22.5 << 84.0 << 37.0 << 0xB00D1D;
    QTest::newRow("error red, dark, loses chroma") << 22.5 << 84.0 << 80.01 << 0xFFB3AB;
    QTest::newRow("beyond the screen: green") << 120.0 << 200.0 << 60.0 << 0x839A00;
    QTest::newRow("beyond the screen: cyan") << 200.0 << 200.0 << 50.0 << 0x008489;
    QTest::newRow("beyond the screen: yellow") << 111.0 << 200.0 << 95.0 << 0xFBF800;
    QTest::newRow("beyond the screen: pink") << 0.0 << 200.0 << 50.0 << 0xE7007A;
    QTest::newRow("clips to the very corner: red") << 27.41 << 200.0 << 53.23 << 0xFF0000;
    QTest::newRow("clips to the very corner: blue") << 282.79 << 200.0 << 32.3 << 0x0000FF;
    QTest::newRow("absurd chroma") << 200.0 << 1e9 << 50.0 << 0x008489;
    QTest::newRow("absurd chroma, light") << 0.0 << 1e9 << 90.0 << 0xFFD9E4;
    QTest::newRow("tone 99.4 is still searched") << 120.0 << 30.0 << 99.4 << 0xFEFFE0;
    QTest::newRow("tone 0.5 is still searched") << 0.0 << 20.0 << 0.5 << 0x080002;
    QTest::newRow("nothing found: grey") << 45.0 << 5.0 << 0.5 << 0x020202;
    QTest::newRow("chroma 1 is searched") << 246.0 << 1.0 << 50.0 << 0x787777;
}

void HctTest::solve()
{
    QFETCH(double, hue);
    QFETCH(double, chroma);
    QFETCH(double, tone);
    QFETCH(int, rgb);
    QCOMPARE(QString::number(rgbOf(Hct::solve(hue, chroma, tone)), 16), QString::number(rgb, 16));
    QCOMPARE(Hct::solve(hue, chroma, tone) & kOpaque, kOpaque);
}

void HctTest::nearGreysNeverSearch_data()
{
    QTest::addColumn<double>("chroma");
    QTest::addColumn<double>("tone");
    QTest::addColumn<int>("rgb");
    QTest::newRow("half a chroma") << 0.5 << 50.0 << 0x777777;
    QTest::newRow("chroma just below 1") << 0.999 << 50.0 << 0x777777;
    QTest::newRow("no chroma") << 0.0 << 75.0 << 0xB9B9B9;
    QTest::newRow("negative chroma") << -20.0 << 50.0 << 0x777777;
    QTest::newRow("tone 100") << 50.0 << 100.0 << 0xFFFFFF;
    QTest::newRow("tone 99.6 rounds to 100") << 50.0 << 99.6 << 0xFEFEFE;
    QTest::newRow("tone 99.5 rounds to 100") << 50.0 << 99.5 << 0xFEFEFE;
    QTest::newRow("tone above 100") << 50.0 << 101.0 << 0xFFFFFF;
    QTest::newRow("tone 0") << 50.0 << 0.0 << 0x000000;
    QTest::newRow("tone 0.4 rounds to 0") << 50.0 << 0.4 << 0x010101;
    QTest::newRow("negative tone") << 50.0 << -3.0 << 0x000000;
}

void HctTest::nearGreysNeverSearch()
{
    QFETCH(double, chroma);
    QFETCH(double, tone);
    QFETCH(int, rgb);
    for (const double hue : {0.0, 27.0, 123.0, 246.0, 359.0, -30.0}) {
        QCOMPARE(Hct::solve(hue, chroma, tone), opaque(rgb));
        QCOMPARE(Hct::solve(hue, chroma, tone), Hct::argbFromLstar(tone));
    }
}

void HctTest::solveGivesScreenColoursBack()
{
    for (const int rgb : {0x0284C7, 0xFFD400, 0xFFFF00, 0x7CFC00, 0x00FFFF, 0x22C55E, 0xEF4444,
                          0x8B5CF6, 0xFF0000, 0x00FF00, 0x0000FF, 0xFF00FF, 0x123456, 0xFEDCBA}) {
        const Hct::Color color = Hct::fromArgb(opaque(rgb));
        QCOMPARE(rgbOf(Hct::solve(color.hue, color.chroma, color.tone)), rgb);
    }
}

void HctTest::solveKeepsToneAndHue_data()
{
    QTest::addColumn<double>("chroma");
    QTest::newRow("dull") << 5.0;
    QTest::newRow("ordinary") << 30.0;
    QTest::newRow("beyond most of the screen") << 84.0;
    QTest::newRow("beyond all of it") << 200.0;
}

void HctTest::solveKeepsToneAndHue()
{
    QFETCH(double, chroma);
    for (double hue = 0.0; hue < 360.0; hue += 11.0)
        for (double tone = 2.0; tone <= 98.0; tone += 4.0) {
            const int argb = Hct::solve(hue, chroma, tone);
            QVERIFY(isNear(Hct::lstarFromArgb(argb), tone, 0.5));
            if (isGrey(argb))
                continue;
            const Hct::Cam cam = Hct::Cam::fromArgb(argb);
            const Hct::Cam wanted{hue, cam.chroma, cam.j, cam.m, 0.0};
            QVERIFY(cam.distance(wanted) <= 1.0 + kTolerance);
            QVERIFY(isNear(Hct::lstarFromArgb(argb), tone, 0.2));
        }
}

QTEST_MAIN(HctTest)
#include "tst_hct.moc"
