// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "OnboardingDialog.h"

#include "Settings.h"
#include "Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr QLatin1String kCompletedKey("Onboarding/Completed");
constexpr int kInnerMargin = 20;
constexpr int kInnerWidth =
    OnboardingDialog::DialogWidth - 2 * (FramelessDialog::ShadowPad + FramelessDialog::PaperBorder +
                                         FramelessDialog::CardPad + kInnerMargin);
constexpr int kLanguageGap = 12;
constexpr int kHeadingGap = 16; // between the question for the language and its answers
constexpr int kNavigationTopPad = 8;
constexpr int kDotSide = 8;
constexpr int kLastSlide = OnboardingDialog::SlideCount - 1;

struct LangChoice
{
    Lang lang;
    const char* label;
};

constexpr LangChoice kLangChoices[] = {
    {Lang::En, "English"}, {Lang::Id, "Bahasa Indonesia"}, {Lang::Es, "Español"}};

// In every language of the choice at once.
constexpr char kLanguageQuestion[] = "Choose your language / Pilih bahasa / Elige tu idioma";

QString slideText(int slide, const char* part)
{
    const QString text =
        Tr::t(QStringLiteral("onboarding.slide%1.%2").arg(slide).arg(QLatin1String(part)));
    // A label that reads markup takes a line feed for a blank.
    return Qt::mightBeRichText(text) ? QString(text).replace(u'\n', QLatin1String("<br>")) : text;
}

QLabel* makeText(const QString& objectName, const QString& style)
{
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setWordWrap(true);
    label->setStyleSheet(style);
    return label;
}

} // namespace

OnboardingDialog::OnboardingDialog(QWidget* parent)
    : FramelessDialog(parent, Tr::t("onboarding.slide1.title"), SoftShadow, CardPad)
{
    // Nothing is to be hidden by it but the window it introduces.
    setWindowFlag(Qt::WindowStaysOnTopHint, false);
    setFixedSize(DialogWidth, DialogHeight);
    rows()->setContentsMargins(kInnerMargin, kInnerMargin, kInnerMargin, kInnerMargin);
    m_stack = new QStackedWidget;
    m_stack->addWidget(createLanguageSlide());
    for (int slide = 1; slide < SlideCount; ++slide)
        m_stack->addWidget(createTextSlide(slide));
    rows()->addWidget(m_stack, 1);
    addNavigation();
    retranslateSlides();
    styleLanguageButtons();
    fitLanguageButtons();
    updateDots();
    updateNavigation();
    connect(m_stack, &QStackedWidget::currentChanged, this, &OnboardingDialog::updateNavigation);
}

bool OnboardingDialog::hasSeenOnboarding()
{
    return Settings::value(kCompletedKey, false).toBool();
}

void OnboardingDialog::markCompleted()
{
    Settings::setValue(kCompletedKey, true);
}

QWidget* OnboardingDialog::createLanguageSlide()
{
    auto* slide = new QWidget;
    auto* column = new QVBoxLayout(slide);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addStretch();
    QLabel* heading = makeText(
        QStringLiteral("languageQuestion"),
        Theme::textStyle(Theme::colors().onSurface, QStringLiteral("20px"), Theme::Weight::Bold));
    heading->setText(QString::fromUtf8(kLanguageQuestion));
    heading->setAlignment(Qt::AlignCenter);
    column->addWidget(heading);
    column->addSpacing(kHeadingGap);

    auto* row = new QHBoxLayout;
    row->setSpacing(kLanguageGap);
    row->addStretch();
    for (const LangChoice& choice : kLangChoices) {
        auto* button = new QPushButton(QString::fromUtf8(choice.label));
        button->setAutoDefault(false); // Enter chooses no language unseen
        connect(button, &QPushButton::clicked, this,
                [this, lang = choice.lang] { chooseLanguage(lang); });
        row->addWidget(button);
        m_languages.append({choice.lang, button});
    }
    row->addStretch();
    column->addLayout(row);
    column->addStretch();
    return slide;
}

/// Three buttons of the wanted width are wider than the card. The one with the longest name keeps
/// it, and the others share what is left.
void OnboardingDialog::fitLanguageButtons()
{
    const auto nameWidth = [](const LanguageButton& language) {
        return language.button->fontMetrics().horizontalAdvance(language.button->text());
    };
    const auto longest =
        std::max_element(m_languages.cbegin(), m_languages.cend(),
                         [&](const auto& a, const auto& b) { return nameWidth(a) < nameWidth(b); });
    const int others = static_cast<int>(m_languages.size()) - 1;
    const int otherWidth = (kInnerWidth - LanguageWidth - others * kLanguageGap) / others;
    for (const LanguageButton& language : m_languages) {
        const bool isLongest = language.button == longest->button;
        language.button->setFixedSize(isLongest ? LanguageWidth : otherWidth, LanguageHeight);
    }
}

