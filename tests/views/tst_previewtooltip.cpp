// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Compositor.h"
#include "FontResource.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Localization.h"
#include "Pixels.h"
#include "PreviewTooltip.h"
#include "TestHome.h"
#include "TestScreens.h"
#include "Theme.h"

#include <QApplication>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QGuiApplication>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <memory>

namespace
{

bool s_isCompositing = true;

constexpr int kBody = 276;
constexpr QRect kAnchor(400, 400, 90, 70);
const QString kUrl = QStringLiteral("URL");
const QString kSnippet = QStringLiteral("Snippet");
const QString kBulk = QStringLiteral("Bulk");

} // namespace

// Stands in for the library's own, whose object file the linker then has no reason to take.
bool Platform::isCompositing()
{
    return s_isCompositing;
}

class PreviewTooltipTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void constants();
    void neverTakesFocusOrMouse();
    void layoutOfTheCard();
    void sheets();

    void meaningfulLines_data();
    void meaningfulLines();
    void singleLineBody_data();
    void singleLineBody();
    void bulkBody_data();
    void bulkBody();
    void snippetThatFits_data();
    void snippetThatFits();
    void snippetThatIsCut();
    void snippetIsThatOfThePlainSearch();
    void snippetKeepsCharactersWhole();
    void hugeValues_data();
    void hugeValues();

    void bodyByType_data();
    void bodyByType();
    void widthFollowsTheType();
    void blankValueShowsNothing_data();
    void blankValueShowsNothing();
    void glyphOfTheType_data();
    void glyphOfTheType();
    void titleIsPlainText_data();
    void titleIsPlainText();
    void valueIsPlainText();
    void hugeName();
    void neverWiderThanTheCard();

    void standsAboveAndToTheRight();
    void staysOnTheScreen_data();
    void staysOnTheScreen();
    void heightFollowsTheBody();

    void goesAtTheEvent_data();
    void goesAtTheEvent();
    void otherEventsLeaveIt_data();
    void otherEventsLeaveIt();
    void eventsGoOn();
    void worksWithoutTimer();
    void attachesToSeveralAndToNone();
    void attachedWidgetThatIsDeleted();
    void deletedWhileShown();
    void isCutWithoutCompositor();

private:
    QString titleText() const { return m_title->text(); }
    void show(const QString& name, const QString& type, const QString& value,
              const QRect& anchor = kAnchor)
    {
        m_tip->showFor(name, type, value, anchor);
    }

    std::unique_ptr<QLineEdit> m_window;
    PreviewTooltip* m_tip = nullptr;
    GlyphLabel* m_icon = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_value = nullptr;
};

namespace
{

QFontMetrics bodyMetrics()
{
    QFont font = QApplication::font();
    font.setPixelSize(13);
    return QFontMetrics(font);
}

QString lines(const QString& line, int count, const QString& separator = QStringLiteral("\n"))
{
    return QStringList(count, line).join(separator);
}

int heightOf(const QString& text, const QFontMetrics& fm)
{
    return fm.boundingRect(QRect(0, 0, kBody, 0), Qt::TextWordWrap, text).height();
}

/// What the tooltip is to show of a snippet, found without any shortcut.
QString plainSearch(const QString& value, const QFontMetrics& fm)
{
    const QString joined = PreviewTooltip::meaningfulLines(value).join(u'\n');
    const int limit = 4 * fm.lineSpacing();
    if (joined.isEmpty() || heightOf(joined, fm) <= limit)
        return joined;
    qsizetype low = 0;
    qsizetype high = joined.size();
    while (low < high) {
        const qsizetype middle = (low + high + 1) / 2;
        if (heightOf(joined.first(middle) + QStringLiteral("..."), fm) <= limit)
            low = middle;
        else
            high = middle - 1;
    }
    return joined.first(low).trimmed() + QStringLiteral("...");
}

} // namespace

void PreviewTooltipTest::initTestCase()
{
    QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), TestScreens::Primary);
    // The program's own font: in one with other fractions four lines may be higher than they say.
    QVERIFY(addFontResource(":/fonts/PlusJakartaSans-VariableFont_wght.ttf") != -1);
    QFont font = QApplication::font();
    font.setFamilies(FontTokens::Families);
    font.setHintingPreference(QFont::PreferNoHinting);
    QApplication::setFont(font);
}

