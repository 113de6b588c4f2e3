// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomWidgets.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QVBoxLayout>

#include <functional>

namespace
{

const QColor kGhost(220, 0, 0);

QFont textFont()
{
    static const int id =
        QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/PlusJakartaSans-Medium.ttf"));
    QFont font(QFontDatabase::applicationFontFamilies(id).value(0));
    font.setPixelSize(16);
    return font;
}

/// The ghost's pixels: red, which nothing else in the field is.
QRect ghostBox(GhostLineEdit& edit)
{
    return Pixels::boxWhere(Pixels::imageOf(edit), [](const QColor& color) {
        return color.red() > color.green() + 40 && color.red() > color.blue() + 40;
    });
}

/// Where two pictures of equal size differ.
QRect differenceBox(const QImage& a, const QImage& b)
{
    QRect box;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

class HintedPage : public QWidget
{
public:
    HintedPage(const QSize& hint, const QSize& minimumHint)
        : m_hint(hint), m_minimumHint(minimumHint)
    {}

    QSize sizeHint() const override { return m_hint; }
    QSize minimumSizeHint() const override { return m_minimumHint; }

private:
    QSize m_hint;
    QSize m_minimumHint;
};

/// A page of one text that wraps, so that its height depends on its width.
QLabel* wrappedPage(int words)
{
    auto* page = new QLabel(QStringLiteral("word ").repeated(words));
    page->setWordWrap(true);
    return page;
}

/// A stack as high as it wants to be, in a window as wide as most texts need several lines in.
struct StackInWindow
{
    StackInWindow()
    {
        auto* column = new QVBoxLayout(&window);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(stack);
        column->addStretch(1);
        window.resize(kWidth, 700);
    }

    /// The height that the current page wants at this width.
    int pageHeight() const
    {
        const QWidget* page = stack->currentWidget();
        return page->hasHeightForWidth() ? page->heightForWidth(kWidth) : page->sizeHint().height();
    }

    static constexpr int kWidth = 200;
    QWidget window;
    SizeAdaptiveStackedWidget* stack = new SizeAdaptiveStackedWidget;
};

/// A ghost edit that tells where its cursor is.
class OpenGhostEdit : public GhostLineEdit
{
public:
    using QLineEdit::cursorRect;
};

/// A shown ghost edit on white with a steady cursor and room for all texts of these tests.
class GhostField
{
public:
    GhostField()
    {
        QApplication::setCursorFlashTime(0);
        edit.setFont(textFont());
        edit.setStyleSheet(QStringLiteral(
            "QLineEdit { background: white; color: black; border: none; padding: 0px; }"));
        edit.resize(400, 30);
        edit.setGhostColor(kGhost);
        edit.show();
    }

    OpenGhostEdit edit;
};

/// A shown numbered edit.
class NumberedField
{
public:
    NumberedField()
    {
        edit.setFont(textFont());
        edit.setFrameShape(QFrame::NoFrame);
        edit.resize(300, 200);
        edit.show();
    }

    QWidget& gutter() { return *edit.findChild<LineNumberArea*>(); }
    /// Left edge of the text's view in the edit.
    int viewLeft() { return edit.viewport()->x(); }
    int digitWidth() { return edit.fontMetrics().horizontalAdvance(QLatin1Char('9')); }
    /// What the window shows of the gutter, whoever painted it and when.
    QImage gutterOnScreen()
    {
        const QRect area = gutter().geometry();
        return edit.screen()
            ->grabWindow(edit.winId(), area.x(), area.y(), area.width(), area.height())
            .toImage()
            .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    /// The strip of the gutter beside a line, counted from 1; for lines of one row each.
    QRect rowOf(int line)
    {
        const QTextDocument& document = *edit.document();
        const int height = qRound(document.firstBlock().layout()->boundingRect().height());
        const int top = qRound(document.documentMargin()) + (line - 1) * height;
        return {0, top, gutter().width(), height};
    }
    void setLineCount(int count) { edit.setPlainText(QString(count - 1, QLatin1Char('\n'))); }

    NumberedPlainTextEdit edit;
};

} // namespace

class CustomWidgetsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void ghostFollowsTheCursor();
    void ghostShowsOnlyAtTheEnd_data();
    void ghostShowsOnlyAtTheEnd();
    void ghostIsNoText();
    void ghostIsElidedAtTheEdge();
    void ghostWithoutRoomIsLeftOut();
    void ghostColours();
    void ghostRepaintsOnlyOnChange();

    void stackFollowsItsCurrentPage();
    void emptyStackHasTheHintsOfItsBase();
    void layoutFollowsThePage();
    void layoutFollowsWrappedPages_data();
    void layoutFollowsWrappedPages();
    void layoutFollowsATextThatGrows();
    void layoutFollowsTheWidth();

    void gutterWidth_data();
    void gutterWidth();
    void tenthLineWidensTheGutter();
    void gutterCanBeSwitchedOff();
    void gutterOffBeforeTheFirstShow();
    void gutterFollowsAResize();
    void gutterTakesTheFieldColours_data();
    void gutterTakesTheFieldColours();
    void gutterUnderItsStyleSheet();
    void gutterNumbersTheVisibleLines();
    void gutterScrollsWithTheText();
    void gutterFollowsLinesThatMove();
    void wrappedLineHasOneNumber();
    void hiddenLineHasNoNumber();
    void gutterRepaintsWithFocus();
    void gutterPaintsOnlyWhatIsAsked();
};

void CustomWidgetsTest::init()
{
    Theme::forceTheme = 1;
}

void CustomWidgetsTest::ghostFollowsTheCursor()
{
    GhostField field;
    field.edit.setText(QStringLiteral("cal"));
    field.edit.setGhostText(QStringLiteral("culator"));
    const QRect ghost = ghostBox(field.edit);
    const QRect cursor = field.edit.cursorRect(); // settled by the painting
    QVERIFY(!ghost.isEmpty());
    QVERIFY(qAbs(ghost.left() - (cursor.right() + 4)) <= 2);
    QVERIFY(ghost.top() >= cursor.top() && ghost.bottom() <= cursor.bottom());

    field.edit.setText(QStringLiteral("calcul"));
    QVERIFY(ghostBox(field.edit).left() > ghost.left() + 10);
}

void CustomWidgetsTest::ghostShowsOnlyAtTheEnd_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("ghost");
    QTest::addColumn<bool>("shows");
    QTest::newRow("at the end") << "cal" << 3 << "culator" << true;
    QTest::newRow("one before the end") << "cal" << 2 << "culator" << false;
    QTest::newRow("at the start") << "cal" << 0 << "culator" << false;
    QTest::newRow("empty field") << "" << 0 << "culator" << true;
    QTest::newRow("no ghost") << "cal" << 3 << "" << false;
}

