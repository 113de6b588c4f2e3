// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ItemEditorPanel.h"

#include "ActionsMenu.h"
#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "CustomWidgets.h"
#include "FileChooser.h"
#include "FilePattern.h"
#include "IconHelper.h"
#include "IconPickerDialog.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "ModalRun.h"
#include "PickerPill.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace
{

constexpr int kBlockSpacing = 20;
constexpr int kLabelSpacing = 8;
constexpr int kFieldSpacing = 12;
constexpr int kColumnSpacing = 16;
constexpr int kButtonHeight = 36;
constexpr int kButtonRowTopPad = 8;
constexpr int kValueHeight = 130;
constexpr int kPillMinWidth = 80;
constexpr int kIconSize = 22;
constexpr int kIconGlyphPx = 19;
constexpr int kIconRadius = ItemEditorPanel::EditorIconBtnSize / 2;
constexpr int kActiveLightness = 89; // of a pill in dark mode, of 255

// A field lays out a line as a whole, and again at each key: beyond this the user would wait.
constexpr qsizetype kShownChars = 131072;
constexpr qsizetype kShownLineChars = 8192;
constexpr qsizetype kShownLines = 8192;

const QLatin1String kLegacyApplication("App");
const QString kValidationTitle = QStringLiteral("Validation Failed");

/// What the form is like for a type.
struct TypeForm
{
    const char* valueLabelKey;
    const char* namePlaceholderKey;
    const char* valuePlaceholderKey;
    bool hasLineNumbers;
    bool canBrowse;
};

// In the order of the types.
constexpr std::array kTypeForms{
    TypeForm{"editor.lbl_url", "editor.ph_name_url", "editor.ph_val_url", false, false},
    TypeForm{"editor.lbl_file", "editor.ph_name_app", "editor.ph_val_app", false, true},
    TypeForm{"editor.lbl_file", "editor.ph_name_file", "editor.ph_val_file", false, true},
    TypeForm{"editor.lbl_bulk", "editor.ph_name_bulk", "editor.ph_val_bulk", true, true},
    TypeForm{"editor.lbl_snippet", "editor.ph_name_snippet", "editor.ph_val_snippet", false, false},
};

QString text(const char* key)
{
    return Tr::t(QString::fromLatin1(key));
}

struct PillColors
{
    QString background;
    QString text;
};

/// Of a pill under the pointer or with focus.
PillColors activePillColors()
{
    const ColorTokens tones = getItemTheme();
    QString background = tones.primaryContainer;
    if (Theme::isDarkMode()) {
        const QColor key(tones.key);
        background =
            QColor::fromHsl(key.hslHue(), key.hslSaturation(), kActiveLightness, 255).name();
    }
    return {background, Theme::onColorFor(QColor(background), 4.5)};
}

bool endsLine(QChar character)
{
    return character == QChar::LineFeed || character == QChar::CarriageReturn ||
           character == QChar::LineSeparator || character == QChar::ParagraphSeparator;
}

/// Gives the focus to a button whose menu has ended. The form may be gone by then, or closed by a
/// hide of the window, and would take the keys unseen.
void focusAfterMenu(QWidget* button)
{
    if (button && button->isVisibleTo(button->window()))
        button->setFocus();
}

/// The beginning of a value that a field can show and edit at once; mostly all of it.
QString shownPart(const QString& value)
{
    qsizetype lines = 1;
    qsizetype lineStart = 0;
    qsizetype end = 0;
    for (; end < value.size() && end < kShownChars; ++end) {
        if (endsLine(value.at(end))) {
            lineStart = end + 1;
            if (++lines > kShownLines)
                break;
        } else if (end - lineStart >= kShownLineChars) {
            break;
        }
    }
    if (end > 0 && end < value.size() && value.at(end - 1).isHighSurrogate())
        --end;
    return value.left(end);
}

} // namespace

ItemEditorPanel::ItemEditorPanel(LauncherModel* model, QWidget* parent)
    : QWidget(parent), m_model(model), m_editorSelectedType(ItemType::Url)
{
    setupUI();
}

QWidget* ItemEditorPanel::typeButton() const
{
    return m_editorTypeBtn;
}

QWidget* ItemEditorPanel::sectionButton() const
{
    return m_editorSectionBtn;
}

QWidget* ItemEditorPanel::nameInput() const
{
    return m_editorNameInput;
}

