// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "IconHelper.h"
#include "Profile.h"
#include "Theme.h"

#include <QPainter>
#include <QtTest>

/// The home page as pictures to look at, in every state, theme, language and scale, and pixel by
/// pixel where the design has numbers.
class E2eHomeLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void gridOfSomeItems_data();
    void gridOfSomeItems();
    void emptyStates();
    void editorOfEachType_data();
    void editorOfEachType();
    void tooltip_data();
    void tooltip();
    void themeAndLanguage_data();
    void themeAndLanguage();
    void scale_data();
    void scale();

private:
    static void keep(const HomePage& home, const QString& name);
    QVector<LauncherElement> itemsOfAllKinds() const;
    QByteArray twoSections() const;

    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

QPoint cornerOf(HomePage& home)
{
    return home.program().homeWindow().geometry.topLeft();
}

/// The colour of a place of the window.
QColor at(const QImage& picture, HomePage& home, const QPoint& place)
{
    return picture.pixelColor(cornerOf(home) + place);
}

} // namespace

void E2eHomeLooks::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    QImage picture(200, 120, QImage::Format_RGB32);
    picture.fill(QColor(0xd0, 0x30, 0x60));
    QPainter(&picture).fillRect(QRect(20, 20, 60, 60), Qt::white);
    QVERIFY(picture.save(m_desktop->path(QStringLiteral("picture.png"))));
}

void E2eHomeLooks::keep(const HomePage& home, const QString& name)
{
    Program::keep(home.settledScreenshot(), QStringLiteral("home-") + name);
}

/// One of each type, one with a glyph of its own, one with a picture, one whose picture is gone,
/// and names that ask for trouble.
QVector<LauncherElement> E2eHomeLooks::itemsOfAllKinds() const
{
    QVector<LauncherElement> items = Profile::examples();
    LauncherElement glyph = Profile::item(QStringLiteral("Own glyph"), QStringLiteral("URL"),
                                          QStringLiteral("https://example.org"));
    glyph.iconPath = IconHelper::glyphToken(0xEA28);
    LauncherElement picture = Profile::item(QStringLiteral("Own picture"), QStringLiteral("File"),
                                            QStringLiteral("/tmp/picture"));
    picture.iconPath = m_desktop->path(QStringLiteral("picture.png"));
    LauncherElement broken =
        Profile::item(QStringLiteral("Picture that is gone"), QStringLiteral("Application"),
                      QStringLiteral("/opt/app"));
    broken.iconPath = m_desktop->path(QStringLiteral("gone.png"));
    items += {glyph, picture, broken};
    items.append(Profile::item(QStringLiteral("Tom & Jerry <b>bold</b>"), QStringLiteral("URL"),
                               QStringLiteral("https://example.org/&")));
    items.append(Profile::item(
        QStringLiteral("A name that is much too long for the two lines a tile has for it"),
        QStringLiteral("Snippet"), QStringLiteral("text")));
    items.append(Profile::item(QStringLiteral("日本語の名前 שלום"), QStringLiteral("Snippet"),
                               QStringLiteral("text")));
    return items;
}

QByteArray E2eHomeLooks::twoSections() const
{
    QJsonObject document =
        QJsonDocument::fromJson(
            Profile::documentOfSections({{QStringLiteral("Work"), itemsOfAllKinds()},
                                         {QStringLiteral("R & D"), Profile::examples()}}))
            .object();
    SectionTemplate office;
    office.name = QStringLiteral("Office");
    office.items = Profile::examples();
    document.insert(QStringLiteral("templates"), QJsonArray{office.toJson()});
    return QJsonDocument(document).toJson();
}

void E2eHomeLooks::gridOfSomeItems_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 12, 60})
        QTest::addRow("%d items", count) << count;
}

void E2eHomeLooks::gridOfSomeItems()
{
    QFETCH(int, count);
    QVector<LauncherElement> items = itemsOfAllKinds().mid(0, count);
    for (int i = int(items.size()); i < count; ++i) {
        items.append(Profile::item(QStringLiteral("Item %1").arg(i + 1), QStringLiteral("URL"),
                                   QStringLiteral("https://example.org")));
    }
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), Profile::document(items));
    home.program().setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    Theme::forceTheme = 1; // for the colours that are expected
    home.start();
    if (count > 0)
        home.press({HomePage::Down});
    const QImage picture = home.settledScreenshot();
    Program::keep(picture, QStringLiteral("home-grid-%1").arg(count));
    // Between header and panel, and between the tiles, which leave half a gap on every side.
    QCOMPARE(at(picture, home, {300, 34}), QColor(Theme::shellBg()));
    QCOMPARE(at(picture, home, {300, 166}), QColor(Theme::panelBg()));
    if (count < 12)
        return;
    const QPoint firstCorner = HomePage::tile(0) - QPoint(88, 66);
    QCOMPARE(at(picture, home, firstCorner + QPoint(176, 66)), QColor(Theme::panelBg()));
    QCOMPARE(at(picture, home, firstCorner + QPoint(88, 132)), QColor(Theme::panelBg()));
    QVERIFY(at(picture, home, firstCorner + QPoint(20, 66)) != QColor(Theme::panelBg()));
    QVERIFY(at(picture, home, firstCorner + QPoint(20, 66)) !=
            at(picture, home, firstCorner + QPoint(176 + 20, 66)));
    home.press({HomePage::End});
    keep(home, QStringLiteral("grid-%1-end").arg(count));
}

