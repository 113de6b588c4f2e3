// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// What the home page costs, each time to the painted window: its show, another section, a keystroke
// in its search, its tiles under the mouse and while they are scrolled, its editor, and a rebuild
// of the whole interface; and changes of the settings. A bare window with a line edit and a list of
// as many rows does the same in the same run, so that numbers from different machines can be
// compared.

#include "HomeView.h"
#include "ItemEditorPanel.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MainWindow.h"
#include "SettingsView.h"
#include "Stopwatch.h"
#include "StorageManager.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"
#include "WindowBench.h"

#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QVBoxLayout>

#include <memory>

namespace
{

constexpr int kRounds = 60;
constexpr int kPatienceMs = 5000;
constexpr int kFewItems = 60;
constexpr int kManyItems = 500;
constexpr int kHugeSection = 20000;
constexpr int kScrollStepPx = 48;
constexpr QSize kBareCell(160, 160);

/// From all items down to one, and on to none.
const QString kTyped = QStringLiteral("item number 433x");

QVector<LauncherElement> makeItems(const QString& section, int count)
{
    const QStringList types{"URL", "Snippet", "Application", "Bulk", "File"};
    QVector<LauncherElement> items;
    for (int i = 0; i < count; ++i)
        items.append({QStringLiteral("%1-%2").arg(section).arg(i),
                      QStringLiteral("item number %1 of %2").arg(i).arg(section),
                      types.at(i % types.size()), QStringLiteral("https://a.example/%1").arg(i),
                      QString()});
    return items;
}

/// The window on a document of the given sections, shown.
class Home
{
public:
    explicit Home(const QList<int>& itemCounts)
    {
        LauncherData document;
        for (int i = 0; i < itemCounts.size(); ++i) {
            const QString section = QStringLiteral("Section %1").arg(i);
            document.categories << section;
            document.sectionElements.insert(section, makeItems(section, itemCounts.at(i)));
        }
        document.defaultCategory = document.categories.constFirst();
        StorageManager::saveData(QDir(TestHome::dataDir()).filePath(QStringLiteral("data.json")),
                                 document);
        m_window = std::make_unique<MainWindow>(nullptr);
        show();
    }

    void show()
    {
        m_window->show();
        if (!QTest::qWaitForWindowActive(m_window.get()))
            qFatal("the window does not show");
        QCoreApplication::processEvents();
    }

    MainWindow& window() { return *m_window; }
    HomeView* view() const { return m_window->findChild<HomeView*>(); }
    QListWidget* list() const { return view()->list(); }

private:
    std::unique_ptr<MainWindow> m_window;
};

/// A window with a field, a list and a form, and nothing behind them.
class BareWindow : public QWidget
{
public:
    BareWindow() : m_field(new QLineEdit), m_rows(new QVBoxLayout(this)), m_form(new QWidget(this))
    {
        m_rows->addWidget(m_field);
        build(kFewItems);
        auto* formRows = new QVBoxLayout(m_form);
        formRows->addWidget(new QLineEdit);
        formRows->addWidget(new QPlainTextEdit);
        m_form->setGeometry(60, 60, 460, 400);
        m_form->raise();
        m_form->hide();
        resize(MainWindow::WINDOW_WIDTH_GRID, MainWindow::WINDOW_HEIGHT_GRID);
        show();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the bare window does not show");
    }

    void build(int rowCount)
    {
        delete m_list;
        m_list = new QListWidget;
        m_list->setViewMode(QListView::IconMode);
        m_list->setResizeMode(QListView::Adjust);
        m_list->setMovement(QListView::Static);
        m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        m_list->setGridSize(kBareCell);
        m_list->viewport()->setMouseTracking(true);
        connect(m_list, &QListWidget::itemEntered, m_list,
                [list = m_list](QListWidgetItem* row) { list->setCurrentItem(row); });
        fill(rowCount);
        m_rows->addWidget(m_list);
    }

    void fill(int rowCount)
    {
        m_list->clear();
        for (int i = 0; i < rowCount; ++i) {
            auto* row = new QListWidgetItem(QStringLiteral("item number %1").arg(i), m_list);
            row->setSizeHint(kBareCell);
        }
    }