QWidget* ItemEditorPanel::browseButton() const
{
    return m_editorBrowseValueBtn;
}

QWidget* ItemEditorPanel::valueInput() const
{
    return m_editorValueInput;
}

QWidget* ItemEditorPanel::saveButton() const
{
    return m_editorSaveBtn;
}

const QVector<ItemEditorPanel::TypeOption>& ItemEditorPanel::typeOptions()
{
    static const QVector<TypeOption> options{{Glyph::Link, "URL", "URL"},
                                             {Glyph::DesktopWindows, "App", "Application"},
                                             {Glyph::Description, "File", "File"},
                                             {Glyph::FolderCopy, "Bulk", "Bulk"},
                                             {Glyph::TextSnippet, "Text", "Snippet"}};
    return options;
}

qsizetype ItemEditorPanel::optionIndexOf(const QString& type)
{
    const QString wanted = type == kLegacyApplication ? QString(ItemType::Application) : type;
    const QVector<TypeOption>& options = typeOptions();
    const auto found =
        std::find_if(options.begin(), options.end(), [&wanted](const TypeOption& option) {
            return wanted == QLatin1String(option.data);
        });
    return std::min<qsizetype>(found - options.begin(), options.size() - 1);
}

void ItemEditorPanel::setupUI()
{
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(Theme::Sp_Xxl, Theme::Sp_Xl, Theme::Sp_Xxl, Theme::Sp_Xl);
    root->setSpacing(kBlockSpacing);
    root->addLayout(buildNameBlock());
    root->addLayout(buildTypeRow());
    root->addLayout(buildValueBlock());
    root->addStretch();
    root->addLayout(buildButtonRow());
    nameControls();
    connectControls();
}

QLabel* ItemEditorPanel::makeLabel(const char* textKey)
{
    auto* label = new QLabel(text(textKey), this);
    label->setStyleSheet(Theme::fieldLabelStyle(Theme::colors()));
    return label;
}

QPushButton* ItemEditorPanel::addButton(QBoxLayout* row, const char* textKey, const QString& style,
                                        int stretch)
{
    auto* button = new QPushButton(text(textKey), this);
    button->setFixedHeight(kButtonHeight);
    button->setStyleSheet(style);
    row->addWidget(button, stretch, Qt::Alignment());
    return button;
}

QLayout* ItemEditorPanel::buildNameBlock()
{
    const ColorTokens c = Theme::colors();
    QLabel* label = makeLabel("editor.lbl_name");
    m_editorIconBtn = new GlyphButton(this);
    m_editorIconBtn->setFixedSize(EditorIconBtnSize, EditorIconBtnSize);
    m_editorIconBtn->setIconSize({kIconSize, kIconSize});
    m_editorIconBtn->setCursor(Qt::PointingHandCursor);
    m_editorIconBtn->setStyleSheet(
        QStringLiteral("QPushButton { background-color: %1; border: none; border-radius: %3px; "
                       "outline: 0; }QPushButton:hover { background-color: %2; }QPushButton:focus "
                       "{ background-color: %2; outline: 0; }")
            .arg(Theme::fieldIdleBg(c), c.primaryContainer, QString::number(kIconRadius)));
    m_editorIconBtn->setAccessibleName(Tr::t(QStringLiteral("dialog.pick_icon_title")));

    m_editorNameInput = new QLineEdit(this);
    m_editorNameInput->setStyleSheet(Theme::fieldInputStyle(c));
    label->setBuddy(m_editorNameInput);

    auto* row = new QHBoxLayout;
    row->setSpacing(kFieldSpacing);
    row->addWidget(m_editorIconBtn);
    row->addWidget(m_editorNameInput, 1);
    auto* block = new QVBoxLayout;
    block->setSpacing(kLabelSpacing);
    block->addWidget(label);
    block->addLayout(row);
    return block;
}

PickerPill* ItemEditorPanel::makePill()
{
    const PillColors active = activePillColors();
    auto* pill = new PickerPill(this);
    pill->setStyleSheet(Theme::pickerPillStyle(QStringLiteral("QPushButton"), Theme::colors(),
                                               active.background, active.text, PillPadLeft,
                                               kPillMinWidth));
    return pill;
}

