// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyBackend.h"

namespace
{

std::unique_ptr<HotkeyBackend>& current()
{
    static std::unique_ptr<HotkeyBackend> s_backend;
    return s_backend;
}

} // namespace

HotkeyBackend& HotkeyBackend::instance()
{
    if (!current())
        current() = create();
    return *current();
}

void HotkeyBackend::setInstance(std::unique_ptr<HotkeyBackend> backend)
{
    current() = std::move(backend);
}
