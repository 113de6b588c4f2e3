// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PreviewTooltip.h"

#include "GlyphWidgets.h"
#include "IconHelper.h"
#include "Localization.h"
#include "RowPainting.h"
#include "Theme.h"
#include "Types.h"

#include <QEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace
{

constexpr int kIconSide = 16;
constexpr int kGlyphPx = 13;
constexpr int kBodyWidth = PreviewTooltip::MaxWidth - 2 * Theme::Sp_Md;
constexpr int kTitleWidth = kBodyWidth - kIconSide - Theme::Sp_Sm;
constexpr int kAnchorGap = 8;
constexpr QLatin1String kCut("...");

/// Calls `visit` with each line that is not blank, trimmed. Nothing is copied: a text may consist
/// of millions of lines.
template <typename Visitor>
void forEachLine(QStringView text, Visitor visit)
{
    const char16_t* at = text.utf16();
    const char16_t* const end = at + text.size();
    while (at != end) {
        if (*at == u'\n') {
            ++at;
            continue;
        }
        const char16_t* const feed = std::find(at, end, u'\n');
        const QStringView line = QStringView(at, feed).trimmed();
        if (!line.isEmpty())
            visit(line);
        at = feed;
    }
}

/// The first lines of a text, and how much there is of it.
struct Lines
{
    QStringList first; ///< at most `PreviewTooltip::MaxLines`
    qsizetype count = 0;
    qsizetype joinedSize = 0; ///< of all of them, with a line feed between two
};

Lines linesOf(const QString& text)
{
    Lines lines;
    forEachLine(text, [&lines](QStringView line) {
        if (lines.count < PreviewTooltip::MaxLines)
            lines.first.append(line.toString());
        lines.joinedSize += line.size() + (lines.count > 0 ? 1 : 0);
        ++lines.count;
    });
    return lines;
}

QString moreLines(qsizetype count)
{
    return Tr::t(QStringLiteral("tooltip.more_lines")).arg(count);
}

int wrappedHeight(const QString& text, const QFontMetrics& fm, int width)
{
    return fm.boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, text).height();
}

/// The beginning of the joined lines, which is all of them or more than `MaxLines` wrapped lines
/// hold: to wrap a megabyte would take seconds.
QString joinedStart(const Lines& lines, int width)
{
    QString start;
    for (const QString& line : lines.first) {
        if (!start.isEmpty())
            start += u'\n';
        const QString part = RowPainting::visiblePart(line, PreviewTooltip::MaxLines * width);
        start += part;
        if (part.size() < line.size())
            break;
    }
    return start;
}

/// A character that was cut in two would show as a box.
QString withoutHalfCharacter(QString text)
{
    if (!text.isEmpty() && text.back().isHighSurrogate())
        text.chop(1);
    return text;
}

QLabel* makeLabel(const QString& style)
{
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(style);
    return label;
}

} // namespace

PreviewTooltip::PreviewTooltip(QWidget* parent)
    : FloatingCard(parent, Qt::ToolTip, QStringLiteral("previewTooltipCard")), m_card(card())
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_card->setMaximumWidth(MaxWidth);
    auto* box = new QVBoxLayout(m_card);
    box->setContentsMargins(Theme::Sp_Md, Theme::Sp_Sm, Theme::Sp_Md, Theme::Sp_Sm);
    box->setSpacing(Theme::Sp_Xs);
    box->addLayout(buildHead());
    m_value =
        makeLabel(Theme::textOnCardStyle(Theme::colors().onSurfaceVariant, FontTokens::SizeSm));
    box->addWidget(m_value);
}

QBoxLayout* PreviewTooltip::buildHead()
{
    m_icon = new GlyphLabel;
    m_icon->setFixedSize(kIconSide, kIconSide);
    m_title = makeLabel(
        Theme::textOnCardStyle(Theme::colors().onSurface, FontTokens::SizeMd, Theme::Weight::Bold));
    auto* head = new QHBoxLayout;
    head->setSpacing(Theme::Sp_Sm);
    head->addWidget(m_icon);
    head->addWidget(m_title, 1);
    return head;
}

