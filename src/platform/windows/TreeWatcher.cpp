// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TreeWatcher.h"

#include "ExtendedPath.h"
#include "NotifyRecords.h"

#include <array>
#include <utility>

#include <windows.h>

namespace
{

constexpr DWORD kWatchBufferBytes = 65536;
constexpr DWORD kFilter = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME;

struct HandleCloser
{
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// Null where there is none.
using Handle = std::unique_ptr<HANDLE, HandleCloser>;

Handle createEvent()
{
    return Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr)); // manual reset, unset
}

Handle openDirectory(const QString& path)
{
    const QString native = Platform::extendedPath(path);
    const HANDLE directory =
        CreateFileW(reinterpret_cast<LPCWSTR>(native.utf16()), FILE_LIST_DIRECTORY,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED, nullptr);
    return Handle(directory == INVALID_HANDLE_VALUE ? nullptr : directory);
}

/// One directory handle and the reads that wait on it.
class DirectoryWatch
{
public:
    DirectoryWatch(const QString& root, HANDLE stopEvent)
        : m_stopEvent(stopEvent), m_directory(openDirectory(root)), m_ioEvent(createEvent())
    {}

    bool isOpen() const { return m_directory && m_ioEvent; }

    /// Waits for changes and fills the buffer with them. \returns false if there will be none: the
    /// stop event is set, or the directory is no longer there.
    bool read()
    {
        if (isStopped())
            return false;
        m_overlapped = {};
        m_overlapped.hEvent = m_ioEvent.get();
        ResetEvent(m_ioEvent.get());
        if (!ReadDirectoryChangesW(m_directory.get(), m_buffer.get(), kWatchBufferBytes, TRUE,
                                   kFilter, nullptr, &m_overlapped, nullptr)) {
            return false;
        }
        const std::array<HANDLE, 2> events{m_ioEvent.get(), m_stopEvent};
        if (WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                                   INFINITE) != WAIT_OBJECT_0) {
            cancelRead();
            return false;
        }
        return takeResult() && !isStopped();
    }

    /// 0 if more happened than the system could keep.
    DWORD bytes() const { return m_bytes; }
    const unsigned char* buffer() const
    {
        return reinterpret_cast<const unsigned char*>(m_buffer.get());
    }

private:
    // Of two events that are set the wait tells the first, which under a steady stream of changes
    // is never the one to stop.
    bool isStopped() const { return WaitForSingleObject(m_stopEvent, 0) == WAIT_OBJECT_0; }

    bool takeResult()
    {
        if (GetOverlappedResult(m_directory.get(), &m_overlapped, &m_bytes, FALSE))
            return true;
        // Lost changes come as a read of nothing or under this name.
        m_bytes = 0;
        return GetLastError() == ERROR_NOTIFY_ENUM_DIR;
    }

    void cancelRead()
    {
        CancelIo(m_directory.get());
        // Until the read has really ended, the system may write to the buffer and the record.
        GetOverlappedResult(m_directory.get(), &m_overlapped, &m_bytes, TRUE);
    }

    HANDLE m_stopEvent;
    Handle m_directory;
    Handle m_ioEvent;
    OVERLAPPED m_overlapped{};
    // Whole DWORDs, since the system wants it aligned to them.
    std::unique_ptr<DWORD[]> m_buffer =
        std::make_unique<DWORD[]>(kWatchBufferBytes / sizeof(DWORD));
    DWORD m_bytes = 0;
};

class WindowsTreeWatcher : public Platform::TreeWatcher
{
public:
    WindowsTreeWatcher(const QString& root, Handle stopEvent)
        : m_root(root), m_stopEvent(std::move(stopEvent))
    {}

    void run(const Handlers& handlers) override
    {
        if (m_root.isEmpty())
            return;
        DirectoryWatch watch(m_root, m_stopEvent.get());
        if (!watch.isOpen())
            return;
        while (watch.read())
            report(watch, handlers);
    }

    void stop() override { SetEvent(m_stopEvent.get()); }
    // The system watches the whole tree by itself.
    void forget(const QString& rel) override { Q_UNUSED(rel); }
    QStringList unwatched() const override { return {}; }

private:
    static void report(const DirectoryWatch& watch, const Handlers& handlers)
    {
        if (watch.bytes() == 0) {
            handlers.overflow();
            return;
        }
        QVector<Platform::TreeChange> changes = Platform::changesIn(watch.buffer(), watch.bytes());
        if (!changes.isEmpty())
            handlers.changes(std::move(changes));
    }

    QString m_root;
    Handle m_stopEvent;
};

} // namespace

std::unique_ptr<Platform::TreeWatcher> Platform::TreeWatcher::create(const QString& root)
{
    Handle stopEvent = createEvent();
    return stopEvent ? std::make_unique<WindowsTreeWatcher>(root, std::move(stopEvent)) : nullptr;
}
