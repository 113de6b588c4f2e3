// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PictureReader.h"
#include "TestHome.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <optional>

namespace
{

QByteArray png(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, "PNG"))
        qFatal("cannot write a picture");
    return bytes;
}

QImage plainImage(const QSize& size, const QColor& color,
                  QImage::Format format = QImage::Format_RGB32)
{
    QImage image(size, format);
    image.fill(color);
    return image;
}

QString pictureFile(const QString& name, const QImage& image)
{
    return TestHome::writeDataFile(name, png(image));
}

/// What the reader says of a file, asked for a box of 20 x 20.
PictureAnswer answerFor(const QString& path, const std::optional<FileStamp>& known = std::nullopt,
                        Qt::AspectRatioMode mode = Qt::KeepAspectRatio)
{
    PictureReader reader;
    std::optional<PictureAnswer> given;
    QObject::connect(&reader, &PictureReader::answered, &reader,
                     [&given](const PictureAnswer& answer) { given = answer; });
    reader.read({path, {20, 20}, 1.0, mode}, known);
    if (!given)
        qFatal("no answer for %s", qPrintable(path));
    return *given;
}

} // namespace

class PictureReaderTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void size_data();
    void size();
    void scalesAsAPixmapDoes();
    void formatPaintsFast_data();
    void formatPaintsFast();
    void carriesTheRatio();

    void missing_data();
    void missing();
    void noPicture_data();
    void noPicture();
    void pipeHoldsNobodyUp();
    void tooManyPixels();
    void tooLargeFile();

    void unchangedFileIsNotOpened();
    void changedFileIsReadAnew_data();
    void changedFileIsReadAnew();
};

void PictureReaderTest::size_data()
{
    QTest::addColumn<QSize>("file");
    QTest::addColumn<Qt::AspectRatioMode>("mode");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("square") << QSize(50, 50) << Qt::KeepAspectRatio << QSize(20, 20);
    QTest::newRow("wide") << QSize(100, 50) << Qt::KeepAspectRatio << QSize(20, 10);
    QTest::newRow("high") << QSize(50, 100) << Qt::KeepAspectRatio << QSize(10, 20);
    QTest::newRow("a line") << QSize(2000, 1) << Qt::KeepAspectRatio << QSize(20, 1);
    QTest::newRow("tiny") << QSize(2, 2) << Qt::KeepAspectRatio << QSize(20, 20);
    QTest::newRow("stretched") << QSize(100, 50) << Qt::IgnoreAspectRatio << QSize(20, 20);
}

void PictureReaderTest::size()
{
    QFETCH(QSize, file);
    QFETCH(Qt::AspectRatioMode, mode);
    const QString path = pictureFile(QStringLiteral("size.png"), plainImage(file, Qt::red));
    const PictureAnswer answer = answerFor(path, std::nullopt, mode);
    QTEST(answer.image.size(), "expected");
    QCOMPARE(answer.image.pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(answer.isChanged);
    QVERIFY(answer.stamp.exists && answer.stamp.isPlain);
}

void PictureReaderTest::scalesAsAPixmapDoes()
{
    QImage image(333, 222, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x % 256, y, (x * y) % 256, 255 - y));
    }
    const PictureAnswer answer = answerFor(pictureFile(QStringLiteral("scaled.png"), image));
    const QPixmap expected = QPixmap::fromImage(image).scaled(QSize(20, 20), Qt::KeepAspectRatio,
                                                              Qt::SmoothTransformation);
    QCOMPARE(QPixmap::fromImage(answer.image).toImage(), expected.toImage());
}

void PictureReaderTest::formatPaintsFast_data()
{
    QTest::addColumn<QImage::Format>("file");
    QTest::addColumn<QImage::Format>("expected");
    QTest::newRow("opaque") << QImage::Format_RGB888 << QImage::Format_RGB32;
    QTest::newRow("grey") << QImage::Format_Grayscale8 << QImage::Format_RGB32;
    QTest::newRow("translucent") << QImage::Format_ARGB32 << QImage::Format_ARGB32_Premultiplied;
}

void PictureReaderTest::formatPaintsFast()
{
    QFETCH(QImage::Format, file);
    const QImage image = plainImage({30, 30}, QColor(0, 0, 0, 128), file);
    const PictureAnswer answer = answerFor(pictureFile(QStringLiteral("format.png"), image));
    QTEST(answer.image.format(), "expected");
}

void PictureReaderTest::carriesTheRatio()
{
    const QString path = pictureFile(QStringLiteral("ratio.png"), plainImage({50, 50}, Qt::red));
    PictureReader reader;
    QImage image;
    QObject::connect(&reader, &PictureReader::answered, &reader,
                     [&image](const PictureAnswer& answer) { image = answer.image; });
    reader.read({path, {44, 44}, 2.0, Qt::KeepAspectRatio}, std::nullopt);
    QCOMPARE(image.size(), QSize(44, 44));
    QCOMPARE(image.devicePixelRatio(), 2.0);
}

