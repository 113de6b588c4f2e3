// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NameQuestions.h"

#include "AddEditCategoryDialog.h"
#include "CustomMessageBox.h"
#include "Localization.h"
#include "ModalRun.h"
#include "RowPainting.h"

namespace
{

constexpr int kMaxNameWidth = 4096; // pixels of a name that a question shows

const QString kRefusalTitle = QStringLiteral("Validation"); // the same in every language

} // namespace

QWidget* NameQuestions::windowOf(QWidget* widget)
{
    return widget ? widget->window() : nullptr;
}

std::optional<NameQuestions::NameAndIcon> NameQuestions::ask(QWidget* parent, const Naming& naming,
                                                             const NameAndIcon& present)
{
    ModalRun<AddEditCategoryDialog> dialog(windowOf(parent), Tr::t(naming.titleKey), present.name,
                                           present.icon, naming.labelKey, naming.placeholderKey,
                                           naming.emptyErrKey);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return NameAndIcon{dialog->getName(), dialog->getIcon()};
}

void NameQuestions::refuse(QWidget* parent, const char* textKey)
{
    CustomMessageBox::warning(windowOf(parent), kRefusalTitle, Tr::t(textKey));
}

QString NameQuestions::textAbout(const char* textKey, const QString& name)
{
    return Tr::t(textKey).arg(RowPainting::visiblePart(name, kMaxNameWidth));
}
