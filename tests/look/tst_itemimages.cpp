// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ItemImages.h"
#include "Pictures.h"
#include "Pixels.h"
#include "TestHome.h"

#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QTest>

#include <algorithm>

namespace
{

constexpr QSize kBox(20, 20);

using State = ItemImages::State;

QString pictureFile(const QString& name, const QColor& color, const QSize& size = {50, 50})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    const QString path = TestHome::writeDataFile(name, {});
    if (!image.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QColor middleOf(const QPixmap& pixmap)
{
    const QImage image = pixmap.toImage();
    return image.isNull() ? QColor() : image.pixelColor(image.rect().center());
}

/// A window that shows pictures.
class Canvas : public QWidget
{
public:
    Canvas()
    {
        ItemImages::repaintOnArrival(this);
        show();
        if (!QTest::qWaitForWindowExposed(this))
            qFatal("no window");
    }
};

} // namespace

class ItemImagesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void firstAskedIsPending();
    void state_data();
    void state();
    void stringsWithoutAPictureAreKnownAtOnce_data();
    void stringsWithoutAPictureAreKnownAtOnce();
    void picturesAreScaledForTheScreen_data();
    void picturesAreScaledForTheScreen();
    void boxOfNoSizeIsHarmless();
    void picturesAreKept();
    void everyPictureArrives();
    void forgottenQuestionsAreAnsweredWhenAskedAgain();
    void cacheIsBounded();
    void changesAreNoticed();
    void missingFileThatAppearsIsNoticed();
    void widgetsAreRepainted();
    void widgetThatIsGoneIsNotMissed();
};

void ItemImagesTest::firstAskedIsPending()
{
    const QString path = pictureFile(QStringLiteral("first.png"), Qt::red);
    QCOMPARE(ItemImages::find(path, kBox, 1.0).state, State::Pending);
    QVERIFY(ItemImages::find(path, kBox, 1.0).pixmap.isNull());
    const ItemImages::Picture picture = pictureOnceRead(path, kBox);
    QCOMPARE(picture.state, State::Ready);
    QCOMPARE(middleOf(picture.pixmap), QColor(Qt::red));
}

void ItemImagesTest::state_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<State>("expected");
    QTest::newRow("picture") << pictureFile("a.png", Qt::red) << State::Ready;
    QTest::newRow("text") << TestHome::writeDataFile("b.png", "text") << State::Unreadable;
    QTest::newRow("directory") << TestHome::dataDir() << State::Unreadable;
    QTest::newRow("missing") << "/no/such/picture.png" << State::None;
    QTest::newRow("token in capitals") << "GLYPH:e250" << State::None;
}

void ItemImagesTest::state()
{
    QFETCH(QString, path);
    const ItemImages::Picture picture = pictureOnceRead(path, kBox);
    QTEST(picture.state, "expected");
    QCOMPARE(picture.pixmap.isNull(), picture.state != State::Ready);
}

void ItemImagesTest::stringsWithoutAPictureAreKnownAtOnce_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::newRow("empty") << QString();
    QTest::newRow("token") << "glyph:e250";
    QTest::newRow("broken token") << "glyph:";
    QTest::newRow("of a megabyte") << QString(1 << 20, u'x');
}

void ItemImagesTest::stringsWithoutAPictureAreKnownAtOnce()
{
    QFETCH(QString, iconPath);
    QCOMPARE(ItemImages::find(iconPath, kBox, 1.0).state, State::None);
}

void ItemImagesTest::picturesAreScaledForTheScreen_data()
{
    QTest::addColumn<QSize>("file");
    QTest::addColumn<qreal>("ratio");
    QTest::addColumn<Qt::AspectRatioMode>("mode");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("1") << QSize(100, 100) << 1.0 << Qt::KeepAspectRatio << QSize(20, 20);
    QTest::newRow("1.25") << QSize(100, 100) << 1.25 << Qt::KeepAspectRatio << QSize(25, 25);
    QTest::newRow("1.33") << QSize(100, 100) << 1.33 << Qt::KeepAspectRatio << QSize(26, 26);
    QTest::newRow("2") << QSize(100, 100) << 2.0 << Qt::KeepAspectRatio << QSize(40, 40);
    QTest::newRow("2, wide") << QSize(100, 50) << 2.0 << Qt::KeepAspectRatio << QSize(40, 20);
    QTest::newRow("stretched") << QSize(100, 50) << 2.0 << Qt::IgnoreAspectRatio << QSize(40, 40);
}

void ItemImagesTest::picturesAreScaledForTheScreen()
{
    QFETCH(QSize, file);
    QFETCH(qreal, ratio);
    QFETCH(Qt::AspectRatioMode, mode);
    const QString name = QStringLiteral("scaled_%1.png").arg(file.height());
    const QString path = pictureFile(name, Qt::red, file);
    const ItemImages::Picture picture = pictureOnceRead(path, kBox, ratio, mode);
    QTEST(picture.pixmap.size(), "pixels");
    QCOMPARE(picture.pixmap.devicePixelRatio(), ratio);
}

