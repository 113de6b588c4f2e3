// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AddEditCategoryDialog.h"

#include "AutoQuitBlocker.h"
#include "CardHeader.h"
#include "CustomMessageBox.h"
#include "GlyphWidgets.h"
#include "IconGrid.h"
#include "Keys.h"
#include "Localization.h"
#include "Theme.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr int kPaletteSize = 10; // the picker's palette without the glyphs of the item types
constexpr int kButtonRowTopPad = 8;

constexpr int shadowPad = FramelessDialog::ShadowPad;
constexpr int paperBorder = FramelessDialog::PaperBorder;
constexpr int headerH = CardHeader::Height;
constexpr int bodyPad = FramelessDialog::CardPad;
constexpr int labelH = 20;
constexpr int nameFieldH = 40;
constexpr int iconGridH = IconGrid::heightOf(kPaletteSize / AddEditCategoryDialog::IconCols);
constexpr int btnRowH = kButtonRowTopPad + FramelessDialog::ButtonHeight;
constexpr int bodyGaps = 4 * FramelessDialog::Spacing;
constexpr int kWidth = 320;
constexpr int kHeight = 2 * shadowPad + 2 * paperBorder + headerH + 2 * bodyPad + 2 * labelH +
                        nameFieldH + iconGridH + btnRowH + bodyGaps;

QLabel* makeFieldLabel(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setFixedHeight(labelH);
    label->setStyleSheet(Theme::fieldLabelStyle(Theme::colors()));
    return label;
}

} // namespace

AddEditCategoryDialog::AddEditCategoryDialog(QWidget* parent, const QString& title,
                                             const QString& existingName, uint existingIcon,
                                             const QString& nameLabelKey,
                                             const QString& namePlaceholderKey,
                                             const QString& emptyErrKey)
    : FramelessDialog(parent, title, SoftShadow, 0),
      m_givenName(existingName),
      m_selectedIcon(existingIcon),
      m_emptyErrKey(emptyErrKey)
{
    setFixedSize(kWidth, kHeight);
    addHeader(QStringLiteral("sectionDialogHeader"));
    fillBody(addBody(), existingName, Tr::t(nameLabelKey), Tr::t(namePlaceholderKey));
    updateIconStyles();
    nameInput->setFocus();
}

void AddEditCategoryDialog::fillBody(QVBoxLayout* body, const QString& existingName,
                                     const QString& nameLabel, const QString& placeholder)
{
    nameInput = new QLineEdit(existingName, this);
    m_shownName = nameInput->text();
    nameInput->setFixedHeight(nameFieldH);
    nameInput->setStyleSheet(Theme::fieldInputStyle(Theme::colors()));
    nameInput->setPlaceholderText(placeholder);
    nameInput->setAccessibleName(nameLabel);
    nameInput->installEventFilter(this);

    body->addWidget(makeFieldLabel(nameLabel));
    body->addWidget(nameInput);
    body->addWidget(makeFieldLabel(Tr::t("dialog.lbl_icon")));
    body->addLayout(buildIconGrid());
    addButtons(body);
}

QLayout* AddEditCategoryDialog::buildIconGrid()
{
    auto* grid = new QGridLayout;
    iconBtns =
        IconGrid::build(grid, IconHelper::pickableGlyphs().first(kPaletteSize), IconCols, this);
    for (const GlyphButton* button : std::as_const(iconBtns)) {
        connect(button, &QPushButton::clicked, this, [this, button] {
            m_selectedIcon = IconGrid::glyphOf(button);
            updateIconStyles();
        });
    }
    return grid;
}

void AddEditCategoryDialog::addButtons(QVBoxLayout* body)
{
    const ColorTokens c = Theme::colors();
    QHBoxLayout* row = addButtonRow(body, kButtonRowTopPad);
    m_cancelBtn = addButton(row, Tr::t("dialog.btn_cancel"),
                            Theme::actionBtnStyle(c, QStringLiteral("transparent")), 1);
    m_saveBtn = addButton(row, Tr::t("dialog.btn_save"), Theme::primaryBtnStyle(c), 1);
    m_cancelBtn->installEventFilter(this);
    m_saveBtn->installEventFilter(this);
    connect(m_cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_saveBtn, &QPushButton::clicked, this, &AddEditCategoryDialog::doSave);
}

QString AddEditCategoryDialog::getName() const
{
    // The field holds no more than so many characters, so what it shows may be a part.
    const QString shown = nameInput->text();
    return (shown == m_shownName ? m_givenName : shown).trimmed();
}

uint AddEditCategoryDialog::getIcon() const
{
    return m_selectedIcon;
}

void AddEditCategoryDialog::updateIconStyles()
{
    IconGrid::applyStyle(iconBtns, m_selectedIcon);
}

void AddEditCategoryDialog::doSave()
{
    if (!getName().isEmpty()) {
        accept();
        return;
    }
    const AutoQuitBlocker blocker;
    CustomMessageBox::warning(this, QStringLiteral("Validation"), Tr::t(m_emptyErrKey));
}

void AddEditCategoryDialog::keyPressEvent(QKeyEvent* event)
{
    if (Keys::isEnter(event->key()))
        doSave();
    else
        FramelessDialog::keyPressEvent(event);
}

bool AddEditCategoryDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress &&
        handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    return FramelessDialog::eventFilter(watched, event);
}

bool AddEditCategoryDialog::handleKey(QObject* watched, int key)
{
    if (watched == nameInput)
        return handleNameKey(key);
    if (watched == m_cancelBtn)
        return handleButtonKey(m_cancelBtn, key);
    if (watched == m_saveBtn)
        return handleButtonKey(m_saveBtn, key);
    const int index = IconGrid::indexOf(iconBtns, watched);
    return index >= 0 && handleIconKey(index, key);
}

bool AddEditCategoryDialog::handleNameKey(int key)
{
    if (Keys::isEnter(key)) {
        doSave();
        return true;
    }
    if (key != Qt::Key_Down)
        return false;
    IconGrid::focusGlyph(iconBtns, m_selectedIcon);
    return true;
}

bool AddEditCategoryDialog::handleIconKey(int index, int key)
{
    if (Keys::isEnter(key) || key == Qt::Key_Space) {
        iconBtns.at(index)->click();
        return true;
    }
    return IconGrid::moveFocus(iconBtns, IconCols, index, key, nameInput, m_cancelBtn);
}

bool AddEditCategoryDialog::handleButtonKey(QPushButton* button, int key)
{
    if (Keys::isEnter(key))
        button->click();
    else if (key == Qt::Key_Right && button == m_cancelBtn)
        m_saveBtn->setFocus();
    else if (key == Qt::Key_Left && button == m_saveBtn)
        m_cancelBtn->setFocus();
    else if (key == Qt::Key_Up)
        focusIcon(static_cast<int>(iconBtns.size()) - 1);
    else
        return false;
    return true;
}

void AddEditCategoryDialog::focusIcon(int i)
{
    IconGrid::focusAt(iconBtns, i);
}
