// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PictureReader.h"

#include "PathLocality.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHashFunctions>
#include <QImageReader>

namespace
{

FileStamp stampOf(const QString& path)
{
    if (!Platform::isLocalPath(path))
        return {};
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    return {true, info.isFile(), info.size(), info.lastModified().toMSecsSinceEpoch()};
}

QImage decoded(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&file);
    // Some formats don't tell their size; those are held to Qt's own limit of memory alone.
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > PictureReader::MaxPixels)
        return {};
    return reader.read();
}

QImage fitted(QImage image, const PictureRequest& request)
{
    if (image.isNull())
        return {};
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                            : QImage::Format_RGB32);
    QImage scaled = image.scaled(request.box, request.mode, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(request.ratio);
    return scaled;
}

} // namespace

size_t qHash(const PictureRequest& request, size_t seed)
{
    return qHashMulti(seed, request.path, request.box.width(), request.box.height(), request.ratio,
                      int(request.mode));
}

void PictureReader::read(const PictureRequest& request, const std::optional<FileStamp>& known)
{
    PictureAnswer answer{request, stampOf(request.path), true, {}};
    answer.isChanged = !known || answer.stamp != *known;
    if (answer.isChanged && answer.stamp.isPlain && answer.stamp.bytes <= MaxFileBytes)
        answer.image = fitted(decoded(request.path), request);
    emit answered(answer);
}