void CustomWidgetsTest::ghostShowsOnlyAtTheEnd()
{
    QFETCH(const QString, text);
    QFETCH(const int, position);
    QFETCH(const QString, ghost);
    GhostField field;
    field.edit.setText(text);
    field.edit.setCursorPosition(position);
    field.edit.setGhostText(ghost);
    QTEST(!ghostBox(field.edit).isEmpty(), "shows");
}

void CustomWidgetsTest::ghostIsNoText()
{
    GhostField field;
    field.edit.setText(QStringLiteral("cal"));
    field.edit.setGhostText(QStringLiteral("culator"));
    QCOMPARE(field.edit.text(), QStringLiteral("cal"));
    field.edit.selectAll();
    QCOMPARE(field.edit.selectedText(), QStringLiteral("cal"));
}

void CustomWidgetsTest::ghostIsElidedAtTheEdge()
{
    GhostField field;
    const QString text = QStringLiteral("cal");
    field.edit.setText(text);
    field.edit.setGhostText(QStringLiteral("culator of all the things in the world"));
    const QImage whole = Pixels::imageOf(field.edit);
    const int right = ghostBox(field.edit).right();
    QVERIFY(right < 398);
    // One pixel more than a third of it: the rest becomes an ellipsis, and nothing is cut off.
    const int narrow = right / 3;
    field.edit.resize(narrow, 30);
    const QRect cut = ghostBox(field.edit);
    QVERIFY(!cut.isEmpty());
    QVERIFY(cut.right() < narrow - 1);
    // The last thing drawn is the dots on the baseline, not a part of a letter.
    const QImage image = Pixels::imageOf(field.edit);
    const QRect tail(cut.right() - 6, cut.top(), 7, cut.height());
    const QRect tailInk = Pixels::boxWhere(
        image.copy(tail), [](const QColor& color) { return color.red() > color.green() + 40; });
    QVERIFY(tailInk.height() <= 4);
    QVERIFY(differenceBox(image, whole.copy(image.rect())).isValid());
}

