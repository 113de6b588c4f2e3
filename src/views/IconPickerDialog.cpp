// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconPickerDialog.h"

#include "CardHeader.h"
#include "FileChooser.h"
#include "GlyphWidgets.h"
#include "IconGrid.h"
#include "IconHelper.h"
#include "Keys.h"
#include "Localization.h"
#include "Theme.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

constexpr int kPaletteRows = 3;
constexpr int kButtonSpacing = 8;
constexpr int kWidth = 340;

constexpr int shadowPad = FramelessDialog::ShadowPad;
constexpr int paperBorder = FramelessDialog::PaperBorder;
constexpr int headerH = CardHeader::Height;
constexpr int bodyPad = FramelessDialog::CardPad;
constexpr int iconGridH = IconGrid::heightOf(kPaletteRows);
constexpr int btnRowH = FramelessDialog::ButtonHeight;
constexpr int kHeight = 2 * shadowPad + 2 * paperBorder + headerH + 2 * bodyPad + iconGridH +
                        FramelessDialog::Spacing + btnRowH;

} // namespace

IconPickerDialog::IconPickerDialog(QWidget* parent, const QString& currentIconPath)
    : FramelessDialog(parent, Tr::t("dialog.pick_icon_title"), SoftShadow, 0),
      m_selectedGlyph(IconHelper::glyphCode(currentIconPath))
{
    setFixedSize(kWidth, kHeight);
    addHeader(QStringLiteral("iconPickerHeader"));
    QVBoxLayout* body = addBody();
    body->addLayout(buildIconGrid());
    addButtons(body);
    updateIconStyles();
    IconGrid::focusGlyph(m_iconBtns, m_selectedGlyph);
}

QLayout* IconPickerDialog::buildIconGrid()
{
    auto* grid = new QGridLayout;
    m_iconBtns = IconGrid::build(grid, IconHelper::pickableGlyphs(), IconCols, this);
    for (const GlyphButton* button : std::as_const(m_iconBtns)) {
        connect(button, &QPushButton::clicked, this,
                [this, button] { choose(IconHelper::glyphToken(IconGrid::glyphOf(button))); });
    }
    return grid;
}

void IconPickerDialog::addButtons(QVBoxLayout* body)
{
    const ColorTokens c = Theme::colors();
    const QString ghostStyle = Theme::actionBtnStyle(c, QStringLiteral("transparent"));
    QHBoxLayout* row = addButtonRow(body, 0);
    row->setSpacing(kButtonSpacing);
    m_cancelBtn = addButton(row, Tr::t("dialog.btn_cancel"), ghostStyle, 1);
    m_defaultBtn = addButton(row, Tr::t("dialog.btn_default_icon"), ghostStyle, 1);
    m_browseBtn = addButton(row, Tr::t("editor.btn_upload"), Theme::primaryBtnStyle(c), 1);
    for (QPushButton* button : {m_cancelBtn, m_defaultBtn, m_browseBtn})
        button->installEventFilter(this);
    fitButtons(row, kWidth - 2 * (shadowPad + paperBorder + bodyPad));
    connect(m_cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_defaultBtn, &QPushButton::clicked, this, [this] { choose(QString()); });
    connect(m_browseBtn, &QPushButton::clicked, this, &IconPickerDialog::browse);
}

QString IconPickerDialog::chosenIconPath() const
{
    return m_chosen;
}

void IconPickerDialog::updateIconStyles()
{
    IconGrid::applyStyle(m_iconBtns, m_selectedGlyph);
}

void IconPickerDialog::choose(const QString& iconPath)
{
    m_chosen = iconPath;
    accept();
}

void IconPickerDialog::browse()
{
    const QString path = FileChooser::openFile(this, Tr::t("dialog.pick_icon_title"),
                                               QStringLiteral("Images (*.png *.jpg *.jpeg *.ico)"));
    if (!path.isEmpty())
        choose(path);
}

bool IconPickerDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress &&
        handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    return FramelessDialog::eventFilter(watched, event);
}

bool IconPickerDialog::handleKey(QObject* watched, int key)
{
    const int iconIndex = IconGrid::indexOf(m_iconBtns, watched);
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
    return IconGrid::moveFocus(m_iconBtns, IconCols, index, key, nullptr, m_cancelBtn);
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
        IconGrid::focusAt(m_iconBtns, static_cast<int>(m_iconBtns.size()) - 1);
    else
        return false;
    return true;
}