    QLineEdit* field() const { return m_field; }
    QListWidget* list() const { return m_list; }
    QWidget* form() const { return m_form; }

private:
    QLineEdit* m_field;
    QVBoxLayout* m_rows;
    QListWidget* m_list = nullptr;
    QWidget* m_form;
};

/// Knows what has been painted since its construction, also of what was built meanwhile.
class PaintLog : public QObject
{
public:
    PaintLog() { qApp->installEventFilter(this); }

    bool has(const QObject* widget) const { return m_painted.contains(widget); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_painted.insert(watched);
        return false;
    }

private:
    QSet<const QObject*> m_painted;
};

/// Runs `step` again and again, each time to the painted widget. `undo` is not measured.
template <typename Step, typename Undo>
Timing timeSteps(const std::function<QWidget*()>& painted, const Step& step, const Undo& undo)
{
    Stopwatch stopwatch;
    for (int round = 1; round <= kRounds; ++round) {
        QElapsedTimer patience;
        patience.start();
        stopwatch.measure([&] {
            const PaintLog log;
            step(round);
            do {
                QCoreApplication::processEvents();
                if (patience.hasExpired(kPatienceMs))
                    qFatal("step %d has not been painted", round);
            } while (!log.has(painted()));
        });
        undo();
        QCoreApplication::processEvents();
    }
    return stopwatch.timing();
}

template <typename Step>
Timing timeSteps(const std::function<QWidget*()>& painted, const Step& step)
{
    return timeSteps(painted, step, [] {});
}

Timing timeShow(QWidget& window, const std::function<QWidget*()>& painted)
{
    window.hide();
    return timeSteps(
        painted, [&window](int) { window.show(); }, [&window] { window.hide(); });
}

Timing timeTyping(QLineEdit* field, const std::function<QWidget*()>& painted)
{
    field->setFocus();
    qsizetype typed = 0;
    return timeSteps(
        painted,
        [&](int) {
            QTest::keyClick(field, kTyped.at(typed).toLatin1());
            ++typed;
        },
        [&] {
            if (typed < kTyped.size())
                return;
            field->clear();
            typed = 0;
        });
}

Timing timeHover(QListWidget* list)
{
    const QSize cell = list->gridSize();
    return timeSteps([list] { return list->viewport(); },
                     [list, cell](int round) {
                         const QPoint middle(cell.width() * (round % 2) + cell.width() / 2,
                                             cell.height() / 2);
                         sendMouse(list->viewport(), QEvent::MouseMove,
                                   list->viewport()->mapToGlobal(middle), Qt::NoButton);
                     });
}

Timing timeScroll(QListWidget* list)
{
    QScrollBar* bar = list->verticalScrollBar();
    const Timing timing = timeSteps([list] { return list->viewport(); },
                                    [bar](int round) { bar->setValue(kScrollStepPx * round); });
    bar->setValue(0);
    return timing;
}

/// The tiles, or what stands in their place when there are none.
std::function<QWidget*()> tilesOf(const Home& home)
{
    return [&home]() -> QWidget* {
        QListWidget* list = home.list();
        return list->count() > 0 ? list->viewport() : list->parentWidget();
    };
}

std::function<QWidget*()> rowsOf(const BareWindow& bare)
{
    return [&bare] { return bare.list()->viewport(); };
}

void reportFewItems(BareWindow& bare)
{
    std::printf("%d items\n", kFewItems);
    Home home({kFewItems, kFewItems});
    report("  shown", timeShow(home.window(), tilesOf(home)), timeShow(bare, rowsOf(bare)));
    home.show();
    bare.show();

    const QString id = QStringLiteral("Section 0-7");
    const Timing bareForm =
        timeSteps([&bare] { return bare.form(); }, [&bare](int) { bare.form()->show(); },
                  [&bare] { bare.form()->hide(); });
    report("  editor opened",
           timeSteps([&home] { return home.view()->itemEditorPanel(); },
                     [&](int) { home.window().openItemEditor(id); },
                     [&home] { home.window().closeItemEditor(-1); }),
           bareForm);

    // Hidden, since a window in sight is rebuilt behind a change of its opacity.
    home.window().hide();
    bare.hide();
    report("  interface rebuilt and shown",
           timeSteps(
               tilesOf(home),
               [&home](int) {
                   home.window().rebuildUIPreservingFocus();
                   QCoreApplication::processEvents();
                   home.window().show();
               },
               [&home] { home.window().hide(); }),
           timeSteps(
               rowsOf(bare),
               [&bare](int) {
                   bare.build(kFewItems);
                   bare.show();
               },
               [&bare] { bare.hide(); }));
    bare.show();
}

/// The end of the dip for a change of page or of the look.
void waitUntilOpaque(const MainWindow& window)
{
    if (!QTest::qWaitFor([&window] { return window.windowOpacity() >= 1.0; }))
        qFatal("the window stays half transparent");
}

/// A change that builds the window anew in sight, as the user of its settings page sees it: the dip
/// of the window, whose first half is 110 ms long, is in it.
void reportSettings(BareWindow& bare)
{
    std::printf("settings, %d items behind them\n", kFewItems);
    Home home({kFewItems});
    MainWindow& window = home.window();
    window.goToSettings();
    if (!QTest::qWaitFor([&window] { return window.settingsView()->isVisible(); }))
        qFatal("the settings do not show");
    waitUntilOpaque(window);
    bare.build(kFewItems);
    bare.show();
    const Timing bareTiming = timeSteps(rowsOf(bare), [&bare](int) { bare.fill(kFewItems); });
    QPointer<SettingsView> old;
    const auto newPage = [&]() -> QWidget* { return old ? nullptr : window.settingsView(); };
    const int mode = Theme::forceTheme;
    const int columns = Theme::gridColumns;
    const Timing timing = timeSteps(
        newPage,
        [&](int round) {
            old = window.settingsView();
            Theme::forceTheme = 1 + round % 2;
            Theme::gridColumns = 2 + round % 3;
            Tr::currentLang = Tr::all().at(round % 4);
            window.rebuildUIPreservingFocus();
        },
        [&window] { waitUntilOpaque(window); });
    report("  theme and language changed", timing, bareTiming);
    Theme::forceTheme = mode;
    Theme::gridColumns = columns;
    Tr::currentLang = Lang::En;
}

void reportManyItems(BareWindow& bare)
{
    std::printf("two sections of %d items each\n", kManyItems);
    Home home({kManyItems, kManyItems});
    bare.build(kManyItems);
    QCoreApplication::processEvents();
    home.view()->categoryStrip()->setFocus();
    report("  another section",
           timeSteps(tilesOf(home),
                     [&home](int round) {
                         QTest::keyClick(home.view()->categoryStrip(),
                                         round % 2 == 1 ? Qt::Key_Right : Qt::Key_Left);
                     }),
           timeSteps(rowsOf(bare), [&bare](int) { bare.fill(kManyItems); }));
    report("  from tile to tile", timeHover(home.list()), timeHover(bare.list()));
    report("  a scroll step of 48 px", timeScroll(home.list()), timeScroll(bare.list()));
    report("  a keystroke in the search", timeTyping(home.view()->searchInput(), tilesOf(home)),
           timeTyping(bare.field(), [&bare] { return bare.field(); }));
}

void reportHugeDocument(BareWindow& bare)
{
    std::printf("five sections of %d items each\n", kHugeSection);
    Home home(QList<int>(5, kHugeSection));
    bare.show();
    home.view()->categoryStrip()->setFocus();
    report("  another section",
           timeSteps(tilesOf(home),
                     [&home](int round) {
                         QTest::keyClick(home.view()->categoryStrip(),
                                         round % 2 == 1 ? Qt::Key_Right : Qt::Key_Left);
                     }),
           timeSteps(rowsOf(bare), [&bare](int) { bare.fill(kHugeSection); }));
    report("  a keystroke in the search", timeTyping(home.view()->searchInput(), tilesOf(home)),
           timeTyping(bare.field(), [&bare] { return bare.field(); }));
}

} // namespace

int main(int argc, char** argv)
{
    const WindowBench bench(argc, argv);
    BareWindow bare;
    reportFewItems(bare);
    reportSettings(bare);
    reportManyItems(bare);
    reportHugeDocument(bare);
    return 0;
}
