// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IniText.h"

#include <QByteArrayList>
#include <QByteArrayView>
#include <QLatin1String>
#include <QString>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <algorithm>
#include <optional>
#include <utility>

namespace
{

constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
constexpr QLatin1String kGeneral("General"); // of the keys that are in no section
constexpr QLatin1String kEmptyList("@Invalid()");
constexpr QLatin1String kMarkedText("@String("); // one with a null character in it
constexpr int kHexadecimal = 16;
constexpr int kOctal = 8;

// What stands behind a backslash, and what it means.
constexpr std::pair<char, char> kEscapes[] = {
    {'a', '\a'}, {'b', '\b'}, {'f', '\f'}, {'n', '\n'},  {'r', '\r'},  {'t', '\t'},
    {'v', '\v'}, {'"', '"'},  {'?', '?'},  {'\'', '\''}, {'\\', '\\'},
};

/// -1 if it is none.
int digitOf(char c, int base)
{
    int digit = -1;
    if (c >= '0' && c <= '9')
        digit = c - '0';
    else if (c >= 'a' && c <= 'f')
        digit = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F')
        digit = c - 'A' + 10;
    return digit < base ? digit : -1;
}

/// Reads the right side of a line: texts between commas, with quotes and escapes.
class ValueReader
{
public:
    explicit ValueReader(QByteArrayView text) : m_text(text) {}

    QStringList read()
    {
        skipBlanks();
        while (m_at < m_text.size())
            readNext();
        endText();
        return m_texts;
    }

private:
    void readNext()
    {
        const char c = m_text[m_at];
        if (c == '\\')
            readEscape();
        else if (c == '"')
            readQuote();
        else if (c == ',' && !m_isInQuotes)
            readComma();
        else
            readPlain();
    }

    void readQuote()
    {
        ++m_at;
        m_isQuoted = true;
        m_isInQuotes = !m_isInQuotes;
        if (!m_isInQuotes)
            skipBlanks();
    }

    void readComma()
    {
        endText();
        ++m_at;
        skipBlanks();
    }

    void readPlain()
    {
        const qsizetype begin = m_at++;
        while (m_at < m_text.size() && !QByteArrayView("\\\",").contains(m_text[m_at]))
            ++m_at;
        m_current += m_decoder(m_text.sliced(begin, m_at - begin));
    }

    void readEscape()
    {
        if (++m_at == m_text.size())
            return;
        const char c = m_text[m_at++];
        const auto* const known =
            std::find_if(std::begin(kEscapes), std::end(kEscapes),
                         [c](const auto& escape) { return escape.first == c; });
        if (known != std::end(kEscapes)) {
            m_current += QLatin1Char(known->second);
        } else if (c == 'x') {
            readNumber(kHexadecimal);
        } else if (digitOf(c, kOctal) >= 0) {
            --m_at;
            readNumber(kOctal);
        }
        m_kept = m_current.size();
    }

    void readNumber(int base)
    {
        const qsizetype begin = m_at;
        ushort number = 0;
        while (m_at < m_text.size() && digitOf(m_text[m_at], base) >= 0)
            number = static_cast<ushort>(number * base + digitOf(m_text[m_at++], base));
        if (m_at > begin)
            m_current += QChar(number);
    }

    void endText()
    {
        // Blanks at the end count if they were escaped or quoted.
        qsizetype end = m_current.size();
        while (!m_isQuoted && end > m_kept &&
               (m_current[end - 1] == u' ' || m_current[end - 1] == u'\t'))
            --end;
        m_texts.append(m_current.left(end));
        m_current.clear();
        m_kept = 0;
        m_isQuoted = false;
    }

    void skipBlanks()
    {
        while (m_at < m_text.size() && (m_text[m_at] == ' ' || m_text[m_at] == '\t'))
            ++m_at;
    }

