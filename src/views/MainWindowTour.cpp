// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// The first run: the welcome, and the guided tour that makes a section and an item on the live
// page. The user does each thing himself and what he makes stays. Steps that wait for that go on a
// turn of the event loop later, when the page shows what has changed.

#include "AutoQuitBlocker.h"
#include "HomeView.h"
#include "ItemEditorPanel.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "ModalRun.h"
#include "OnboardingDialog.h"
#include "Theme.h"
#include "TourOverlay.h"
#include "Types.h"

#include <QAbstractAnimation>
#include <QApplication>
#include <QFrame>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>

#include <array>

namespace
{

constexpr int kSettleMs = 300; // outlasts the dip of a change of page or of a rebuild
constexpr int kSettleAgainMs = 50;
constexpr int kNoStep = -1;

struct TourStepInfo
{
    QWidget* (*target)(HomeView& home); ///< null for none, or for no widget
    const char* titleKey;
    const char* descKey;
    const char* buttonKey; ///< null where the step waits for the user to do it
};

QWidget* addButton(HomeView& home)
{
    return home.addButton();
}

constexpr std::array<TourStepInfo, MainWindow::TourStepCount> kSteps{{
    {nullptr, "tour.welcome_title", "tour.welcome_desc", "tour.btn_begin"},
    {addButton, "tour.section_title", "tour.section_desc", nullptr},
    {[](HomeView& home) -> QWidget* { return home.categoryStrip(); }, "tour.pill_title",
     "tour.pill_desc", "tour.btn_next"},
    {addButton, "tour.item_title", "tour.item_desc", nullptr},
    {[](HomeView& home) { return home.itemEditorPanel()->typeButton(); }, "tour.type_title",
     "tour.type_desc", nullptr},
    {[](HomeView& home) { return home.itemEditorPanel()->nameInput(); }, "tour.name_title",
     "tour.name_desc", "tour.btn_next"},
    {[](HomeView& home) { return home.itemEditorPanel()->browseButton(); }, "tour.file_title",
     "tour.file_desc", nullptr},
    {[](HomeView& home) { return home.itemEditorPanel()->saveButton(); }, "tour.save_title",
     "tour.save_desc", nullptr},
    {nullptr, "tour.run_title", "tour.run_desc", "tour.btn_next"},
    {[](HomeView& home) -> QWidget* { return home.searchInput(); }, "tour.finish_title",
     "tour.finish_desc", "tour.btn_finish"},
}};

QSet<QString> itemIdsOf(const LauncherData& document)
{
    QSet<QString> ids;
    for (const QVector<LauncherElement>& items : document.sectionElements) {
        for (const LauncherElement& item : items)
            ids.insert(item.id);
    }
    return ids;
}

} // namespace

MainWindow::TourCompanion::TourCompanion(MainWindow* window, const char* titleKey,
                                         const char* descKey)
    : win(window)
{
    if (!win->tourActive())
        return;
    // The dialog opens only now, and has its place once it is up.
    QTimer::singleShot(0, win->m_tourOverlay, [window, titleKey, descKey] {
        const QWidget* dialog = QApplication::activeModalWidget();
        if (window->tourActive() && dialog)
            window->m_tourOverlay->showCompanion(dialog->frameGeometry(), Tr::t(titleKey),
                                                 Tr::t(descKey));
    });
}

MainWindow::TourCompanion::~TourCompanion()
{
    if (win)
        win->setTourOverlayVisible(true);
}

void MainWindow::considerOnboarding()
{
    if (m_onboardingChecked)
        return;
    m_onboardingChecked = true;
    if (!OnboardingDialog::hasSeenOnboarding())
        QTimer::singleShot(0, this, &MainWindow::runOnboarding);
}

void MainWindow::runOnboarding()
{
    const AutoQuitBlocker blocker;
    ModalRun<OnboardingDialog> dialog(this);
    if (dialog.exec().has_value() && dialog->tourRequested())
        startInteractiveTour();
}

