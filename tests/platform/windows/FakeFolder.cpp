// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFolder.h"

#include <algorithm>
#include <cstring>

namespace
{

/// Anything, where the form says that no wide text in memory of its own comes.
HRESULT fill(STRRET* to, const FakeFolder::Name& name)
{
    to->uType = name.form;
    if (FAILED(name.result))
        return name.result;
    const std::size_t size = (static_cast<std::size_t>(name.text.size()) + 1) * sizeof(wchar_t);
    if (name.form == STRRET_CSTR) {
        const QByteArray text = name.text.toLatin1();
        std::memcpy(to->cStr, text.constData(), static_cast<std::size_t>(text.size()) + 1);
    } else if (name.form == STRRET_OFFSET) {
        to->uOffset = 2;
    } else if (name.text.isNull()) {
        to->pOleStr = nullptr;
    } else {
        to->pOleStr = static_cast<LPWSTR>(CoTaskMemAlloc(size));
        std::memcpy(to->pOleStr, name.text.utf16(), size);
    }
    return name.result;
}

} // namespace

/// Walks over the children of a folder; deletes itself.
class FakeFolder::Enumeration final : public IEnumIDList
{
public:
    explicit Enumeration(FakeFolder* folder) : m_folder(folder) { ++m_folder->m_enumerations; }
    ~Enumeration() { --m_folder->m_enumerations; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE Next(ULONG, PITEMID_CHILD* items, ULONG* count) override
    {
        *items = nullptr;
        *count = 0;
        if (m_next == m_folder->children.size())
            return S_FALSE;
        if (m_next == m_folder->failsAt) {
            ++m_next; // whoever asks again gets the next one
            return m_folder->failure;
        }
        if (!m_folder->saysYesWithoutChild) {
            *items = ILCloneChild(m_folder->children.at(m_next).id);
            *count = 1;
        }
        ++m_next;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumIDList**) override { return E_NOTIMPL; }

private:
    FakeFolder* m_folder;
    ULONG m_references = 1;
    qsizetype m_next = 0;
};

HRESULT FakeFolder::QueryInterface(REFIID, void** object)
{
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT FakeFolder::EnumObjects(HWND, SHCONTF flags, IEnumIDList** list)
{
    askedFor = flags;
    *list = enumResult == S_OK ? new Enumeration(this) : nullptr;
    return enumResult;
}

HRESULT FakeFolder::GetDisplayNameOf(PCUITEMID_CHILD id, SHGDNF form, STRRET* name)
{
    const auto child = std::find_if(children.cbegin(), children.cend(), [id](const Child& one) {
        return one.id == id || (one.id && id &&
                                ILIsEqual(reinterpret_cast<PCIDLIST_ABSOLUTE>(one.id),
                                          reinterpret_cast<PCIDLIST_ABSOLUTE>(id)));
    });
    if (child == children.cend())
        return E_INVALIDARG;
    return fill(name, form == SHGDN_FORPARSING ? child->parsing : child->display);
}
