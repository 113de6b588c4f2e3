// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FittingText.h"
#include "OnboardingDialog.h"
#include "Settings.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QFile>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTextDocument>

#include <memory>

namespace
{

constexpr int kLastSlide = OnboardingDialog::SlideCount - 1;

bool isStoredAsSeen()
{
    return QSettings(Theme::settingsFilePath(), Settings::format())
        .value(QStringLiteral("Onboarding/Completed"), false)
        .toBool();
}

/// The height that a label's text takes in the width it has.
int neededHeight(const QLabel& label)
{
    if (!Qt::mightBeRichText(label.text()))
        return label.fontMetrics()
            .boundingRect(QRect(0, 0, label.width(), 0), Qt::TextWordWrap, label.text())
            .height();
    QTextDocument document;
    document.setDefaultFont(label.font());
    document.setDocumentMargin(0);
    document.setHtml(label.text());
    document.setTextWidth(label.width());
    return qCeil(document.size().height());
}

} // namespace

class OnboardingDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_dialog.reset(); }

    void hasSeenOnboarding_data();
    void hasSeenOnboarding();
    void look();
    void slideStyles();
    void languageButtons();
    void currentLanguageIsLit_data();
    void currentLanguageIsLit();
    void choosingALanguage_data();
    void choosingALanguage();
    void languageByKeyboard();
    void controlsOfASlide_data();
    void controlsOfASlide();
    void navigationButtons();
    void keys_data();
    void keys();
    void leavingEarly_data();
    void leavingEarly();
    void isNotSeenWhileItIsOpen();
    void textsFit_data();
    void textsFit();
    void linesStayApart_data();
    void linesStayApart();

private:
    void open(int slide = 0);
    QStackedWidget* stack() const { return m_dialog->findChild<QStackedWidget*>(); }
    int slide() const { return stack()->currentIndex(); }
    QList<QPushButton*> languages() const
    {
        return stack()->widget(0)->findChildren<QPushButton*>();
    }
    QPushButton* navigation(int index) const;
    QList<QFrame*> dots() const;
    QLabel* label(const char* name, int number) const;

    QWidget m_parent; ///< brings the font, as the main window does
    std::unique_ptr<OnboardingDialog> m_dialog;
};

void OnboardingDialogTest::initTestCase()
{
    FittingText::useProgramFont();
    m_parent.setStyleSheet(QStringLiteral("QWidget { font-family: %1; }").arg(FontTokens::Family));
}

void OnboardingDialogTest::init()
{
    QFile::remove(Theme::settingsFilePath());
    Tr::currentLang = Lang::En;
}

void OnboardingDialogTest::open(int slide)
{
    m_dialog = std::make_unique<OnboardingDialog>(&m_parent);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    for (int i = 0; i < slide; ++i)
        m_dialog->nextSlide();
    QCoreApplication::processEvents(); // the buttons get the room that their texts take
    QCOMPARE(stack()->currentIndex(), slide);
}

/// 0 leads back, 1 on.
QPushButton* OnboardingDialogTest::navigation(int index) const
{
    return m_dialog->findChild<QFrame*>("dialogBg")
        ->findChildren<QPushButton*>(Qt::FindDirectChildrenOnly)
        .value(index);
}

QList<QFrame*> OnboardingDialogTest::dots() const
{
    QList<QFrame*> found =
        m_dialog->findChild<QFrame*>("dialogBg")->findChildren<QFrame*>(Qt::FindDirectChildrenOnly);
    found.removeIf([](const QFrame* frame) { return frame->width() != 8; });
    return found;
}

QLabel* OnboardingDialogTest::label(const char* name, int number) const
{
    return m_dialog->findChild<QLabel*>(QLatin1String(name) + QString::number(number));
}