void MainWindow::startInteractiveTour()
{
    if (!m_mainStack || !m_homeView)
        return;
    const auto begin = [this] {
        if (forceTourDarkTheme() || rebuildForLanguage())
            whenSettled([this] { beginTour(); });
        else
            beginTour();
    };
    if (isHomePage()) {
        QTimer::singleShot(0, this, begin);
        return;
    }
    goToPage(HomePage);
    whenSettled(begin);
}

/// Calls `next` when a change of page or a rebuild that has just been asked for is through, however
/// long a busy machine takes for it.
void MainWindow::whenSettled(const std::function<void()>& next, int waitMs)
{
    QTimer::singleShot(waitMs > 0 ? waitMs : kSettleMs, this, [this, next] {
        if (m_pageAnim)
            whenSettled(next, kSettleAgainMs);
        else
            next();
    });
}

/// The welcome changes the language under a page that stands there in the old one.
bool MainWindow::rebuildForLanguage()
{
    if (m_builtLang == Tr::currentLang)
        return false;
    rebuildUIPreservingFocus();
    return true;
}

bool MainWindow::forceTourDarkTheme()
{
    if (m_tourThemeForced || Theme::isDarkMode())
        return false;
    m_tourSavedTheme = Theme::forceTheme;
    m_tourThemeForced = true;
    Theme::forceTheme = TourThemeDark; // not saved: it is for the tour alone
    rebuildUIPreservingFocus();
    return true;
}

void MainWindow::restoreThemeAfterTour()
{
    if (!m_tourThemeForced)
        return;
    m_tourThemeForced = false;
    // Another value is what the user has chosen meanwhile.
    if (Theme::forceTheme != TourThemeDark || m_tourSavedTheme == TourThemeDark)
        return;
    Theme::forceTheme = m_tourSavedTheme;
    QTimer::singleShot(0, this, &MainWindow::rebuildUIPreservingFocus);
}

void MainWindow::beginTour()
{
    if (!m_homeView || !m_bgContainer)
        return;
    if (!m_tourOverlay) {
        m_tourOverlay = new TourOverlay(this);
        connect(m_tourOverlay, &TourOverlay::advanced, this,
                [this] { showTourStep(m_tourStep + 1); });
    }
    const QStringList& categories = m_model->data().categories;
    m_tourKnownCats = QSet<QString>(categories.cbegin(), categories.cend());
    m_tourKnownItems = itemIdsOf(m_model->data());
    refreshCategories();
    showTourStep(TourWelcome);
}

void MainWindow::endTour()
{
    const bool hasRun = tourActive();
    if (m_tourOverlay) {
        m_tourOverlay->dismiss();
        m_tourOverlay->deleteLater();
        m_tourOverlay.clear();
    }
    m_tourStep = kNoStep;
    m_tourKnownCats.clear();
    m_tourKnownItems.clear();
    if (!hasRun)
        return;
    refreshCategories();
    restoreThemeAfterTour();
}

bool MainWindow::tourActive() const
{
    return !m_tourOverlay.isNull();
}

bool MainWindow::tourStepInsideForm(int step)
{
    return step >= TourPickType && step <= TourSaveItem;
}

bool MainWindow::tourShowsCategory(const QString& category) const
{
    return !m_tourKnownCats.contains(category);
}

bool MainWindow::tourShowsItem(const QString& id) const
{
    return !m_tourKnownItems.contains(id);
}

void MainWindow::showTourStep(int step)
{
    if (!m_tourOverlay || !m_homeView || !m_bgContainer)
        return;
    if (step >= TourStepCount) {
        endTour();
        return;
    }
    m_tourStep = step;
    layout()->activate();
    m_tourOverlay->setGeometry(m_bgContainer->geometry());
    if (step == TourMakeSection)
        m_tourBaseline = static_cast<int>(m_model->data().categories.size());
    else if (step == TourOpenItemForm)
        m_tourBaseline = totalItemCount();
    if (!isVisible())
        return; // the next show of the window shows the step
    const TourStepInfo& info = kSteps.at(std::size_t(step));
    const std::optional<QRect> target = tourTarget(step);
    if (!target) {
        endTour();
        return;
    }
    m_tourOverlay->showStep(*target, Tr::t(info.titleKey), Tr::t(info.descKey), step + 1,
                            TourStepCount, info.buttonKey ? Tr::t(info.buttonKey) : QString());
    if (step == TourSectionMade)
        m_homeView->categoryStrip()->setFocus();
    else if (step == TourItemMade)
        m_homeView->list()->setFocus();
}

