// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SettingsKeys.h"

Qt::CaseSensitivity Platform::settingsKeyCase()
{
    return Qt::CaseInsensitive;
}
