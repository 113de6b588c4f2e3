// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsMenu.h"
#include "AutoQuitBlocker.h"
#include "LanguageMenu.h"
#include "LanguageRows.h"
#include "Settings.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <QWidgetAction>

#include <memory>

using Answer = std::optional<Lang>;
Q_DECLARE_METATYPE(Answer)

class LanguageMenuTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup() { m_window.reset(); }
    void listsTheLanguagesByTheirNames_data();
    void listsTheLanguagesByTheirNames();
    void answers_data();
    void answers();
    void opensBelowTheButton();
    void keepsWindowsOpen();
    void survivesTheEndOfTheButton();

private:
    std::unique_ptr<QWidget> m_window;
    QPushButton* m_button = nullptr;
    QPushButton* m_other = nullptr;
};

void LanguageMenuTest::init()
{
    Tr::currentLang = Lang::En;
    m_window = std::make_unique<QWidget>();
    auto* column = new QVBoxLayout(m_window.get());
    m_button = new QPushButton("English");
    m_other = new QPushButton("other");
    column->addWidget(m_button);
    column->addWidget(m_other);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_other->setFocus();
}

void LanguageMenuTest::listsTheLanguagesByTheirNames_data()
{
    addLanguageRows();
}

void LanguageMenuTest::listsTheLanguagesByTheirNames()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    QStringList texts;
    MenuDriver driver([&texts](QMenu* menu) {
        for (const QAction* action : menu->actions())
            texts.append(action->isSeparator() ? "-" : action->text());
        menu->close();
    });
    LanguageMenu::ask(m_button);
    QCOMPARE(texts, QStringList({"English", "Bahasa Indonesia", QString::fromUtf8("Español"),
                                 QString::fromUtf8("日本語"), "-", Tr::t("dialog.btn_cancel")}));
}

void LanguageMenuTest::answers_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<Answer>("answer");
    using Keys = QList<Qt::Key>;
    QTest::newRow("the first, which is the present one")
        << Keys{Qt::Key_Down, Qt::Key_Return} << Answer(Lang::En);
    QTest::newRow("the last") << Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down,
                                      Qt::Key_Enter}
                              << Answer(Lang::Ja);
    QTest::newRow("cancelled by its row") << Keys{Qt::Key_Up, Qt::Key_Return} << Answer();
    QTest::newRow("Esc") << Keys{Qt::Key_Down, Qt::Key_Escape} << Answer();
    QTest::newRow("Backspace") << Keys{Qt::Key_Backspace} << Answer();
}

void LanguageMenuTest::answers()
{
    QFETCH(QList<Qt::Key>, keys);
    MenuDriver driver([&keys](QMenu* menu) {
        for (const Qt::Key key : keys)
            QTest::keyClick(menu, key);
    });
    QTEST(LanguageMenu::ask(m_button), "answer");
    QVERIFY(driver.hasClosed());
    QCOMPARE(m_window->focusWidget(), m_button);
    // Nothing has changed yet.
    QCOMPARE(Tr::currentLang, Lang::En);
    QVERIFY(!Settings::contains("Language/Code"));
}

void LanguageMenuTest::opensBelowTheButton()
{
    QPoint corner;
    int width = 0;
    MenuDriver driver([&](QMenu* menu) {
        corner = menu->pos();
        width = menu->width();
        menu->close();
    });
    m_button->setMinimumWidth(333);
    m_window->adjustSize();
    LanguageMenu::ask(m_button);
    QCOMPARE(corner, m_button->mapToGlobal(QPoint(0, m_button->height() + 4)));
    QVERIFY(width >= 333);
}

void LanguageMenuTest::keepsWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    bool wasBlocked = false;
    MenuDriver driver([&](QMenu* menu) {
        wasBlocked = g_blockAutoQuit;
        menu->close();
    });
    LanguageMenu::ask(m_button);
    QVERIFY(wasBlocked);
}

void LanguageMenuTest::survivesTheEndOfTheButton()
{
    MenuDriver driver([this](QMenu*) { m_window.reset(); });
    QCOMPARE(LanguageMenu::ask(m_button), Answer());
    QVERIFY(!m_window);
}

QTEST_MAIN(LanguageMenuTest)
#include "tst_languagemenu.moc"
