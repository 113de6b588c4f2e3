// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QString>
#include <QVector>
#include <QtGlobal>

/// Makes web addresses of what the user types: the address itself, a query to an engine that is
/// called by its prefix, a plain search. Only puts texts together; nothing is looked up.
/// GUI thread only; any text is fine.
class WebQuery
{
public:
    /// A site that can be searched by a prefix.
    struct Engine
    {
        const char* prefix;      ///< what the user types ahead of the query, without the blank
        const char* name;        ///< the site's own name, never translated
        const char* labelKey;    ///< translation key of the row's label, %1 for the query
        const char* urlTemplate; ///< %1 for the encoded query
        uint glyph;
    };

    struct Suggestion
    {
        QString label;
        QString iconToken; ///< icon string; empty for the glyph of an address
        QString url;       ///< what to open
        bool fromEngine = false;

        bool operator==(const Suggestion&) const = default;
    };

    struct EngineMatch
    {
        bool matched = false; ///< false: all else is empty
        QString engineName;
        QString query; ///< trimmed, may be empty
        QString iconToken;

        bool operator==(const EngineMatch&) const = default;
    };

    WebQuery() = delete;

    /// True for an address with a blank behind it, which is how the user asks to have it opened
    /// and not searched for. Only a plain blank counts.
    static bool wantsDirectUrl(const QString& text);

    /// True for what has the form of an address: a known scheme, "localhost", four bytes in a row,
    /// or a name with a dot and at least two letters behind it. Any such letters will do.
    static bool looksLikeLink(const QString& text);

    /// The engine that the text, as typed, calls.
    static EngineMatch engineFor(const QString& text);

    /// What to offer for a text as typed: that of the engine first, then the plain search; or the
    /// address alone if the user asks for it. Nothing for blanks.
    static QVector<Suggestion> suggestionsFor(const QString& text);

    /// The item that opens the suggestion; it has no id.
    static LauncherElement asElement(const Suggestion& suggestion);

private:
    static const QVector<Engine>& engines();
    static int matchEngineIndex(const QString& text, QString& query);
    static QString buildUrl(const QString& urlTemplate, const QString& query);
};
