// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "StoreApps.h"

#include "ComScope.h"
#include "ShellIcon.h"

#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

namespace
{

constexpr QLatin1String kFolderPrefix("shell:AppsFolder\\");
/// Stands between package and application in an application model id; other entries of the folder
/// are shortcuts that the Start Menu has as well.
constexpr QLatin1Char kStoreMark('!');

QString displayName(IShellFolder* folder, PCUITEMID_CHILD child, SHGDNF form)
{
    STRRET name{};
    if (FAILED(folder->GetDisplayNameOf(child, form, &name)))
        return {};
    return Platform::strRetToString(name);
}

QIcon iconOf(PCIDLIST_ABSOLUTE parent, PCUITEMID_CHILD child)
{
    const Platform::TaskMemory<PIDLIST_ABSOLUTE> item(ILCombine(parent, child));
    // The function takes a path or an id list through the same parameter.
    return item ? Platform::shellIcon(reinterpret_cast<LPCWSTR>(item.get()), 0, SHGFI_PIDL)
                : QIcon();
}

} // namespace

void Platform::addStoreApps(const std::function<void(const InstalledApplication&)>& add)
{
    const ComScope com;
    if (!com.isUsable())
        return;
    PIDLIST_ABSOLUTE found = nullptr;
    const HRESULT result = SHGetKnownFolderIDList(FOLDERID_AppsFolder, 0, nullptr, &found);
    const TaskMemory<PIDLIST_ABSOLUTE> parent(found);
    if (FAILED(result) || !parent)
        return;
    ComPtr<IShellFolder> folder;
    if (FAILED(SHBindToObject(nullptr, parent.get(), nullptr, IID_IShellFolder,
                              reinterpret_cast<void**>(folder.GetAddressOf())))) {
        return;
    }
    collectStoreApps(folder.Get(), parent.get(), add);
}

void Platform::collectStoreApps(IShellFolder* folder, PCIDLIST_ABSOLUTE parent,
                                const std::function<void(const InstalledApplication&)>& add)
{
    ComPtr<IEnumIDList> children;
    // A folder without children may say yes and hand out nothing.
    if (FAILED(folder->EnumObjects(nullptr, SHCONTF_FOLDERS | SHCONTF_NONFOLDERS,
                                   children.GetAddressOf())) ||
        !children) {
        return;
    }
    PITEMID_CHILD found = nullptr;
    ULONG count = 0;
    while (children->Next(1, &found, &count) == S_OK && count == 1) {
        const TaskMemory<PITEMID_CHILD> child(found);
        collectStoreApp(folder, parent, child.get(), add);
    }
}

void Platform::collectStoreApp(IShellFolder* folder, PCIDLIST_ABSOLUTE parent,
                               PCUITEMID_CHILD child,
                               const std::function<void(const InstalledApplication&)>& add)
{
    const QString name = displayName(folder, child, SHGDN_NORMAL);
    const QString parsing = displayName(folder, child, SHGDN_FORPARSING);
    if (name.isEmpty() || parsing.isEmpty() || !parsing.contains(kStoreMark))
        return;
    add({name, kFolderPrefix + parsing, parsing.toLower(), iconOf(parent, child), true});
}

QString Platform::strRetToString(STRRET& s)
{
    if (s.uType != STRRET_WSTR || !s.pOleStr)
        return {};
    const TaskMemory<LPOLESTR> text(s.pOleStr);
    s.pOleStr = nullptr;
    return QString::fromWCharArray(text.get());
}