void CustomWidgetsTest::ghostWithoutRoomIsLeftOut()
{
    GhostField field;
    field.edit.setText(QStringLiteral("a text much longer than the field it stands in"));
    field.edit.setGhostText(QStringLiteral("culator"));
    QVERIFY(!ghostBox(field.edit).isEmpty());
    field.edit.resize(40, 30);
    field.edit.setCursorPosition(0);
    field.edit.end(false);
    QVERIFY(ghostBox(field.edit).isEmpty());
}

void CustomWidgetsTest::ghostColours()
{
    GhostField field;
    // A big bullet has pixels that the ghost covers wholly.
    QFont font = textFont();
    font.setPixelSize(28);
    field.edit.setFont(font);
    field.edit.setGhostText(QString(QChar(0x2022)));
    const auto solid = [&field] {
        const QImage image = Pixels::imageOf(field.edit);
        const QRect ink = Pixels::boxWhere(image.copy(12, 0, 300, 30),
                                           [](const QColor& c) { return c != Qt::white; });
        return image.pixelColor(ink.center() + QPoint(12, 0));
    };
    const auto onWhite = [](int channel) { return 255 - (255 - channel) * 0.55; };
    field.edit.setGhostColor(QColor(220, 0, 0, 30)); // its own alpha does not count
    QVERIFY(qAbs(solid().red() - onWhite(220)) <= 3);
    QVERIFY(qAbs(solid().green() - onWhite(0)) <= 3);

    field.edit.setGhostColor(QColor());
    const QColor text = field.edit.palette().color(QPalette::Text);
    QCOMPARE(text, QColor(Qt::black));
    QVERIFY(qAbs(solid().red() - onWhite(0)) <= 3);
    QVERIFY(qAbs(solid().blue() - onWhite(0)) <= 3);
}

void CustomWidgetsTest::ghostRepaintsOnlyOnChange()
{
    QWidget window;
    auto* edit = new GhostLineEdit(&window);
    edit->setGeometry(0, 0, 200, 30);
    auto* marker = new QWidget(&window);
    marker->setGeometry(0, 60, 20, 20);
    window.resize(200, 100);
    window.setFocusPolicy(Qt::StrongFocus);
    window.setFocus(); // away from the edit, whose cursor would blink
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    PaintCounter edits(edit);
    PaintCounter markers(marker);
    // Both are painted in one round, so once the marker is, the edit would have been as well.
    const auto isPainted = [&] {
        const int before = markers.count;
        marker->update();
        return QTest::qWaitFor([&] { return markers.count > before; });
    };
    const auto repaintsOn = [&](const std::function<void()>& act) {
        if (!isPainted()) // what happened before does not count
            return false;
        const int before = edits.count;
        act();
        return isPainted() && edits.count > before;
    };
    QVERIFY(repaintsOn([&] { edit->setGhostText(QStringLiteral("one")); }));
    QVERIFY(!repaintsOn([&] { edit->setGhostText(QStringLiteral("one")); }));
    QVERIFY(repaintsOn([&] { edit->setGhostColor(kGhost); }));
    QVERIFY(!repaintsOn([&] { edit->setGhostColor(kGhost); }));
    QVERIFY(repaintsOn([&] { edit->setGhostColor(QColor()); }));
    QVERIFY(!repaintsOn([&] { edit->setGhostColor(QColor()); }));
    QVERIFY(repaintsOn([&] { edit->setGhostText(QString()); }));
    QVERIFY(!repaintsOn([&] { edit->setGhostText(QString()); }));
}

