// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WebQuery.h"

#include <QUrl>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// The rules of a suggestion that searches for something.
void checkSearch(const WebQuery::Suggestion& suggestion, const QString& query)
{
    require(suggestion.label.contains(query));
    require(!suggestion.iconToken.isEmpty());
    const QUrl url(suggestion.url, QUrl::StrictMode);
    require(url.isValid() && url.scheme() == QLatin1String("https") && url.hasQuery());
    // Whatever was typed stays within the query of the address.
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(query));
    require(suggestion.url.endsWith(u'=' + encoded));
    require(!url.hasFragment() && url.userInfo().isEmpty() && url.port() == -1);
}

void checkAddress(const QString& text, const QVector<WebQuery::Suggestion>& suggestions)
{
    const QString address = text.trimmed();
    require(text.endsWith(u' ') && WebQuery::looksLikeLink(address));
    require(suggestions.size() == 1);
    const WebQuery::Suggestion& suggestion = suggestions.constFirst();
    require(suggestion.url == address && suggestion.label.contains(address));
    require(!suggestion.fromEngine && suggestion.iconToken.isEmpty());
}

void checkSearches(const QString& text, const QVector<WebQuery::Suggestion>& suggestions)
{
    const QString trimmed = text.trimmed();
    require(trimmed.isEmpty() == suggestions.isEmpty());
    if (suggestions.isEmpty())
        return;
    const WebQuery::EngineMatch em = WebQuery::engineFor(text);
    const bool hasEngineRow = em.matched && !em.query.isEmpty();
    require(suggestions.size() == (hasEngineRow ? 2 : 1));
    require(suggestions.constFirst().fromEngine == hasEngineRow);
    if (hasEngineRow)
        checkSearch(suggestions.constFirst(), em.query);
    require(!suggestions.constLast().fromEngine);
    checkSearch(suggestions.constLast(), trimmed);
}

} // namespace

/// Any text makes addresses or none, by the same rules each time.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const WebQuery::EngineMatch em = WebQuery::engineFor(text);
    require(em.matched || em == WebQuery::EngineMatch());
    require(em.query == em.query.trimmed());
    // A link has neither white space in it nor, with that behind it, another meaning.
    if (WebQuery::looksLikeLink(text))
        require(!text.isEmpty() && text == text.simplified() &&
                WebQuery::wantsDirectUrl(text + u' '));

    const QVector<WebQuery::Suggestion> suggestions = WebQuery::suggestionsFor(text);
    if (WebQuery::wantsDirectUrl(text))
        checkAddress(text, suggestions);
    else
        checkSearches(text, suggestions);
    for (const WebQuery::Suggestion& suggestion : suggestions) {
        const LauncherElement element = WebQuery::asElement(suggestion);
        require(element.id.isEmpty() && element.shortcutType == QLatin1String("URL"));
        require(element.name == suggestion.label && element.value == suggestion.url);
    }
    return 0;
}
