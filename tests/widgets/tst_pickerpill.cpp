// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PickerPill.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QStyleOptionButton>
#include <QTest>

#include <memory>

namespace
{

constexpr int kPadLeft = 34;
constexpr int kPadRight = 14;
constexpr int kMinWidth = 80;
constexpr int kLeast = kPadLeft + kMinWidth + kPadRight;
constexpr QChar kEllipsis(0x2026);

class TestPill : public PickerPill
{
public:
    using PickerPill::PickerPill;

    /// The text as it is painted.
    QString shownText() const
    {
        QStyleOptionButton option;
        initStyleOption(&option);
        return option.text;
    }
};

QString manyCharacters()
{
    return QStringLiteral("A name & more\n").repeated(80'000);
}

} // namespace

class PickerPillTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void isAsHighAsTheOtherButtons();
    void hintsFollowTheLabel();
    void shownText_data();
    void shownText();
    void longNameWidensNothing_data();
    void longNameWidensNothing();
    void hasNoShortcut();
    void labelIsKeptWhole();
    void textStaysWithinItsPadding();
    void glyphStandsLeftOfTheText();

private:
    std::unique_ptr<TestPill> m_pill;
};

void PickerPillTest::init()
{
    Theme::forceTheme = 1;
    const ColorTokens c = Theme::colors();
    m_pill = std::make_unique<TestPill>();
    m_pill->setStyleSheet(Theme::pickerPillStyle(QStringLiteral("QPushButton"), c, c.primary,
                                                 c.onPrimary, kPadLeft, kMinWidth));
}

void PickerPillTest::isAsHighAsTheOtherButtons()
{
    QCOMPARE(PickerPill::Height, 36);
    QCOMPARE(m_pill->minimumHeight(), 36);
    QCOMPARE(m_pill->maximumHeight(), 36);
    QCOMPARE(m_pill->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(m_pill->focusPolicy(), Qt::StrongFocus);
}

void PickerPillTest::hintsFollowTheLabel()
{
    QCOMPARE(m_pill->sizeHint().width(), kLeast);
    QCOMPARE(m_pill->minimumSizeHint().width(), kLeast);
    const QString name = QStringLiteral("A name that is wider than the least width");
    m_pill->setLabel(name);
    QCOMPARE(m_pill->sizeHint().width(),
             kPadLeft + m_pill->fontMetrics().horizontalAdvance(name) + kPadRight);
    QCOMPARE(m_pill->minimumSizeHint().width(), kLeast);
}

void PickerPillTest::shownText_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("start");
    QTest::addColumn<bool>("isElided");
    QTest::newRow("fits") << "Work"
                          << "Work" << false;
    QTest::newRow("empty") << ""
                           << "" << false;
    QTest::newRow("ampersands") << "R&D && more"
                                << "R&&D &&&& more" << false;
    QTest::newRow("line feeds") << "one\ntwo\nthree"
                                << "one two three" << false;
    QTest::newRow("line separators")
        << QStringLiteral("one\u2028two\u2029three") << "one two three" << false;
    QTest::newRow("markup") << "<b>Bold</b>"
                            << "<b>Bold</b>" << false;
    QTest::newRow("long") << QString(200, u'm') << "mmm" << true;
    QTest::newRow("a megabyte") << manyCharacters() << "A name && more A" << true;
}

void PickerPillTest::shownText()
{
    QFETCH(QString, label);
    QFETCH(QString, start);
    QFETCH(bool, isElided);
    m_pill->resize(220, PickerPill::Height);
    m_pill->setLabel(label);
    const QString shown = m_pill->shownText();
    QVERIFY2(shown.startsWith(start), qPrintable(shown));
    QCOMPARE(shown.endsWith(kEllipsis), isElided);
    if (!isElided)
        QCOMPARE(shown, start);
    QString painted = shown;
    painted.replace(QStringLiteral("&&"), QStringLiteral("&"));
    QVERIFY(m_pill->fontMetrics().horizontalAdvance(painted) <= 220 - kPadLeft - kPadRight);
}

void PickerPillTest::longNameWidensNothing_data()
{
    QTest::addColumn<QString>("label");
    QTest::newRow("10,000 characters") << QString(10'000, u'W');
    QTest::newRow("a megabyte in lines") << manyCharacters();
}

void PickerPillTest::longNameWidensNothing()
{
    QFETCH(QString, label);
    QWidget window;
    auto* row = new QHBoxLayout(&window);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_pill.release(), 1);
    auto* other = new PickerPill;
    row->addWidget(other, 1);
    auto* pill = window.findChild<TestPill*>(QString(), Qt::FindDirectChildrenOnly);
    window.resize(400, PickerPill::Height);
    window.show();
    pill->setLabel(label);
    row->activate();
    QCOMPARE(window.width(), 400);
    QCOMPARE(pill->width(), 200);
    QCOMPARE(other->width(), 200);
    QVERIFY(window.minimumSizeHint().width() < 400);
}

void PickerPillTest::hasNoShortcut()
{
    m_pill->setLabel(QStringLiteral("R&D"));
    QVERIFY(m_pill->shortcut().isEmpty());
}

void PickerPillTest::labelIsKeptWhole()
{
    m_pill->setLabel(manyCharacters());
    QCOMPARE(m_pill->label(), manyCharacters());
    QVERIFY(m_pill->text().size() < 10'000); // what a screen reader is told
}

void PickerPillTest::textStaysWithinItsPadding()
{
    m_pill->resize(200, PickerPill::Height);
    m_pill->setStyleSheet(m_pill->styleSheet() +
                          QStringLiteral("QPushButton { background: white; color: black; "
                                         "border-radius: 0px; }"));
    m_pill->setLabel(QString(300, u'M'));
    const QRect ink = Pixels::inkBox(Pixels::imageOf(*m_pill));
    QVERIFY(ink.left() >= kPadLeft - 1);
    QVERIFY(ink.left() <= kPadLeft + 3); // left-aligned
    QVERIFY(ink.right() <= 200 - kPadRight);
    QVERIFY(ink.height() < PickerPill::Height / 2); // one line
    QVERIFY(qAbs(QRectF(ink).center().y() - PickerPill::Height / 2.0) <= 3);
}

void PickerPillTest::glyphStandsLeftOfTheText()
{
    m_pill->resize(200, PickerPill::Height);
    m_pill->setGlyphLeftInset(22.0);
    m_pill->setGlyph(0xE2C7, PickerPill::GlyphPx, QStringLiteral("#c01040"));
    m_pill->setLabel(QStringLiteral("Work"));
    const QRect glyph = Pixels::boxOfColor(Pixels::imageOf(*m_pill), QColor(0xc0, 0x10, 0x40), 60);
    QVERIFY(Pixels::isCentredOn(glyph, QPointF(22, 18)));
    QVERIFY(glyph.width() <= PickerPill::GlyphPx);
}

QTEST_MAIN(PickerPillTest)
#include "tst_pickerpill.moc"