void CustomWidgetsTest::stackFollowsItsCurrentPage()
{
    SizeAdaptiveStackedWidget stack;
    stack.addWidget(new HintedPage({300, 200}, {100, 80}));
    stack.addWidget(new HintedPage({120, 90}, {50, 40}));
    QCOMPARE(stack.sizeHint(), QSize(300, 200));
    QCOMPARE(stack.minimumSizeHint(), QSize(100, 80));
    stack.setCurrentIndex(1);
    QCOMPARE(stack.sizeHint(), QSize(120, 90));
    QCOMPARE(stack.minimumSizeHint(), QSize(50, 40));
}

void CustomWidgetsTest::emptyStackHasTheHintsOfItsBase()
{
    const QStackedWidget base;
    const SizeAdaptiveStackedWidget stack;
    QCOMPARE(stack.sizeHint(), base.sizeHint());
    QCOMPARE(stack.minimumSizeHint(), base.minimumSizeHint());
}

void CustomWidgetsTest::layoutFollowsThePage()
{
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    auto* stack = new SizeAdaptiveStackedWidget;
    stack->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    stack->addWidget(new HintedPage({300, 200}, {100, 80}));
    stack->addWidget(new HintedPage({120, 90}, {50, 40}));
    column->addWidget(stack);
    column->addStretch(1);
    window.resize(400, 400);
    window.show();
    QTRY_COMPARE(stack->height(), 200);
    stack->setCurrentIndex(1);
    QTRY_COMPARE(stack->height(), 90);
    stack->setCurrentIndex(0);
    QTRY_COMPARE(stack->height(), 200);
}

void CustomWidgetsTest::layoutFollowsWrappedPages_data()
{
    using Pages = std::function<QList<QWidget*>()>;
    QTest::addColumn<Pages>("makePages");
    const auto tall = [] { return new HintedPage({120, 400}, {50, 300}); };
    const auto low = [] { return new HintedPage({120, 20}, {50, 20}); };
    QTest::newRow("short wrapped page beside a tall one") << Pages([tall] {
        return QList<QWidget*>{wrappedPage(20), tall()};
    });
    QTest::newRow("short wrapped page beside a long wrapped one") << Pages([] {
        return QList<QWidget*>{wrappedPage(20), wrappedPage(200)};
    });
    QTest::newRow("low plain page beside a long wrapped one") << Pages([low] {
        return QList<QWidget*>{low(), wrappedPage(200)};
    });
}

void CustomWidgetsTest::layoutFollowsWrappedPages()
{
    QFETCH(std::function<QList<QWidget*>()>, makePages);
    StackInWindow shown;
    for (QWidget* page : makePages())
        shown.stack->addWidget(page);
    shown.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&shown.window));
    const int first = shown.pageHeight();
    QTRY_COMPARE(shown.stack->height(), first);
    shown.stack->setCurrentIndex(1);
    const int second = shown.pageHeight();
    QVERIFY(second > 2 * first);
    QTRY_COMPARE(shown.stack->height(), second);
    shown.stack->setCurrentIndex(0);
    QTRY_COMPARE(shown.stack->height(), first);
}

void CustomWidgetsTest::layoutFollowsATextThatGrows()
{
    StackInWindow shown;
    QLabel* page = wrappedPage(10);
    shown.stack->addWidget(page);
    shown.stack->addWidget(wrappedPage(200));
    shown.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&shown.window));
    const int before = shown.pageHeight();
    QTRY_COMPARE(shown.stack->height(), before);
    page->setText(page->text().repeated(4));
    QVERIFY(shown.pageHeight() > 2 * before);
    QTRY_COMPARE(shown.stack->height(), shown.pageHeight());
}

void CustomWidgetsTest::layoutFollowsTheWidth()
{
    StackInWindow shown;
    QLabel* page = wrappedPage(40);
    shown.stack->addWidget(page);
    QCOMPARE(shown.stack->sizeHint(), page->sizeHint()); // while it has no width yet
    QCOMPARE(shown.stack->minimumSizeHint(), page->minimumSizeHint());
    shown.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&shown.window));
    const int narrow = shown.pageHeight();
    QTRY_COMPARE(shown.stack->height(), narrow);
    shown.window.resize(2 * StackInWindow::kWidth, 700);
    QTRY_COMPARE(shown.stack->width(), 2 * StackInWindow::kWidth);
    QVERIFY(page->heightForWidth(shown.stack->width()) < narrow);
    QTRY_COMPARE(shown.stack->height(), page->heightForWidth(shown.stack->width()));
}

