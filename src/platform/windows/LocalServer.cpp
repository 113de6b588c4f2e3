// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LocalServer.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>

#include <memory>

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

namespace
{

constexpr int kHashLength = 16; // in hexadecimal digits

struct HandleCloser
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

struct LocalFreer
{
    void operator()(void* memory) const { LocalFree(memory); }
};

/// A record of this process's rights that begins with a pointer to a SID further on in it, as those
/// of the user and of the owner do; empty on failure.
QByteArray recordOf(TOKEN_INFORMATION_CLASS kind)
{
    HANDLE opened = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened))
        return {};
    const Handle token(opened);
    QByteArray record(sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE, '\0');
    DWORD size = 0;
    if (!GetTokenInformation(token.get(), kind, record.data(), DWORD(record.size()), &size))
        return {};
    return record;
}

PSID sidIn(const QByteArray& record)
{
    return *reinterpret_cast<const PSID*>(record.constData());
}

QByteArray hashOfUser()
{
    const QByteArray record = recordOf(TokenUser);
    LPWSTR text = nullptr;
    if (record.isEmpty() || !ConvertSidToStringSidW(sidIn(record), &text))
        return {};
    const std::unique_ptr<wchar_t, LocalFreer> owned(text);
    return QCryptographicHash::hash(QString::fromWCharArray(text).toUtf8(),
                                    QCryptographicHash::Sha1)
        .toHex()
        .left(kHashLength);
}

/// Against the administrators no name is safe, and to them belongs what a process with full rights
/// makes, whoever started it.
bool isOwnerTrusted(PSID owner)
{
    for (const auto kind : {TokenUser, TokenOwner}) {
        const QByteArray record = recordOf(kind);
        if (!record.isEmpty() && EqualSid(owner, sidIn(record)))
            return true;
    }
    return IsWellKnownSid(owner, WinBuiltinAdministratorsSid);
}

} // namespace

QStringList Platform::localServerPlaces(const QString& name)
{
    // The names of pipes are the whole machine's.
    const QByteArray hash = hashOfUser();
    if (name.isEmpty() || hash.isEmpty())
        return {name};
    return {name, name + QLatin1Char('_') + QString::fromLatin1(hash)};
}

bool Platform::isHeldByAnotherUser(const QString& place)
{
    const QString path = QDir::toNativeSeparators(QStringLiteral("//./pipe/") + place);
    // Who serves an unknown pipe must not act in the name of whoever asks.
    const HANDLE opened =
        CreateFileW(reinterpret_cast<LPCWSTR>(path.utf16()), GENERIC_READ | GENERIC_WRITE, 0,
                    nullptr, OPEN_EXISTING, SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        // Servers of the program let in their own, and keep a pipe free for them.
        const DWORD error = GetLastError();
        return error == ERROR_ACCESS_DENIED || error == ERROR_PIPE_BUSY;
    }
    const Handle pipe(opened);
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(pipe.get(), SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                        nullptr, nullptr, &descriptor) != ERROR_SUCCESS)
        return true; // nothing speaks for it
    const std::unique_ptr<void, LocalFreer> owned(descriptor);
    return !owner || !isOwnerTrusted(owner);
}
