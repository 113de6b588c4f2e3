// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomColorPickerDialog.h"

#include "HueSlider.h"
#include "Localization.h"
#include "SvField.h"
#include "Theme.h"

#include <QColor>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTimer>
#include <QVBoxLayout>

namespace
{

constexpr int kWidth = 320;
constexpr int kPreviewSize = 28;
constexpr int kHexRowSpacing = 8;
constexpr int kButtonsTopPad = 12;
constexpr int kMaxTextLength = 256; // no name of a colour comes near, whatever the settings hold
constexpr int kRowWidth = kWidth - 2 * (FramelessDialog::ShadowPad + FramelessDialog::PaperBorder +
                                        FramelessDialog::CardPad);

QLabel* makeLabel(const QString& text, const QString& style)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

} // namespace

CustomColorPickerDialog::CustomColorPickerDialog(QWidget* parent, const QString& initialHex)
    : FramelessDialog(parent, Tr::t("settings.app.accent_title"), SoftShadow, CardPad),
      selectedHex(QColor::isValidColorName(initialHex) ? initialHex : Theme::seedColorHex)
{
    rows()->addWidget(makeLabel(windowTitle(), Theme::dialogTitleStyle(Theme::colors())));
    addPickers();
    addHexRow();
    addButtons();
    // The layout fixes the window at what it asks for, so the width has to be the card's.
    card()->setFixedWidth(kWidth - 2 * ShadowPad);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    showPreview(selectedHex);
    syncPickerTo(QColor::fromString(selectedHex));
    QTimer::singleShot(0, hexInput, [this] {
        hexInput->setFocus();
        hexInput->selectAll();
    });
}

void CustomColorPickerDialog::addPickers()
{
    m_svField = new SvField;
    m_hueSlider = new HueSlider;
    rows()->addWidget(m_svField);
    rows()->addWidget(m_hueSlider);
    connect(m_svField, &SvField::svChanged, this, &CustomColorPickerDialog::writeHex);
    connect(m_hueSlider, &HueSlider::hueChanged, this, [this](int hue) {
        m_svField->setHue(hue);
        writeHex();
    });
}

void CustomColorPickerDialog::addHexRow()
{
    const ColorTokens c = Theme::colors();
    auto* label = makeLabel(QStringLiteral("Custom Hex Code:"), Theme::fieldLabelStyle(c));
    rows()->addWidget(label);
    auto* row = new QHBoxLayout;
    row->setSpacing(kHexRowSpacing);
    rows()->addLayout(row);
    m_preview = new QFrame;
    m_preview->setObjectName(QStringLiteral("colorPreview"));
    m_preview->setFixedSize(kPreviewSize, kPreviewSize);
    row->addWidget(m_preview);
    hexInput = new QLineEdit;
    hexInput->setMaxLength(kMaxTextLength);
    hexInput->setText(selectedHex);
    hexInput->setObjectName(QStringLiteral("hexInput"));
    hexInput->setStyleSheet(Theme::fieldInputStyle(c));
    label->setBuddy(hexInput); // what a screen reader calls the field
    row->addWidget(hexInput, 1);
    connect(hexInput, &QLineEdit::textChanged, this, &CustomColorPickerDialog::onTextChanged);
}

void CustomColorPickerDialog::addButtons()
{
    const ColorTokens c = Theme::colors();
    QHBoxLayout* row = addButtonRow(rows(), kButtonsTopPad);
    row->addStretch();
    QPushButton* cancel = addButton(row, Tr::t("dialog.btn_cancel"),
                                    Theme::actionBtnStyle(c, QStringLiteral("transparent")));
    QPushButton* save = addButton(row, Tr::t("dialog.btn_save"), Theme::primaryBtnStyle(c));
    for (QPushButton* button : {cancel, save}) {
        button->setCursor(Qt::PointingHandCursor);
        button->setAutoDefault(false);
    }
    fitButtons(row, kRowWidth);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(save, &QPushButton::clicked, this, &CustomColorPickerDialog::save);
    connect(hexInput, &QLineEdit::returnPressed, save, &QPushButton::click);
}

void CustomColorPickerDialog::showPreview(const QString& text)
{
    const QColor color = QColor::fromString(text);
    m_preview->setStyleSheet(
        QStringLiteral(
            "QFrame { background-color: %1; border-radius: 14px; border: 1px solid %2; }")
            .arg(color.isValid() ? color.name() : QStringLiteral("transparent"),
                 Theme::colors().outline));
}

void CustomColorPickerDialog::onTextChanged(const QString& text)
{
    showPreview(text);
    if (m_syncing)
        return;
    const QScopedValueRollback<bool> guard(m_syncing, true);
    syncPickerTo(QColor::fromString(text.trimmed()));
}

void CustomColorPickerDialog::syncPickerTo(const QColor& color)
{
    if (!color.isValid())
        return;
    int hue = 0;
    int sat = 0;
    int val = 0;
    color.getHsv(&hue, &sat, &val);
    if (hue < 0) // a grey has none: the way back from the grey corner leads to the same hue
        hue = m_hueSlider->hue();
    m_hueSlider->setHue(hue);
    m_svField->setHue(hue);
    m_svField->setSv(sat, val);
}

void CustomColorPickerDialog::writeHex()
{
    if (m_syncing)
        return;
    const QScopedValueRollback<bool> guard(m_syncing, true);
    const QColor color = QColor::fromHsv(m_svField->hue(), m_svField->sat(), m_svField->val());
    hexInput->setText(color.name().toUpper());
}

void CustomColorPickerDialog::save()
{
    selectedHex = hexInput->text().trimmed();
    accept();
}