void PreviewTooltipTest::init()
{
    s_isCompositing = true;
    Tr::currentLang = Lang::En;
    m_window = std::make_unique<QLineEdit>();
    m_window->setGeometry(300, 300, 400, 300);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->setFocus();
    m_tip = new PreviewTooltip(m_window.get());
    m_icon = m_tip->findChild<GlyphLabel*>();
    const auto labels = m_tip->card()->findChildren<QLabel*>();
    QCOMPARE(labels.size(), 2);
    m_title = labels.at(0);
    m_value = labels.at(1);
}

void PreviewTooltipTest::cleanup()
{
    m_window.reset();
}

void PreviewTooltipTest::constants()
{
    QCOMPARE(PreviewTooltip::DelayMs, 900);
    QCOMPARE(PreviewTooltip::MaxLines, 4);
    QCOMPARE(PreviewTooltip::MaxWidth, 300);
}

void PreviewTooltipTest::neverTakesFocusOrMouse()
{
    QVERIFY(!m_tip->isVisible());
    QCOMPARE(m_tip->windowType(), Qt::ToolTip);
    QVERIFY(m_tip->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(m_tip->windowFlags().testFlag(Qt::NoDropShadowWindowHint));
    QVERIFY(m_tip->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(m_tip->testAttribute(Qt::WA_ShowWithoutActivating));
    QVERIFY(m_tip->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(m_tip->focusPolicy(), Qt::NoFocus);
    show("Name", kUrl, "https://example.org");
    QVERIFY(m_tip->isVisible());
    QVERIFY(QTest::qWaitForWindowExposed(m_tip));
    QCOMPARE(QApplication::activeWindow(), m_window.get());
    QCOMPARE(QApplication::focusWidget(), m_window.get());
}

void PreviewTooltipTest::layoutOfTheCard()
{
    QCOMPARE(m_tip->card()->objectName(), QStringLiteral("previewTooltipCard"));
    QCOMPARE(m_tip->card()->maximumWidth(), 300);
    QCOMPARE(m_tip->layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    const QLayout* box = m_tip->card()->layout();
    QCOMPARE(box->contentsMargins(), QMargins(12, 8, 12, 8));
    QCOMPARE(box->spacing(), 4);
    show("Name", kUrl, "https://example.org");
    QCOMPARE(m_icon->size(), QSize(16, 16));
    QCOMPARE(m_title->mapTo(m_tip, QPoint(0, 0)).x() - m_icon->mapTo(m_tip, QPoint(16, 0)).x(), 8);
    QCOMPARE(m_value->geometry().top() - m_title->geometry().bottom() - 1, 4);
    QCOMPARE(m_icon->geometry().left(), 12 + 1); // the margin inside the border
    QCOMPARE(m_value->geometry().left(), 12 + 1);
}

void PreviewTooltipTest::sheets()
{
    const ColorTokens c = Theme::colors();
    show("Name", kUrl, "https://example.org");
    QCOMPARE(m_title->fontInfo().pixelSize(), 14);
    QVERIFY(m_title->font().bold());
    QCOMPARE(m_value->fontInfo().pixelSize(), 13);
    QVERIFY(!m_value->font().bold());
    QCOMPARE(m_title->palette().color(QPalette::WindowText), QColor(c.onSurface));
    QCOMPARE(m_value->palette().color(QPalette::WindowText), QColor(c.onSurfaceVariant));
    const QImage image = Pixels::imageOf(*m_tip);
    const int middle = image.width() / 2;
    QCOMPARE(image.pixelColor(middle, 0), QColor(c.outline));
    QCOMPARE(image.pixelColor(middle, 3), QColor(c.surfaceContainerHighest));
    QCOMPARE(image.pixelColor(3, 2), QColor(Qt::white));
}

void PreviewTooltipTest::meaningfulLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("nothing") << QString() << QStringList();
    QTest::newRow("one") << QStringLiteral("a b") << QStringList{"a b"};
    QTest::newRow("blanks only") << QStringLiteral(" \n\t\n\r\n \u00a0\u2003") << QStringList();
    QTest::newRow("trimmed") << QStringLiteral("  a \n\tb\r\n") << QStringList{"a", "b"};
    QTest::newRow("blank lines between")
        << QStringLiteral("\n\na\n \n\nb\n\n") << QStringList{"a", "b"};
    QTest::newRow("carriage return inside") << QStringLiteral("a\rb") << QStringList{"a\rb"};
}

void PreviewTooltipTest::meaningfulLines()
{
    QFETCH(QString, text);
    QTEST(PreviewTooltip::meaningfulLines(text), "expected");
}

void PreviewTooltipTest::singleLineBody_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    const QString address = QStringLiteral("https://example.org/");
    const QFontMetrics fm = bodyMetrics();
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("blank") << QStringLiteral(" \n ") << QString();
    QTest::newRow("one line") << address << address;
    QTest::newRow("trimmed") << QStringLiteral("\n  ") + address + u'\n' << address;
    QTest::newRow("two lines") << address + QStringLiteral("\nb")
                               << address + QStringLiteral("   +1 more");
    QTest::newRow("blank lines do not count")
        << QStringLiteral("\n") + address + QStringLiteral("\n\n \nb\n\nc\n")
        << address + QStringLiteral("   +2 more");
    const QString wide(500, u'm');
    QTest::newRow("elided") << wide << fm.elidedText(wide, Qt::ElideRight, kBody);
    const QString suffix = QStringLiteral("   +1 more");
    QTest::newRow("elided before the count")
        << wide + QStringLiteral("\nb")
        << fm.elidedText(wide, Qt::ElideRight, kBody - fm.horizontalAdvance(suffix)) + suffix;
}

void PreviewTooltipTest::singleLineBody()
{
    QFETCH(QString, value);
    const QString body = PreviewTooltip::singleLineBody(value, bodyMetrics(), kBody);
    QTEST(body, "expected");
    QVERIFY(bodyMetrics().horizontalAdvance(body) <= kBody);
    // No room at all: the count alone is left of several lines.
    const QString narrow = PreviewTooltip::singleLineBody(value, bodyMetrics(), 10);
    QCOMPARE(narrow.contains(QStringLiteral("more")), body.contains(QStringLiteral("more")));
}

void PreviewTooltipTest::bulkBody_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("blank") << QStringLiteral(" \n\n") << QString();
    QTest::newRow("one") << QStringLiteral(" a ") << QStringLiteral("a");
    QTest::newRow("four") << QStringLiteral("a\nb\n\nc\nd\n") << QStringLiteral("a\nb\nc\nd");
    QTest::newRow("five") << QStringLiteral("a\nb\nc\nd\ne")
                          << QStringLiteral("a\nb\nc\nd\n+1 more");
    QTest::newRow("fourteen") << lines("a", 14) << QStringLiteral("a\na\na\na\n+10 more");
    const QString wide(500, u'm');
    const QString elided = bodyMetrics().elidedText(wide, Qt::ElideRight, kBody);
    QTest::newRow("each line elided")
        << wide + QStringLiteral("\nb\n") + wide << elided + QStringLiteral("\nb\n") + elided;
}

void PreviewTooltipTest::bulkBody()
{
    QFETCH(QString, value);
    QTEST(PreviewTooltip::bulkBody(value, bodyMetrics(), kBody), "expected");
}

void PreviewTooltipTest::snippetThatFits_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("blank") << QStringLiteral("\n \n") << QString();
    QTest::newRow("one line") << QStringLiteral("some words") << QStringLiteral("some words");
    QTest::newRow("blank lines closed up")
        << QStringLiteral("\na\n\n \n b\n") << QStringLiteral("a\nb");
    QTest::newRow("four lines") << lines("some words", 4) << lines("some words", 4);
}