QWidget* ItemEditorPanel::makeColumn(QLabel* label, QWidget* field)
{
    auto* column = new QWidget(this);
    column->setObjectName(QStringLiteral("editorColumn"));
    column->setStyleSheet(QStringLiteral("QWidget#editorColumn { background: transparent; }"));
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kLabelSpacing);
    layout->addWidget(label);
    layout->addWidget(field);
    label->setBuddy(field);
    return column;
}

QLayout* ItemEditorPanel::buildTypeRow()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(kColumnSpacing);
    m_editorTypeBtn = makePill();
    row->addWidget(makeColumn(makeLabel("editor.lbl_type"), m_editorTypeBtn), 1);
    m_editorSectionBtn = makePill();
    m_editorSectionCol = makeColumn(makeLabel("editor.lbl_section"), m_editorSectionBtn);
    row->addWidget(m_editorSectionCol, 1);
    m_editorSectionCol->hide();
    return row;
}

QLayout* ItemEditorPanel::buildValueBlock()
{
    const ColorTokens c = Theme::colors();
    auto* header = new QHBoxLayout;
    header->setSpacing(kFieldSpacing);
    m_editorValueLabel = makeLabel("editor.lbl_url");
    header->addWidget(m_editorValueLabel, 0, Qt::AlignVCenter);
    m_editorBrowseValueBtn =
        addButton(header, "editor.btn_upload", Theme::actionBtnStyle(c, QString()), 0);
    header->setAlignment(m_editorBrowseValueBtn, Qt::AlignVCenter);

    m_editorValueInput = new NumberedPlainTextEdit(this);
    m_editorValueInput->setFixedHeight(kValueHeight);
    m_editorValueInput->setStyleSheet(Theme::fieldInputStyle(c));
    m_editorValueLabel->setBuddy(m_editorValueInput);

    auto* block = new QVBoxLayout;
    block->setSpacing(kLabelSpacing);
    block->addLayout(header);
    block->addWidget(m_editorValueInput);
    return block;
}

QLayout* ItemEditorPanel::buildButtonRow()
{
    const ColorTokens c = Theme::colors();
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, kButtonRowTopPad, 0, 0);
    row->setSpacing(kColumnSpacing);
    m_editorCancelBtn = addButton(row, "dialog.btn_cancel",
                                  Theme::actionBtnStyle(c, QStringLiteral("transparent")), 1);
    m_editorSaveBtn = addButton(row, "dialog.btn_save", Theme::primaryBtnStyle(c), 1);
    return row;
}

void ItemEditorPanel::nameControls()
{
    const std::array<std::pair<QWidget*, const char*>, 8> controls{{
        {m_editorNameInput, "editorNameInput"},
        {m_editorIconBtn, "editorIconBtn"},
        {m_editorTypeBtn, "editorTypeBtn"},
        {m_editorSectionBtn, "editorSectionBtn"},
        {m_editorBrowseValueBtn, "editorBrowseBtn"},
        {m_editorValueInput, "editorValueInput"},
        {m_editorCancelBtn, "editorCancelBtn"},
        {m_editorSaveBtn, "editorSaveBtn"},
    }};
    for (const auto& [control, name] : controls) {
        control->setObjectName(QString::fromLatin1(name));
        control->installEventFilter(this);
    }
}

void ItemEditorPanel::connectControls()
{
    connect(m_editorIconBtn, &QPushButton::clicked, this, &ItemEditorPanel::chooseIcon);
    connect(m_editorTypeBtn, &QPushButton::clicked, this, &ItemEditorPanel::showTypeMenu);
    connect(m_editorSectionBtn, &QPushButton::clicked, this, &ItemEditorPanel::showSectionMenu);
    connect(m_editorBrowseValueBtn, &QPushButton::clicked, this, &ItemEditorPanel::browseForValue);
    connect(m_editorCancelBtn, &QPushButton::clicked, this, &ItemEditorPanel::forceClose);
    connect(m_editorSaveBtn, &QPushButton::clicked, this, &ItemEditorPanel::saveItemEditor);
}

void ItemEditorPanel::openEditor(const QString& category, const QString& itemId)
{
    m_standalone = false;
    m_editingCategory = category;
    m_editingItemId = itemId;
    offerSections(category);
    const qsizetype index = indexInSection(category, itemId);
    fillFormFrom(index < 0 ? LauncherElement() : m_model->getItems(category).at(index));
    m_editorNameInput->setFocus();
}