/// What the step points at, in the overlay's coordinates, null if at nothing. No value if that is
/// not to be seen, though it should be.
std::optional<QRect> MainWindow::tourTarget(int step) const
{
    QRect target;
    if (step == TourItemMade) {
        target = currentItemRectInWindow();
        if (target.isNull())
            return std::nullopt;
    } else if (const auto find = kSteps.at(std::size_t(step)).target) {
        const QWidget* widget = find(*m_homeView);
        if (!widget || !widget->isVisible())
            return std::nullopt;
        target = QRect(widget->mapTo(this, QPoint(0, 0)), widget->size());
    } else {
        return target;
    }
    return target.translated(-m_tourOverlay->pos());
}

QRect MainWindow::currentItemRectInWindow() const
{
    const QListWidget* list = m_homeView->list();
    const QListWidgetItem* item = list->currentItem();
    if (!item || !list->isVisible())
        return {};
    const QRect rect = list->visualItemRect(item).intersected(list->viewport()->rect());
    if (rect.isEmpty())
        return {};
    return rect.translated(list->viewport()->mapTo(this, QPoint(0, 0)));
}

int MainWindow::totalItemCount() const
{
    int count = 0;
    for (const QVector<LauncherElement>& items : m_model->data().sectionElements)
        count += static_cast<int>(items.size());
    return count;
}

/// Goes on from a step when this turn of the event loop is over, unless the tour is elsewhere then.
void MainWindow::advanceTourFrom(int step)
{
    QTimer::singleShot(0, this, [this, step] {
        if (tourActive() && m_tourStep == step)
            showTourStep(step + 1);
    });
}

void MainWindow::onTourDataChanged()
{
    if (!tourActive())
        return;
    const bool isSectionMade =
        m_tourStep == TourMakeSection && m_model->data().categories.size() > m_tourBaseline;
    const bool isItemMade = m_tourStep == TourSaveItem && totalItemCount() > m_tourBaseline;
    if (isSectionMade || isItemMade)
        advanceTourFrom(m_tourStep);
}

void MainWindow::onTourItemFormOpened()
{
    if (!tourActive())
        return;
    connectTour();
    if (m_tourStep == TourOpenItemForm)
        advanceTourFrom(TourOpenItemForm);
}

void MainWindow::onTourItemFormClosed()
{
    if (!tourActive() || !tourStepInsideForm(m_tourStep))
        return;
    QTimer::singleShot(0, this, [this] {
        // A form that has been saved has taken the tour out of it by now.
        if (tourActive() && tourStepInsideForm(m_tourStep))
            showTourStep(TourOpenItemForm);
    });
}

/// The form is built when it opens for the first time.
void MainWindow::connectTour()
{
    const ItemEditorPanel* editor = m_homeView->itemEditorPanel();
    connect(editor, &ItemEditorPanel::editorTypeChanged, this, &MainWindow::onTourTypeChanged,
            Qt::UniqueConnection);
    connect(qobject_cast<QPlainTextEdit*>(editor->valueInput()), &QPlainTextEdit::textChanged, this,
            &MainWindow::onTourValueChanged, Qt::UniqueConnection);
}

void MainWindow::onTourTypeChanged(const QString& type)
{
    if (tourActive() && m_tourStep == TourPickType && type == ItemType::File)
        advanceTourFrom(TourPickType);
}

void MainWindow::onTourValueChanged()
{
    if (!tourActive() || m_tourStep != TourPickFile)
        return;
    const auto* value = qobject_cast<QPlainTextEdit*>(m_homeView->itemEditorPanel()->valueInput());
    if (!value->toPlainText().trimmed().isEmpty())
        advanceTourFrom(TourPickFile);
}

void MainWindow::setTourOverlayVisible(bool visible)
{
    if (!tourActive())
        return;
    if (!visible) {
        m_tourOverlay->dismiss();
        return;
    }
    QTimer::singleShot(0, this, [this] {
        if (tourActive())
            showTourStep(m_tourStep);
    });
}