void PreviewTooltipTest::snippetThatFits()
{
    QFETCH(QString, value);
    QTEST(PreviewTooltip::snippetBody(value, bodyMetrics(), kBody), "expected");
}

void PreviewTooltipTest::snippetThatIsCut()
{
    const QFontMetrics fm = bodyMetrics();
    // The blank after the last line that fits goes, and what follows are three full stops.
    QCOMPARE(PreviewTooltip::snippetBody(lines("abc", 5), fm, kBody),
             QStringLiteral("abc\nabc\nabc\nabc..."));
    const QString words = lines("word", 100, QStringLiteral(" "));
    const QString body = PreviewTooltip::snippetBody(words, fm, kBody);
    QVERIFY(body.endsWith(QStringLiteral("...")));
    const QString kept = body.chopped(3);
    QVERIFY(words.startsWith(kept));
    QCOMPARE(kept, kept.trimmed());
    QVERIFY(heightOf(body, fm) <= 4 * fm.lineSpacing());
    QVERIFY(heightOf(words.first(kept.size() + 5) + QStringLiteral("..."), fm) >
            4 * fm.lineSpacing());
}

void PreviewTooltipTest::snippetIsThatOfThePlainSearch()
{
    const QFontMetrics fm = bodyMetrics();
    const QStringList parts{"a",
                            "word",
                            "longer-word",
                            " ",
                            "  ",
                            "\n",
                            "\n\n",
                            "https://example.org",
                            "&",
                            "<b>x</b>",
                            "\t",
                            "mmmmmmmm",
                            "\u3042\u3044\u3046",
                            "\u05d0\u05d1",
                            "\r\n",
                            QString(60, u'W')};
    QRandomGenerator random(20);
    int cutCount = 0;
    for (int round = 0; round < 300; ++round) {
        QString value;
        const int count = random.bounded(1, 120);
        for (int i = 0; i < count; ++i)
            value += parts.at(random.bounded(int(parts.size()))) +
                     (random.bounded(2) == 0 ? QStringLiteral(" ") : QString());
        const QString expected = plainSearch(value, fm);
        cutCount += expected.endsWith(QStringLiteral("...")) ? 1 : 0;
        QCOMPARE(PreviewTooltip::snippetBody(value, fm, kBody), expected);
    }
    QVERIFY(cutCount > 50 && cutCount < 290);
}

