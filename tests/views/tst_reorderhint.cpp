// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"
#include "ReorderOverlayFixture.h"

#include <QFontMetrics>

/// What tells how to reorder: the pill above the tiles, and the banner.
class ReorderHintTest : public ReorderOverlayFixture
{
    Q_OBJECT

private slots:
    void hintFont();
    void hintPillMeasures_data();
    void hintPillMeasures();
    void hintPillIsPainted();
    void hintScrollsWithTheContent();
    void banner();
    void bannerWithoutText();
};

void ReorderHintTest::hintFont()
{
    QFont base;
    base.setPointSize(30);
    base.setItalic(true);
    const QFont font = ReorderOverlay::hintFont(base);
    QCOMPARE(font.pixelSize(), 13);
    QVERIFY(font.bold());
    QVERIFY(font.italic());
    QCOMPARE(font.families(), base.families());
}

void ReorderHintTest::hintPillMeasures_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxWidth");
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        for (const int width : {-50, 0, 120, 384, 700, 2000}) {
            const QString name = Tr::codeFor(lang) + u' ' + QString::number(width);
            QTest::newRow(qPrintable(name)) << Tr::t(kHint) << width;
        }
    }
    Tr::currentLang = Lang::En;
    QTest::newRow("short") << QStringLiteral("x") << 384;
}

void ReorderHintTest::hintPillMeasures()
{
    QFETCH(QString, text);
    QFETCH(int, maxWidth);
    const QFont font = ReorderOverlay::hintFont(QApplication::font());
    const QFontMetrics metrics(font);
    const QSize size = ReorderOverlay::measureHintPill(font, text, maxWidth);
    const int most = std::max(maxWidth, 120);
    const QRect bounding = metrics.boundingRect(QRect(0, 0, most - 32, 4000),
                                                Qt::TextWordWrap | Qt::AlignCenter, text);
    QCOMPARE(size.width(), std::min(most, bounding.width() + 32));
    QCOMPARE(size.height(), std::max(bounding.height(), metrics.height()) + 14);
    QVERIFY(size.width() <= most);
}

void ReorderHintTest::hintPillIsPainted()
{
    Entries entries = grid(4, 2);
    entries.hint = kHint;
    TestOverlay* overlay = make(entries);
    const ColorTokens c = Theme::colors();
    const QSize size = ReorderOverlay::measureHintPill(ReorderOverlay::hintFont(overlay->font()),
                                                       Tr::t(kHint), 400 - 16);
    QCOMPARE(overlay->hintInset(), size.height() + 2 + 12);
    const QImage image = m_parent->grab().toImage();
    const QRect pill((400 - size.width()) / 2, 2, size.width(), size.height());
    const QColor fill(c.surfaceContainerHighest);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.top() + 1), fill);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.bottom() - 1), fill);
    QCOMPARE(image.pixelColor(pill.left() + 1, pill.center().y()), fill);
    QCOMPARE(image.pixelColor(pill.right() - 1, pill.center().y()), fill);
    QCOMPARE(image.pixelColor(pill.topLeft() + QPoint(1, 1)), kBackdrop);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.top() - 1), kBackdrop);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.bottom() + 1), kBackdrop);
    const QRect text = Pixels::boxOfColor(image.copy(pill), QColor(c.onSurfaceVariant), 90);
    QVERIFY(text.left() >= 15 && text.right() <= pill.width() - 15);
    QVERIFY(text.top() >= 6 && text.bottom() <= pill.height() - 6);
    QVERIFY(text.width() > 100);
}

void ReorderHintTest::hintScrollsWithTheContent()
{
    Entries entries = grid(30, 3);
    entries.hint = kHint;
    TestOverlay* overlay = make(entries);
    const QColor fill(Theme::colors().surfaceContainerHighest);
    const QRect before = Pixels::boxOfColor(m_parent->grab().toImage(), fill);
    QVERIFY(before.top() <= 3);
    overlay->setScroll(10);
    const QRect after = Pixels::boxOfColor(m_parent->grab().toImage(), fill);
    QCOMPARE(after.bottom(), before.bottom() - 10);
    overlay->setScroll(300);
    QVERIFY(Pixels::boxOfColor(m_parent->grab().toImage(), fill).isEmpty());
}

void ReorderHintTest::banner()
{
    auto* banner = new ReorderHintBanner(m_parent.get(), "reorder.hint_sections");
    QCOMPARE(banner->geometry(), m_parent->rect());
    QVERIFY(banner->isVisible());
    QVERIFY(banner->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(banner->focusPolicy(), Qt::NoFocus);
    const ColorTokens c = Theme::colors();
    const QImage image = Pixels::imageOf(*banner);
    const QColor surface(c.surface);
    const auto dimmed = [](int channel) { return qRound(channel * 0.82 + 255 * 0.18); };
    QVERIFY(Pixels::isNear(
        image.pixelColor(200, 280),
        QColor(dimmed(surface.red()), dimmed(surface.green()), dimmed(surface.blue())), 2));
    const QSize size = ReorderOverlay::measureHintPill(ReorderOverlay::hintFont(banner->font()),
                                                       Tr::t("reorder.hint_sections"), 400 - 16);
    const QRect pill = Pixels::boxOfColor(image, QColor(c.surfaceContainerHighest));
    QVERIFY(qAbs(pill.left() - (400 - size.width()) / 2) <= 1);
    QVERIFY(qAbs(pill.top() - 24) <= 1);
    QVERIFY(qAbs(pill.width() - size.width()) <= 2);
    QVERIFY(qAbs(pill.height() - size.height()) <= 2);
}

void ReorderHintTest::bannerWithoutText()
{
    auto* banner = new ReorderHintBanner(m_parent.get(), QString());
    const QImage image = Pixels::imageOf(*banner);
    QVERIFY(Pixels::boxOfColor(image, QColor(Theme::colors().surfaceContainerHighest)).isEmpty());
    QVERIFY(image.pixelColor(200, 100) == image.pixelColor(200, 32));
}

QTEST_MAIN(ReorderHintTest)
#include "tst_reorderhint.moc"
