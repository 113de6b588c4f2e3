// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SettingsView.h"

#include "AboutSettingsPage.h"
#include "AppearanceSettingsPage.h"
#include "CardHeader.h"
#include "DataSettingsPage.h"
#include "GroupedSettingsPage.h"
#include "IconHelper.h"
#include "LanguageSettingsPage.h"
#include "LayoutSettingsPage.h"
#include "Localization.h"
#include "MainWindow.h"
#include "SettingsCatDelegate.h"
#include "SystemSettingsPage.h"
#include "TemplateSettingsPage.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace
{

constexpr int kBackSize = 32;
constexpr int kBackFontPx = 20;
constexpr int kCategoryGap = 12;
constexpr int kListStretch = 3;
constexpr int kPageStretch = 7;
constexpr int kHomeFocusDelayMs = 10;

} // namespace

SettingsView::SettingsView(LauncherModel* model, MainWindow* mainWindow, QWidget* parent)
    : QWidget(parent), m_model(model), m_mainWindow(mainWindow)
{}

void SettingsView::setupUI()
{
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);
    root->addWidget(buildHeader());
    root->addWidget(buildBody(), 1);
    buildPages();
    connect(m_settingsCatList, &QListWidget::currentRowChanged, m_settingsDetailStack,
            &QStackedWidget::setCurrentIndex);
    connect(m_settingsCatList, &QListWidget::currentRowChanged, this,
            &SettingsView::updateHeaderTitle);
    connect(m_settingsCatList, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        item->setSelected(true); // also if it was clicked to deselect it
        openSelectedCategory();
    });
    resetToTop();
}

QWidget* SettingsView::buildHeader()
{
    m_settingsHeader = new CardHeader(QStringLiteral("settingsHeaderCard"), {}, Theme::Rad_Lg);
    m_settingsHeader->setLeading(buildBackButton());
    return m_settingsHeader;
}

QPushButton* SettingsView::buildBackButton()
{
    const QString arrow(QChar(0x2190));
    m_settingsBackBtn = new QPushButton(arrow);
    m_settingsBackBtn->setObjectName(QStringLiteral("settingsBackBtn"));
    m_settingsBackBtn->setFixedSize(kBackSize, kBackSize);
    m_settingsBackBtn->setCursor(Qt::PointingHandCursor);
    m_settingsBackBtn->setFocusPolicy(Qt::StrongFocus);
    QFont font = m_settingsBackBtn->font();
    font.setPixelSize(kBackFontPx);
    font.setBold(true);
    m_settingsBackBtn->setFont(font);
    const QString onSurface = Theme::colors().onSurface;
    const auto layer = [&onSurface](double opacity) {
        return Theme::stateLayerOn(QStringLiteral("transparent"), onSurface, opacity);
    };
    m_settingsBackBtn->setStyleSheet(
        QStringLiteral("QPushButton { background-color: transparent; color: %1; border: none; "
                       "border-radius: %5px; outline: 0; %4 }"
                       "QPushButton:hover { background-color: %2; color: %1; }"
                       "QPushButton:focus { background-color: %3; color: %1; outline: 0; }")
            .arg(onSurface, layer(Theme::StateHover), layer(Theme::StateFocus),
                 IconHelper::glyphCenteringPad(font, arrow, m_settingsBackBtn->size()))
            .arg(kBackSize / 2));
    connect(m_settingsBackBtn, &QPushButton::clicked, this, &SettingsView::goBack);
    return m_settingsBackBtn;
}