void PreviewTooltipTest::snippetKeepsCharactersWhole()
{
    const QString smile = QString::fromUcs4(U"\U0001F600");
    const QFontMetrics fm = bodyMetrics();
    for (const int words : {37, 38}) {
        const QString body =
            PreviewTooltip::snippetBody(lines(smile + u' ', words * 10, QString()), fm, kBody);
        QVERIFY(body.endsWith(QStringLiteral("...")));
        QVERIFY(!body.at(body.size() - 4).isHighSurrogate());
    }
}

void PreviewTooltipTest::hugeValues_data()
{
    QTest::addColumn<QString>("value");
    constexpr int kMany = 1 << 20;
    QTest::newRow("one word") << QString(kMany, u'm');
    QTest::newRow("narrow letters") << QString(kMany, u'i');
    QTest::newRow("words") << QString(QStringLiteral("some words ")).repeated(kMany / 11);
    QTest::newRow("short lines") << QString(QStringLiteral("a\n")).repeated(kMany);
    QTest::newRow("line feeds and a letter") << QString(4 * kMany, u'\n') + u'a';
    QTest::newRow("blanks inside") << u'a' + QString(kMany, u' ') + u'b';
    QTest::newRow("accents") << u'a' + QString(kMany, QChar(0x301));
    QTest::newRow("right to left") << QString(kMany, QChar(0x5d0));
    QTest::newRow("four long lines") << lines(QString(kMany / 4, u'x'), 4);
}

void PreviewTooltipTest::hugeValues()
{
    // A search over the whole of these would run for minutes, and the harness ends the test.
    QFETCH(QString, value);
    const QFontMetrics fm = bodyMetrics();
    for (const auto body :
         {PreviewTooltip::singleLineBody, PreviewTooltip::bulkBody, PreviewTooltip::snippetBody}) {
        const QString shown = body(value, fm, kBody);
        QVERIFY(!shown.isEmpty());
        QVERIFY(shown.size() < 4000);
    }
    for (const QString& type : {kUrl, kBulk, kSnippet}) {
        show("Name", type, value);
        QVERIFY(m_tip->isVisible());
        QVERIFY(m_tip->width() <= 300);
        QVERIFY(m_tip->height() < 200);
    }
}

void PreviewTooltipTest::bodyByType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("expected");
    const QString single = QStringLiteral("a   +5 more");
    QTest::newRow("snippet") << kSnippet << QStringLiteral("a\nb\nc\nd...");
    QTest::newRow("bulk") << kBulk << QStringLiteral("a\nb\nc\nd\n+2 more");
    for (const char* type : {"URL", "Application", "File", "ShellItem", "", "bulk", "unknown"})
        QTest::newRow(qPrintable(QStringLiteral("type '%1'").arg(type))) << QString(type) << single;
}

void PreviewTooltipTest::bodyByType()
{
    QFETCH(QString, type);
    show("Name", type, "a\n\nb\nc\nd\ne\nf\n");
    QVERIFY(m_tip->isVisible());
    QTEST(m_value->text(), "expected");
    QCOMPARE(m_value->wordWrap(), type == kSnippet);
    QCOMPARE(titleText(), QStringLiteral("Name"));
}

