// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SpotlightSettingsDialog.h"

#include "AccentPicker.h"
#include "ActionsMenu.h"
#include "ChoiceRow.h"
#include "GroupHeader.h"
#include "IconHelper.h"
#include "LanguageMenu.h"
#include "PickerPill.h"
#include "Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace
{

constexpr int kCardWidth = 440;
constexpr int kPillPadPlain = 14;
constexpr int kPillMinWidth = 140;
constexpr double kPillGlyphX = 22.0;
constexpr int kPillGlyphPx = 15;

static_assert(SpotlightSettingsDialog::RowControlHeight == PickerPill::Height);
static_assert(SpotlightSettingsDialog::MultiGlyph == Glyph::FilterList);

/// Whoever comes to the row by keys finds the theme that is chosen. Qt sees to it too, but not
/// before one of the row has had the focus.
void leadFocusToTheme(const ChoiceRow& row)
{
    const auto buttons = row.findChildren<QPushButton*>();
    if (std::none_of(buttons.begin(), buttons.end(), [](auto* each) { return each->isChecked(); }))
        return;
    for (QPushButton* button : buttons) {
        if (!button->isChecked())
            button->setFocusPolicy(Qt::ClickFocus);
    }
}

QLabel* makeText(const QString& text, const QString& style)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

} // namespace

SpotlightSettingsDialog::SpotlightSettingsDialog(QWidget* parent, const QVector<Option>& options,
                                                 const QVector<int>& chosen, const Option& empty)
    : FramelessDialog(parent, Tr::t("settings.title"), StrongShadow, CardPad),
      m_options(options),
      m_empty(empty),
      m_theme(Theme::forceTheme),
      m_seed(Theme::seedColorHex),
      m_lang(Tr::currentLang)
{
    for (const int index : chosen) {
        if (index >= 0 && index < m_options.size() && !m_indices.contains(index))
            m_indices.append(index);
    }
    std::sort(m_indices.begin(), m_indices.end());
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    card()->setMinimumWidth(kCardWidth);
    rows()->addWidget(makeText(windowTitle(), Theme::dialogTitleStyle(Theme::colors())));
    addDisplayGroup();
    addSearchGroup();
    addButtons();
    applyPick();
}

void SpotlightSettingsDialog::addDisplayGroup()
{
    addGroup(Tr::t("settings.cat_display"), false);

    const QString name = QStringLiteral("spotLangBtn");
    m_langBtn = makePill(QStringLiteral("QPushButton#%1").arg(name), kPillPadPlain);
    m_langBtn->setObjectName(name);
    m_langBtn->setLabel(Tr::nameFor(m_lang));
    connect(m_langBtn, &QPushButton::clicked, this, &SpotlightSettingsDialog::showLangMenu);
    addRow(Tr::t("settings.sys.lang_title"), m_langBtn);

    addRow(Tr::t("settings.app.theme_title"), makeThemeRow());

    m_swatch =
        new AccentSwatchButton(QColor::fromString(m_seed), QColor(Theme::colors().outline), card());
    connect(m_swatch, &QPushButton::clicked, this, &SpotlightSettingsDialog::showColorPicker);
    addRow(Tr::t("settings.app.accent_title"), m_swatch);
}

void SpotlightSettingsDialog::addSearchGroup()
{
    addGroup(Tr::t("spotset.title"), true);

    m_pick = makePill(QStringLiteral("QPushButton"), PillPadLeft);
    connect(m_pick, &QPushButton::clicked, this, &SpotlightSettingsDialog::showPickMenu);
    addRow(Tr::t("spotset.default_label"), m_pick);

    QLabel* hint = makeText(Tr::t("spotset.default_hint"),
                            Theme::textStyle(Theme::colors().onSurfaceVariant, FontTokens::SizeSm));
    hint->setWordWrap(true);
    rows()->addWidget(hint);
}

void SpotlightSettingsDialog::addButtons()
{
    const ColorTokens c = Theme::colors();
    QHBoxLayout* row = addButtonRow(rows(), Theme::Sp_Md);
    row->addStretch();
    QPushButton* cancel = addButton(row, Tr::t("dialog.btn_cancel"),
                                    Theme::actionBtnStyle(c, QStringLiteral("transparent")));
    QPushButton* ok = addButton(row, Tr::t("dialog.btn_ok"), Theme::primaryBtnStyle(c));
    for (QPushButton* button : {cancel, ok})
        button->setCursor(Qt::PointingHandCursor);
    ok->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
}

void SpotlightSettingsDialog::addGroup(const QString& title, bool isSpaced)
{
    rows()->addWidget(new GroupHeader(title, QMargins(0, isSpaced ? Theme::Sp_Sm : 0, 0, 0)));
}

