// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ShellLink.h"

#include "ComScope.h"
#include "ShellIcon.h"

#include <QDir>
#include <QFileIconProvider>
#include <QFileInfo>

#include <array>

#include <shlobj.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace
{

constexpr int kIconSizePx = 48;
constexpr std::size_t kExpandedCharacters = 520;

LPCWSTR wide(const QString& text)
{
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

/// \returns null if the file is no shortcut or can't be read.
ComPtr<IShellLinkW> loadLink(const QString& lnkPath)
{
    ComPtr<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                reinterpret_cast<void**>(link.GetAddressOf())))) {
        return {};
    }
    ComPtr<IPersistFile> file;
    if (FAILED(link->QueryInterface(IID_IPersistFile,
                                    reinterpret_cast<void**>(file.GetAddressOf())))) {
        return {};
    }
    const QString native = QDir::toNativeSeparators(lnkPath);
    return SUCCEEDED(file->Load(wide(native), STGM_READ)) ? link : ComPtr<IShellLinkW>();
}

QIcon iconNamedBy(IShellLinkW* link)
{
    std::array<wchar_t, MAX_PATH> path{};
    int index = 0;
    if (FAILED(link->GetIconLocation(path.data(), static_cast<int>(path.size()), &index)) ||
        path.front() == L'\0') {
        return {};
    }
    return Platform::extractIcon(QString::fromWCharArray(path.data()), index);
}

QIcon iconOfTarget(IShellLinkW* link)
{
    std::array<wchar_t, MAX_PATH> path{};
    if (FAILED(link->GetPath(path.data(), static_cast<int>(path.size()), nullptr, SLGP_RAWPATH)))
        return {};
    const QFileInfo target(Platform::expandEnv(QString::fromWCharArray(path.data())));
    static const QFileIconProvider provider;
    return target.exists() ? provider.icon(target) : QIcon();
}

} // namespace

QIcon Platform::shortcutIcon(const QString& lnkPath)
{
    const ComScope com;
    if (!com.isUsable())
        return {};
    const ComPtr<IShellLinkW> link = loadLink(lnkPath);
    if (!link)
        return {};
    const QIcon icon = iconNamedBy(link.Get());
    return icon.isNull() ? iconOfTarget(link.Get()) : icon;
}

QIcon Platform::extractIcon(const QString& path, int index)
{
    HICON found = nullptr;
    const HRESULT result =
        SHDefExtractIconW(wide(expandEnv(path)), index, 0, &found, nullptr, kIconSizePx);
    const NativeIcon icon(found);
    return SUCCEEDED(result) ? toIcon(icon) : QIcon();
}

QString Platform::expandEnv(const QString& s)
{
    std::array<wchar_t, kExpandedCharacters> expanded{};
    const DWORD length =
        ExpandEnvironmentStringsW(wide(s), expanded.data(), static_cast<DWORD>(expanded.size()));
    if (length == 0 || length > expanded.size())
        return s;
    return QString::fromWCharArray(expanded.data());
}
