// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "LanguageRows.h"
#include "LanguageSettingsPage.h"
#include "Localization.h"
#include "Settings.h"
#include "SettingsPageDriver.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QDir>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

const QString kLanguageKey = QStringLiteral("Language/Code");

} // namespace

class LanguageSettingsPageTest : public QObject
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
    void menuNamesEachLanguageInItself_data();
    void menuNamesEachLanguageInItself();
    void changesTheLanguage_data();
    void changesTheLanguage();
    void staysWithTheLanguage_data();
    void staysWithTheLanguage();
    void keepsWindowsOpenMeanwhile();
    void mayBeRebuiltByWhoeverIsTold();
    void mayGoWhileItAsks();

private:
    void show();
    QPushButton* button() const;

    std::unique_ptr<LanguageSettingsPage> m_page;
};

void LanguageSettingsPageTest::init()
{
    QVERIFY(QDir(TestHome::dataDir()).removeRecursively());
    Tr::currentLang = Lang::En;
    Theme::loadSettings();
    Theme::forceTheme = 1;
}

void LanguageSettingsPageTest::show()
{
    m_page = std::make_unique<LanguageSettingsPage>();
    m_page->resize(420, 100);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

QPushButton* LanguageSettingsPageTest::button() const
{
    return SettingsPageDriver::button(*m_page, "langPickBtn");
}

void LanguageSettingsPageTest::card_data()
{
    addLanguageRows();
}

void LanguageSettingsPageTest::card()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    show();
    QCOMPARE(SettingsPageDriver::titlesOf(*m_page), QStringList(Tr::t("settings.sys.lang_title")));
    QCOMPARE(m_page->findChildren<QPushButton*>().size(), 1);
    QCOMPARE(button()->text(), Tr::nameFor(lang));
    QVERIFY(!Settings::contains(kLanguageKey)); // to show it changes nothing
}

void LanguageSettingsPageTest::looks()
{
    show();
    QCOMPARE(m_page->styleSheet(), "background: transparent;");
    QCOMPARE(m_page->layout()->contentsMargins(), QMargins(16, 16, 16, 16));
    QCOMPARE(m_page->layout()->spacing(), 16);
    QCOMPARE(button()->height(), 36);
    QCOMPARE(button()->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button()->focusPolicy(), Qt::StrongFocus);
    const ColorTokens c = Theme::colors();
    const QString fill = c.surfaceContainerHighest;
    const QString hover = Theme::stateLayerOn(fill, c.onSurface, Theme::StateHover);
    const QString focus = Theme::stateLayerOn(fill, c.onSurface, Theme::StateFocus);
    QCOMPARE(
        button()->styleSheet(),
        QStringLiteral("QPushButton#langPickBtn { background-color: %1; color: %2; border: none; "
                       "border-radius: 18px; padding: 0 16px; font-size: 12px; font-weight: bold; "
                       "outline: 0; min-width: 150px; text-align: left; }"
                       "QPushButton#langPickBtn:hover { background-color: %3; color: %2; }"
                       "QPushButton#langPickBtn:focus { background-color: %4; color: %2; }")
            .arg(fill, c.onSurface, hover, focus));
    QVERIFY(button()->width() >= 150 + 2 * 16);
    button()->clearFocus();
    QCOMPARE(SettingsPageDriver::fillOf(*m_page, *button()), QColor(fill));
    button()->setFocus();
    QCOMPARE(SettingsPageDriver::fillOf(*m_page, *button()), QColor(focus));
    // The name begins at the left.
    const QImage image = Pixels::imageOf(*m_page).copy(rectIn(*m_page, button()));
    const QRect ink = Pixels::boxWhere(image.copy(4, 9, 170, 18), [&focus](const QColor& color) {
        return !Pixels::isNear(color, QColor(focus), 60);
    });
    QVERIFY(qAbs(ink.left() + 4 - 16) <= 2);
    QVERIFY(ink.right() + 4 < 100);
}

void LanguageSettingsPageTest::menuNamesEachLanguageInItself_data()
{
    addLanguageRows();
}

