// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>

#include <optional>

/// What is to be made of a file, and what is wanted of it. Equal requests have equal answers.
struct PictureRequest
{
    QString path;
    QSize box;         ///< device pixels, at least 1 x 1
    qreal ratio = 1.0; ///< device pixels of a pixel of the interface
    Qt::AspectRatioMode mode = Qt::KeepAspectRatio;

    bool operator==(const PictureRequest&) const = default;
};

size_t qHash(const PictureRequest& request, size_t seed = 0);

/// By what a file tells that it is another one than before.
struct FileStamp
{
    bool exists = false;
    bool isPlain = false; ///< no directory, pipe or device
    qint64 bytes = 0;
    qint64 modifiedMs = 0;

    bool operator==(const FileStamp&) const = default;
};

/// What a file turned out to be.
struct PictureAnswer
{
    PictureRequest request;
    FileStamp stamp;
    bool isChanged = false; ///< false: the file is as it was known to be, and has not been opened
    QImage image;           ///< scaled, in a format that paints fast; null if it is no picture
};

/// Reads pictures in the thread it lives in. It may be given any path and any file: what lies on
/// another machine isn't touched and counts as missing, only plain files are opened, and those that
/// are too large are no pictures.
class PictureReader : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 MaxFileBytes = qint64(64) * 1024 * 1024;
    static constexpr qint64 MaxPixels = qint64(30) * 1024 * 1024; ///< before it is scaled

    /// Looks at the file and reads it, unless it is as it is known to be. Ends in `answered`.
    /// \param known what it was like; nothing if nobody has looked at it yet.
    void read(const PictureRequest& request, const std::optional<FileStamp>& known);

signals:
    void answered(const PictureAnswer& answer);
};