void OnboardingDialogTest::hasSeenOnboarding_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("seen");
    QTest::newRow("no file") << QByteArray() << false;
    QTest::newRow("no such key") << QByteArray("[Theme]\nForceTheme=1\n") << false;
    QTest::newRow("true") << QByteArray("[Onboarding]\nCompleted=true\n") << true;
    QTest::newRow("false") << QByteArray("[Onboarding]\nCompleted=false\n") << false;
    QTest::newRow("a number") << QByteArray("[Onboarding]\nCompleted=1\n") << true;
    QTest::newRow("empty") << QByteArray("[Onboarding]\nCompleted=\n") << false;
}

void OnboardingDialogTest::hasSeenOnboarding()
{
    QFETCH(QByteArray, settings);
    if (!settings.isEmpty())
        TestHome::writeDataFile("settings.ini", settings);
    QTEST(OnboardingDialog::hasSeenOnboarding(), "seen");
    OnboardingDialog::markCompleted();
    QVERIFY(OnboardingDialog::hasSeenOnboarding());
    QVERIFY(isStoredAsSeen());
}

void OnboardingDialogTest::look()
{
    open();
    QCOMPARE(m_dialog->size(), QSize(500, 360));
    QCOMPARE(m_dialog->windowType(), Qt::Dialog);
    QVERIFY(m_dialog->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(!m_dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(m_dialog->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_dialog->layout()->contentsMargins(), QMargins(10, 10, 10, 10));
    const auto* card = m_dialog->findChild<QFrame*>("dialogBg");
    QVERIFY(card->styleSheet().contains("padding: 24px"));
    QCOMPARE(card->layout()->contentsMargins(), QMargins(20, 20, 20, 20));
    QCOMPARE(card->layout()->spacing(), 12);
    QCOMPARE(stack()->count(), 5);
    QCOMPARE(stack()->width(), 390);
    QCOMPARE(dots().size(), 5);
    const auto* shadow = m_dialog->findChild<QGraphicsDropShadowEffect*>();
    QVERIFY(shadow);
    QCOMPARE(shadow->color(), QColor(0, 0, 0, 60));
}

void OnboardingDialogTest::slideStyles()
{
    open();
    const ColorTokens c = Theme::colors();
    const auto verify = [](const QLabel* label, int px, bool isBold, const QString& color) {
        QVERIFY(label);
        label->ensurePolished();
        const QByteArray name = label->objectName().toUtf8();
        QVERIFY2(label->font().pixelSize() == px, name.constData());
        const int weight = isBold ? int(QFont::Bold) : QApplication::font().weight();
        QVERIFY2(label->font().weight() == weight, name.constData());
        QVERIFY2(label->palette().color(QPalette::WindowText) == QColor(color), name.constData());
        QVERIFY2(label->wordWrap(), name.constData());
    };
    const auto* question = m_dialog->findChild<QLabel*>("languageQuestion");
    verify(question, 20, true, c.onSurface);
    QCOMPARE(question->alignment(), Qt::AlignCenter);
    verify(label("slideTitle", 1), 24, true, c.onSurface);
    QCOMPARE(label("slideTitle", 1)->alignment(), Qt::AlignCenter);
    QCOMPARE(label("slideText", 1)->alignment(), Qt::AlignCenter);
    for (int number = 2; number <= kLastSlide; ++number) {
        QCOMPARE(label("slideTitle", number)->styleSheet(), Theme::dialogTitleStyle(c));
        QCOMPARE(label("slideText", number)->styleSheet(),
                 QStringLiteral("color: %1; font-size: 14px; line-height: 1.5;")
                     .arg(c.onSurfaceVariant));
    }
    for (int number = 1; number <= kLastSlide; ++number)
        verify(label("slideText", number), 14, false, c.onSurfaceVariant);
}

void OnboardingDialogTest::languageButtons()
{
    open();
    QCOMPARE(m_dialog->findChild<QLabel*>("languageQuestion")->text(),
             QStringLiteral("Choose your language / Pilih bahasa / Elige tu idioma"));
    const QStringList names{"English", "Bahasa Indonesia", QString::fromUtf8("Español")};
    QCOMPARE(languages().size(), names.size());
    const QWidget* page = stack()->widget(0);
    int right = -12;
    for (int i = 0; i < names.size(); ++i) {
        const QPushButton* button = languages().at(i);
        QCOMPARE(button->text(), names.at(i));
        QCOMPARE(button->height(), 48);
        const QRect place = rectIn(*page, button);
        QVERIFY2(page->rect().contains(place), qPrintable(names.at(i)));
        QVERIFY(place.left() >= right + 12); // they neither touch nor overlap
        right = place.right() + 1;
        const QRect contents = FittingText::contentsOf(*button);
        QVERIFY(contents.width() < button->width());
        QVERIFY2(button->fontMetrics().horizontalAdvance(names.at(i)) <= contents.width(),
                 qPrintable(names.at(i)));
    }
    QCOMPARE(languages().at(1)->width(), 145);
    QCOMPARE(languages().at(0)->width(), languages().at(2)->width());
}

void OnboardingDialogTest::currentLanguageIsLit_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<int>("lit");
    QTest::newRow("English") << Lang::En << 0;
    QTest::newRow("Indonesian") << Lang::Id << 1;
    QTest::newRow("Spanish") << Lang::Es << 2;
    QTest::newRow("Japanese, which isn't offered") << Lang::Ja << -1;
}

void OnboardingDialogTest::currentLanguageIsLit()
{
    QFETCH(Lang, lang);
    QFETCH(int, lit);
    Tr::currentLang = lang;
    open();
    const ColorTokens c = Theme::colors();
    for (int i = 0; i < languages().size(); ++i) {
        const QString style = i == lit ? Theme::primaryBtnStyle(c) : Theme::actionBtnStyle(c);
        QVERIFY2(languages().at(i)->styleSheet().startsWith(style), qPrintable(QString::number(i)));
    }
}

void OnboardingDialogTest::choosingALanguage_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("code");
    QTest::newRow("English") << 0 << Lang::En << "en";
    QTest::newRow("Indonesian") << 1 << Lang::Id << "id";
    QTest::newRow("Spanish") << 2 << Lang::Es << "es";
}