QWidget* OnboardingDialog::createTextSlide(int slide)
{
    const ColorTokens c = Theme::colors();
    const bool isWelcome = slide == 1;
    const QString number = QString::number(slide);
    SlideTexts& texts = m_texts.at(std::size_t(slide) - 1);
    texts.title = makeText(
        QStringLiteral("slideTitle") + number,
        isWelcome ? Theme::textStyle(c.onSurface, QStringLiteral("24px"), Theme::Weight::Bold)
                  : Theme::dialogTitleStyle(c));
    texts.desc =
        makeText(QStringLiteral("slideText") + number,
                 isWelcome ? Theme::textStyle(c.onSurfaceVariant, FontTokens::SizeMd)
                           : QStringLiteral("color: %1; font-size: 14px; line-height: 1.5;")
                                 .arg(c.onSurfaceVariant));
    auto* widget = new QWidget;
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Spacing);
    column->addStretch();
    for (QLabel* label : {texts.title, texts.desc}) {
        if (isWelcome)
            label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
    }
    column->addStretch();
    return widget;
}

void OnboardingDialog::addNavigation()
{
    const ColorTokens c = Theme::colors();
    QHBoxLayout* row = addButtonRow(rows(), kNavigationTopPad);
    row->addStretch();
    for (int i = 0; i < SlideCount; ++i) {
        auto* dot = new QFrame;
        dot->setFixedSize(kDotSide, kDotSide);
        m_dots.append(dot);
        row->addWidget(dot);
    }
    row->addStretch();
    m_prevBtn = addButton(row, QString(), Theme::actionBtnStyle(c));
    m_nextBtn = addButton(row, QString(), Theme::primaryBtnStyle(c));
    for (QPushButton* button : {m_prevBtn, m_nextBtn}) {
        button->setFocusPolicy(Qt::NoFocus); // so that all keys come to the dialog
        button->setAutoDefault(false);
    }
    connect(m_prevBtn, &QPushButton::clicked, this, &OnboardingDialog::prevSlide);
    connect(m_nextBtn, &QPushButton::clicked, this, &OnboardingDialog::nextSlide);
}

void OnboardingDialog::chooseLanguage(Lang lang)
{
    Tr::setLanguage(lang);
    styleLanguageButtons();
    retranslateSlides();
    nextSlide();
}

void OnboardingDialog::styleLanguageButtons()
{
    const ColorTokens c = Theme::colors();
    for (const LanguageButton& language : m_languages) {
        const bool isCurrent = language.lang == Tr::currentLang;
        const QString style = isCurrent ? Theme::primaryBtnStyle(c) : Theme::actionBtnStyle(c);
        // The usual padding would leave the longest name too little of the row.
        language.button->setStyleSheet(
            style + QStringLiteral("QPushButton { padding-left: 4px; padding-right: 4px; }"));
    }
}

void OnboardingDialog::nextSlide()
{
    if (m_currentSlide < kLastSlide) {
        goToSlide(m_currentSlide + 1);
        return;
    }
    finish();
    accept();
}

void OnboardingDialog::prevSlide()
{
    if (m_currentSlide > 1)
        goToSlide(m_currentSlide - 1);
}

void OnboardingDialog::goToSlide(int slide)
{
    m_currentSlide = slide;
    setFocus(); // or the keys would go to a button of the first slide
    m_stack->setCurrentIndex(slide);
    updateDots();
}

void OnboardingDialog::updateDots()
{
    const ColorTokens c = Theme::colors();
    for (int i = 0; i < m_dots.size(); ++i) {
        m_dots.at(i)->setStyleSheet(
            QStringLiteral("QFrame { background-color: %1; border-radius: 4px; }")
                .arg(i == m_currentSlide ? c.primary : c.outline));
    }
}

void OnboardingDialog::updateNavigation()
{
    const int slide = m_stack->currentIndex();
    m_prevBtn->setVisible(slide > 1);
    m_nextBtn->setVisible(slide > 0);
    for (QFrame* dot : std::as_const(m_dots))
        dot->setVisible(slide > 0);
    m_nextBtn->setText(
        Tr::t(slide == kLastSlide ? "onboarding.btn_start_tour" : "onboarding.btn_next"));
}

void OnboardingDialog::retranslateSlides()
{
    for (int slide = 1; slide < SlideCount; ++slide) {
        const SlideTexts& texts = m_texts.at(std::size_t(slide) - 1);
        texts.title->setText(slideText(slide, "title"));
        texts.desc->setText(slideText(slide, "desc"));
    }
    m_prevBtn->setText(Tr::t("onboarding.btn_prev"));
    updateNavigation();
}

void OnboardingDialog::finish()
{
    m_tourRequested = true;
    markCompleted();
}

void OnboardingDialog::reject()
{
    // Whoever leaves early has had the welcome, too, and needs the tour all the more.
    finish();
    FramelessDialog::reject();
}

void OnboardingDialog::closeEvent(QCloseEvent* event)
{
    finish();
    FramelessDialog::closeEvent(event);
}

void OnboardingDialog::keyPressEvent(QKeyEvent* event)
{
    const bool isLanguageSlide = m_currentSlide == 0;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Right:
        if (!isLanguageSlide)
            nextSlide();
        return;
    case Qt::Key_Left:
        prevSlide();
        return;
    default:
        if (!handleDialogBackKey(this, event) && !isLanguageSlide)
            FramelessDialog::keyPressEvent(event);
    }
}
