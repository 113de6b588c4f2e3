// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AddEditCategoryDialog.h"

#include "AutoQuitBlocker.h"
#include "CustomDialogs.h"
#include "CustomMessageBox.h"
#include "GlyphWidgets.h"
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

using CustomDialogs::BodyPad;
using CustomDialogs::BodySpacing;

constexpr int kPaletteSize = 10; // the picker's palette without the glyphs of the item types
constexpr int kButtonRowTopPad = 8;

constexpr int shadowPad = CustomDialogs::ShadowPad;
constexpr int paperBorder = CustomDialogs::PaperBorder;
constexpr int headerH = CustomDialogs::HeaderHeight;
constexpr int labelH = 20;
constexpr int nameFieldH = 40;
constexpr int iconGridH =
    CustomDialogs::iconGridHeight(kPaletteSize / AddEditCategoryDialog::IconCols);
constexpr int btnRowH = kButtonRowTopPad + CustomDialogs::ButtonHeight;
constexpr int bodyGaps = 4 * BodySpacing;
constexpr int kWidth = 320;
constexpr int kHeight = 2 * shadowPad + 2 * paperBorder + headerH + 2 * BodyPad + 2 * labelH +
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
    : QDialog(parent), m_selectedIcon(existingIcon), m_emptyErrKey(emptyErrKey)
{
    setWindowTitle(title);
    setFixedSize(kWidth, kHeight);
    QVBoxLayout* body = CustomDialogs::buildCardWithHeader(
        this, Theme::colors(), QStringLiteral("sectionDialogHeader"), title);
    fillBody(body, existingName, Tr::t(nameLabelKey), Tr::t(namePlaceholderKey));
    updateIconStyles();
    nameInput->setFocus();
}

void AddEditCategoryDialog::fillBody(QVBoxLayout* body, const QString& existingName,
                                     const QString& nameLabel, const QString& placeholder)
{
    nameInput = new QLineEdit(existingName, this);
    nameInput->setFixedHeight(nameFieldH);
    nameInput->setStyleSheet(Theme::fieldInputStyle(Theme::colors()));
    nameInput->setPlaceholderText(placeholder);
    nameInput->setAccessibleName(nameLabel);
    nameInput->installEventFilter(this);

    body->addWidget(makeFieldLabel(nameLabel));
    body->addWidget(nameInput);
    body->addWidget(makeFieldLabel(Tr::t("dialog.lbl_icon")));
    body->addLayout(buildIconGrid());
    body->addLayout(buildButtonRow());
}

QLayout* AddEditCategoryDialog::buildIconGrid()
{
    auto* grid = new QGridLayout;
    iconBtns = CustomDialogs::buildIconGrid(grid, IconHelper::pickableGlyphs().first(kPaletteSize),
                                            IconCols, this);
    for (const GlyphButton* button : std::as_const(iconBtns)) {
        connect(button, &QPushButton::clicked, this, [this, button] {
            m_selectedIcon = CustomDialogs::glyphOf(button);
            updateIconStyles();
        });
    }
    return grid;
}

QLayout* AddEditCategoryDialog::buildButtonRow()
{
    const ColorTokens c = Theme::colors();
    m_cancelBtn = CustomDialogs::buildButton(
        Tr::t("dialog.btn_cancel"), Theme::actionBtnStyle(c, QStringLiteral("transparent")), this);
    m_saveBtn =
        CustomDialogs::buildButton(Tr::t("dialog.btn_save"), Theme::primaryBtnStyle(c), this);
    m_cancelBtn->installEventFilter(this);
    m_saveBtn->installEventFilter(this);
    connect(m_cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_saveBtn, &QPushButton::clicked, this, &AddEditCategoryDialog::doSave);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, kButtonRowTopPad, 0, 0);
    row->addWidget(m_cancelBtn, 1);
    row->addWidget(m_saveBtn, 1);
    return row;
}

QString AddEditCategoryDialog::getName() const
{
    return nameInput->text().trimmed();
}

uint AddEditCategoryDialog::getIcon() const
{
    return m_selectedIcon;
}

void AddEditCategoryDialog::updateIconStyles()
{
    CustomDialogs::styleIconGrid(iconBtns, m_selectedIcon);
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
    if (Keys::isEnter(event->key())) {
        doSave();
        return;
    }
    if (!handleDialogBackKey(this, event))
        QDialog::keyPressEvent(event);
}

bool AddEditCategoryDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress &&
        handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    return QDialog::eventFilter(watched, event);
}

bool AddEditCategoryDialog::handleKey(QObject* watched, int key)
{
    if (watched == nameInput)
        return handleNameKey(key);
    if (watched == m_cancelBtn)
        return handleButtonKey(m_cancelBtn, key);
    if (watched == m_saveBtn)
        return handleButtonKey(m_saveBtn, key);
    const int index = CustomDialogs::iconIndexOf(iconBtns, watched);
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
    CustomDialogs::focusIconOf(iconBtns, m_selectedIcon);
    return true;
}

bool AddEditCategoryDialog::handleIconKey(int index, int key)
{
    if (Keys::isEnter(key) || key == Qt::Key_Space) {
        iconBtns.at(index)->click();
        return true;
    }
    return CustomDialogs::moveInIconGrid(iconBtns, IconCols, index, key, nameInput, m_cancelBtn);
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
    CustomDialogs::focusIcon(iconBtns, i);
}
