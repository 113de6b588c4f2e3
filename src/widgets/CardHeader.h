// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>
#include <QString>

class QHBoxLayout;
class QLabel;

/// The coloured band with a title at the top of a card. GUI thread only.
class CardHeader : public QFrame
{
    Q_OBJECT

public:
    static constexpr int Height = 56;     ///< px
    static constexpr int SidePad = 12;    ///< px, free at the left and the right edge
    static constexpr int LeadingSpan = 8; ///< px, between a leading widget and the title

    /// \param objectName names the band in its style sheet, so that the sheet stays off what
    /// is inside.
    /// \param title shown as it stands, never read as markup.
    /// \param radiusPx of the two upper corners; the lower ones are square.
    CardHeader(const QString& objectName, const QString& title, int radiusPx,
               QWidget* parent = nullptr);

    QString title() const;
    void setTitle(const QString& title);

    /// Puts `widget`, such as a button that leads back, before the title, which then begins beside
    /// it instead of standing in the middle. The band becomes its owner.
    void setLeading(QWidget* widget);

private:
    QHBoxLayout* m_row;
    QLabel* m_title;
};