void PreviewTooltipTest::widthFollowsTheType()
{
    for (int round = 0; round < 2; ++round) {
        show("Name", kSnippet, "short");
        QCOMPARE(m_value->minimumWidth(), kBody);
        QCOMPARE(m_value->maximumWidth(), kBody);
        QCOMPARE(m_value->width(), kBody);
        QCOMPARE(m_tip->width(), 300);
        show("Name", kUrl, "short");
        QCOMPARE(m_value->minimumWidth(), 0);
        QCOMPARE(m_value->maximumWidth(), QWIDGETSIZE_MAX);
        QCOMPARE(m_tip->width(), 200); // no window of a text that may grow gets narrower
    }
}

void PreviewTooltipTest::blankValueShowsNothing_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    for (const QString& type : {kUrl, kSnippet, kBulk}) {
        QTest::newRow(qPrintable(type + QStringLiteral(", empty"))) << type << QString();
        QTest::newRow(qPrintable(type + QStringLiteral(", blank")))
            << type << QStringLiteral(" \n ");
    }
}

void PreviewTooltipTest::blankValueShowsNothing()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    show("A name", type, value);
    QVERIFY(!m_tip->isVisible());
    show("Another", kUrl, "x");
    QVERIFY(m_tip->isVisible());
    show("A name", type, value);
    QVERIFY(!m_tip->isVisible());
}

void PreviewTooltipTest::glyphOfTheType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<uint>("glyph");
    for (const char* type : {"URL", "Application", "File", "Bulk", "Snippet"})
        QTest::newRow(type) << QString(type) << IconHelper::codepointForType(type);
    QTest::newRow("unknown") << QStringLiteral("nothing") << 0xE250U;
    QTest::newRow("none") << QString() << 0xE250U;
}

void PreviewTooltipTest::glyphOfTheType()
{
    QFETCH(QString, type);
    QFETCH(uint, glyph);
    show("Name", type, "x");
    GlyphLabel expected;
    expected.setFixedSize(16, 16);
    expected.setGlyph(glyph, 13, Theme::colors().onSurfaceVariant);
    const QImage image = Pixels::imageOf(*m_icon);
    QVERIFY(!Pixels::inkBox(image).isEmpty());
    QCOMPARE(image, Pixels::imageOf(expected));
}

void PreviewTooltipTest::titleIsPlainText_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QStringLiteral("Name") << QStringLiteral("Name");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("markup") << QStringLiteral("<b>x</b>") << QStringLiteral("<b>x</b>");
    QTest::newRow("ampersand") << QStringLiteral("A&B && C") << QStringLiteral("A&B && C");
    QTest::newRow("line feeds") << QStringLiteral("a\nb\nc") << QStringLiteral("a b c");
    QTest::newRow("separators") << QStringLiteral("a\u2028b\u2029c") << QStringLiteral("a b c");
}

void PreviewTooltipTest::titleIsPlainText()
{
    QFETCH(QString, name);
    show("One line", kUrl, "x");
    const int oneLine = m_tip->height();
    show(name, kUrl, "x");
    QVERIFY(m_tip->isVisible());
    QTEST(titleText(), "expected");
    QCOMPARE(m_title->textFormat(), Qt::PlainText);
    QCOMPARE(m_tip->height(), oneLine);
}

void PreviewTooltipTest::valueIsPlainText()
{
    const QString value = QStringLiteral("<h1>A & B</h1>");
    for (const QString& type : {kUrl, kBulk, kSnippet}) {
        show("Name", type, value);
        QCOMPARE(m_value->text(), value);
        QCOMPARE(m_value->textFormat(), Qt::PlainText);
    }
}

void PreviewTooltipTest::hugeName()
{
    const QString name = QString(QStringLiteral("name\n")).repeated(200000);
    show(name, kUrl, "x");
    const QFontMetrics fm = m_title->fontMetrics();
    QVERIFY(titleText().size() < 1000);
    QVERIFY(fm.horizontalAdvance(titleText()) <= 252);
    QVERIFY(fm.horizontalAdvance(titleText()) > 200);
    QVERIFY(titleText().endsWith(QChar(0x2026)));
    QVERIFY(m_tip->width() <= 300);
}

void PreviewTooltipTest::neverWiderThanTheCard()
{
    const QString wide(1000, u'W');
    for (const QString& type : {kUrl, kBulk, kSnippet}) {
        show(wide, type, lines(wide, 9));
        QVERIFY(m_tip->width() <= 300);
        QVERIFY(m_tip->width() >= 280);
    }
}