    QByteArrayView m_text;
    qsizetype m_at = 0;
    QString m_current;
    qsizetype m_kept = 0; ///< length of what ends with an escape
    bool m_isInQuotes = false;
    bool m_isQuoted = false;
    QStringDecoder m_decoder{QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                       QStringDecoder::Flag::ConvertInitialBom};
    QStringList m_texts;
};

/// Takes the number of a character off, which stands behind a percent sign: two digits, or a "U"
/// and four. Nothing if there is none.
std::optional<QChar> takeCharacter(QByteArrayView& text)
{
    const bool isWide = text.size() > 1 && text[1] == 'U';
    const qsizetype begin = isWide ? 2 : 1;
    const qsizetype end = begin + (isWide ? 4 : 2);
    if (!text.startsWith('%') || text.size() < end)
        return std::nullopt;
    int number = 0;
    for (const char c : text.first(end).sliced(begin)) {
        if (digitOf(c, kHexadecimal) < 0)
            return std::nullopt;
        number = number * kHexadecimal + digitOf(c, kHexadecimal);
    }
    text = text.sliced(end);
    return QChar(number);
}

/// Reads a section's name or the left side of a line.
QString keyOf(QByteArrayView text)
{
    QString key;
    while (!text.isEmpty()) {
        if (const std::optional<QChar> character = takeCharacter(text)) {
            key += *character;
            continue;
        }
        key += text.front() == '\\' ? QLatin1Char('/') : QLatin1Char(text.front());
        text = text.sliced(1);
    }
    return key;
}

QByteArray escapedKey(QStringView key)
{
    QByteArray text;
    for (const QChar character : key) {
        const ushort code = character.unicode();
        const bool isPlain = code < 0x80 && (character.isLetterOrNumber() || code == '_' ||
                                             code == '-' || code == '.');
        if (isPlain)
            text += static_cast<char>(code);
        else if (code == '/')
            text += '\\';
        else if (code <= 0xFF)
            text += '%' + QByteArray::number(code, kHexadecimal).rightJustified(2, '0').toUpper();
        else
            text += "%U" + QByteArray::number(code, kHexadecimal).rightJustified(4, '0').toUpper();
    }
    return text;
}

/// One text, whose leading "@" is taken off if it was doubled. Nothing if it stands for an object.
std::optional<QString> plainText(const QString& text)
{
    if (!text.startsWith(u'@'))
        return text;
    if (text.startsWith(QLatin1String("@@")))
        return text.mid(1);
    if (!text.endsWith(u')') || !text.contains(u'('))
        return text;
    if (text.startsWith(kMarkedText))
        return text.mid(kMarkedText.size()).chopped(1);
    return std::nullopt;
}

QVariant valueOf(QByteArrayView text)
{
    const QStringList texts = ValueReader(text).read();
    if (texts == QStringList(kEmptyList))
        return {};
    QStringList plain;
    for (const QString& each : texts) {
        const std::optional<QString> found = plainText(each);
        if (!found)
            return QVariant::fromValue(IniText::RawValue{text.trimmed().toByteArray()});
        plain.append(*found);
    }
    return plain.size() == 1 ? QVariant(plain.first()) : QVariant(plain);
}

/// Without the blanks around it. A quote that is never closed ends with its line, so that it can't
/// take in what is written behind it.
QByteArrayView takeLine(QByteArrayView& rest)
{
    const auto* const end =
        std::find_if(rest.begin(), rest.end(), [](char c) { return c == '\n' || c == '\r'; });
    const qsizetype size = end - rest.begin();
    const QByteArrayView line = rest.first(size).trimmed();
    rest = rest.sliced(std::min(size + 1, rest.size()));
    return line;
}

/// Up to a comment behind the value.
QByteArrayView withoutComment(QByteArrayView line)
{
    bool isInQuotes = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == '\\')
            ++i;
        else if (line[i] == '"')
            isInQuotes = !isInQuotes;
        else if (line[i] == ';' && !isInQuotes)
            return line.first(i);
    }
    return line;
}

/// With a slash at the end, unless the keys in it are in no section.
QString sectionOf(QByteArrayView line)
{
    const qsizetype end = line.indexOf(']');
    const QByteArrayView name = line.sliced(1, (end < 0 ? line.size() : end) - 1).trimmed();
    if (name.compare("general", Qt::CaseInsensitive) == 0)
        return {};
    // The real section of that name is marked.
    const bool isMarked = name.compare("%general", Qt::CaseInsensitive) == 0;
    return keyOf(name.sliced(isMarked ? 1 : 0)) + u'/';
}

