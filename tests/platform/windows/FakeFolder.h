// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVector>

#include <windows.h>

#include <shlobj.h>

/// A folder of the shell whose children a test makes up. It lives with the test, so its count of
/// references is only there to be looked at.
class FakeFolder final : public IShellFolder
{
public:
    /// A name as the folder hands it out.
    struct Name
    {
        QString text;
        UINT form = STRRET_WSTR;
        HRESULT result = S_OK;
    };
    struct Child
    {
        PCUITEMID_CHILD id = nullptr; ///< owned by the test
        Name display;
        Name parsing;
    };

    QVector<Child> children;
    HRESULT enumResult = S_OK;        ///< anything else: no children are handed out
    bool saysYesWithoutChild = false; ///< the enumeration succeeds and hands out nothing
    qsizetype failsAt = -1;           ///< the child in whose place comes `failure`, if there is one
    HRESULT failure = E_FAIL;
    SHCONTF askedFor = 0; ///< the flags of the last enumeration

    ULONG references() const { return m_references; }
    ULONG enumerations() const { return m_enumerations; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override { return --m_references; }

    HRESULT STDMETHODCALLTYPE EnumObjects(HWND owner, SHCONTF flags, IEnumIDList** list) override;
    HRESULT STDMETHODCALLTYPE GetDisplayNameOf(PCUITEMID_CHILD id, SHGDNF form,
                                               STRRET* name) override;

    HRESULT STDMETHODCALLTYPE ParseDisplayName(HWND, IBindCtx*, LPWSTR, ULONG*, PIDLIST_RELATIVE*,
                                               ULONG*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE BindToObject(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE BindToStorage(PCUIDLIST_RELATIVE, IBindCtx*, REFIID, void**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CompareIDs(LPARAM, PCUIDLIST_RELATIVE, PCUIDLIST_RELATIVE) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CreateViewObject(HWND, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAttributesOf(UINT, PCUITEMID_CHILD_ARRAY, SFGAOF*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetUIObjectOf(HWND, UINT, PCUITEMID_CHILD_ARRAY, REFIID, UINT*,
                                            void**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetNameOf(HWND, PCUITEMID_CHILD, LPCWSTR, SHGDNF,
                                        PITEMID_CHILD*) override
    {
        return E_NOTIMPL;
    }

private:
    class Enumeration;

    ULONG m_references = 1;
    ULONG m_enumerations = 0; ///< alive
};
