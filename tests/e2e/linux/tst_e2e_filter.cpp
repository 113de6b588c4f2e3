// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "Program.h"

#include <QtTest>

#include <optional>

/// Narrowing a search and moving the window, by real keys and a real mouse.
class E2eFilter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void menuNeedsItsConfirmation();
    void confirmedScopeNarrowsThisSearchOnly();
    void backspaceRemovesTheLastChip();
    void clickRemovesTheChip();
    void altDownOpensTheMenuToo();
    void backspaceClosesTheMenu();
    void arrowsPassHeaders();
    void doubleClickLaunchesAndSingleClickSelects();
    void dragMovesTheWindowUntilTheNextShow();
    void chipsLiftAWindowAtTheBottom();

private:
    static constexpr int kEmptyHeight = 144;
    static constexpr int kChipHeight = 190; // one row of chips

    std::optional<XClient::Window> menu() const;
    std::optional<XClient::Window> dot() const;
    std::optional<XClient::Window> otherWindow(bool isDot) const;
    void openMenuAndToggle(int row);
    void pressAt(const QPoint& position) const;
    int height() const { return m_program->spotlight().geometry.height(); }

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
};

void E2eFilter::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eFilter::init()
{
    m_program = std::make_unique<Program>(*m_desktop);
    m_program->writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    m_program->startAndSettle();
    m_program->openSpotlight();
}

void E2eFilter::cleanup()
{
    m_program.reset();
}

std::optional<XClient::Window> E2eFilter::otherWindow(bool isDot) const
{
    const auto windows = m_desktop->client().windowsOf(m_program->process().processId());
    for (const XClient::Window& window : windows) {
        const QSize size = window.geometry.size();
        const bool isOwn =
            window.id == m_program->spotlight().id || window.id == m_program->homeWindow().id;
        const bool hasDotSize = size == QSize(40, 40);
        if (window.isViewable && !isOwn && hasDotSize == isDot && size.height() >= 40)
            return window;
    }
    return std::nullopt;
}

std::optional<XClient::Window> E2eFilter::menu() const
{
    return otherWindow(false);
}

std::optional<XClient::Window> E2eFilter::dot() const
{
    return otherWindow(true);
}

void E2eFilter::openMenuAndToggle(int row)
{
    m_program->key(QStringLiteral("F4"));
    QTRY_VERIFY(menu());
    for (int i = 0; i <= row; ++i)
        m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("space"));
    QTRY_VERIFY(dot());
}

void E2eFilter::pressAt(const QPoint& position) const
{
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(position.x()),
                        QString::number(position.y()), QStringLiteral("click"),
                        QStringLiteral("1")});
}

void E2eFilter::menuNeedsItsConfirmation()
{
    openMenuAndToggle(0);
    Program::keep(m_program->settledScreenshot(), QStringLiteral("filter-menu"));
    const QRect dotPlace = dot()->geometry;
    const QRect menuPlace = menu()->geometry;
    QCOMPARE(dotPlace.left(), menuPlace.left() + menuPlace.width() + 8);
    m_program->key(QStringLiteral("Escape"));
    QTRY_VERIFY(!menu() && !dot());
    QTRY_VERIFY(m_program->isSpotlightUp());
    QCOMPARE(height(), kEmptyHeight);
    QVERIFY(!m_program->setting(QStringLiteral("Spotlight/DefaultScope")).isValid());
}

void E2eFilter::confirmedScopeNarrowsThisSearchOnly()
{
    openMenuAndToggle(0); // applications
    pressAt(dot()->geometry.center());
    QTRY_VERIFY(!menu() && !dot());
    QTRY_COMPARE(height(), kChipHeight);
    m_program->type(QStringLiteral("team"));
    QTRY_COMPARE(height(), kChipHeight + 328);
    Program::keep(m_program->settledScreenshot(), QStringLiteral("filter-applied"));
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
    m_program->openSpotlight();
    QTRY_COMPARE(height(), kEmptyHeight);
}

void E2eFilter::backspaceRemovesTheLastChip()
{
    openMenuAndToggle(4); // snippets
    pressAt(dot()->geometry.center());
    QTRY_COMPARE(height(), kChipHeight);
    m_program->type(QStringLiteral("t"));
    m_program->key(QStringLiteral("BackSpace")); // takes the letter
    QTRY_COMPARE(height(), kChipHeight);
    m_program->key(QStringLiteral("BackSpace")); // takes the chip
    QTRY_COMPARE(height(), kEmptyHeight);
    m_program->key(QStringLiteral("BackSpace"));
    QVERIFY(m_program->isSpotlightUp());
}

void E2eFilter::clickRemovesTheChip()
{
    openMenuAndToggle(1);
    pressAt(dot()->geometry.center());
    QTRY_COMPARE(height(), kChipHeight);
    m_program->settledScreenshot(); // the chip is in its place
    // The first chip: strip padding, box, gap, margin.
    const QPoint card = m_program->spotlight().geometry.topLeft() + QPoint(32, 32);
    pressAt(card + QPoint(18 + 8 + 20, 18 + 44 + 18 + 14));
    QTRY_COMPARE(height(), kEmptyHeight);
    QTRY_VERIFY(m_program->isSpotlightUp());
}

