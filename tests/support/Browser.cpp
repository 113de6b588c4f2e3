// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Browser.h"

#include <QDesktopServices>
#include <QUrl>

namespace
{

const QStringList kSchemes{"http", "https", "file"};

} // namespace

Browser::Browser()
{
    for (const QString& scheme : kSchemes)
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

Browser::~Browser()
{
    for (const QString& scheme : kSchemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

void Browser::open(const QUrl& url)
{
    opened.append(QString::fromUtf8(url.toEncoded()));
}
