// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDebug>
#include <QString>
#include <QtGlobal>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

/// As long as it lives, this process can open nothing more.
class WantOfDescriptors
{
public:
    WantOfDescriptors()
    {
        // The sanitizers open a pipe to look at the first object of a class that they meet. What is
        // logged without descriptors must be known to them before.
        QString sink;
        QDebug(&sink) << "known";
        ::getrlimit(RLIMIT_NOFILE, &m_usual);
        const int firstFree = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        ::close(firstFree);
        rlimit none = m_usual;
        none.rlim_cur = static_cast<rlim_t>(firstFree);
        if (firstFree < 0 || ::setrlimit(RLIMIT_NOFILE, &none) != 0)
            qFatal("cannot limit descriptors");
    }
    ~WantOfDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_usual); }
    WantOfDescriptors(const WantOfDescriptors&) = delete;
    WantOfDescriptors& operator=(const WantOfDescriptors&) = delete;

private:
    rlimit m_usual = {};
};