QWidget* SettingsView::buildBody()
{
    auto* base = new QWidget;
    base->setObjectName(QStringLiteral("settingsChromeStripBase"));
    base->setAttribute(Qt::WA_StyledBackground);
    base->setStyleSheet(QStringLiteral("QWidget#settingsChromeStripBase { %1 }")
                            .arg(Theme::bandStyle(Theme::shellBg(), 0, Theme::Rad_Lg)));
    auto* baseLayout = new QHBoxLayout(base);
    baseLayout->setContentsMargins(0, 0, 0, 0);

    auto* panel = new QFrame;
    panel->setObjectName(QStringLiteral("settingsPaperPanel"));
    panel->setStyleSheet(
        QStringLiteral("QFrame#settingsPaperPanel { %1 }")
            .arg(Theme::bandStyle(Theme::panelBg(), Theme::Rad_Md, Theme::Rad_Lg)));
    baseLayout->addWidget(panel);
    auto* panelLayout = new QHBoxLayout(panel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->setSpacing(0);

    buildCategoryList();
    m_settingsDetailStack = new QStackedWidget;
    m_settingsDetailStack->setStyleSheet(
        QStringLiteral("QStackedWidget { background-color: transparent; border: none; }"));
    // Neither a long category nor a wide page moves the line between the two.
    for (QWidget* side :
         {static_cast<QWidget*>(m_settingsCatList), static_cast<QWidget*>(m_settingsDetailStack)}) {
        side->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
        side->setMinimumWidth(1);
    }
    panelLayout->addWidget(m_settingsCatList, kListStretch);
    panelLayout->addWidget(m_settingsDetailStack, kPageStretch);
    return base;
}

void SettingsView::buildCategoryList()
{
    m_settingsCatList = new QListWidget;
    m_settingsCatList->setObjectName(QStringLiteral("settingsCatList"));
    m_settingsCatList->setFocusPolicy(Qt::StrongFocus);
    m_settingsCatList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_settingsCatList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_settingsCatList->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_settingsCatList->setStyleSheet(
        QStringLiteral("QListWidget { background-color: transparent; border: none; "
                       "padding: 16px 0px; outline: none; }"
                       "QListWidget::item { outline: none; }"));
    m_settingsCatList->viewport()->setAttribute(Qt::WA_Hover);
    m_settingsCatList->setItemDelegate(new SettingsCatDelegate(kCategoryGap, m_settingsCatList));
}

void SettingsView::buildPages()
{
    addCategory("settings.cat_display", Glyph::Palette, buildDisplayPage());
    addCategory("settings.cat_app", Glyph::Tune, buildAppPage());
    addCategory("settings.cat_template", Glyph::Bookmarks, buildTemplatePage());
    addCategory("settings.cat_about", Glyph::Star, buildAboutPage());
}

void SettingsView::addCategory(const char* key, uint glyph, QWidget* page)
{
    auto* item = new QListWidgetItem(Tr::t(QString::fromLatin1(key)), m_settingsCatList);
    item->setData(Qt::UserRole, glyph);
    m_settingsDetailStack->addWidget(page);
}

QWidget* SettingsView::buildDisplayPage()
{
    const auto rebuild = &MainWindow::rebuildUIPreservingFocus;
    auto* appearance = new AppearanceSettingsPage;
    connect(appearance, &AppearanceSettingsPage::appearanceChanged, m_mainWindow, rebuild);
    auto* layout = new LayoutSettingsPage;
    connect(layout, &LayoutSettingsPage::layoutModeChanged, m_mainWindow, rebuild);
    auto* language = new LanguageSettingsPage;
    connect(language, &LanguageSettingsPage::languageChanged, m_mainWindow, rebuild);
    return new GroupedSettingsPage(QList<GroupedSettingsPage::Group>{
        {Tr::t(QStringLiteral("settings.group_color")), appearance},
        {Tr::t(QStringLiteral("settings.group_layout")), layout},
        {Tr::t(QStringLiteral("settings.group_language")), language}});
}

QWidget* SettingsView::buildAppPage()
{
    const MainWindow* window = m_mainWindow;
    auto* system = new SystemSettingsPage([window] { return window->hotkeyController(); },
                                          [window] { return window->spotlightHotkeyController(); });
    auto* dataPage = new DataSettingsPage(m_model, m_mainWindow->jsonPath());
    connect(dataPage, &DataSettingsPage::dataChanged, m_mainWindow,
            &MainWindow::rebuildUIPreservingFocus);
    return new GroupedSettingsPage(QList<GroupedSettingsPage::Group>{
        {Tr::t(QStringLiteral("settings.group_system")), system},
        {Tr::t(QStringLiteral("settings.group_data")), dataPage}});
}

QWidget* SettingsView::buildTemplatePage()
{
    return new GroupedSettingsPage(QList<QWidget*>{new TemplateSettingsPage(m_model)});
}

QWidget* SettingsView::buildAboutPage()
{
    auto* about = new AboutSettingsPage(m_model);
    connect(about, &AboutSettingsPage::startTourRequested, m_mainWindow,
            &MainWindow::startInteractiveTour);
    return about;
}

void SettingsView::updateHeaderTitle()
{
    if (m_settingsHeader)
        m_settingsHeader->setTitle(Tr::t(QStringLiteral("settings.title")));
}

void SettingsView::goBack()
{
    m_mainWindow->goToPage(MainWindow::HomePage);
    // Once the click is through, which would keep the focus on the button.
    QTimer::singleShot(kHomeFocusDelayMs, m_mainWindow, &MainWindow::refreshHomeAndFocusGrid);
}

void SettingsView::resetToTop()
{
    if (!m_settingsCatList)
        return;
    m_settingsCatList->setCurrentRow(0);
    m_settingsDetailStack->setCurrentIndex(0);
    updateHeaderTitle();
}
