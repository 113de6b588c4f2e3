// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Localization.h"

#include "Settings.h"

#include <QStringView>

#include <algorithm>
#include <iterator>

namespace
{

constexpr QLatin1String kLanguageCode("Language/Code");

struct Language
{
    Lang lang;
    QLatin1String code;
    QStringView name;
};

// English first: it is what every unknown value falls back to.
constexpr Language kLanguages[] = {
    {Lang::En, QLatin1String("en"), u"English"},
    {Lang::Id, QLatin1String("id"), u"Bahasa Indonesia"},
    {Lang::Es, QLatin1String("es"), u"Español"},
    {Lang::Ja, QLatin1String("ja"), u"日本語"},
};

template <typename Predicate>
const Language& languageWhere(Predicate matches)
{
    const auto* const found = std::find_if(std::begin(kLanguages), std::end(kLanguages), matches);
    return found == std::end(kLanguages) ? kLanguages[0] : *found;
}

const Language& languageOf(Lang lang)
{
    return languageWhere([lang](const Language& language) { return language.lang == lang; });
}

const QString& orElse(const QString& translation, const QString& english)
{
    return translation.isEmpty() ? english : translation;
}

} // namespace

const QString& LocalizedText::forLang(Lang lang) const
{
    switch (lang) {
    case Lang::Id:
        return orElse(id, en);
    case Lang::Es:
        return orElse(es, en);
    case Lang::Ja:
        return orElse(ja, en);
    case Lang::En:
        break;
    }
    return en;
}

QString Tr::t(const QString& key)
{
    static const QMap<QString, LocalizedText> dict = localizationTable();
    const auto row = dict.constFind(key);
    return row == dict.constEnd() ? key : row->forLang(currentLang);
}

QString Tr::codeFor(Lang lang)
{
    return languageOf(lang).code;
}

Lang Tr::langForCode(const QString& code)
{
    return languageWhere([&code](const Language& language) { return language.code == code; }).lang;
}

QString Tr::nameFor(Lang lang)
{
    return languageOf(lang).name.toString();
}

QList<Lang> Tr::all()
{
    QList<Lang> languages;
    for (const Language& language : kLanguages)
        languages.append(language.lang);
    return languages;
}

void Tr::loadSettings()
{
    currentLang = langForCode(Settings::value(kLanguageCode, codeFor(Lang::En)).toString());
}

void Tr::setLanguage(Lang lang)
{
    currentLang = lang;
    Settings::setValue(kLanguageCode, codeFor(lang));
}
