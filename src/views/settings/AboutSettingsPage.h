// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QWidget>

class LauncherModel;
class QLabel;
class QPushButton;

/// The page that says what this program is, and leads to its tour, its store page and the address
/// for feedback. GUI thread only.
class AboutSettingsPage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int RowIndent = 24;  ///< px before the lines of text
    static constexpr int CopiedMs = 1600; ///< how long the feedback button says so

    /// \param model not owned; may be null, nothing of it is shown.
    explicit AboutSettingsPage(LauncherModel* model, QWidget* parent = nullptr);

    /// The address that the program was built with.
    static const QString& feedbackEmail();

    /// A line of muted text that breaks where it must, indented like the names of the rows.
    static QLabel* makeInfoLine(const QString& text);
    static QPushButton* makeSecondaryBtn(const QString& text, const QString& objectName);
    /// A row that holds `button`, which becomes its own.
    static QWidget* makeButtonRow(const QString& title, QPushButton* button);

signals:
    void startTourRequested();

private:
    static QLayout* buildHeader();
    QWidget* buildTourRow();
    QWidget* buildStoreRow();
    QWidget* buildFeedbackRow();
    void copyFeedbackEmail();

    QPushButton* m_tourBtn = nullptr;
    QPushButton* m_storeBtn = nullptr;
    QPushButton* m_feedbackBtn = nullptr;
};
