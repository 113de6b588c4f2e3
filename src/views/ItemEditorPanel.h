// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QList>
#include <QString>
#include <QVector>
#include <QWidget>

class GlyphButton;
class LauncherModel;
class NumberedPlainTextEdit;
class PickerPill;
class QBoxLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// The form that adds or edits one item. It works on the document (`openEditor`), or on its own for
/// whoever keeps the item elsewhere (`openForElement`). Whoever shows it closes it, on
/// `closeRequested`. GUI thread only.
///
/// Item and section may vanish while the form is open, by an import or from another window: the
/// form then saves a new item, and for want of its section asks for another. It may itself be
/// deleted while a menu or dialog of its is open.
class ItemEditorPanel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int EditorIconBtnSize = 40; ///< lengths in pixels
    static constexpr int PillPadLeft = 34;
    static constexpr double PillGlyphX = 22.0;

    /// \param model outlives the panel and is not owned.
    ItemEditorPanel(LauncherModel* model, QWidget* parent);

    /// Shows an item of the document and focuses its name.
    /// \param category the section it is in, and the one that is offered for a new item.
    /// \param itemId empty, or unknown in `category`, for a new item.
    void openEditor(const QString& category, const QString& itemId);
    /// Shows an element that is in no document; the edited copy comes by `elementReady`, and the
    /// model stays untouched.
    void openForElement(const LauncherElement& element);
    /// Asks to be closed without saving.
    void forceClose();

    /// The section the form was opened with, and after saving the one that the item is in.
    QString editingCategory() const { return m_editingCategory; }

    QWidget* typeButton() const;
    QWidget* sectionButton() const;
    QWidget* nameInput() const;
    QWidget* browseButton() const;
    QWidget* valueInput() const;
    QWidget* saveButton() const;

signals:
    /// \param row of the saved item in its section; -1 if nothing was saved.
    void closeRequested(int row);
    void elementReady(const LauncherElement& element);
    void editorTypeChanged(const QString& type);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct TypeOption
    {
        uint glyph;
        const char* labelKey;
        const char* data; ///< the type as documents spell it
    };

    /// In the order of the menu; the last one stands for every type that isn't in it.
    static const QVector<TypeOption>& typeOptions();
    static qsizetype optionIndexOf(const QString& type);

    void setupUI();
    QLayout* buildNameBlock();
    QLayout* buildTypeRow();
    QLayout* buildValueBlock();
    QLayout* buildButtonRow();
    QLabel* makeLabel(const char* textKey);
    QPushButton* addButton(QBoxLayout* row, const char* textKey, const QString& style, int stretch);
    PickerPill* makePill();
    QWidget* makeColumn(QLabel* label, QWidget* field);
    void nameControls();
    void connectControls();

    void syncEditorIconBtn();
    void applyPillGlyph(GlyphButton* button, uint glyph);
    void showTypeMenu();
    void showSectionMenu();
    void chooseIcon();
    void browseForValue();
    void setSectionPick(const QString& name);
    /// Offers the sections that there are, with `preferred` as the pick if it is one of them.
    void offerSections(const QString& preferred);
    void setEditorType(const QString& type);
    void fillFormFrom(const LauncherElement& element);
    /// Fills the field of the value, as far as it can show it.
    void setValue(const QString& value);
    /// As given until somebody types into the field, which would not keep every character.
    QString enteredName() const;
    QString enteredValue() const;

    void warn(const char* textKey);
    bool validateCommonFields();
    void applyFormTo(LauncherElement& element) const;
    void saveItemEditor();
    void saveToModel();
    qsizetype indexInSection(const QString& category, const QString& id) const;

    bool handleKey(QWidget* watched, int key);
    bool handleUp(QWidget* watched);
    bool handleDown(QWidget* watched);
    bool handleSideways(QWidget* watched, int key);
    QList<QWidget*> typeRowChain() const;
    QWidget* rowAboveValue() const;
    QWidget* rowBelowTypeRow() const;

    LauncherModel* m_model;
    QLineEdit* m_editorNameInput = nullptr;
    QString m_editorSelectedType; ///< as stored, even if no option bears it
    NumberedPlainTextEdit* m_editorValueInput = nullptr;
    QPushButton* m_editorBrowseValueBtn = nullptr;
    QLabel* m_editorValueLabel = nullptr;
    GlyphButton* m_editorIconBtn = nullptr;
    QString m_currentIconPath;
    PickerPill* m_editorTypeBtn = nullptr;
    PickerPill* m_editorSectionBtn = nullptr;
    QString m_editorSectionPick;
    QWidget* m_editorSectionCol = nullptr;
    QPushButton* m_editorSaveBtn = nullptr;
    QPushButton* m_editorCancelBtn = nullptr;
    QString m_editingCategory;
    QString m_editingItemId; ///< empty for a new item
    bool m_standalone = false;
    LauncherElement m_standaloneEl;
    bool m_sectionPickerShown = false;
    bool m_browseShown = true;
    QString m_givenName; ///< what the two fields were filled from
    QString m_givenValue;
};
