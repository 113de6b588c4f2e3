// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AboutSettingsPage.h"
#include "Browser.h"
#include "FittingText.h"
#include "HotkeyManager.h"
#include "LanguageRows.h"
#include "Localization.h"
#include "SettingsCard.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class AboutSettingsPageTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { FittingText::useProgramFont(); }
    void init();

    void textsFromTheTop();
    void layoutOfThePage();
    void rowsAndButtons();
    void looks();
    void textsFit_data();
    void textsFit();
    void hotkeyIsReadOnce();
    void hugeHotkeyDoesNotWidenThePage();
    void tourIsAskedFor();
    void storePageOpens();
    void feedbackAddressIsCopied();
    void secondCopyEndsWithTheFirst();
    void pageGoesBeforeTheTimer();

private:
    QPushButton* button(const QString& name) const { return m_page->findChild<QPushButton*>(name); }
    QList<QLabel*> labels() const { return m_page->findChildren<QLabel*>(); }
    void build();

    std::unique_ptr<AboutSettingsPage> m_page;
};

void AboutSettingsPageTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    HotkeyManager::mainWindowSlot.combo = "Ctrl+Alt+Space";
    build();
}

void AboutSettingsPageTest::build()
{
    m_page = std::make_unique<AboutSettingsPage>(nullptr);
    m_page->resize(560, 520);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

void AboutSettingsPageTest::textsFromTheTop()
{
    QStringList texts;
    for (const QLabel* label : labels())
        texts.append(label->text());
    QCOMPARE(texts,
             QStringList({"Orlimo", QString::fromUtf8("v0.91  ·  Pre-release"),
                          "Open your apps, files, and links from anywhere with one shortcut.",
                          "Press Ctrl+Alt+Space to open Orlimo", Tr::t("about.tour_title"),
                          Tr::t("about.store_title"), Tr::t("about.feedback_title")}));
}

void AboutSettingsPageTest::layoutOfThePage()
{
    QCOMPARE(m_page->styleSheet(), "background: transparent;");
    const QRect name = rectIn(*m_page, labels().at(0));
    const QRect version = rectIn(*m_page, labels().at(1));
    QCOMPARE(name.topLeft(), QPoint(16 + 24, 16));
    QVERIFY(version.left() > name.right());
    QVERIFY(version.right() < name.right() + 300); // what is left stays free
    int bottom = name.bottom();
    for (const QLabel* line : {labels().at(2), labels().at(3)}) {
        QCOMPARE(rectIn(*m_page, line).left(), 16);
        QVERIFY(rectIn(*m_page, line).top() > bottom);
        bottom = rectIn(*m_page, line).bottom();
    }
    QList<QFrame*> cards;
    collectSettingsRows(m_page.get(), cards);
    QCOMPARE(cards.size(), 3);
    for (const QFrame* card : cards) {
        QCOMPARE(card->height(), 60);
        QVERIFY(rectIn(*m_page, card).top() > bottom);
        bottom = rectIn(*m_page, card).bottom();
    }
    QVERIFY(bottom < m_page->height() - 16);
}

void AboutSettingsPageTest::rowsAndButtons()
{
    QList<QFrame*> cards;
    collectSettingsRows(m_page.get(), cards);
    const QStringList names{"startTourBtn", "aboutStoreBtn", "aboutMailBtn"};
    for (int i = 0; i < names.size(); ++i) {
        QPushButton* control = cards.at(i)->findChild<QPushButton*>(names.at(i));
        QVERIFY(control);
        QCOMPARE(control->height(), 36);
        QCOMPARE(control->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(rectIn(*m_page, control).right(), rectIn(*m_page, cards.at(i)).right() - 16);
    }
    QCOMPARE(button("startTourBtn")->text(), "Start Tutorial");
    QCOMPARE(button("aboutStoreBtn")->text(), "Open Page");
    QCOMPARE(button("aboutMailBtn")->text(), AboutSettingsPage::feedbackEmail());
    QCOMPARE(AboutSettingsPage::feedbackEmail(), "feedback@orlimo.example");
}

void AboutSettingsPageTest::looks()
{
    for (const int mode : {1, 2}) {
        Theme::forceTheme = mode;
        build();
        const ColorTokens c = Theme::colors();
        QVERIFY(labels().at(0)->styleSheet().contains("22px"));
        QCOMPARE(labels().at(0)->palette().color(QPalette::WindowText), QColor(c.onSurface));
        QCOMPARE(labels().at(0)->font().weight(), QFont::Bold);
        QCOMPARE(labels().at(1)->palette().color(QPalette::WindowText), QColor(c.onSurfaceVariant));
        for (const QLabel* line : {labels().at(2), labels().at(3)}) {
            QVERIFY(line->wordWrap());
            QCOMPARE(line->styleSheet(),
                     QString("color: %1; font-size: 14px; background: transparent; "
                             "border: none; padding-left: 24px;")
                         .arg(c.onSurfaceVariant));
        }
        QCOMPARE(button("startTourBtn")->styleSheet(), Theme::primaryBtnStyle(c));
        for (const char* name : {"aboutStoreBtn", "aboutMailBtn"})
            QCOMPARE(button(name)->styleSheet(), Theme::smallPillStyle(c));
    }
}

void AboutSettingsPageTest::textsFit_data()
{
    addLanguageRows();
}

void AboutSettingsPageTest::textsFit()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    build();
    for (const char* name : {"startTourBtn", "aboutStoreBtn", "aboutMailBtn"}) {
        const QPushButton* each = button(name);
        QVERIFY2(each->fontMetrics().horizontalAdvance(each->text()) <=
                     FittingText::contentsOf(*each).width(),
                 qPrintable(each->text()));
    }
    for (const QLabel* label : labels()) {
        QVERIFY2(label->wordWrap() ? label->height() >= label->heightForWidth(label->width())
                                   : label->width() >= label->sizeHint().width(),
                 qPrintable(label->text()));
    }
    QCOMPARE(labels().at(3)->text(), Tr::t("about.hotkey_label").arg("Ctrl+Alt+Space"));
}

void AboutSettingsPageTest::hotkeyIsReadOnce()
{
    HotkeyManager::mainWindowSlot.combo = "Ctrl+Alt+K";
    QCOMPARE(labels().at(3)->text(), "Press Ctrl+Alt+Space to open Orlimo");
    build();
    QCOMPARE(labels().at(3)->text(), "Press Ctrl+Alt+K to open Orlimo");
}

void AboutSettingsPageTest::hugeHotkeyDoesNotWidenThePage()
{
    HotkeyManager::mainWindowSlot.combo = QStringLiteral("<b>Ctrl+").repeated(200'000) + u'K';
    build();
    QVERIFY(m_page->minimumSizeHint().width() <= 560);
    QVERIFY(labels().at(3)->text().startsWith("Press <b>Ctrl+<b>Ctrl+"));
    QCOMPARE(labels().at(3)->textFormat(), Qt::PlainText);
}

void AboutSettingsPageTest::tourIsAskedFor()
{
    QSignalSpy asked(m_page.get(), &AboutSettingsPage::startTourRequested);
    button("startTourBtn")->setFocus();
    pressKey(*m_page, Qt::Key_Return);
    QCOMPARE(asked.count(), 1);
}

void AboutSettingsPageTest::storePageOpens()
{
    const Browser browser;
    button("aboutStoreBtn")->click();
    QCOMPARE(browser.opened, QStringList{"https://orlimo.example/"});
}

void AboutSettingsPageTest::feedbackAddressIsCopied()
{
    const Browser browser;
    QGuiApplication::clipboard()->setText("something else");
    QElapsedTimer time;
    time.start();
    button("aboutMailBtn")->click();
    QCOMPARE(QGuiApplication::clipboard()->text(), AboutSettingsPage::feedbackEmail());
    QCOMPARE(button("aboutMailBtn")->text(), "Copied");
    QTRY_COMPARE(button("aboutMailBtn")->text(), AboutSettingsPage::feedbackEmail());
    // A coarse timer may be early by a twentieth.
    QCOMPARE(AboutSettingsPage::CopiedMs, 1600);
    QVERIFY(time.elapsed() >= AboutSettingsPage::CopiedMs * 95 / 100);
    QVERIFY(browser.opened.isEmpty());
}

void AboutSettingsPageTest::secondCopyEndsWithTheFirst()
{
    QPushButton* mail = button("aboutMailBtn");
    QElapsedTimer time;
    time.start();
    mail->click();
    QTRY_VERIFY(time.elapsed() > AboutSettingsPage::CopiedMs / 4);
    mail->click();
    QCOMPARE(mail->text(), "Copied");
    QTRY_COMPARE(mail->text(), AboutSettingsPage::feedbackEmail());
    // Each of the two has its own end.
    mail->setText("between");
    QTRY_COMPARE(mail->text(), AboutSettingsPage::feedbackEmail());
}

void AboutSettingsPageTest::pageGoesBeforeTheTimer()
{
    button("aboutMailBtn")->click();
    m_page.reset();
    QElapsedTimer time;
    time.start();
    QTRY_VERIFY(time.elapsed() > AboutSettingsPage::CopiedMs);
}

QTEST_MAIN(AboutSettingsPageTest)
#include "tst_aboutsettingspage.moc"
