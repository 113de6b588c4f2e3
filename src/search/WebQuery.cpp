// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "WebQuery.h"

#include "IconHelper.h"
#include "Localization.h"

#include <QByteArray>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace
{

const QString kSearchUrl = QStringLiteral("https://www.google.com/search?q=%1");

constexpr qsizetype kByteCount = 4;
constexpr int kMaxByte = 255;
constexpr qsizetype kMinEndingLength = 2;

bool isSpace(QChar c)
{
    return c.isSpace();
}

bool hasScheme(const QString& text)
{
    static const QStringList s_schemes{
        QStringLiteral("http://"), QStringLiteral("https://"), QStringLiteral("ftp://"),
        QStringLiteral("ftps://"), QStringLiteral("file://"),
    };
    return std::any_of(s_schemes.begin(), s_schemes.end(), [&text](const QString& scheme) {
        return text.startsWith(scheme, Qt::CaseInsensitive);
    });
}

/// The host of an address without a scheme, along with a user's name in front of it.
QString hostOf(const QString& text)
{
    const auto isHostEnd = [](QChar c) { return c == u'/' || c == u'?' || c == u'#'; };
    const QChar* end = std::find_if(text.begin(), text.end(), isHostEnd);
    const QString host = text.left(end - text.begin());
    const qsizetype port = host.lastIndexOf(u':');
    return port >= 1 ? host.left(port) : host;
}

bool isByte(const QString& part)
{
    bool isNumber = false;
    const int value = part.toInt(&isNumber);
    return isNumber && value >= 0 && value <= kMaxByte;
}

bool isNumericHost(const QString& host)
{
    const QStringList parts = host.split(u'.');
    return parts.size() == kByteCount && std::all_of(parts.begin(), parts.end(), isByte);
}

bool isNamedHost(const QString& host)
{
    const qsizetype dot = host.lastIndexOf(u'.');
    if (dot < 1)
        return false;
    const QString ending = host.mid(dot + 1);
    return ending.size() >= kMinEndingLength &&
           std::all_of(ending.begin(), ending.end(), [](QChar c) { return c.isLetter(); });
}

} // namespace

const QVector<WebQuery::Engine>& WebQuery::engines()
{
    static const QVector<Engine> s_engines{
        {"y", "YouTube", "web.youtube", "https://www.youtube.com/results?search_query=%1",
         Glyph::Movie},
    };
    return s_engines;
}

bool WebQuery::wantsDirectUrl(const QString& text)
{
    return text.endsWith(u' ') && looksLikeLink(text.trimmed());
}

bool WebQuery::looksLikeLink(const QString& text)
{
    if (std::any_of(text.begin(), text.end(), isSpace))
        return false;
    if (hasScheme(text))
        return true;
    const QString host = hostOf(text);
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
           isNumericHost(host) || isNamedHost(host);
}

int WebQuery::matchEngineIndex(const QString& text, QString& query)
{
    query.clear();
    const QChar* start = std::find_if_not(text.begin(), text.end(), isSpace);
    const QString head = text.mid(start - text.begin());
    for (int i = 0; i < engines().size(); ++i) {
        const QString tag = QString::fromLatin1(engines().at(i).prefix) + u' ';
        if (!head.startsWith(tag, Qt::CaseInsensitive))
            continue;
        const QString rest = head.mid(tag.size());
        // A second blank says that the first word was a word and no prefix.
        if (!rest.isEmpty() && isSpace(rest.front()))
            continue;
        query = rest.trimmed();
        return i;
    }
    return -1;
}

WebQuery::EngineMatch WebQuery::engineFor(const QString& text)
{
    QString query;
    const int index = matchEngineIndex(text, query);
    if (index < 0)
        return {};
    const Engine& engine = engines().at(index);
    return {true, QString::fromLatin1(engine.name), query, IconHelper::glyphToken(engine.glyph)};
}

QVector<WebQuery::Suggestion> WebQuery::suggestionsFor(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    if (wantsDirectUrl(text))
        return {{Tr::t(QStringLiteral("web.open")).arg(trimmed), QString(), trimmed, false}};

    QVector<Suggestion> suggestions;
    QString query;
    const int index = matchEngineIndex(text, query);
    if (index >= 0 && !query.isEmpty()) {
        const Engine& engine = engines().at(index);
        suggestions.append({Tr::t(QString::fromLatin1(engine.labelKey)).arg(query),
                            IconHelper::glyphToken(engine.glyph),
                            buildUrl(QString::fromLatin1(engine.urlTemplate), query), true});
    }
    suggestions.append({Tr::t(QStringLiteral("web.search")).arg(trimmed),
                        IconHelper::glyphToken(Glyph::Search), buildUrl(kSearchUrl, trimmed),
                        false});
    return suggestions;
}

QString WebQuery::buildUrl(const QString& urlTemplate, const QString& query)
{
    return urlTemplate.arg(QString::fromLatin1(QUrl::toPercentEncoding(query)));
}

LauncherElement WebQuery::asElement(const Suggestion& suggestion)
{
    LauncherElement element;
    element.name = suggestion.label;
    element.shortcutType = ItemType::Url;
    element.value = suggestion.url;
    element.iconPath = suggestion.iconToken;
    return element;
}