void E2eHomeLooks::emptyStates()
{
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), Profile::document({}));
    home.start();
    const QImage nothingThere = home.settledScreenshot();
    Program::keep(nothingThere, QStringLiteral("home-empty"));
    home.type(QStringLiteral("zebra"));
    const QImage nothingFound = home.settledScreenshot();
    Program::keep(nothingFound, QStringLiteral("home-nothing-found"));
    home.chord({HomePage::Control, 'a'});
    home.type(QStringLiteral("y zebra"));
    const QImage twoSuggestions = home.settledScreenshot();
    Program::keep(twoSuggestions, QStringLiteral("home-nothing-found-engine"));
    QVERIFY(nothingThere != nothingFound);
    QVERIFY(nothingFound != twoSuggestions);
    // A text that is longer than a button can show.
    home.chord({HomePage::Control, 'a'});
    home.type(QStringLiteral("y ") + QStringLiteral("very long words ").repeated(12));
    keep(home, QStringLiteral("nothing-found-long"));
}

void E2eHomeLooks::editorOfEachType_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("url") << int(HomePage::UrlRow);
    QTest::newRow("app") << int(HomePage::ApplicationRow);
    QTest::newRow("file") << int(HomePage::FileRow);
    QTest::newRow("bulk") << int(HomePage::BulkRow);
    QTest::newRow("text") << int(HomePage::SnippetRow);
}

void E2eHomeLooks::editorOfEachType()
{
    QFETCH(int, type);
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), twoSections());
    home.start();
    home.openAddMenu();
    home.chooseRow(HomePage::AddItemRow);
    constexpr QRect kHint(110, 338, 260, 26); // in the value field, while no button stands above it
    const QImage ofUrl = home.settledScreenshot().copy(kHint.translated(cornerOf(home)));
    home.press({HomePage::Return, HomePage::Return});
    home.chooseRow(type);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const QImage picture = home.settledScreenshot();
    Program::keep(picture, QStringLiteral("home-editor-") + name);
    QCOMPARE(picture.copy(kHint.translated(cornerOf(home))) == ofUrl, type == HomePage::UrlRow);
    if (type != HomePage::BulkRow)
        return;
    home.press({HomePage::Down, HomePage::Down});
    home.type(QStringLiteral("https://one.example.org\nhttps://two.example.org\nthree\nfour\nfive"
                             "\nsix\nseven\neight"));
    keep(home, QStringLiteral("editor-bulk-lines"));
    home.press({HomePage::Down, HomePage::Right, HomePage::Return}); // without a name
    home.waitForDialog();
    keep(home, QStringLiteral("editor-warning"));
}

void E2eHomeLooks::tooltip_data()
{
    QTest::addColumn<int>("index"); // of the item
    QTest::addColumn<QPoint>("place");
    const QRect available(0, 0, Desktop::ScreenWidth, Desktop::ScreenHeight);
    const QSize window(617, 616);
    // The shadow may stand over the edge of the screen.
    const QPoint topLeft(-30, -30);
    const QPoint bottomRight(available.width() - window.width() + 30,
                             available.height() - window.height() + 30);
    QTest::newRow("url, top left") << 0 << topLeft;
    QTest::newRow("app, top right") << 2 << QPoint(bottomRight.x(), topLeft.y());
    QTest::newRow("bulk, bottom left") << 5 << QPoint(topLeft.x(), bottomRight.y());
    QTest::newRow("text, bottom right") << 4 << bottomRight;
    QTest::newRow("file, middle") << 3 << QPoint(331, 132);
}