void ItemEditorPanel::openForElement(const LauncherElement& element)
{
    m_standalone = true;
    m_standaloneEl = element;
    m_editingCategory.clear();
    m_editingItemId.clear();
    m_sectionPickerShown = false;
    m_editorSectionCol->hide();
    m_editorSectionPick.clear();
    fillFormFrom(element);
    m_editorNameInput->setFocus();
}

void ItemEditorPanel::forceClose()
{
    emit closeRequested(-1);
}

void ItemEditorPanel::offerSections(const QString& preferred)
{
    const QStringList& sections = m_model->data().categories;
    m_sectionPickerShown = !sections.isEmpty();
    m_editorSectionCol->setVisible(m_sectionPickerShown);
    if (m_sectionPickerShown)
        setSectionPick(sections.contains(preferred) ? preferred : sections.constFirst());
    else
        m_editorSectionPick.clear();
}

void ItemEditorPanel::fillFormFrom(const LauncherElement& element)
{
    m_givenName = element.name;
    m_editorNameInput->setText(element.name);
    setEditorType(element.shortcutType.isEmpty() ? QString(ItemType::Url) : element.shortcutType);
    setValue(element.value);
    m_currentIconPath = element.iconPath;
    syncEditorIconBtn();
}

void ItemEditorPanel::setValue(const QString& value)
{
    m_givenValue = value;
    const QString shown = shownPart(value);
    m_editorValueInput->setPlainText(shown);
    // Of a part of a value only a part could be saved. The keys still move through it.
    m_editorValueInput->setTextInteractionFlags(
        shown.size() == value.size() ? Qt::TextEditorInteraction
                                     : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

QString ItemEditorPanel::enteredName() const
{
    // The field holds no more than so many characters.
    return m_editorNameInput->isModified() ? m_editorNameInput->text() : m_givenName;
}

QString ItemEditorPanel::enteredValue() const
{
    // The field makes ordinary blanks and line ends of the others.
    return m_editorValueInput->document()->isModified() ? m_editorValueInput->toPlainText()
                                                        : m_givenValue;
}

void ItemEditorPanel::setEditorType(const QString& type)
{
    m_editorSelectedType = type;
    const qsizetype index = optionIndexOf(type);
    const TypeOption& option = typeOptions().at(index);
    applyPillGlyph(m_editorTypeBtn, option.glyph);
    m_editorTypeBtn->setLabel(text(option.labelKey));

    const TypeForm& form = kTypeForms.at(size_t(index));
    m_editorValueLabel->setText(text(form.valueLabelKey));
    m_editorNameInput->setPlaceholderText(text(form.namePlaceholderKey));
    m_editorValueInput->setPlaceholderText(text(form.valuePlaceholderKey));
    m_editorValueInput->viewport()->update(); // which Qt leaves as it was for another placeholder
    m_editorValueInput->setLineNumbersVisible(form.hasLineNumbers);

    m_browseShown = form.canBrowse;
    if (!m_browseShown && m_editorBrowseValueBtn->hasFocus())
        m_editorValueInput->setFocus();
    m_editorBrowseValueBtn->setVisible(m_browseShown);
    emit editorTypeChanged(m_editorSelectedType);
}

void ItemEditorPanel::setSectionPick(const QString& name)
{
    m_editorSectionPick = name;
    applyPillGlyph(m_editorSectionBtn, m_model->getCategoryIcon(name));
    m_editorSectionBtn->setLabel(name);
}

void ItemEditorPanel::applyPillGlyph(GlyphButton* button, uint glyph)
{
    button->setGlyphLeftInset(PillGlyphX);
    button->setGlyphActiveColor(activePillColors().text);
    button->setGlyph(glyph, PickerPill::GlyphPx, Theme::colors().onSurface);
}

void ItemEditorPanel::syncEditorIconBtn()
{
    const uint chosen = IconHelper::isGlyphToken(m_currentIconPath)
                            ? IconHelper::codepointForItem(m_currentIconPath, QString())
                            : Glyph::AddPhotoAlternate;
    m_editorIconBtn->setGlyph(chosen, kIconGlyphPx, Theme::colors().onSurface);
    // Takes the glyph's place where the path names a file.
    m_editorIconBtn->setPicture(m_currentIconPath);
}

void ItemEditorPanel::showTypeMenu()
{
    const QPointer<QWidget> button(m_editorTypeBtn);
    ActionsMenu::Popup menu(this);
    for (const TypeOption& option : typeOptions()) {
        menu.addRow(option.glyph, text(option.labelKey),
                    [this, &option] { setEditorType(QString::fromLatin1(option.data)); });
    }
    menu.addCancel();
    menu.execBelow(m_editorTypeBtn);
    focusAfterMenu(button);
}

void ItemEditorPanel::showSectionMenu()
{
    const QPointer<QWidget> button(m_editorSectionBtn);
    const QStringList sections = m_model->data().categories;
    if (!sections.isEmpty()) {
        ActionsMenu::Popup menu(this);
        for (const QString& name : sections)
            menu.addRow(m_model->getCategoryIcon(name), name,
                        [this, name] { setSectionPick(name); });
        menu.addCancel();
        menu.execBelow(m_editorSectionBtn);
    }
    focusAfterMenu(button);
}

void ItemEditorPanel::chooseIcon()
{
    const AutoQuitBlocker blocker;
    ModalRun<IconPickerDialog> picker(this, m_currentIconPath);
    if (picker.exec() != QDialog::Accepted)
        return;
    m_currentIconPath = picker->chosenIconPath();
    syncEditorIconBtn();
}

void ItemEditorPanel::browseForValue()
{
    const QString path =
        FileChooser::openFile(this, QStringLiteral("Select File"),
                              QStringLiteral("All Files (%1)").arg(Platform::anyFilePattern()));
    if (path.isEmpty())
        return;
    const QString before = enteredValue();
    // A bulk item has a target on each line.
    const bool joins = m_editorSelectedType == ItemType::Bulk && !before.isEmpty();
    setValue(joins ? before + u'\n' + path : path);
}

void ItemEditorPanel::warn(const char* textKey)
{
    CustomMessageBox::warning(this, kValidationTitle, text(textKey));
}

bool ItemEditorPanel::validateCommonFields()
{
    if (enteredName().trimmed().isEmpty()) {
        warn("editor.err_name_empty");
        return false;
    }
    if (enteredValue().trimmed().isEmpty()) {
        warn("editor.err_val_empty");
        return false;
    }
    return true;
}

void ItemEditorPanel::applyFormTo(LauncherElement& element) const
{
    element.name = enteredName().trimmed();
    element.shortcutType = m_editorSelectedType;
    element.value = enteredValue(); // with its outer blanks, which may be what a snippet is for
    element.iconPath = m_currentIconPath;
}

qsizetype ItemEditorPanel::indexInSection(const QString& category, const QString& id) const
{
    if (id.isEmpty() || !m_model->data().categories.contains(category))
        return -1;
    const QVector<LauncherElement>& items = m_model->getItems(category);
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&id](const LauncherElement& item) { return item.id == id; });
    return found == items.end() ? -1 : found - items.begin();
}