void PreviewTooltipTest::standsAboveAndToTheRight()
{
    show("Name", kUrl, "x");
    QCOMPARE(m_tip->x(), kAnchor.right() + 8);
    QCOMPARE(m_tip->y(), kAnchor.top() - 8 - m_tip->height());
}

void PreviewTooltipTest::staysOnTheScreen_data()
{
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<Qt::Corner>("corner");
    for (const QRect& screen : {TestScreens::Primary, TestScreens::Second}) {
        const QString name =
            screen == TestScreens::Primary ? QStringLiteral("primary") : QStringLiteral("second");
        QTest::newRow(qPrintable(name + ", top left")) << screen << Qt::TopLeftCorner;
        QTest::newRow(qPrintable(name + ", top right")) << screen << Qt::TopRightCorner;
        QTest::newRow(qPrintable(name + ", bottom left")) << screen << Qt::BottomLeftCorner;
        QTest::newRow(qPrintable(name + ", bottom right")) << screen << Qt::BottomRightCorner;
    }
}

void PreviewTooltipTest::staysOnTheScreen()
{
    QFETCH(QRect, screen);
    QFETCH(Qt::Corner, corner);
    QRect anchor(0, 0, 90, 70);
    const bool isRight = corner == Qt::TopRightCorner || corner == Qt::BottomRightCorner;
    const bool isBottom = corner == Qt::BottomLeftCorner || corner == Qt::BottomRightCorner;
    anchor.moveLeft(isRight ? screen.right() - 89 : screen.left());
    anchor.moveTop(isBottom ? screen.bottom() - 69 : screen.top());
    show("Name", kSnippet, "some words");
    const QSize size = m_tip->size();
    show("Name", kSnippet, "some words", anchor);
    QCOMPARE(m_tip->size(), size);
    QVERIFY(screen.contains(m_tip->geometry()));
    QCOMPARE(m_tip->x(), isRight ? screen.right() - size.width() : anchor.right() + 8);
    QCOMPARE(m_tip->y(), isBottom ? anchor.top() - 8 - size.height() : screen.top());
}

void PreviewTooltipTest::heightFollowsTheBody()
{
    show("Name", kBulk, "a");
    const int one = m_tip->height();
    const int line = m_value->fontMetrics().lineSpacing();
    show("Name", kBulk, lines("a", 4));
    const int four = m_tip->height();
    QVERIFY(qAbs(four - one - 3 * line) <= 3);
    show("Name", kBulk, lines("a", 5));
    QVERIFY(m_tip->height() > four);
    show("Name", kSnippet, lines("some words", 100, QStringLiteral(" ")));
    QVERIFY(qAbs(m_tip->height() - four) <= 3);
    QCOMPARE(m_value->height(), m_value->heightForWidth(kBody));
    show("Name", kBulk, "a");
    QCOMPARE(m_tip->height(), one);
}

void PreviewTooltipTest::goesAtTheEvent_data()
{
    QTest::addColumn<QEvent::Type>("type");
    QTest::newRow("wheel") << QEvent::Wheel;
    QTest::newRow("deactivation") << QEvent::WindowDeactivate;
    QTest::newRow("hide") << QEvent::Hide;
    QTest::newRow("focus lost") << QEvent::FocusOut;
    QTest::newRow("leave") << QEvent::Leave;
}

void PreviewTooltipTest::goesAtTheEvent()
{
    QFETCH(QEvent::Type, type);
    QWidget attached;
    m_tip->attachTo(&attached);
    QTimer delay;
    m_tip->setDelayTimer(&delay);
    for (int round = 0; round < 2; ++round) {
        show("Name", kUrl, "x");
        QVERIFY(m_tip->isVisible());
        delay.start(PreviewTooltip::DelayMs);
        QEvent event(type);
        QVERIFY(!m_tip->eventFilter(&attached, &event));
        QVERIFY(!m_tip->isVisible());
        QVERIFY(!delay.isActive());
        // While only the delay runs, too.
        delay.start(PreviewTooltip::DelayMs);
        QVERIFY(!m_tip->eventFilter(&attached, &event));
        QVERIFY(!delay.isActive());
    }
}

