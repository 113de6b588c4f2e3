// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsMenu.h"
#include "AutoQuitBlocker.h"
#include "ConfirmDot.h"
#include "CustomWidgets.h"
#include "FlowLayout.h"
#include "FolderFilter.h"
#include "FolderPickerDialog.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Localization.h"
#include "RowPainting.h"
#include "Settings.h"
#include "SpotlightSettingsDialog.h"
#include "SpotlightWindow.h"
#include "Theme.h"
#include "ToolTips.h"
#include "Types.h"

#include <QGuiApplication>
#include <QListWidget>
#include <QMenu>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace
{

constexpr int kChipTextWidth = 420;
constexpr int kDotGap = 8;
constexpr int kDotReach = 38;   // how far the dot reaches to the right of its place
constexpr int kDotGapLeft = 48; // from the menu's left edge, dot included

const QString kDefaultScopeKey = QStringLiteral("Spotlight/DefaultScope");

} // namespace

const QVector<SpotlightWindow::ScopeDef>& SpotlightWindow::scopeDefs()
{
    static const QVector<ScopeDef> s_defs{
        {"", Glyph::Apps},
        {ItemType::Application.data(), 0},
        {ItemType::Url.data(), 0},
        {ItemType::File.data(), 0},
        {FolderScope.data(), Glyph::Folder},
        {ItemType::Snippet.data(), 0},
        {ItemType::Bulk.data(), 0},
    };
    return s_defs;
}

uint SpotlightWindow::scopeGlyph(const ScopeDef& def)
{
    return def.glyph != 0 ? def.glyph
                          : IconHelper::codepointForType(QString::fromLatin1(def.typeKey));
}

QString SpotlightWindow::scopeLabel(const ScopeDef& def)
{
    const QString key = QString::fromLatin1(def.typeKey);
    if (key.isEmpty())
        return Tr::t(QStringLiteral("spotlight.scope_all"));
    if (key == FolderScope)
        return Tr::t(QStringLiteral("spotlight.scope_folder"));
    return SpotlightResultDelegate::typeLabel(key);
}

QStringList SpotlightWindow::defaultScopeKeys()
{
    const QStringList stored = Settings::value(kDefaultScopeKey).toStringList();
    QStringList keys;
    for (const ScopeDef& def : scopeDefs()) {
        const QString key = QString::fromLatin1(def.typeKey);
        if (!key.isEmpty() && stored.contains(key))
            keys.append(key);
    }
    return keys;
}

void SpotlightWindow::setDefaultScopeKeys(const QStringList& keys)
{
    Settings::setValue(kDefaultScopeKey, keys);
}

void SpotlightWindow::setScopeKeys(const QStringList& keys)
{
    if (keys == m_scopeKeys)
        return;
    m_scopeKeys = keys;
    refreshFilterChips();
    rebuildResults(m_searchInput->text(), m_scopeKeys);
}

void SpotlightWindow::removeScope(const QString& key)
{
    QStringList keys = m_scopeKeys;
    keys.removeAll(key);
    setScopeKeys(keys);
}

void SpotlightWindow::removeFolder(const QString& path)
{
    QStringList folders = FolderFilter::folders();
    if (folders.removeAll(path) != 0)
        setFolders(folders);
}

void SpotlightWindow::setFolders(const QStringList& folders)
{
    FolderFilter::setFolders(folders);
    refreshFilterChips();
    rebuildResults(m_searchInput->text(), m_scopeKeys);
}

void SpotlightWindow::refreshFilterChips()
{
    if (!m_chipRow || !m_chipLayout)
        return;
    // In a row that is in view, each chip that comes or goes would lay out all others at once.
    m_chipRow->hide();
    for (GlyphButton* chip : std::as_const(m_chips)) {
        m_chipLayout->removeWidget(chip);
        chip->hide();
        chip->deleteLater();
    }
    m_chips.clear();
    addScopeChips();
    addFolderChips();
    fitChipMargins();
    m_chipRow->setVisible(!m_chips.isEmpty());
    applyResultsLayout(m_resultsList->count());
}

void SpotlightWindow::addScopeChips()
{
    for (const ScopeDef& def : scopeDefs()) {
        const QString key = QString::fromLatin1(def.typeKey);
        if (key.isEmpty() || !m_scopeKeys.contains(key))
            continue;
        const GlyphButton* chip = addFilterChip(scopeGlyph(def), scopeLabel(def));
        connect(chip, &QPushButton::clicked, this, [this, key] { removeScope(key); });
    }
}

void SpotlightWindow::addFolderChips()
{
    const QString removeText = Tr::t(QStringLiteral("spotlight.chip_remove"));
    const QStringList folders = FolderFilter::folders();
    int room = roomForChips();
    for (const QString& path : folders) {
        // Below the screen nobody sees it, and each costs a style sheet. It comes as others go.
        if (room <= 0)
            break;
        GlyphButton* chip = addFilterChip(Glyph::Folder, FolderFilter::nameOf(path));
        room -= chip->width() + CHIP_GAP;
        chip->setToolTip(ToolTips::plain(path + QLatin1Char('\n') + removeText));
        connect(chip, &QPushButton::clicked, this, [this, path] { removeFolder(path); });
    }
}

int SpotlightWindow::roomForChips()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int height = screen ? screen->virtualGeometry().height() : 0;
    const int lines = height / (PillStyle::Height + CHIP_GAP) + 1;
    return lines * (ChipRowWidth + CHIP_GAP);
}