void E2eFilter::altDownOpensTheMenuToo()
{
    m_program->key(QStringLiteral("alt+Down"));
    QTRY_VERIFY(menu());
    // It hangs below the button, four pixels away.
    const QPoint card = m_program->spotlight().geometry.topLeft() + QPoint(32, 32);
    QTRY_COMPARE(menu().value_or(XClient::Window()).geometry.topLeft(),
                 card + QPoint(18 + 8, 18 + 8 + 28 + 4));
}

void E2eFilter::backspaceClosesTheMenu()
{
    m_program->key(QStringLiteral("F4"));
    QTRY_VERIFY(menu());
    m_program->key(QStringLiteral("BackSpace"));
    QTRY_VERIFY(!menu());
    QTRY_VERIFY(m_program->isSpotlightUp());
}

void E2eFilter::arrowsPassHeaders()
{
    m_program->type(QStringLiteral("team"));
    // Two web addresses, then the header of the applications; back over it again.
    for (const char* key : {"Down", "Down", "Up", "Up", "Up", "Up"})
        m_program->key(QLatin1String(key));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{QStringLiteral("https://calendar.example.org")});
    m_program->waitUntilSpotlightIsGone();

    m_program->openSpotlight();
    m_program->type(QStringLiteral("team"));
    // File and snippet stand behind the application, each below a header of its own.
    for (int i = 0; i < 4; ++i)
        m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("team@example.org"));
    m_program->waitUntilSpotlightIsGone();

    m_program->openSpotlight();
    m_program->type(QStringLiteral("team"));
    // Behind all of the user's own is the search on the web, and there the list ends.
    for (int i = 0; i < 8; ++i)
        m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened().value(1),
                 QStringLiteral("https://www.google.com/search?q=team"));
}

void E2eFilter::doubleClickLaunchesAndSingleClickSelects()
{
    m_program->type(QStringLiteral("team"));
    QTRY_COMPARE(height(), kEmptyHeight + 328);
    const QPoint card = m_program->spotlight().geometry.topLeft() + QPoint(32, 32);
    const QPoint secondRow = card + QPoint(200, 80 + 4 + 30 + 64 + 32);
    pressAt(secondRow);
    m_program->settledScreenshot();
    QVERIFY(m_program->isSpotlightUp());
    QVERIFY(m_desktop->opened().isEmpty());
    m_desktop->xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
                        QStringLiteral("--delay"), QStringLiteral("40"), QStringLiteral("1")});
    QTRY_COMPARE(m_desktop->opened(), QStringList{QStringLiteral("https://wiki.example.org")});
    m_program->waitUntilSpotlightIsGone();
}

void E2eFilter::dragMovesTheWindowUntilTheNextShow()
{
    const QPoint home((Desktop::ScreenWidth - 584) / 2, Desktop::ScreenHeight / 4);
    QTRY_COMPARE(m_program->spotlight().geometry.topLeft(), home);
    const QPoint grip = home + QPoint(32 + 100, 32 + 8); // above the box
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(grip.x()),
                        QString::number(grip.y()), QStringLiteral("mousedown"),
                        QStringLiteral("1")});
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(grip.x() + 60),
                        QString::number(grip.y() + 30)});
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(grip.x() + 120),
                        QString::number(grip.y() + 50), QStringLiteral("mouseup"),
                        QStringLiteral("1")});
    QTRY_COMPARE(m_program->spotlight().geometry.topLeft(), home + QPoint(120, 50));
    // Growing keeps the place.
    m_program->type(QStringLiteral("team"));
    QTRY_COMPARE(height(), kEmptyHeight + 328);
    QTRY_COMPARE(m_program->spotlight().geometry.topLeft(), home + QPoint(120, 50));
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
    m_program->openSpotlight();
    QTRY_COMPARE(m_program->spotlight().geometry.topLeft(), home);
}

void E2eFilter::chipsLiftAWindowAtTheBottom()
{
    const QPoint home = m_program->spotlight().geometry.topLeft();
    const QPoint grip = home + QPoint(32 + 100, 32 + 8);
    // The visible card ends 10 pixels above the screen's end.
    const int drop = Desktop::ScreenHeight - 10 - (home.y() + kEmptyHeight - 32);
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(grip.x()),
                        QString::number(grip.y()), QStringLiteral("mousedown"), QStringLiteral("1"),
                        QStringLiteral("mousemove"), QString::number(grip.x()),
                        QString::number(grip.y() + 20)});
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(grip.x()),
                        QString::number(grip.y() + drop), QStringLiteral("mouseup"),
                        QStringLiteral("1")});
    const QPoint dropped = home + QPoint(0, drop);
    QTRY_COMPARE(m_program->spotlight().geometry.topLeft(), dropped);
    openMenuAndToggle(0);
    pressAt(dot()->geometry.center());
    QTRY_COMPARE(height(), kChipHeight);
    QTRY_COMPARE(m_program->spotlight().geometry.top(), Desktop::ScreenHeight + 32 - kChipHeight);
    m_program->key(QStringLiteral("BackSpace"));
    QTRY_COMPARE(m_program->spotlight().geometry.topLeft(), dropped);
}

QTEST_GUILESS_MAIN(E2eFilter)
#include "tst_e2e_filter.moc"
