// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "InstanceLock.h"

#include <windows.h>

bool Platform::acquireInstanceLock(const QString& name)
{
    // Never closed: the system drops the mutex when the process ends.
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, reinterpret_cast<LPCWSTR>(name.utf16()));
    return mutex != nullptr && GetLastError() != ERROR_ALREADY_EXISTS;
}