void E2eHomeLooks::tooltip()
{
    QFETCH(int, index);
    QFETCH(QPoint, place);
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    home.start();
    // Dragged there by its header.
    const QPoint grip = cornerOf(home) + QPoint(300, 40);
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(grip.x()),
                        QString::number(grip.y()), QStringLiteral("mousedown"),
                        QStringLiteral("1")});
    const QPoint target = grip + place - cornerOf(home);
    m_desktop->client().movePointer((grip + target) / 2);
    m_desktop->client().movePointer(target);
    m_desktop->xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
    QTRY_COMPARE(cornerOf(home), place);
    const auto isTooltip = [&](const XClient::Window& window) {
        return window.isViewable && window.id != home.program().homeWindow().id;
    };
    const auto tooltipWindow = [&] {
        const QVector<XClient::Window> windows =
            m_desktop->client().windowsOf(home.program().processId());
        const auto found = std::find_if(windows.begin(), windows.end(), isTooltip);
        return found == windows.end() ? XClient::Window() : *found;
    };
    // It is for the item that becomes current; the first one is from the start.
    home.movePointer(HomePage::tile(1));
    home.movePointer(HomePage::tile(index));
    QTRY_VERIFY(tooltipWindow().isViewable);
    keep(home, QStringLiteral("tooltip-") +
                   QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1String(", "), "-"));
    // Whole on the screen, and gone as soon as the pointer is.
    const QRect screen(QPoint(), m_desktop->screen());
    QVERIFY(screen.contains(tooltipWindow().geometry));
    QVERIFY(home.isUp());
    m_desktop->client().movePointer(screen.center().x() < place.x() ? QPoint(2, 2)
                                                                    : screen.bottomRight());
    QTRY_VERIFY(!tooltipWindow().isViewable);
}

void E2eHomeLooks::themeAndLanguage_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("language");
    for (const char* language : {"en", "id", "es", "ja"}) {
        QTest::addRow("light-%s", language) << 1 << QString::fromLatin1(language);
        QTest::addRow("dark-%s", language) << 2 << QString::fromLatin1(language);
    }
}

void E2eHomeLooks::themeAndLanguage()
{
    QFETCH(int, theme);
    QFETCH(QString, language);
    const QString look = QString::fromLatin1(QTest::currentDataTag()) + QLatin1Char('-');
    HomePage home(*m_desktop);
    home.program().setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    home.program().setSetting(QStringLiteral("Language/Code"), language);
    home.program().writeData(QStringLiteral("data.json"), twoSections());
    home.start();
    home.press({HomePage::Down});
    keep(home, look + QStringLiteral("grid"));
    home.press({HomePage::Space});
    keep(home, look + QStringLiteral("menu-item"));
    home.press(HomePage::Down, HomePage::MoveItemRow + 1);
    home.press({HomePage::Return});
    keep(home, look + QStringLiteral("menu-move"));
    home.press({HomePage::Escape, HomePage::Space});
    home.chooseRow(HomePage::DeleteItemRow);
    keep(home, look + QStringLiteral("delete"));
    home.press({HomePage::Left, HomePage::Up, HomePage::Return});
    keep(home, look + QStringLiteral("menu-section"));
    home.press({HomePage::Escape, HomePage::Up, HomePage::Left, HomePage::Return});
    keep(home, look + QStringLiteral("menu-template"));
    home.press({HomePage::Escape, HomePage::Left, HomePage::Return});
    keep(home, look + QStringLiteral("menu-add"));
    home.chooseRow(HomePage::AddItemRow);
    home.press({HomePage::Return, HomePage::Return});
    keep(home, look + QStringLiteral("menu-type"));
    home.chooseRow(HomePage::BulkRow);
    keep(home, look + QStringLiteral("editor"));
    home.press({HomePage::Escape});
    home.type(QStringLiteral("y zebra"));
    keep(home, look + QStringLiteral("nothing-found"));
}

void E2eHomeLooks::scale_data()
{
    QTest::addColumn<qreal>("factor");
    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

void E2eHomeLooks::scale()
{
    QFETCH(qreal, factor);
    // Large enough for the window at any of them.
    Desktop desktop(Desktop::WindowManager | Desktop::Compositor,
                    {QStringLiteral("openbox"), QStringLiteral("--sm-disable")}, {2000, 1400});
    HomePage home(desktop);
    home.program().setScale(factor);
    home.program().writeData(QStringLiteral("data.json"), twoSections());
    home.start();
    QTRY_COMPARE(home.program().homeWindow().geometry.size(),
                 QSize(qRound(617 * factor), qRound(616 * factor)));
    home.press({HomePage::Down});
    const QString name = QStringLiteral("scale-%1-").arg(factor);
    keep(home, name + QStringLiteral("grid"));
    home.press({HomePage::Space});
    home.chooseRow(HomePage::EditItemRow);
    keep(home, name + QStringLiteral("editor"));
}

QTEST_GUILESS_MAIN(E2eHomeLooks)
#include "tst_e2e_homelooks.moc"