void OnboardingDialogTest::choosingALanguage()
{
    QFETCH(int, button);
    QFETCH(Lang, lang);
    open();
    QTest::mouseClick(languages().at(button), Qt::LeftButton);
    QCOMPARE(Tr::currentLang, lang);
    QTEST(
        QSettings(Theme::settingsFilePath(), Settings::format()).value("Language/Code").toString(),
        "code");
    QCOMPARE(slide(), 1);
    for (int number = 1; number <= kLastSlide; ++number) {
        const QString key = QStringLiteral("onboarding.slide%1.title").arg(number);
        QCOMPARE(label("slideTitle", number)->text(), Tr::t(key));
    }
    QCOMPARE(navigation(0)->text(), Tr::t("onboarding.btn_prev"));
    QCOMPARE(navigation(1)->text(), Tr::t("onboarding.btn_next"));
    QVERIFY(
        languages().at(button)->styleSheet().startsWith(Theme::primaryBtnStyle(Theme::colors())));
    QVERIFY(!isStoredAsSeen());
}

void OnboardingDialogTest::languageByKeyboard()
{
    open();
    languages().at(0)->setFocus();
    pressKey(*m_dialog, Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget(), languages().at(1));
    pressKey(*m_dialog, Qt::Key_Return);
    QCOMPARE(slide(), 0);
    pressKey(*m_dialog, Qt::Key_Space);
    QCOMPARE(slide(), 1);
    QCOMPARE(Tr::currentLang, Lang::Id);
    // The keys of the next slides are the dialog's again.
    pressKey(*m_dialog, Qt::Key_Return);
    QCOMPARE(slide(), 2);
}

