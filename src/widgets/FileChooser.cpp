// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileChooser.h"

#include "AutoQuitBlocker.h"
#include "ModalRun.h"

#include <QFileDialog>

namespace
{

QString ask(ModalRun<QFileDialog>& chooser)
{
    chooser->setSupportedSchemes({QStringLiteral("file")});
    const std::optional<int> result = chooser.exec();
    return result == QDialog::Accepted ? chooser->selectedFiles().value(0) : QString();
}

} // namespace

QString FileChooser::openFile(QWidget* parent, const QString& caption, const QString& filter)
{
    const AutoQuitBlocker blocker;
    ModalRun<QFileDialog> chooser(parent, caption, QString(), filter);
    chooser->setFileMode(QFileDialog::ExistingFile);
    return ask(chooser);
}

QString FileChooser::saveFile(QWidget* parent, const QString& caption, const QString& suggestedName,
                              const QString& filter)
{
    const AutoQuitBlocker blocker;
    ModalRun<QFileDialog> chooser(parent, caption, QString(), filter);
    chooser->setFileMode(QFileDialog::AnyFile);
    chooser->setAcceptMode(QFileDialog::AcceptSave);
    chooser->selectFile(suggestedName);
    return ask(chooser);
}
