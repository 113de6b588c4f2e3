// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FramelessDialog.h"
#include "IconHelper.h"

#include <QList>
#include <QString>

class GlyphButton;
class QLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

/// Names a section or a template and picks its icon. Whether the name is taken is the caller's to
/// find out once the dialog has been accepted.
class AddEditCategoryDialog : public FramelessDialog
{
    Q_OBJECT

public:
    static constexpr int IconCols = 5; ///< icons in a row

    /// \param existingName empty for something new.
    /// \param existingIcon codepoint; one that is not offered stays the result until another is
    /// picked.
    /// \param nameLabelKey, namePlaceholderKey, emptyErrKey translation keys.
    explicit AddEditCategoryDialog(
        QWidget* parent, const QString& title, const QString& existingName = QString(),
        uint existingIcon = Glyph::Folder,
        const QString& nameLabelKey = QStringLiteral("dialog.lbl_section_name"),
        const QString& namePlaceholderKey = QStringLiteral("dialog.section_name_placeholder"),
        const QString& emptyErrKey = QStringLiteral("dialog.err_section_empty"));

    /// The name without white space at its ends; not empty once the dialog has been accepted.
    QString getName() const;
    /// Codepoint of the chosen icon.
    uint getIcon() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fillBody(QVBoxLayout* body, const QString& existingName, const QString& nameLabel,
                  const QString& placeholder);
    QLayout* buildIconGrid();
    void addButtons(QVBoxLayout* body);
    void updateIconStyles();
    void doSave();
    bool handleKey(QObject* watched, int key);
    bool handleNameKey(int key);
    bool handleIconKey(int index, int key);
    bool handleButtonKey(QPushButton* button, int key);
    /// An index out of range means the first or the last icon.
    void focusIcon(int i);

    QString m_givenName;
    QString m_shownName; ///< what the field made of it
    QLineEdit* nameInput = nullptr;
    unsigned int m_selectedIcon = Glyph::Folder;
    QList<GlyphButton*> iconBtns;
    QPushButton* m_cancelBtn = nullptr;
    QPushButton* m_saveBtn = nullptr;
    QString m_emptyErrKey;
};
