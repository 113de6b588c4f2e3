// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"

#include <QList>
#include <QString>

class GlyphButton;
class QLayout;
class QPushButton;
class QVBoxLayout;

/// Chooses the icon of an item: one of the glyphs, an image file, or none of its own.
class IconPickerDialog : public FramelessDialog
{
    Q_OBJECT

public:
    static constexpr int IconCols = 5; ///< icons in a row

    /// \param currentIconPath the item's icon string; a glyph is shown as the present choice.
    IconPickerDialog(QWidget* parent, const QString& currentIconPath);

    /// The choice, valid once the dialog has been accepted: a glyph token, the path of an image
    /// (which may turn out to be none), or empty for the default icon of the item's type.
    QString chosenIconPath() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLayout* buildIconGrid();
    void addButtons(QVBoxLayout* body);
    void updateIconStyles();
    /// Ends the dialog with `iconPath` as the choice.
    void choose(const QString& iconPath);
    void browse();
    bool handleKey(QObject* watched, int key);
    bool handleIconKey(int index, int key);
    bool handleButtonKey(const QList<QPushButton*>& row, int index, int key);

    QString m_chosen;
    unsigned int m_selectedGlyph = 0; ///< 0: the item has no glyph of its own
    QList<GlyphButton*> m_iconBtns;
    QPushButton* m_cancelBtn = nullptr;
    QPushButton* m_defaultBtn = nullptr;
    QPushButton* m_browseBtn = nullptr;
};