void CustomWidgetsTest::gutterWidth_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("digits");
    QTest::newRow("empty") << 1 << 1;
    QTest::newRow("nine") << 9 << 1;
    QTest::newRow("ten") << 10 << 2;
    QTest::newRow("ninety-nine") << 99 << 2;
    QTest::newRow("a thousand") << 1000 << 4;
}

void CustomWidgetsTest::gutterWidth()
{
    QFETCH(const int, lines);
    QFETCH(const int, digits);
    NumberedField field;
    field.setLineCount(lines);
    const int width = digits * field.digitWidth() + 16;
    QCOMPARE(field.edit.lineNumberAreaWidth(), width);
    QCOMPARE(field.gutter().sizeHint(), QSize(width, 0));
    QTRY_COMPARE(field.gutter().geometry(), QRect(0, 0, width, 200));
    QCOMPARE(field.viewLeft(), width);
}

void CustomWidgetsTest::tenthLineWidensTheGutter()
{
    NumberedField field;
    field.setLineCount(9);
    const int narrow = field.edit.lineNumberAreaWidth();
    field.edit.moveCursor(QTextCursor::End);
    QTest::keyClick(&field.edit, Qt::Key_Return);
    QCOMPARE(field.edit.blockCount(), 10);
    QCOMPARE(field.edit.lineNumberAreaWidth(), narrow + field.digitWidth());
    QCOMPARE(field.viewLeft(), narrow + field.digitWidth()); // at once, before any painting
    QTRY_COMPARE(field.gutter().width(), narrow + field.digitWidth());
    QTest::keyClick(&field.edit, Qt::Key_Backspace);
    QTRY_COMPARE(field.gutter().width(), narrow);
    QCOMPARE(field.viewLeft(), narrow);
}

void CustomWidgetsTest::gutterCanBeSwitchedOff()
{
    NumberedField field;
    field.setLineCount(12);
    const int width = field.edit.lineNumberAreaWidth();
    QTRY_COMPARE(field.viewLeft(), width);
    field.edit.setLineNumbersVisible(false);
    QCOMPARE(field.edit.lineNumberAreaWidth(), 0);
    QVERIFY(!field.gutter().isVisible());
    QTRY_COMPARE(field.viewLeft(), 0);
    field.setLineCount(150); // and no change of the text brings it back
    QCOMPARE(field.edit.lineNumberAreaWidth(), 0);
    QCOMPARE(field.viewLeft(), 0);
    field.setLineCount(12);
    field.edit.setLineNumbersVisible(true);
    QVERIFY(field.gutter().isVisible());
    QTRY_COMPARE(field.gutter().geometry(), QRect(0, 0, width, 200));
    QCOMPARE(field.viewLeft(), width);
}

void CustomWidgetsTest::gutterOffBeforeTheFirstShow()
{
    NumberedPlainTextEdit edit(nullptr);
    edit.setFrameShape(QFrame::NoFrame);
    edit.setLineNumbersVisible(false);
    edit.resize(200, 100);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QCOMPARE(edit.viewport()->x(), 0);
    QVERIFY(!edit.findChild<LineNumberArea*>()->isVisible());
}

void CustomWidgetsTest::gutterFollowsAResize()
{
    NumberedField field;
    field.edit.setFrameShape(QFrame::Box);
    field.edit.setLineWidth(3);
    field.edit.resize(260, 120);
    const QRect contents = field.edit.contentsRect();
    QVERIFY(contents.left() > 0);
    QTRY_COMPARE(field.gutter().geometry(),
                 QRect(contents.left(), contents.top(), field.edit.lineNumberAreaWidth(),
                       contents.height()));
}