void ItemEditorPanel::saveItemEditor()
{
    const AutoQuitBlocker blocker;
    if (!m_standalone) {
        saveToModel();
        return;
    }
    if (!validateCommonFields())
        return;
    LauncherElement copy = m_standaloneEl;
    applyFormTo(copy);
    emit elementReady(copy);
}

void ItemEditorPanel::saveToModel()
{
    if (!m_model->data().categories.contains(m_editorSectionPick)) {
        const QPointer<ItemEditorPanel> self(this);
        warn("editor.err_no_section");
        // The section that was picked may be gone while others are there to take the item.
        if (self)
            offerSections(m_editingCategory);
        return;
    }
    if (!validateCommonFields())
        return;
    const qsizetype index = indexInSection(m_editingCategory, m_editingItemId);
    LauncherElement element;
    if (index < 0)
        element.id = LauncherElement::createId();
    else
        element = m_model->getItems(m_editingCategory).at(index);
    applyFormTo(element);
    const QString pick = m_editorSectionPick;
    if (index < 0) {
        m_model->saveItem(pick, element, -1);
    } else {
        m_model->saveItem(m_editingCategory, element, int(index));
        if (pick != m_editingCategory)
            m_model->moveItemToCategory(m_editingCategory, element.id, pick);
    }
    m_editingCategory = pick;
    emit closeRequested(int(indexInSection(pick, element.id)));
}