void LanguageSettingsPageTest::menuNamesEachLanguageInItself()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    show();
    QStringList texts;
    QPoint corner;
    const MenuDriver driver([&](QMenu* menu) {
        for (const QAction* action : menu->actions())
            texts.append(action->isSeparator() ? "-" : action->text());
        corner = menu->pos();
        menu->close();
    });
    QTest::mouseClick(button(), Qt::LeftButton);
    QCOMPARE(texts, QStringList({"English", "Bahasa Indonesia", QString::fromUtf8("Español"),
                                 QString::fromUtf8("日本語"), "-", Tr::t("dialog.btn_cancel")}));
    QCOMPARE(corner, button()->mapToGlobal(QPoint(0, button()->height() + 4)));
}

void LanguageSettingsPageTest::changesTheLanguage_data()
{
    QTest::addColumn<Lang>("from");
    QTest::addColumn<Lang>("to");
    for (const Lang from : Tr::all()) {
        for (const Lang to : Tr::all()) {
            if (from != to)
                QTest::addRow("%s to %s", qPrintable(Tr::codeFor(from)),
                              qPrintable(Tr::codeFor(to)))
                    << from << to;
        }
    }
}

void LanguageSettingsPageTest::changesTheLanguage()
{
    QFETCH(Lang, from);
    QFETCH(Lang, to);
    Tr::currentLang = from;
    show();
    QString storedWhenTold;
    Lang langWhenTold = from;
    connect(m_page.get(), &LanguageSettingsPage::languageChanged, this, [&] {
        langWhenTold = Tr::currentLang;
        storedWhenTold = Settings::value(kLanguageKey).toString();
    });
    const QSignalSpy changed(m_page.get(), &LanguageSettingsPage::languageChanged);
    const MenuDriver driver([to](QMenu* menu) {
        for (int row = 0; row <= int(to); ++row)
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::mouseClick(button(), Qt::LeftButton);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(langWhenTold, to);
    QCOMPARE(storedWhenTold, Tr::codeFor(to));
}

void LanguageSettingsPageTest::staysWithTheLanguage_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    using Keys = QList<Qt::Key>;
    QTest::newRow("the present one") << Keys{Qt::Key_Down, Qt::Key_Return};
    QTest::newRow("the row that cancels") << Keys{Qt::Key_Up, Qt::Key_Return};
    QTest::newRow("Esc") << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Escape};
    QTest::newRow("Backspace") << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Backspace};
}

void LanguageSettingsPageTest::staysWithTheLanguage()
{
    QFETCH(QList<Qt::Key>, keys);
    show();
    const QSignalSpy changed(m_page.get(), &LanguageSettingsPage::languageChanged);
    const MenuDriver driver([&keys](QMenu* menu) {
        for (const Qt::Key key : keys)
            QTest::keyClick(menu, key);
    });
    m_page->setFocus();
    button()->click();
    QVERIFY(driver.hasClosed());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(Tr::currentLang, Lang::En);
    QVERIFY(!Settings::contains(kLanguageKey));
    QCOMPARE(m_page->focusWidget(), button());
}

void LanguageSettingsPageTest::keepsWindowsOpenMeanwhile()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    show();
    bool wasBlocked = false;
    const MenuDriver driver([&wasBlocked](QMenu* menu) {
        wasBlocked = g_blockAutoQuit;
        menu->close();
    });
    button()->click();
    QVERIFY(wasBlocked);
    QTRY_VERIFY(!g_blockAutoQuit);
}

void LanguageSettingsPageTest::mayBeRebuiltByWhoeverIsTold()
{
    show();
    LanguageSettingsPage* page = m_page.release();
    const QPointer<QWidget> guard(page);
    connect(page, &LanguageSettingsPage::languageChanged, page, [page] { page->deleteLater(); });
    const MenuDriver driver([](QMenu* menu) {
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    SettingsPageDriver::button(*page, "langPickBtn")->click();
    QTRY_VERIFY(!guard);
    QCOMPARE(Tr::currentLang, Lang::Id);
}

void LanguageSettingsPageTest::mayGoWhileItAsks()
{
    show();
    const MenuDriver driver([this](QMenu*) { m_page.reset(); });
    QMetaObject::invokeMethod(button(), "clicked", Qt::DirectConnection, Q_ARG(bool, false));
    QVERIFY(!m_page);
    QCOMPARE(Tr::currentLang, Lang::En);
}

QTEST_MAIN(LanguageSettingsPageTest)
#include "tst_languagesettingspage.moc"
