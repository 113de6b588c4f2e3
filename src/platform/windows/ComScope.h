// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <type_traits>

#include <windows.h>

#include <objbase.h>

namespace Platform
{

/// COM on the calling thread, for as long as it lives. Every user of COM makes its own, so that
/// none depends on what the thread did before.
class ComScope
{
public:
    ComScope() : m_result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~ComScope()
    {
        if (SUCCEEDED(m_result))
            CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

    /// False if the thread has COM already, but of the kind in which the shell doesn't work.
    bool isUsable() const { return m_result != RPC_E_CHANGED_MODE; }

private:
    HRESULT m_result;
};

template <typename Pointer>
struct TaskMemoryDeleter
{
    using pointer = Pointer;
    void operator()(Pointer memory) const { CoTaskMemFree(memory); }
};

/// What COM allocated and the receiver frees: id lists above all. Named by its pointer, since some
/// compilers tell pointers to id lists from all others.
template <typename Pointer>
using TaskMemory = std::unique_ptr<std::remove_pointer_t<Pointer>, TaskMemoryDeleter<Pointer>>;

} // namespace Platform