void CustomWidgetsTest::gutterTakesTheFieldColours_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void CustomWidgetsTest::gutterTakesTheFieldColours()
{
    QFETCH(const int, mode);
    Theme::forceTheme = mode;
    const ColorTokens tokens = Theme::colors();
    NumberedField field;
    QVERIFY(QTest::qWaitForWindowActive(&field.edit));
    field.edit.setFocus();
    QTRY_VERIFY(field.edit.hasFocus());
    const QPoint below(3, 190); // under the only number
    QCOMPARE(Pixels::imageOf(field.gutter()).pixelColor(below),
             QColor(Theme::fieldFocusBg(tokens)));
    const QImage focused = Pixels::imageOf(field.gutter());
    field.edit.clearFocus();
    const QImage idle = Pixels::imageOf(field.gutter());
    QCOMPARE(idle.pixelColor(below), QColor(Theme::fieldIdleBg(tokens)));
    QVERIFY(focused.pixelColor(below) != idle.pixelColor(below));
    const QRect digit = Pixels::boxWhere(
        idle, [&tokens](const QColor& color) { return color == QColor(tokens.onSurfaceVariant); });
    QVERIFY(!digit.isEmpty());
    QVERIFY(digit.right() < field.gutter().width() - 8);
    QVERIFY(digit.bottom() < 60);
}

void CustomWidgetsTest::gutterUnderItsStyleSheet()
{
    const ColorTokens tokens = Theme::colors();
    NumberedField field;
    field.edit.setStyleSheet(Theme::fieldInputStyle(tokens));
    field.edit.resize(300, 400);
    field.setLineCount(12);
    QVERIFY(QTest::qWaitForWindowActive(&field.edit));
    const QRect contents = field.edit.contentsRect();
    QVERIFY(contents.left() > 0); // the padding of the sheet
    const QRect gutter(contents.topLeft(),
                       QSize(field.edit.lineNumberAreaWidth(), contents.height()));
    QTRY_COMPARE(field.gutter().geometry(), gutter);
    QCOMPARE(field.edit.viewport()->geometry(), contents.adjusted(gutter.width(), 0, 0, 0));
    // The sheet paints the field and the gutter itself, and between them there is no seam.
    for (const bool hasFocus : {true, false}) {
        hasFocus ? field.edit.setFocus() : field.edit.clearFocus();
        const QColor ground(hasFocus ? Theme::fieldFocusBg(tokens) : Theme::fieldIdleBg(tokens));
        const QImage image = field.edit.grab().toImage();
        QCOMPARE(image.pixelColor(gutter.left() + 1, gutter.bottom() - 1), ground);
        QCOMPARE(image.pixelColor(gutter.left() - 2, gutter.bottom() - 1), ground);
        QCOMPARE(image.pixelColor(gutter.right() + 20, gutter.bottom() - 1), ground);
        const QRect digits = Pixels::boxWhere(image.copy(gutter), [&tokens](const QColor& color) {
            return color == QColor(tokens.onSurfaceVariant);
        });
        QVERIFY(!digits.isEmpty());
    }
}

void CustomWidgetsTest::gutterNumbersTheVisibleLines()
{
    NumberedField field;
    field.setLineCount(12);
    field.edit.clearFocus();
    const QImage image = Pixels::imageOf(field.gutter());

    const ColorTokens tokens = Theme::colors();
    QImage wanted = Pixels::canvas(image.size());
    wanted.fill(QColor(Theme::fieldIdleBg(tokens)));
    QPainter painter(&wanted);
    painter.setFont(field.edit.font());
    painter.setPen(QColor(tokens.onSurfaceVariant));
    for (int line = 1; line <= 12; ++line) {
        const QRect row = field.rowOf(line);
        painter.drawText(0, row.top(), row.width() - 8, field.edit.fontMetrics().height(),
                         Qt::AlignRight | Qt::AlignVCenter, QString::number(line));
    }
    painter.end();
    QCOMPARE(image, wanted);
}

void CustomWidgetsTest::gutterScrollsWithTheText()
{
    NumberedField field;
    field.setLineCount(99);
    QVERIFY(QTest::qWaitForWindowActive(&field.edit));
    field.edit.clearFocus();
    const QImage top = Pixels::imageOf(field.gutter());
    QTRY_COMPARE(field.gutterOnScreen(), top);
    field.edit.verticalScrollBar()->setValue(50);
    const QImage scrolled = Pixels::imageOf(field.gutter());
    QVERIFY(scrolled != top);
    QTRY_COMPARE(field.gutterOnScreen(), scrolled);
    field.edit.verticalScrollBar()->setValue(47);
    QTRY_COMPARE(field.gutterOnScreen(), Pixels::imageOf(field.gutter()));
    field.edit.verticalScrollBar()->setValue(0);
    QTRY_COMPARE(field.gutterOnScreen(), top);
}