void PreviewTooltipTest::otherEventsLeaveIt_data()
{
    QTest::addColumn<QEvent::Type>("type");
    for (const QEvent::Type type :
         {QEvent::MouseMove, QEvent::Enter, QEvent::Paint, QEvent::FocusIn, QEvent::WindowActivate,
          QEvent::Resize, QEvent::Show, QEvent::KeyPress, QEvent::MouseButtonPress})
        QTest::newRow(qPrintable(QString::number(type))) << type;
}

void PreviewTooltipTest::otherEventsLeaveIt()
{
    QFETCH(QEvent::Type, type);
    QTimer delay;
    m_tip->setDelayTimer(&delay);
    delay.start(PreviewTooltip::DelayMs);
    show("Name", kUrl, "x");
    QEvent event(type);
    QVERIFY(!m_tip->eventFilter(m_window.get(), &event));
    QVERIFY(m_tip->isVisible());
    QVERIFY(delay.isActive());
}

void PreviewTooltipTest::eventsGoOn()
{
    // What is attached still gets the events that make the tooltip go.
    class Receiver : public QWidget
    {
    public:
        int wheels = 0;

    protected:
        void wheelEvent(QWheelEvent* event) override
        {
            ++wheels;
            event->accept();
        }
    } receiver;
    m_tip->attachTo(&receiver);
    show("Name", kUrl, "x");
    QWheelEvent wheel(QPointF(1, 1), QPointF(1, 1), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&receiver, &wheel);
    QCOMPARE(receiver.wheels, 1);
    QVERIFY(!m_tip->isVisible());
}

void PreviewTooltipTest::worksWithoutTimer()
{
    QEvent leave(QEvent::Leave);
    show("Name", kUrl, "x");
    m_tip->eventFilter(m_window.get(), &leave);
    QVERIFY(!m_tip->isVisible());
    m_tip->setDelayTimer(nullptr);
    show("Name", kUrl, "x");
    m_tip->eventFilter(m_window.get(), &leave);
    QVERIFY(!m_tip->isVisible());
    auto timer = std::make_unique<QTimer>();
    m_tip->setDelayTimer(timer.get());
    timer.reset();
    show("Name", kUrl, "x");
    m_tip->eventFilter(m_window.get(), &leave);
    QVERIFY(!m_tip->isVisible());
}

void PreviewTooltipTest::attachesToSeveralAndToNone()
{
    QWidget first;
    QWidget second;
    m_tip->attachTo(nullptr);
    m_tip->attachTo(&first);
    m_tip->attachTo(&second);
    m_tip->attachTo(m_window.get());
    for (QWidget* attached : {&first, &second, static_cast<QWidget*>(m_window.get())}) {
        show("Name", kUrl, "x");
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(attached, &leave);
        QVERIFY(!m_tip->isVisible());
    }
    QWidget other;
    show("Name", kUrl, "x");
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&other, &leave);
    QVERIFY(m_tip->isVisible());
}

void PreviewTooltipTest::attachedWidgetThatIsDeleted()
{
    auto attached = std::make_unique<QWidget>();
    attached->show();
    m_tip->attachTo(attached.get());
    show("Name", kUrl, "x");
    attached.reset(); // it hides on the way
    QVERIFY(!m_tip->isVisible());
    show("Name", kUrl, "x");
    QVERIFY(m_tip->isVisible());
}

void PreviewTooltipTest::deletedWhileShown()
{
    m_tip->attachTo(m_window.get());
    QTimer delay;
    m_tip->setDelayTimer(&delay);
    const QPointer<PreviewTooltip> tip = m_tip;
    show("Name", kSnippet, "x");
    QVERIFY(QTest::qWaitForWindowExposed(m_tip));
    m_window->deleteLater();
    m_window.release();
    QTRY_VERIFY(tip.isNull());

    QWidget window;
    window.show();
    auto* other = new PreviewTooltip(&window);
    other->attachTo(&window);
    other->showFor("Name", kUrl, "x", kAnchor);
    delete other;
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&window, &leave);
}

void PreviewTooltipTest::isCutWithoutCompositor()
{
    s_isCompositing = false;
    show("Name", kUrl, "x");
    QCOMPARE(m_tip->mask().boundingRect(), m_tip->rect());
    QVERIFY(!m_tip->mask().contains(QPoint(2, 2)));
    show("Name", kBulk, lines("a", 4));
    QCOMPARE(m_tip->mask().boundingRect(), m_tip->rect());
}

QTEST_MAIN(PreviewTooltipTest)
#include "tst_previewtooltip.moc"
