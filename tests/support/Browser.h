// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

class QUrl;

/// Takes the addresses that would open in a browser or a file manager, as long as it lives.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser();
    ~Browser() override;

    QStringList opened; ///< encoded, in order

public slots:
    void open(const QUrl& url);
};
