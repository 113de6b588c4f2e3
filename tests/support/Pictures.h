// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemImages.h"

#include <QTest>

/// What is known of a picture once its file has been read, which happens behind the first paint.
inline ItemImages::Picture pictureOnceRead(const QString& iconPath, const QSize& box,
                                           qreal ratio = 1.0,
                                           Qt::AspectRatioMode mode = Qt::KeepAspectRatio)
{
    ItemImages::Picture picture;
    const auto isRead = [&] {
        picture = ItemImages::find(iconPath, box, ratio, mode);
        return picture.state != ItemImages::State::Pending;
    };
    if (!QTest::qWaitFor(isRead))
        qFatal("no answer for the picture %s", qPrintable(iconPath));
    return picture;
}
