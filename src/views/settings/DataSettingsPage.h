// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LauncherModel.h"

#include <QString>
#include <QWidget>

#include <functional>

class QPushButton;

/// The page that copies the document out, takes another one in and empties it. Settings, usage and
/// folders are no part of that. GUI thread only.
class DataSettingsPage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int MinButtonWidth = 120; ///< px

    /// \param model not owned; has to live as long as the page's window.
    /// \param jsonPath the file of the document, which is what an export copies.
    DataSettingsPage(LauncherModel* model, const QString& jsonPath, QWidget* parent = nullptr);

signals:
    /// The whole document is another one now. Whoever hears it may rebuild the page.
    void dataChanged();

private:
    QWidget* buildRow(const QString& titleKey, QPushButton* button,
                      void (DataSettingsPage::*act)()) const;
    void exportData();
    void importData();
    void resetData();
    /// Tells the user what came of it, by the keys of title and text if the document has been
    /// replaced. May outlive the page, but not its window.
    using Teller = std::function<void(LauncherModel::Replacement outcome, const QString& titleKey,
                                      const QString& textKey)>;
    Teller teller();

    LauncherModel* m_model;
    QString m_jsonPath;
};