void OnboardingDialogTest::controlsOfASlide_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("hasPrev");
    QTest::addColumn<bool>("hasNext");
    QTest::addColumn<QString>("nextKey");
    QTest::newRow("language") << 0 << false << false << "onboarding.btn_next";
    QTest::newRow("welcome") << 1 << false << true << "onboarding.btn_next";
    QTest::newRow("features") << 2 << true << true << "onboarding.btn_next";
    QTest::newRow("example") << 3 << true << true << "onboarding.btn_next";
    QTest::newRow("keys") << 4 << true << true << "onboarding.btn_start_tour";
}

void OnboardingDialogTest::controlsOfASlide()
{
    QFETCH(int, number);
    QFETCH(bool, hasNext);
    QFETCH(QString, nextKey);
    open(number);
    QTEST(navigation(0)->isVisible(), "hasPrev");
    QCOMPARE(navigation(1)->isVisible(), hasNext);
    QCOMPARE(navigation(1)->text(), Tr::t(nextKey));
    const ColorTokens c = Theme::colors();
    for (int i = 0; i < dots().size(); ++i) {
        const QFrame* dot = dots().at(i);
        QCOMPARE(dot->isVisible(), hasNext);
        QCOMPARE(dot->size(), QSize(8, 8));
        QCOMPARE(dot->styleSheet(),
                 QStringLiteral("QFrame { background-color: %1; border-radius: 4px; }")
                     .arg(i == number ? c.primary : c.outline));
    }
}

void OnboardingDialogTest::navigationButtons()
{
    open(1);
    for (int index : {0, 1})
        QCOMPARE(navigation(index)->focusPolicy(), Qt::NoFocus);
    QTest::mouseClick(navigation(1), Qt::LeftButton);
    QCOMPARE(slide(), 2);
    QTest::mouseClick(navigation(0), Qt::LeftButton);
    QCOMPARE(slide(), 1);
    m_dialog->prevSlide();
    QCOMPARE(slide(), 1);
    while (slide() < kLastSlide)
        QTest::mouseClick(navigation(1), Qt::LeftButton);
    QVERIFY(!m_dialog->tourRequested());
    const QSignalSpy ended(m_dialog.get(), &QDialog::finished);
    QTest::mouseClick(navigation(1), Qt::LeftButton);
    QCOMPARE(ended.count(), 1);
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QVERIFY(m_dialog->tourRequested());
    QVERIFY(isStoredAsSeen());
}

void OnboardingDialogTest::keys_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to"); // -1: the dialog is over
    const auto add = [](const char* name, int from, Qt::Key key, int to) {
        QTest::newRow(name) << from << int(key) << to;
    };
    add("Enter on the language", 0, Qt::Key_Enter, 0);
    add("Return on the language", 0, Qt::Key_Return, 0);
    add("Right on the language", 0, Qt::Key_Right, 0);
    add("Left on the language", 0, Qt::Key_Left, 0);
    add("a letter on the language", 0, Qt::Key_A, 0);
    add("Esc on the language", 0, Qt::Key_Escape, -1);
    add("Backspace on the language", 0, Qt::Key_Backspace, -1);
    add("Left on the welcome", 1, Qt::Key_Left, 1);
    add("Right on the welcome", 1, Qt::Key_Right, 2);
    add("Return", 2, Qt::Key_Return, 3);
    add("Enter", 2, Qt::Key_Enter, 3);
    add("Right", 3, Qt::Key_Right, 4);
    add("Left", 2, Qt::Key_Left, 1);
    add("Left on the last", 4, Qt::Key_Left, 3);
    add("a letter", 2, Qt::Key_A, 2);
    add("Space", 2, Qt::Key_Space, 2);
    add("Esc", 3, Qt::Key_Escape, -1);
    add("Backspace", 3, Qt::Key_Backspace, -1);
    add("Return on the last", 4, Qt::Key_Return, -1);
    add("Enter on the last", 4, Qt::Key_Enter, -1);
    add("Right on the last", 4, Qt::Key_Right, -1);
}

