// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QMap>
#include <QString>

/// The languages of the interface, in the order of the language menu.
enum class Lang { En = 0, Id = 1, Es = 2, Ja = 3 };

/// One text in every language.
struct LocalizedText
{
    QString en; ///< never empty
    QString id; ///< empty in any language but English: `en` stands in
    QString es;
    QString ja;

    /// The text for `lang`, or `en` if that field is empty or `lang` is none of the enumerators.
    /// The reference is valid as long as this object.
    const QString& forLang(Lang lang) const;
};

/// Every visible text of the program by dotted key, in four languages.
///
/// A change of language tells nobody: whoever changes it rebuilds the interface, which asks for
/// every text again. Placeholders (%1, %2) stand in different places in different languages, so
/// callers fill them with `QString::arg` and never join sentences from parts.
/// GUI thread only.
class Tr
{
public:
    /// The language that `t()` answers in. English until `loadSettings()`.
    inline static Lang currentLang = Lang::En;

    Tr() = delete;

    /// The text of `key` in the current language; `key` itself if the table has no such row.
    static QString t(const QString& key);

    /// "en", "id", "es" or "ja"; "en" for a value that is none of the enumerators.
    static QString codeFor(Lang lang);

    /// The inverse of `codeFor()`. Exact and case-sensitive; any other text means English.
    static Lang langForCode(const QString& code);

    /// The language's own name, the same whatever the current language is; "English" for a value
    /// that is none of the enumerators.
    static QString nameFor(Lang lang);

    /// All languages, in the order of the language menu.
    static QList<Lang> all();

    /// Makes the language stored in settings.ini current: English if the file can't be read or
    /// holds no known code. The file is left as it is.
    static void loadSettings();

    /// Makes `lang` current and stores it in settings.ini at once, even if it is current already.
    /// If the file can't be written, the choice holds until the process ends.
    static void setLanguage(Lang lang);
};

/// The whole table, newly built. Only `Tr::t()`, which keeps its one copy, and the tests need it;
/// it is declared here because the texts fill a source file of their own.
QMap<QString, LocalizedText> localizationTable();