void ItemImagesTest::boxOfNoSizeIsHarmless()
{
    const QString path = pictureFile(QStringLiteral("small.png"), Qt::red);
    for (const QSize& box : {QSize(0, 0), QSize(-5, 20), QSize()})
        QCOMPARE(pictureOnceRead(path, box).state, State::Ready);
}

void ItemImagesTest::picturesAreKept()
{
    const QString path = pictureFile(QStringLiteral("kept.png"), Qt::red);
    const qint64 key = pictureOnceRead(path, kBox).pixmap.cacheKey();
    QCOMPARE(ItemImages::find(path, kBox, 1.0).pixmap.cacheKey(), key);
    // For another box it is another picture, and doesn't push this one out.
    QCOMPARE(pictureOnceRead(path, {30, 30}).pixmap.size(), QSize(30, 30));
    QCOMPARE(ItemImages::find(path, kBox, 1.0).pixmap.cacheKey(), key);
}

void ItemImagesTest::everyPictureArrives()
{
    QStringList paths;
    for (int i = 0; i < ItemImages::MaxWaiting; ++i)
        paths << pictureFile(QStringLiteral("many_%1.png").arg(i), QColor(i, 0, 0), {2, 2});
    for (const QString& path : paths)
        ItemImages::find(path, kBox, 1.0);
    const auto isThere = [](const QString& path) {
        return ItemImages::find(path, kBox, 1.0).state == State::Ready;
    };
    constexpr int kPatienceMs = 30000; // of so many files, on a busy machine
    QTRY_VERIFY_WITH_TIMEOUT(std::all_of(paths.begin(), paths.end(), isThere), kPatienceMs);
    for (int i = 0; i < paths.size(); ++i)
        QCOMPARE(middleOf(pictureOnceRead(paths.at(i), kBox).pixmap), QColor(i, 0, 0));
}

void ItemImagesTest::forgottenQuestionsAreAnsweredWhenAskedAgain()
{
    const QString path = pictureFile(QStringLiteral("forgotten.png"), Qt::green);
    ItemImages::find(path, kBox, 1.0);
    for (int i = 0; i < 3 * ItemImages::MaxWaiting; ++i)
        ItemImages::find(QStringLiteral("/no/such/picture_%1.png").arg(i), kBox, 1.0);
    QCOMPARE(middleOf(pictureOnceRead(path, kBox).pixmap), QColor(Qt::green));
}

void ItemImagesTest::cacheIsBounded()
{
    const QString path = pictureFile(QStringLiteral("bounded.png"), Qt::blue);
    pictureOnceRead(path, kBox);
    // Each takes a quarter of the room.
    const int side = 1024;
    QVERIFY(4 * side * side * 4 >= ItemImages::MaxCacheBytes);
    for (int i = 0; i < 5; ++i) {
        const QSize box(side - i, side);
        QCOMPARE(pictureOnceRead(path, box, 1.0, Qt::IgnoreAspectRatio).pixmap.size(), box);
    }
    QCOMPARE(ItemImages::find(path, kBox, 1.0).state, State::Pending);
    QCOMPARE(middleOf(pictureOnceRead(path, kBox).pixmap), QColor(Qt::blue));
}

void ItemImagesTest::changesAreNoticed()
{
    const QString path = pictureFile(QStringLiteral("changing.png"), Qt::red, {50, 50});
    QCOMPARE(middleOf(pictureOnceRead(path, kBox).pixmap), QColor(Qt::red));
    pictureFile(QStringLiteral("changing.png"), Qt::blue, {51, 50});
    QTRY_COMPARE(middleOf(ItemImages::find(path, kBox, 1.0).pixmap), QColor(Qt::blue));
    QVERIFY(QFile::remove(path));
    QTRY_COMPARE(ItemImages::find(path, kBox, 1.0).state, State::None);
}

void ItemImagesTest::missingFileThatAppearsIsNoticed()
{
    const QString path = TestHome::dataDir() + QStringLiteral("/appearing.png");
    QCOMPARE(pictureOnceRead(path, kBox).state, State::None);
    pictureFile(QStringLiteral("appearing.png"), Qt::red);
    QTRY_COMPARE(ItemImages::find(path, kBox, 1.0).state, State::Ready);
}

void ItemImagesTest::widgetsAreRepainted()
{
    Canvas canvas;
    const QString path = pictureFile(QStringLiteral("repainted.png"), Qt::red);
    const PaintWatcher watcher(
        &canvas, [&path] { return ItemImages::find(path, kBox, 1.0).state == State::Ready; });
    canvas.update(); // by which it asks for the first time
    QTRY_VERIFY(watcher.wasTrue());
}

void ItemImagesTest::widgetThatIsGoneIsNotMissed()
{
    {
        Canvas canvas;
        ItemImages::find(pictureFile(QStringLiteral("gone.png"), Qt::red), kBox, 1.0);
    }
    const QString path = pictureFile(QStringLiteral("after.png"), Qt::red);
    QCOMPARE(pictureOnceRead(path, kBox).state, State::Ready);
}

QTEST_MAIN(ItemImagesTest)
#include "tst_itemimages.moc"
