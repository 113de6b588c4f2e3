// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ItemImages.h"

#include "IconHelper.h"
#include "PictureReader.h"

#include <QCache>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QList>
#include <QSet>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>
#include <utility>

namespace
{

// Of an entry without a picture, beside its path.
constexpr qsizetype kEntryBytes = 256;

/// What is known, what has been asked for, and the thread that answers.
class PictureStore
{
public:
    PictureStore();
    ~PictureStore();
    PictureStore(const PictureStore&) = delete;
    PictureStore& operator=(const PictureStore&) = delete;

    ItemImages::Picture find(const PictureRequest& request);

    /// Its `timeout` tells that there is something new to paint.
    const QTimer& arrival() const { return m_arrival; }

private:
    struct Entry
    {
        ItemImages::Picture picture;
        FileStamp stamp;
        qint64 lookedAtMs = 0;
    };
    struct Question
    {
        PictureRequest request;
        std::optional<FileStamp> known;
    };

    void startReader();
    void ask(const PictureRequest& request, const std::optional<FileStamp>& known);
    void askNext();
    void take(const PictureAnswer& answer);
    void keep(const PictureAnswer& answer);

    QCache<PictureRequest, Entry> m_known{ItemImages::MaxCacheBytes};
    QList<Question> m_waiting; ///< the newest at the end, which is what is on the screen
    QSet<PictureRequest> m_asked;
    bool m_isReading = false;
    QElapsedTimer m_clock;
    QTimer m_arrival;
    QThread* m_thread = nullptr; ///< both from the first question on
    PictureReader* m_reader = nullptr;
};

PictureStore::PictureStore()
{
    m_clock.start();
    m_arrival.setSingleShot(true);
    m_arrival.setInterval(ItemImages::GatherMs);
}

PictureStore::~PictureStore()
{
    if (!m_thread)
        return;
    m_thread->quit();
    // One that is stuck in a file stays behind, and ends with the process.
    if (m_thread->wait(ItemImages::ShutdownWaitMs))
        delete m_thread;
}

void PictureStore::startReader()
{
    m_thread = new QThread;
    m_reader = new PictureReader;
    m_thread->setObjectName(QStringLiteral("ItemImages"));
    m_reader->moveToThread(m_thread);
    // By a signal, which finds out by itself that the receiver is gone: a thread that is stuck
    // beyond the patience of the end must not touch what is being taken down.
    QObject::connect(m_reader, &PictureReader::answered, &m_arrival,
                     [this](const PictureAnswer& answer) { take(answer); });
    QObject::connect(m_thread, &QThread::finished, m_reader, &QObject::deleteLater);
    m_thread->start();
}

ItemImages::Picture PictureStore::find(const PictureRequest& request)
{
    const Entry* entry = m_known.object(request);
    if (!entry) {
        ask(request, {});
        return {};
    }
    if (m_clock.elapsed() - entry->lookedAtMs >= ItemImages::RecheckMs)
        ask(request, entry->stamp);
    return entry->picture;
}

void PictureStore::ask(const PictureRequest& request, const std::optional<FileStamp>& known)
{
    if (m_asked.contains(request))
        return;
    m_asked.insert(request);
    m_waiting.append({request, known});
    if (m_waiting.size() > ItemImages::MaxWaiting)
        m_asked.remove(m_waiting.takeFirst().request);
    if (!m_thread)
        startReader();
    askNext();
}

void PictureStore::askNext()
{
    if (m_isReading || m_waiting.isEmpty())
        return;
    m_isReading = true;
    QMetaObject::invokeMethod(
        m_reader,
        [reader = m_reader, next = m_waiting.takeLast()] {
            reader->read(next.request, next.known);
        },
        Qt::QueuedConnection);
}

void PictureStore::take(const PictureAnswer& answer)
{
    m_isReading = false;
    m_asked.remove(answer.request);
    askNext();
    if (!answer.isChanged) {
        if (Entry* entry = m_known.object(answer.request))
            entry->lookedAtMs = m_clock.elapsed();
        return;
    }
    keep(answer);
    if (!m_arrival.isActive())
        m_arrival.start();
}

void PictureStore::keep(const PictureAnswer& answer)
{
    auto entry = std::make_unique<Entry>();
    entry->stamp = answer.stamp;
    entry->lookedAtMs = m_clock.elapsed();
    if (!answer.image.isNull())
        entry->picture = {ItemImages::State::Ready, QPixmap::fromImage(answer.image)};
    else
        entry->picture.state =
            answer.stamp.exists ? ItemImages::State::Unreadable : ItemImages::State::None;
    const qsizetype cost = kEntryBytes + answer.request.path.size() * qsizetype(sizeof(QChar)) +
                           answer.image.sizeInBytes();
    m_known.insert(answer.request, entry.release(), cost);
}

/// Null before the first use and after the end.
std::unique_ptr<PictureStore> s_store;
bool s_isOver = false;

void shutdown()
{
    s_isOver = true;
    s_store.reset();
}

PictureStore* store()
{
    if (!s_store && !s_isOver && QCoreApplication::instance()) {
        s_store = std::make_unique<PictureStore>();
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, &shutdown);
        // An application whose event loop never ran doesn't say that it is about to quit.
        qAddPostRoutine(&shutdown);
    }
    return s_store.get();
}

} // namespace

ItemImages::Picture ItemImages::find(const QString& iconPath, const QSize& box, qreal ratio,
                                     Qt::AspectRatioMode mode)
{
    if (iconPath.isEmpty() || iconPath.size() > MaxPathLength || IconHelper::isGlyphToken(iconPath))
        return {State::None, {}};
    PictureStore* pictures = store();
    if (!pictures)
        return {};
    // Rounded down, so that a picture never stands out of its box.
    const QSize pixels(int(box.width() * ratio), int(box.height() * ratio));
    return pictures->find({iconPath, pixels.expandedTo({1, 1}), ratio, mode});
}

void ItemImages::repaintOnArrival(QWidget* widget)
{
    callOnArrival(widget, [widget] { widget->update(); });
}

void ItemImages::callOnArrival(QObject* context, const std::function<void()>& callback)
{
    if (const PictureStore* pictures = store())
        QObject::connect(&pictures->arrival(), &QTimer::timeout, context, callback);
}