void CustomWidgetsTest::gutterFollowsLinesThatMove()
{
    NumberedField field;
    field.setLineCount(3);
    QVERIFY(QTest::qWaitForWindowActive(&field.edit));
    field.edit.clearFocus();
    const QImage before = Pixels::imageOf(field.gutter());
    QTRY_COMPARE(field.gutterOnScreen(), before);
    // The first line wraps and pushes the others down, with no change in their number.
    field.edit.insertPlainText(QStringLiteral("word ").repeated(20));
    const QImage after = Pixels::imageOf(field.gutter());
    QVERIFY(after != before);
    QTRY_COMPARE(field.gutterOnScreen(), after);
}

void CustomWidgetsTest::wrappedLineHasOneNumber()
{
    NumberedField field;
    field.edit.setPlainText(QStringLiteral("word ").repeated(20) + QStringLiteral("\nlast"));
    QVERIFY(QTest::qWaitForWindowExposed(&field.edit));
    QTRY_VERIFY(field.edit.document()->firstBlock().layout()->lineCount() > 2);
    field.edit.clearFocus();
    const int lineHeight = field.edit.fontMetrics().lineSpacing();
    const int rows = field.edit.document()->firstBlock().layout()->lineCount();
    const QColor ground(Theme::fieldIdleBg(Theme::colors()));
    const QImage image = Pixels::imageOf(field.gutter());
    const QRect between(0, lineHeight + 6, image.width(), (rows - 1) * lineHeight - 6);
    const QRect ink = Pixels::boxWhere(image.copy(between),
                                       [&ground](const QColor& color) { return color != ground; });
    QVERIFY(ink.isEmpty());
}

void CustomWidgetsTest::hiddenLineHasNoNumber()
{
    NumberedField field;
    field.setLineCount(3);
    field.edit.clearFocus();
    const QImage all = Pixels::imageOf(field.gutter());
    const QRect first = field.rowOf(1);
    const QRect second = field.rowOf(2);
    const QRect third = field.rowOf(3);
    QTextBlock hidden = field.edit.document()->findBlockByNumber(1);
    hidden.setVisible(false);
    hidden.setLineCount(0);
    field.edit.document()->markContentsDirty(hidden.position(), hidden.length());
    field.edit.resize(300, 201); // lays the lines out anew
    field.edit.resize(300, 200);
    const QImage without = Pixels::imageOf(field.gutter());
    QCOMPARE(without.copy(first), all.copy(first));
    QCOMPARE(without.copy(second), all.copy(third));
}

void CustomWidgetsTest::gutterRepaintsWithFocus()
{
    QWidget window;
    auto* edit = new NumberedPlainTextEdit(&window);
    edit->setGeometry(0, 0, 200, 100);
    window.resize(200, 120);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    edit->clearFocus();
    PaintCounter paints(edit->findChild<LineNumberArea*>());
    edit->setFocus();
    QTRY_COMPARE(paints.count, 1);
    edit->clearFocus();
    QTRY_COMPARE(paints.count, 2);
}

void CustomWidgetsTest::gutterPaintsOnlyWhatIsAsked()
{
    NumberedField field;
    field.setLineCount(9);
    field.edit.clearFocus();
    const int lineHeight = field.edit.fontMetrics().lineSpacing();
    QImage strip(field.gutter().size(), QImage::Format_ARGB32_Premultiplied);
    strip.fill(Qt::white);
    QPainter painter(&strip);
    const QRect asked(0, 2 * lineHeight, strip.width(), lineHeight);
    field.gutter().render(&painter, asked.topLeft(), asked, QWidget::DrawChildren);
    painter.end();
    const QRect inked =
        Pixels::boxWhere(strip, [](const QColor& color) { return color != QColor(Qt::white); });
    QCOMPARE(inked, asked);
    QCOMPARE(strip.copy(asked), Pixels::imageOf(field.gutter()).copy(asked));
}

QTEST_MAIN(CustomWidgetsTest)
#include "tst_customwidgets.moc"
