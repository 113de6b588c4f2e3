// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollArea>

class QVBoxLayout;

/// A page that scrolls up and down if it is too high for its place, and through which its ground
/// shows. Takes no focus. GUI thread only.
class ScrollPage : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollPage(QWidget* parent = nullptr);

    /// The rows of the page, still without any.
    QVBoxLayout* rows() const { return m_rows; }

private:
    QVBoxLayout* m_rows;
};
