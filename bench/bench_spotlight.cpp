// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What a keystroke in Spotlight costs over a thousand items of the user's: until the rows stand,
// which the key handler waits for, and until they are painted. The same keystrokes go to a bare
// window with nothing but a line edit, measured in the same run, so that numbers from different
// machines can be compared. The way from the hotkey to a visible window and a text of a megabyte
// stand beside a reference of the same kind.

#include "SpotlightFixture.h"
#include "Stopwatch.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <cstdio>
#include <functional>

namespace
{

constexpr int kItemCount = 1000;
constexpr int kRounds = 25;
constexpr int kForceLight = 1;
constexpr qsizetype kPastedLength = 1024 * 1024;

/// From all items down to one, and on to none.
const QString kTyped = QStringLiteral("item number 733x");

/// A window with a field and nothing behind it.
class BareWindow : public QWidget
{
public:
    BareWindow()
    {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&m_field);
        resize(SpotlightWindow::WINDOW_WIDTH, SpotlightWindow::PILL_HEIGHT);
    }

    QLineEdit* field() { return &m_field; }

private:
    QLineEdit m_field;
};

/// Items of four types, of which every name holds a part of `kTyped`.
QVector<LauncherElement> makeItems()
{
    const QStringList types{"URL", "Snippet", "Application", "Bulk"};
    QVector<LauncherElement> items;
    for (int i = 0; i < kItemCount; ++i)
        items.append(makeItem(QStringLiteral("item number %1").arg(i), types.at(i % types.size())));
    return items;
}

struct TypingTimes
{
    Timing handled; ///< the key event has been worked off: all rows stand
    Timing painted; ///< and the window has been painted
};

TypingTimes timeTyping(QLineEdit* field)
{
    Stopwatch handled;
    Stopwatch painted;
    for (int round = 0; round < kRounds; ++round) {
        field->clear();
        QCoreApplication::processEvents();
        for (const QChar character : kTyped) {
            const auto press = [field, character] { QTest::keyClick(field, character.toLatin1()); };
            painted.measure([&] {
                handled.measure(press);
                QCoreApplication::processEvents();
            });
        }
    }
    return {handled.timing(), painted.timing()};
}

Timing timeShowing(QWidget& window, const std::function<void()>& show)
{
    Stopwatch stopwatch;
    for (int round = 0; round < kRounds; ++round) {
        window.hide();
        QCoreApplication::processEvents();
        stopwatch.measure([&] {
            show();
            QCoreApplication::processEvents();
        });
    }
    return stopwatch.timing();
}

Timing timePasting(QLineEdit* field)
{
    Stopwatch stopwatch;
    for (int round = 0; round < kRounds; ++round) {
        field->clear();
        stopwatch.measure([field] {
            field->paste();
            QCoreApplication::processEvents();
        });
    }
    return stopwatch.timing();
}

} // namespace

int main(int argc, char** argv)
{
    TestHome::install();
    const QApplication application(argc, argv);
    Theme::forceTheme = kForceLight;
    SpotlightFixture spotlight;
    spotlight.setItems(makeItems());
    BareWindow bare;

    const Timing bareShow = timeShowing(bare, [&bare] { bare.show(); });
    report("hotkey to shown window",
           timeShowing(spotlight.window, [&] { spotlight.pressHotkey(); }), bareShow);

    const TypingTimes bareTyping = timeTyping(bare.field());
    const TypingTimes typing = timeTyping(spotlight.field());
    std::printf("%d items, \"%s\" typed %d times\n", kItemCount, qPrintable(kTyped), kRounds);
    report("  keystroke to rebuilt rows", typing.handled, bareTyping.handled);
    report("  keystroke to painted rows", typing.painted, bareTyping.painted);

    QGuiApplication::clipboard()->setText(QString(kPastedLength, QLatin1Char('x')));
    report("a megabyte pasted", timePasting(spotlight.field()), timePasting(bare.field()));
    return 0;
}
