// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LanguageRows.h"
#include "LayoutSettingsPage.h"
#include "Localization.h"
#include "Settings.h"
#include "SettingsPageDriver.h"
#include "TestHome.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

const QString kColumnsKey = QStringLiteral("Layout/GridColumns");

} // namespace

class LayoutSettingsPageTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup() { m_page.reset(); }
    void card_data();
    void card();
    void looks();
    void checksTheColumnsInForce_data();
    void checksTheColumnsInForce();
    void changesTheColumns_data();
    void changesTheColumns();
    void theColumnsInForceAreNoChange_data();
    void theColumnsInForceAreNoChange();
    void mayBeRebuiltByWhoeverIsTold();

private:
    void show();
    QPushButton* button(int columns) const;

    std::unique_ptr<LayoutSettingsPage> m_page;
};

void LayoutSettingsPageTest::init()
{
    QVERIFY(QDir(TestHome::dataDir()).removeRecursively());
    Tr::currentLang = Lang::En;
    Theme::loadSettings();
    Theme::forceTheme = 1;
}

void LayoutSettingsPageTest::show()
{
    m_page = std::make_unique<LayoutSettingsPage>();
    m_page->resize(420, 100);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

QPushButton* LayoutSettingsPageTest::button(int columns) const
{
    return m_page->findChild<QPushButton*>(QStringLiteral("gridColBtn_%1").arg(columns));
}

void LayoutSettingsPageTest::card_data()
{
    addLanguageRows();
}

void LayoutSettingsPageTest::card()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    show();
    QCOMPARE(SettingsPageDriver::titlesOf(*m_page),
             QStringList(Tr::t("settings.layout.grid_columns")));
    QStringList texts;
    QStringList names;
    for (const QPushButton* one : m_page->findChildren<QPushButton*>()) {
        texts.append(one->text());
        names.append(one->objectName());
    }
    QCOMPARE(texts, QStringList({"2", "3", "4"})); // no other is offered
    QCOMPARE(names, QStringList({"gridColBtn_2", "gridColBtn_3", "gridColBtn_4"}));
}

void LayoutSettingsPageTest::looks()
{
    show();
    QCOMPARE(m_page->styleSheet(), "background: transparent;");
    QCOMPARE(m_page->layout()->contentsMargins(), QMargins(16, 16, 16, 16));
    QCOMPARE(m_page->layout()->spacing(), 16);
    const ColorTokens c = Theme::colors();
    for (const int columns : {2, 3, 4}) {
        const QPushButton* one = button(columns);
        const QString selector = QStringLiteral("QPushButton#gridColBtn_%1").arg(columns);
        QCOMPARE(one->size(), QSize(40, 40));
        QCOMPARE(one->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(one->focusPolicy(), Qt::StrongFocus);
        QCOMPARE(one->styleSheet(),
                 QStringLiteral("%1 { background-color: %2; color: %3; border: 2px solid "
                                "transparent; border-radius: 20px; font-weight: bold; }")
                         .arg(selector, c.surfaceContainerHighest, c.onSurface) +
                     Theme::choiceBtnStates(c, selector));
    }
    QCOMPARE(button(3)->x(), button(2)->geometry().right() + 1 + 8);
    m_page->setFocus();
    QCOMPARE(SettingsPageDriver::fillOf(*m_page, *button(3)), QColor(getItemTheme().key));
    QCOMPARE(SettingsPageDriver::fillOf(*m_page, *button(4)), QColor(c.surfaceContainerHighest));
    // Round: the corner of its square is the card's.
    QCOMPARE(Pixels::imageOf(*m_page).pixelColor(button(3)->mapTo(m_page.get(), QPoint(3, 3))),
             QColor(Theme::boxBg()));
}

void LayoutSettingsPageTest::checksTheColumnsInForce_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("checked");
    QTest::newRow("no file") << QByteArray() << QStringList("gridColBtn_3");
    QTest::newRow("two") << QByteArray("2") << QStringList("gridColBtn_2");
    QTest::newRow("four") << QByteArray("4") << QStringList("gridColBtn_4");
    QTest::newRow("too many") << QByteArray("9") << QStringList("gridColBtn_4");
    QTest::newRow("too few") << QByteArray("1") << QStringList("gridColBtn_2");
    QTest::newRow("no number") << QByteArray("many") << QStringList("gridColBtn_2");
}

void LayoutSettingsPageTest::checksTheColumnsInForce()
{
    QFETCH(QByteArray, file);
    if (!file.isEmpty())
        TestHome::writeDataFile("settings.ini", "[Layout]\nGridColumns=" + file + "\n");
    Theme::loadSettings();
    show();
    QTEST(SettingsPageDriver::checkedOf(*m_page), "checked");
    QCOMPARE(Settings::value(kColumnsKey).toByteArray(), file); // to show it changes nothing
}

void LayoutSettingsPageTest::changesTheColumns_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("fewer") << 3 << 2;
    QTest::newRow("more") << 2 << 4;
    QTest::newRow("from the most") << 4 << 3;
}

void LayoutSettingsPageTest::changesTheColumns()
{
    QFETCH(int, from);
    QFETCH(int, to);
    Theme::gridColumns = from;
    show();
    int columnsWhenTold = 0;
    int storedWhenTold = 0;
    connect(m_page.get(), &LayoutSettingsPage::layoutModeChanged, this, [&] {
        columnsWhenTold = Theme::gridColumns;
        storedWhenTold = Settings::value(kColumnsKey).toInt();
    });
    const QSignalSpy changed(m_page.get(), &LayoutSettingsPage::layoutModeChanged);
    QTest::mouseClick(button(to), Qt::LeftButton);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(columnsWhenTold, to);
    QCOMPARE(storedWhenTold, to);
    QCOMPARE(SettingsPageDriver::checkedOf(*m_page), QStringList(button(to)->objectName()));
}

void LayoutSettingsPageTest::theColumnsInForceAreNoChange_data()
{
    QTest::addColumn<bool>("isChecked");
    QTest::newRow("shown as such") << true;
    QTest::newRow("in force since the page was made") << false;
}

void LayoutSettingsPageTest::theColumnsInForceAreNoChange()
{
    QFETCH(bool, isChecked);
    Theme::gridColumns = isChecked ? 4 : 2;
    show();
    Theme::gridColumns = 4;
    const QSignalSpy changed(m_page.get(), &LayoutSettingsPage::layoutModeChanged);
    button(4)->click();
    QCOMPARE(changed.count(), 0);
    QVERIFY(!Settings::contains(kColumnsKey));
}

void LayoutSettingsPageTest::mayBeRebuiltByWhoeverIsTold()
{
    auto* page = new LayoutSettingsPage;
    const QPointer<QWidget> guard(page);
    connect(page, &LayoutSettingsPage::layoutModeChanged, page, [page] { page->deleteLater(); });
    SettingsPageDriver::button(*page, "gridColBtn_4")->click();
    QTRY_VERIFY(!guard);
}

QTEST_MAIN(LayoutSettingsPageTest)
#include "tst_layoutsettingspage.moc"
