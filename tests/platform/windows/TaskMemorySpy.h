// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSet>

#include <windows.h>

#include <objbase.h>

/// Counts what COM allocates and frees in this process while it lives. The allocations that it has
/// seen must be freed before it goes.
class TaskMemorySpy final : public IMallocSpy
{
public:
    TaskMemorySpy() : m_isRegistered(SUCCEEDED(CoRegisterMallocSpy(this))) {}
    ~TaskMemorySpy()
    {
        if (m_isRegistered)
            CoRevokeMallocSpy();
    }
    TaskMemorySpy(const TaskMemorySpy&) = delete;
    TaskMemorySpy& operator=(const TaskMemorySpy&) = delete;

    bool isRegistered() const { return m_isRegistered; }
    /// How many blocks were allocated, and how many of these are still there.
    int allocated() const { return m_allocated; }
    qsizetype alive() const { return m_alive.size(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override
    {
        const bool isKnown = id == IID_IMallocSpy || id == IID_IUnknown;
        *object = isKnown ? this : nullptr;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; } // lives as long as its scope
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T size) override { return size; }
    void* STDMETHODCALLTYPE PostAlloc(void* block) override
    {
        ++m_allocated;
        m_alive.insert(block);
        return block;
    }
    void* STDMETHODCALLTYPE PreFree(void* block, BOOL isSpied) override
    {
        Q_UNUSED(isSpied);
        m_alive.remove(block);
        return block;
    }
    void STDMETHODCALLTYPE PostFree(BOOL) override {}
    SIZE_T STDMETHODCALLTYPE PreRealloc(void* block, SIZE_T size, void** realBlock, BOOL) override
    {
        m_alive.remove(block);
        *realBlock = block;
        return size;
    }
    void* STDMETHODCALLTYPE PostRealloc(void* block, BOOL) override
    {
        m_alive.insert(block);
        return block;
    }
    void* STDMETHODCALLTYPE PreGetSize(void* block, BOOL) override { return block; }
    SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T size, BOOL) override { return size; }
    void* STDMETHODCALLTYPE PreDidAlloc(void* block, BOOL) override { return block; }
    int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int answer) override { return answer; }
    void STDMETHODCALLTYPE PreHeapMinimize() override {}
    void STDMETHODCALLTYPE PostHeapMinimize() override {}

private:
    bool m_isRegistered;
    int m_allocated = 0;
    QSet<void*> m_alive;
};
