// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconPickerDialog.h"

#include "AutoQuitBlocker.h"
#include "CustomDialogs.h"
#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Keys.h"
#include "Localization.h"
#include "Theme.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

using CustomDialogs::BodyPad;
using CustomDialogs::BodySpacing;

constexpr int kPaletteRows = 3;
constexpr int kButtonSpacing = 8;
constexpr int kWidth = 340;

constexpr int shadowPad = CustomDialogs::ShadowPad;
constexpr int paperBorder = CustomDialogs::PaperBorder;
constexpr int headerH = CustomDialogs::HeaderHeight;
constexpr int iconGridH = CustomDialogs::iconGridHeight(kPaletteRows);
constexpr int btnRowH = CustomDialogs::ButtonHeight;
constexpr int kHeight =
    2 * shadowPad + 2 * paperBorder + headerH + 2 * BodyPad + iconGridH + BodySpacing + btnRowH;

} // namespace

IconPickerDialog::IconPickerDialog(QWidget* parent, const QString& currentIconPath)
    : QDialog(parent), m_selectedGlyph(IconHelper::glyphCode(currentIconPath))
{
    const QString title = Tr::t("dialog.pick_icon_title");
    setWindowTitle(title);
    setFixedSize(kWidth, kHeight);
    QVBoxLayout* body = CustomDialogs::buildCardWithHeader(
        this, Theme::colors(), QStringLiteral("iconPickerHeader"), title);
    body->addLayout(buildIconGrid());
    body->addLayout(buildButtonRow());
    updateIconStyles();
    CustomDialogs::focusIconOf(m_iconBtns, m_selectedGlyph);
}

QLayout* IconPickerDialog::buildIconGrid()
{
    auto* grid = new QGridLayout;
    m_iconBtns = CustomDialogs::buildIconGrid(grid, IconHelper::pickableGlyphs(), IconCols, this);
    for (const GlyphButton* button : std::as_const(m_iconBtns)) {
        connect(button, &QPushButton::clicked, this,
                [this, button] { choose(IconHelper::glyphToken(CustomDialogs::glyphOf(button))); });
    }
    return grid;
}

QLayout* IconPickerDialog::buildButtonRow()
{
    const ColorTokens c = Theme::colors();
    const QString ghostStyle = Theme::actionBtnStyle(c, QStringLiteral("transparent"));
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kButtonSpacing);
    m_cancelBtn = addRowButton(row, Tr::t("dialog.btn_cancel"), ghostStyle);
    m_defaultBtn = addRowButton(row, Tr::t("dialog.btn_default_icon"), ghostStyle);
    m_browseBtn = addRowButton(row, Tr::t("editor.btn_upload"), Theme::primaryBtnStyle(c));
    connect(m_cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_defaultBtn, &QPushButton::clicked, this, [this] { choose(QString()); });
    connect(m_browseBtn, &QPushButton::clicked, this, &IconPickerDialog::browse);
    return row;
}

QPushButton* IconPickerDialog::addRowButton(QHBoxLayout* row, const QString& text,
                                            const QString& style)
{
    QPushButton* button = CustomDialogs::buildButton(text, style, this);
    button->installEventFilter(this);
    row->addWidget(button, 1);
    return button;
}

QString IconPickerDialog::chosenIconPath() const
{
    return m_chosen;
}

void IconPickerDialog::updateIconStyles()
{
    CustomDialogs::styleIconGrid(m_iconBtns, m_selectedGlyph);
}

void IconPickerDialog::choose(const QString& iconPath)
{
    m_chosen = iconPath;
    accept();
}

void IconPickerDialog::browse()
{
    const AutoQuitBlocker blocker;
    const QString path =
        QFileDialog::getOpenFileName(this, Tr::t("dialog.pick_icon_title"), QString(),
                                     QStringLiteral("Images (*.png *.jpg *.jpeg *.ico)"));
    if (!path.isEmpty())
        choose(path);
}

void IconPickerDialog::keyPressEvent(QKeyEvent* event)
{
    if (!handleDialogBackKey(this, event))
        QDialog::keyPressEvent(event);
}

bool IconPickerDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress &&
        handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    return QDialog::eventFilter(watched, event);
}

bool IconPickerDialog::handleKey(QObject* watched, int key)
{
    const int iconIndex = CustomDialogs::iconIndexOf(m_iconBtns, watched);
    if (iconIndex >= 0)
        return handleIconKey(iconIndex, key);
    const QList<QPushButton*> row = {m_cancelBtn, m_defaultBtn, m_browseBtn};
    const auto button = std::find(row.begin(), row.end(), watched);
    return button != row.end() && handleButtonKey(row, static_cast<int>(button - row.begin()), key);
}

bool IconPickerDialog::handleIconKey(int index, int key)
{
    if (Keys::isEnter(key)) {
        m_iconBtns.at(index)->click();
        return true;
    }
    return CustomDialogs::moveInIconGrid(m_iconBtns, IconCols, index, key, nullptr, m_cancelBtn);
}

bool IconPickerDialog::handleButtonKey(const QList<QPushButton*>& row, int index, int key)
{
    const int last = static_cast<int>(row.size()) - 1;
    if (Keys::isEnter(key))
        row.at(index)->click();
    else if (key == Qt::Key_Left) // at either end the key is taken and goes nowhere
        row.at(std::max(index - 1, 0))->setFocus();
    else if (key == Qt::Key_Right)
        row.at(std::min(index + 1, last))->setFocus();
    else if (key == Qt::Key_Up)
        CustomDialogs::focusIcon(m_iconBtns, static_cast<int>(m_iconBtns.size()) - 1);
    else
        return false;
    return true;
}
