// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"

class HueSlider;
class QColor;
class QFrame;
class QLineEdit;
class SvField;

/// Chooses a colour by a field, a bar of hues and a text, which all show the same choice. Run it by
/// `AccentPicker::ask`, which also judges the text.
class CustomColorPickerDialog : public FramelessDialog
{
    Q_OBJECT

public:
    /// \param initialHex any name that Qt has for a colour; for anything else, the dialog opens on
    /// the present seed colour.
    CustomColorPickerDialog(QWidget* parent, const QString& initialHex);

    /// The choice once the dialog has been accepted, which need not name a colour: what the user
    /// has typed is given back as it is, without the blanks around it.
    QString getHex() const { return selectedHex; }

private:
    void addPickers();
    void addHexRow();
    void addButtons();
    void showPreview(const QString& text);
    /// The text has changed, by the user's typing or by the pickers.
    void onTextChanged(const QString& text);
    /// Moves field and bar to `color`; they stay where they are if it is invalid.
    void syncPickerTo(const QColor& color);
    /// Writes the choice of field and bar into the text.
    void writeHex();
    void save();

    SvField* m_svField = nullptr;
    HueSlider* m_hueSlider = nullptr;
    QFrame* m_preview = nullptr;
    QLineEdit* hexInput = nullptr;
    QString selectedHex;
    bool m_syncing = false; ///< one of the three follows another: nothing answers back
};
