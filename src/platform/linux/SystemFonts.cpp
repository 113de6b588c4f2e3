// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SystemFonts.h"

#include <clocale>
#include <future>

#include <fontconfig/fontconfig.h>

namespace
{

std::future<void> s_reading;

} // namespace

void Platform::beginReadingFonts()
{
    // Which fonts suit a language is found out once, and the application object would set the
    // language of the user too late for that.
    std::setlocale(LC_ALL, "");
    // Where no thread is to be had, it is done when somebody waits for it.
    s_reading = std::async(std::launch::async | std::launch::deferred, [] { FcInit(); });
}

void Platform::endReadingFonts()
{
    if (s_reading.valid())
        s_reading.get();
}