QByteArray escapedText(const QString& text)
{
    QByteArray escaped;
    bool needsQuotes = text.startsWith(u' ') || text.endsWith(u' ');
    bool endsInNumber = false;
    QStringEncoder encoder(QStringEncoder::Utf8);
    for (const QChar character : text) {
        const ushort code = character.unicode();
        const auto* const known =
            std::find_if(std::begin(kEscapes), std::end(kEscapes), [code](const auto& escape) {
                return escape.second == code && code != '?' && code != '\'';
            });
        const bool isDigit = code < 0x80 && digitOf(static_cast<char>(code), kHexadecimal) >= 0;
        needsQuotes = needsQuotes || code == ';' || code == ',' || code == '=';
        if (known != std::end(kEscapes)) {
            escaped.append('\\').append(known->first);
            endsInNumber = false;
        } else if (code == 0) {
            escaped += "\\0";
            endsInNumber = true;
        } else if (code < 0x20 || (endsInNumber && isDigit)) {
            escaped += "\\x" + QByteArray::number(code, kHexadecimal);
            endsInNumber = true;
        } else {
            escaped += QByteArray(encoder(QStringView(&character, 1)));
            endsInNumber = false;
        }
    }
    return needsQuotes ? '"' + escaped + '"' : escaped;
}

/// Told apart from what Qt gives a meaning of its own.
QString markedText(const QString& text)
{
    if (text.contains(QChar(0)))
        return kMarkedText + text + u')';
    return text.startsWith(u'@') ? u'@' + text : text;
}

QByteArray textOf(const QVariant& value)
{
    if (value.metaType() == QMetaType::fromType<IniText::RawValue>())
        return value.value<IniText::RawValue>().text;
    const bool isList = value.metaType() == QMetaType::fromType<QStringList>();
    const QStringList texts = isList ? value.toStringList() : QStringList(value.toString());
    if (!value.isValid() || texts.isEmpty())
        return QByteArray(kEmptyList.data(), kEmptyList.size());
    QByteArrayList escaped;
    for (const QString& text : texts)
        escaped.append(escapedText(markedText(text)));
    return escaped.join(", ");
}

} // namespace

QSettings::SettingsMap IniText::parse(const QByteArray& text)
{
    QSettings::SettingsMap values;
    QString section;
    QByteArrayView rest(text);
    if (rest.startsWith(kByteOrderMark))
        rest = rest.sliced(kByteOrderMark.size());
    while (!rest.isEmpty()) {
        const QByteArrayView line = takeLine(rest);
        if (line.startsWith('[')) {
            section = sectionOf(line);
            continue;
        }
        const QByteArrayView content = withoutComment(line);
        const qsizetype equals = std::max<qsizetype>(content.indexOf('='), 0);
        const QString key = section + keyOf(content.first(equals).trimmed());
        // What has no name could be neither asked for nor written.
        if (!key.isEmpty() && !key.startsWith(u'/') && !key.endsWith(u'/'))
            values.insert(key, valueOf(content.sliced(equals + 1)));
    }
    return values;
}

QByteArray IniText::format(const QSettings::SettingsMap& values)
{
    // Those that are in no section stand first, or they would be taken for part of one.
    QByteArray text;
    QByteArray sections;
    QString section;
    for (auto it = values.begin(); it != values.end(); ++it) {
        const qsizetype slash = it.key().indexOf(u'/');
        const QByteArray line =
            escapedKey(QStringView(it.key()).mid(slash + 1)) + '=' + textOf(it.value()) + '\n';
        if (slash < 0) {
            text += (text.isEmpty() ? "[General]\n" : "") + line;
            continue;
        }
        const QString name = it.key().left(slash);
        if (sections.isEmpty() || name != section) {
            const bool isGeneral = name.compare(kGeneral, Qt::CaseInsensitive) == 0;
            sections += sections.isEmpty() ? "[" : "\n[";
            sections += (isGeneral ? "%" : "") + escapedKey(name) + "]\n";
            section = name;
        }
        sections += line;
    }
    return text.isEmpty() || sections.isEmpty() ? text + sections : text + '\n' + sections;
}