void SpotlightWindow::fitChipMargins()
{
    int widest = 0;
    for (const GlyphButton* chip : std::as_const(m_chips))
        widest = std::max(widest, chip->width());
    // The longest name there may be takes the whole row; beside margins it would widen the window.
    const int margin = std::clamp((ChipRowWidth - widest) / 2, 0, CHIP_MARGIN);
    m_chipLayout->setContentsMargins(margin, 0, margin, 0);
}

GlyphButton* SpotlightWindow::addFilterChip(uint glyph, const QString& label)
{
    auto* chip = new GlyphButton(m_chipRow);
    chip->setFocusPolicy(Qt::NoFocus);
    chip->setCursor(Qt::PointingHandCursor);
    chip->setToolTip(Tr::t(QStringLiteral("spotlight.chip_remove")));
    chip->ensurePolished(); // the window's style sheet brings another font
    QString name = label;
    name.replace(QLatin1Char('\n'), QLatin1Char(' ')); // a chip has one line
    const QString elided = RowPainting::elidedLine(chip->fontMetrics(), name, kChipTextWidth);
    PillStyle::applyFilterChip(chip, glyph, elided);
    m_chipLayout->addWidget(chip);
    m_chips.append(chip);
    return chip;
}

void SpotlightWindow::showFilterMenu()
{
    ActionsMenu::Popup popup(this);
    QMenu& menu = popup.menu();
    QStringList pending = m_scopeKeys;
    QVector<QAction*> actions;
    QStringList keys;
    for (const ScopeDef& def : scopeDefs()) {
        const QString key = QString::fromLatin1(def.typeKey);
        if (key.isEmpty())
            continue;
        actions.append(popup.addCheckRow([&pending, key] { return pending.contains(key); },
                                         scopeGlyph(def), scopeLabel(def)));
        keys.append(key);
    }

    popup.addSeparator();
    bool isForFolders = false;
    popup.addRow(Glyph::Folder, Tr::t(QStringLiteral("spotlight.filter_folders")),
                 [&isForFolders] { isForFolders = true; });

    // Rows only stage a change; the dot beside the row is what commits it.
    ConfirmDot dot(this);
    const ColorTokens colors = Theme::colors();
    dot.setColors(colors.primary, colors.onPrimary);
    bool isConfirmed = false;
    auto* filter = new ActionsMenu::ToggleFilter(&menu, [&](QAction* action) {
        const QString key = keys.value(actions.indexOf(action));
        if (pending.removeAll(key) == 0)
            pending.append(key);
        placeConfirmDot(&dot, menu, menu.actionGeometry(action));
        dot.show();
        dot.raise();
    });
    for (QAction* action : std::as_const(actions))
        filter->watch(action);
    filter->watchArea(&dot, [&] {
        isConfirmed = true;
        menu.close();
    });
    popup.execBelow(m_addFilterBtn);
    dot.hide();
    if (isConfirmed)
        setScopeKeys(pending);
    else if (isForFolders)
        showFolderPicker();
    m_searchInput->setFocus();
}

void SpotlightWindow::showFolderPicker()
{
    const AutoQuitBlocker blocker;
    FolderPickerDialog dialog(this);
    alignDialogToSearchBar(&dialog);
    if (dialog.exec() == QDialog::Accepted)
        setFolders(dialog.chosen());
    m_searchInput->setFocus();
}

void SpotlightWindow::showSettingsDialog()
{
    const AutoQuitBlocker blocker;
    SpotlightSettingsDialog::Option all;
    QVector<SpotlightSettingsDialog::Option> options;
    QStringList keys;
    for (const ScopeDef& def : scopeDefs()) {
        const SpotlightSettingsDialog::Option option{scopeLabel(def), scopeGlyph(def)};
        const QString key = QString::fromLatin1(def.typeKey);
        if (key.isEmpty()) {
            all = option;
        } else {
            options.append(option);
            keys.append(key);
        }
    }
    QVector<int> chosen;
    for (const QString& key : defaultScopeKeys())
        chosen.append(int(keys.indexOf(key)));

    SpotlightSettingsDialog dialog(this, options, chosen, all);
    alignDialogToSearchBar(&dialog);
    if (dialog.exec() == QDialog::Accepted) {
        QStringList scopes;
        for (const int index : dialog.chosenIndices())
            scopes.append(keys.at(index));
        applySettings(scopes, dialog.appearanceChanged());
    }
    m_searchInput->setFocus();
}

void SpotlightWindow::applySettings(const QStringList& scopes, bool hasNewLook)
{
    setDefaultScopeKeys(scopes);
    setScopeKeys(scopes);
    if (!hasNewLook)
        return;
    applyThemeColors();
    rebuildResults(m_searchInput->text(), m_scopeKeys); // its headings have a language, too
    emit appearanceChanged();
}

void SpotlightWindow::placeConfirmDot(ConfirmDot* dot, const QMenu& menu, const QRect& row)
{
    const QPoint topLeft = menu.mapToGlobal(QPoint(0, 0));
    int x = topLeft.x() + menu.width() + kDotGap;
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen && x + kDotReach >= screen->availableGeometry().right())
        x = topLeft.x() - kDotGapLeft;
    const int y = topLeft.y() + row.top() + row.height() / 2 - ConfirmDot::Size / 2;
    dot->move(x, y);
}