void OnboardingDialogTest::keys()
{
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, to);
    open(from);
    m_dialog->setFocus();
    QTest::keyClick(m_dialog.get(), Qt::Key(key));
    const bool isOver = to < 0;
    QCOMPARE(m_dialog->isVisible(), !isOver);
    QCOMPARE(m_dialog->tourRequested(), isOver);
    QCOMPARE(isStoredAsSeen(), isOver);
    if (isOver)
        QCOMPARE(m_dialog->result(),
                 int(from == kLastSlide ? QDialog::Accepted : QDialog::Rejected));
    else
        QCOMPARE(slide(), to);
    QCOMPARE(Tr::currentLang, Lang::En);
}

void OnboardingDialogTest::leavingEarly_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<bool>("closes");
    QTest::newRow("rejected on the language") << 0 << false;
    QTest::newRow("closed on the language") << 0 << true;
    QTest::newRow("rejected later") << 3 << false;
    QTest::newRow("closed later") << 3 << true;
}

void OnboardingDialogTest::leavingEarly()
{
    QFETCH(int, from);
    QFETCH(bool, closes);
    open(from);
    if (closes)
        m_dialog->close();
    else
        m_dialog->reject();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    QVERIFY(m_dialog->tourRequested());
    QVERIFY(isStoredAsSeen());
}

void OnboardingDialogTest::isNotSeenWhileItIsOpen()
{
    open();
    for (int i = 0; i < kLastSlide; ++i) {
        QVERIFY(!isStoredAsSeen());
        QVERIFY(!m_dialog->tourRequested());
        m_dialog->nextSlide();
    }
    QVERIFY(!isStoredAsSeen());
    m_dialog.reset(); // as a crash would end it
    QVERIFY(!OnboardingDialog::hasSeenOnboarding());
}

void OnboardingDialogTest::textsFit_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<int>("number");
    for (const Lang lang : Tr::all()) {
        for (int number = 0; number <= kLastSlide; ++number)
            QTest::addRow("%s, slide %d", qPrintable(Tr::codeFor(lang)), number) << lang << number;
    }
}

void OnboardingDialogTest::textsFit()
{
    QFETCH(Lang, lang);
    QFETCH(int, number);
    Tr::currentLang = lang;
    open(number);
    const auto labels = stack()->currentWidget()->findChildren<QLabel*>();
    QCOMPARE(labels.size(), number == 0 ? 1 : 2);
    for (const QLabel* shown : labels) {
        QVERIFY2(neededHeight(*shown) <= shown->height(),
                 qPrintable(QStringLiteral("%1 of %2 px: %3")
                                .arg(shown->height())
                                .arg(neededHeight(*shown))
                                .arg(shown->text())));
        QVERIFY(
            stack()->currentWidget()->rect().contains(rectIn(*stack()->currentWidget(), shown)));
    }
    for (int index : {0, 1}) {
        const QPushButton* button = navigation(index);
        if (!button->isVisible())
            continue;
        const QRect contents = FittingText::contentsOf(*button);
        QVERIFY2(button->fontMetrics().horizontalAdvance(button->text()) <= contents.width(),
                 qPrintable(button->text()));
        QVERIFY(m_dialog->rect().contains(rectIn(*m_dialog, button)));
    }
}

void OnboardingDialogTest::linesStayApart_data()
{
    textsFit_data();
}

void OnboardingDialogTest::linesStayApart()
{
    // Half of the texts hold markup, in which a line feed is but a blank.
    QFETCH(Lang, lang);
    QFETCH(int, number);
    if (number == 0)
        return;
    Tr::currentLang = lang;
    open(number);
    const QString text = Tr::t(QStringLiteral("onboarding.slide%1.desc").arg(number));
    QTextDocument document;
    if (Qt::mightBeRichText(label("slideText", number)->text()))
        document.setHtml(label("slideText", number)->text());
    else
        document.setPlainText(label("slideText", number)->text());
    QCOMPARE(document.toPlainText().count('\n'), text.count('\n'));
    QVERIFY(!document.toPlainText().contains('<'));
}

QTEST_MAIN(OnboardingDialogTest)
#include "tst_onboardingdialog.moc"