void SpotlightSettingsDialog::addRow(const QString& title, QWidget* control)
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::Sp_Md);
    QLabel* label =
        makeText(title, Theme::textOnCardStyle(Theme::colors().onSurface, FontTokens::SizeMd,
                                               Theme::Weight::Bold));
    label->setBuddy(control); // what a screen reader calls it
    layout->addWidget(label, 1, Qt::AlignLeft | Qt::AlignVCenter);
    layout->addWidget(control);
    rows()->addWidget(row);
}

PickerPill* SpotlightSettingsDialog::makePill(const QString& selector, int leftPad)
{
    const ColorTokens c = Theme::colors();
    auto* pill = new PickerPill(card());
    pill->setStyleSheet(Theme::pickerPillStyle(selector, c, c.primaryContainer,
                                               c.onPrimaryContainer, leftPad, kPillMinWidth));
    return pill;
}

QWidget* SpotlightSettingsDialog::makeThemeRow()
{
    static constexpr std::array<const char*, ThemeCount> kTexts{
        "settings.app.theme_auto", "settings.app.theme_light", "settings.app.theme_dark"};
    QList<ChoiceRow::Choice> choices;
    for (int mode = 0; mode < ThemeCount; ++mode)
        choices.append({mode, Tr::t(QString::fromLatin1(kTexts.at(std::size_t(mode)))),
                        QStringLiteral("spotThemeBtn%1").arg(mode)});
    auto* row = new ChoiceRow(choices, m_theme, ChoiceRow::Shape::Pill,
                              Theme::fieldIdleBg(Theme::colors()));
    connect(row, &ChoiceRow::chosen, this, [this](int mode) { m_theme = mode; });
    leadFocusToTheme(*row);
    return row;
}

void SpotlightSettingsDialog::showLangMenu()
{
    const std::optional<Lang> lang = LanguageMenu::ask(m_langBtn);
    if (!lang)
        return;
    m_lang = *lang;
    m_langBtn->setLabel(Tr::nameFor(m_lang));
}

void SpotlightSettingsDialog::showColorPicker()
{
    const std::optional<QString> hex = AccentPicker::ask(this, m_seed);
    if (!hex)
        return;
    m_seed = *hex;
    m_swatch->setColor(QColor::fromString(m_seed));
}

void SpotlightSettingsDialog::showPickMenu()
{
    ActionsMenu::Popup popup(this);
    QVector<int> pending = m_indices;
    QList<QAction*> actions; // the first is that of all kinds
    actions.append(
        popup.addCheckRow([&pending] { return pending.isEmpty(); }, m_empty.glyph, m_empty.label));
    for (int i = 0; i < m_options.size(); ++i)
        actions.append(popup.addCheckRow([&pending, i] { return pending.contains(i); },
                                         m_options.at(i).glyph, m_options.at(i).label));
    popup.addDone([&] {
        m_indices = pending;
        applyPick();
    });

    // Rows only stage a change; the last one is what commits it.
    auto* filter = new ActionsMenu::ToggleFilter(&popup.menu(), [&](const QAction* action) {
        const int option = int(actions.indexOf(action)) - 1;
        if (option < 0) {
            pending.clear();
        } else if (pending.removeAll(option) == 0) {
            pending.append(option);
            std::sort(pending.begin(), pending.end());
        }
    });
    for (QAction* action : std::as_const(actions))
        filter->watch(action);
    popup.execBelow(m_pick);
    m_pick->setFocus();
}

void SpotlightSettingsDialog::applyPick()
{
    if (m_options.isEmpty())
        return;
    Option shown = m_empty;
    if (m_indices.size() == 1)
        shown = m_options.at(m_indices.constFirst());
    else if (m_indices.size() > 1)
        shown = {Tr::t("spotset.n_types").arg(m_indices.size()), MultiGlyph};
    m_pick->setLabel(shown.label);
    m_pick->setGlyphLeftInset(kPillGlyphX);
    m_pick->setGlyph(shown.glyph, kPillGlyphPx, Theme::colors().onSurface);
}

void SpotlightSettingsDialog::accept()
{
    applyGlobals();
    FramelessDialog::accept();
}

void SpotlightSettingsDialog::applyGlobals()
{
    if (m_theme != Theme::forceTheme) {
        Theme::saveForceTheme(m_theme);
        m_appearanceChanged = true;
    }
    if (m_seed.compare(Theme::seedColorHex, Qt::CaseInsensitive) != 0) {
        Theme::saveSeedColor(m_seed);
        m_appearanceChanged = true;
    }
    if (m_lang != Tr::currentLang) {
        Tr::setLanguage(m_lang);
        m_appearanceChanged = true;
    }
}

void SpotlightSettingsDialog::keyPressEvent(QKeyEvent* event)
{
    // Within the row of themes these two keys find nothing, and would end there.
    const bool isDown = event->key() == Qt::Key_Down;
    if (isDown || event->key() == Qt::Key_Up)
        focusNextPrevChild(isDown);
    else
        FramelessDialog::keyPressEvent(event);
}