void PictureReaderTest::missing_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("empty") << QString();
    QTest::newRow("no such file") << "/no/such/picture.png";
    QTest::newRow("below a file") << TestHome::writeDataFile("file", "x") + "/picture.png";
    QTest::newRow("longer than any name") << "/" + QString(20000, u'x');
    QTest::newRow("no name at all") << QStringLiteral("/\u0001*?<>|\n");
}

void PictureReaderTest::missing()
{
    QFETCH(QString, path);
    const PictureAnswer answer = answerFor(path);
    QVERIFY(!answer.stamp.exists);
    QVERIFY(answer.isChanged); // than before, when nobody had looked
    QVERIFY(answer.image.isNull());
    QVERIFY(!answerFor(path, answer.stamp).isChanged);
}

void PictureReaderTest::noPicture_data()
{
    const QByteArray whole = png(plainImage({50, 50}, Qt::red));
    QTest::addColumn<QString>("path");
    QTest::newRow("empty file") << TestHome::writeDataFile("empty.png", "");
    QTest::newRow("text") << TestHome::writeDataFile("text.png", "no picture");
    QTest::newRow("signature alone") << TestHome::writeDataFile("begun.png", whole.left(8));
    QTest::newRow("header alone") << TestHome::writeDataFile("header.png", whole.left(40));
    QTest::newRow("directory") << TestHome::dataDir();
}

void PictureReaderTest::noPicture()
{
    QFETCH(QString, path);
    const PictureAnswer answer = answerFor(path);
    QVERIFY(answer.stamp.exists);
    QVERIFY(answer.image.isNull());
}

void PictureReaderTest::pipeHoldsNobodyUp()
{
    const QString path = QDir(TestHome::dataDir()).filePath(QStringLiteral("pipe.png"));
    // Where there is no such command there are no such files, and the path is merely missing.
    QProcess::execute(QStringLiteral("mkfifo"), {path});
    const PictureAnswer answer = answerFor(path);
    QVERIFY(!answer.stamp.isPlain);
    QVERIFY(answer.image.isNull());
}

void PictureReaderTest::tooManyPixels()
{
    QImage image(8192, 3840, QImage::Format_Mono);
    image.fill(1);
    QCOMPARE(qint64(image.width()) * image.height(), PictureReader::MaxPixels);
    QVERIFY(!answerFor(pictureFile(QStringLiteral("allowed.png"), image)).image.isNull());
    image = QImage(8192, 3841, QImage::Format_Mono);
    image.fill(1);
    QVERIFY(answerFor(pictureFile(QStringLiteral("refused.png"), image)).image.isNull());
}

void PictureReaderTest::tooLargeFile()
{
    const QString path = pictureFile(QStringLiteral("padded.png"), plainImage({50, 50}, Qt::red));
    QFile file(path);
    QVERIFY(file.resize(PictureReader::MaxFileBytes)); // what follows a picture doesn't matter
    QVERIFY(!answerFor(path).image.isNull());
    QVERIFY(file.resize(PictureReader::MaxFileBytes + 1));
    const PictureAnswer answer = answerFor(path);
    QVERIFY(answer.stamp.exists);
    QVERIFY(answer.image.isNull());
}

void PictureReaderTest::unchangedFileIsNotOpened()
{
    const QString path = pictureFile(QStringLiteral("same.png"), plainImage({50, 50}, Qt::red));
    const FileStamp stamp = answerFor(path).stamp;
    const PictureAnswer again = answerFor(path, stamp);
    QVERIFY(!again.isChanged);
    QCOMPARE(again.stamp, stamp);
    QVERIFY(again.image.isNull());
}

void PictureReaderTest::changedFileIsReadAnew_data()
{
    QTest::addColumn<int>("addedBytes");
    QTest::addColumn<int>("addedSeconds");
    QTest::newRow("size") << 1 << 0;
    QTest::newRow("time") << 0 << 1;
    QTest::newRow("older") << 0 << -100;
}

void PictureReaderTest::changedFileIsReadAnew()
{
    QFETCH(int, addedBytes);
    QFETCH(int, addedSeconds);
    const QString path = pictureFile(QStringLiteral("changed.png"), plainImage({50, 50}, Qt::red));
    const FileStamp stamp = answerFor(path).stamp;
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.resize(file.size() + addedBytes));
    QVERIFY(file.setFileTime(QDateTime::fromMSecsSinceEpoch(stamp.modifiedMs).addSecs(addedSeconds),
                             QFileDevice::FileModificationTime));
    file.close();
    const PictureAnswer answer = answerFor(path, stamp);
    QVERIFY(answer.isChanged);
    QVERIFY(answer.stamp != stamp);
    QVERIFY(!answer.image.isNull());
}

QTEST_MAIN(PictureReaderTest)
#include "tst_picturereader.moc"
