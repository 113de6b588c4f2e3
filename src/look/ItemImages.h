// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

#include <functional>

class QObject;
class QWidget;

/// The pictures that users choose for their items, ready to be painted: scaled for the box that
/// they go into and for the screen's ratio, and kept. Painting never waits for a file: a picture is
/// read by a thread of its own, as is the question whether it has changed since, which is put at
/// most every `RecheckMs`. The files may hold anything and lie anywhere; those on other machines
/// aren't touched.
///
/// GUI thread only, and only while the application object exists.
class ItemImages
{
public:
    static constexpr int RecheckMs = 1000;
    static constexpr int ShutdownWaitMs = 500;  ///< what the end of the program waits at most
    static constexpr int GatherMs = 15;         ///< pictures in such a time make one repaint
    static constexpr int MaxPathLength = 32767; ///< characters; there are no longer names of files
    static constexpr int MaxCacheBytes = 16 * 1024 * 1024;
    static constexpr int MaxWaiting = 256; ///< more at once drop those asked for first

    enum class State {
        Pending,    ///< not known yet; widgets that `repaintOnArrival` names are told of it
        None,       ///< there is no such file, or the icon string is no path
        Unreadable, ///< there is something, but no picture
        Ready
    };

    struct Picture
    {
        State state = State::Pending;
        QPixmap pixmap; ///< null unless ready; carries the ratio it was asked for
    };

    ItemImages() = delete;

    /// The picture for a box of `box` device-independent pixels on a screen of that ratio.
    /// \param iconPath icon string of an item; a glyph's, and an empty one, have no picture.
    /// \param mode how its shape is fitted to that of the box.
    static Picture find(const QString& iconPath, const QSize& box, qreal ratio,
                        Qt::AspectRatioMode mode = Qt::KeepAspectRatio);

    /// Has `widget` painted anew whenever a picture has been read, has changed or has gone.
    static void repaintOnArrival(QWidget* widget);
    /// Calls `callback` then, as long as `context` lives: for what paints pictures of items into
    /// pictures of its own.
    static void callOnArrival(QObject* context, const std::function<void()>& callback);
};
