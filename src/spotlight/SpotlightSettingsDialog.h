// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"
#include "Localization.h"

#include <QString>
#include <QVector>

class AccentSwatchButton;
class PickerPill;
class QWidget;

/// The settings that Spotlight is left for too seldom to need the other window: language, theme,
/// accent colour, and the kinds of result that a search begins with. Nothing changes before OK.
/// The choice of kinds is the caller's to store; the rest the dialog stores itself.
class SpotlightSettingsDialog : public FramelessDialog
{
    Q_OBJECT

public:
    static constexpr int PillPadLeft = 34; ///< before the text of a pill with a glyph, in pixels
    static constexpr int RowControlHeight = 36; ///< in pixels
    static constexpr int ThemeCount = 3;
    static constexpr uint MultiGlyph = 0xE152; ///< stands for several kinds

    /// A kind of result.
    struct Option
    {
        QString label;
        uint glyph;
    };

    /// \param options the kinds that can be chosen.
    /// \param chosen indices into `options`; those out of bounds are left out.
    /// \param empty stands for all kinds, which is what no choice means.
    SpotlightSettingsDialog(QWidget* parent, const QVector<Option>& options,
                            const QVector<int>& chosen, const Option& empty);

    /// The chosen kinds: sorted, each once. Empty for all.
    QVector<int> chosenIndices() const { return m_indices; }

    /// Whether language, theme or colour are others than before; false until OK.
    bool appearanceChanged() const { return m_appearanceChanged; }

public slots:
    void accept() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void addDisplayGroup();
    void addSearchGroup();
    void addButtons();
    void addGroup(const QString& title, bool isSpaced);
    void addRow(const QString& title, QWidget* control);
    PickerPill* makePill(const QString& selector, int leftPad);
    QWidget* makeThemeRow();
    void showLangMenu();
    void showColorPicker();
    void showPickMenu();
    /// Shows on its pill what kinds are chosen.
    void applyPick();
    /// Makes the pending language, theme and colour those of the program, and stores them.
    void applyGlobals();

    QVector<Option> m_options;
    Option m_empty;
    QVector<int> m_indices; ///< sorted, without duplicates
    PickerPill* m_pick = nullptr;
    int m_theme; ///< pending, as in `Theme::forceTheme`
    QString m_seed;
    Lang m_lang;
    bool m_appearanceChanged = false;
    PickerPill* m_langBtn = nullptr;
    AccentSwatchButton* m_swatch = nullptr;
};
