// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <qnamespace.h>

namespace Platform
{

/// Whether the keys of a settings file are told apart by case. Each system has its custom, and Qt
/// refuses any other. Any thread.
Qt::CaseSensitivity settingsKeyCase();

} // namespace Platform