void PreviewTooltip::attachTo(QWidget* widget)
{
    if (widget)
        widget->installEventFilter(this);
}

void PreviewTooltip::setDelayTimer(QTimer* timer)
{
    m_delay = timer;
}

void PreviewTooltip::showFor(const QString& name, const QString& type, const QString& value,
                             const QRect& anchorRect)
{
    const QString body = prepareBody(type, value);
    if (body.isEmpty()) {
        hide();
        return;
    }
    m_icon->setGlyph(IconHelper::codepointForType(type), kGlyphPx,
                     Theme::colors().onSurfaceVariant);
    m_title->ensurePolished();
    const QString title = QString(name).replace(u'\n', u' ');
    m_title->setText(RowPainting::elidedLine(m_title->fontMetrics(), title, kTitleWidth));
    m_value->setText(body);
    fitToContent();
    placeAt(QPoint(anchorRect.right() + kAnchorGap, anchorRect.top() - kAnchorGap - height()),
            anchorRect.center());
    show();
    raise();
}

QString PreviewTooltip::prepareBody(const QString& type, const QString& value)
{
    const bool isSnippet = type == ItemType::Snippet;
    m_value->setWordWrap(isSnippet);
    m_value->setMinimumWidth(isSnippet ? kBodyWidth : 0);
    m_value->setMaximumWidth(isSnippet ? kBodyWidth : QWIDGETSIZE_MAX);
    m_value->ensurePolished(); // before that it has not the font of its style sheet
    const QFontMetrics metrics = m_value->fontMetrics();
    if (isSnippet)
        return snippetBody(value, metrics, kBodyWidth);
    if (type == ItemType::Bulk)
        return bulkBody(value, metrics, kBodyWidth);
    return singleLineBody(value, metrics, kBodyWidth);
}

QStringList PreviewTooltip::meaningfulLines(const QString& text)
{
    QStringList lines;
    forEachLine(text, [&lines](QStringView line) { lines.append(line.toString()); });
    return lines;
}

QString PreviewTooltip::singleLineBody(const QString& value, const QFontMetrics& fm, int availW)
{
    const Lines lines = linesOf(value);
    if (lines.count == 0)
        return {};
    const QString suffix =
        lines.count > 1 ? QStringLiteral("   ") + moreLines(lines.count - 1) : QString();
    const int room = std::max(0, availW - fm.horizontalAdvance(suffix));
    return RowPainting::elidedLine(fm, lines.first.first(), room) + suffix;
}

QString PreviewTooltip::bulkBody(const QString& value, const QFontMetrics& fm, int availW)
{
    const Lines lines = linesOf(value);
    QStringList body;
    for (const QString& line : lines.first)
        body.append(RowPainting::elidedLine(fm, line, availW));
    if (lines.count > body.size())
        body.append(moreLines(lines.count - body.size()));
    return body.join(u'\n');
}

QString PreviewTooltip::snippetBody(const QString& value, const QFontMetrics& fm, int availW)
{
    const Lines lines = linesOf(value);
    QString start = joinedStart(lines, availW);
    const int limit = fm.lineSpacing() * MaxLines;
    if (start.size() == lines.joinedSize && wrappedHeight(start, fm, availW) <= limit)
        return start;
    // What is not in `start` doesn't fit, so the search may take the steps it would take with the
    // whole text, and ends where it would.
    qsizetype low = 0;
    qsizetype high = lines.joinedSize;
    while (low < high) {
        const qsizetype middle = (low + high + 1) / 2;
        const bool fits = middle <= start.size() &&
                          wrappedHeight(start.first(middle) + kCut, fm, availW) <= limit;
        if (fits)
            low = middle;
        else
            high = middle - 1;
    }
    return withoutHalfCharacter(start.first(low)).trimmed() + kCut;
}

bool PreviewTooltip::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Wheel:
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
    case QEvent::FocusOut:
    case QEvent::Leave:
        if (m_delay)
            m_delay->stop();
        hide();
        break;
    default:
        break;
    }
    return FloatingCard::eventFilter(watched, event);
}
