// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"
#include "Localization.h"

#include <QList>
#include <QVector>

#include <array>

class QFrame;
class QLabel;
class QPushButton;
class QStackedWidget;
class QVBoxLayout;

/// The welcome of a new user, in five slides: the choice of the language, then what the program is
/// for. However it ends, it counts as seen and leads into the guided tour; a crash alone brings it
/// back. GUI thread only.
class OnboardingDialog : public FramelessDialog
{
    Q_OBJECT

public:
    static constexpr int SlideCount = 5; ///< the one of the language included
    static constexpr int DialogWidth = 500;
    static constexpr int DialogHeight = 360;
    static constexpr int LanguageWidth = 145; ///< wanted of a button of the first slide
    static constexpr int LanguageHeight = 48;

    explicit OnboardingDialog(QWidget* parent);

    /// Whether somebody has been through it, as "settings.ini" has it.
    static bool hasSeenOnboarding();
    /// Writes that down.
    static void markCompleted();

    /// Whether the tour is to follow; ask after `exec()`.
    bool tourRequested() const { return m_tourRequested; }

public slots:
    /// From the last slide it ends the dialog.
    void nextSlide();
    /// Never back to the choice of the language.
    void prevSlide();
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct SlideTexts
    {
        QLabel* title = nullptr;
        QLabel* desc = nullptr;
    };
    struct LanguageButton
    {
        Lang lang = Lang::En;
        QPushButton* button = nullptr;
    };

    QWidget* createLanguageSlide();
    void fitLanguageButtons();
    /// \param slide 1 for the welcome, which is centred, to 4.
    QWidget* createTextSlide(int slide);
    void addNavigation();
    void chooseLanguage(Lang lang);
    void styleLanguageButtons();
    void goToSlide(int slide);
    void updateDots();
    void updateNavigation();
    void retranslateSlides();
    void finish();

    QStackedWidget* m_stack = nullptr;
    QList<QFrame*> m_dots;
    int m_currentSlide = 0;
    bool m_tourRequested = false;
    QVector<LanguageButton> m_languages;
    std::array<SlideTexts, SlideCount - 1> m_texts; ///< of the slides from the second on
    QPushButton* m_prevBtn = nullptr;
    QPushButton* m_nextBtn = nullptr;
};
