// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Delegates.h"
#include "DrivenClock.h"
#include "ItemReorderOverlay.h"
#include "ItemRoles.h"
#include "LanguageRows.h"
#include "Localization.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QDir>
#include <QListWidget>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTest>

#include <functional>
#include <memory>

namespace
{

/// Paints each row in a colour of its own, and says how it has been asked to.
class ColorDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static QColor restColor(int row) { return QColor(20 + row * 5, 100, 200); }
    static QColor litColor(int row) { return QColor(200, 20 + row * 5, 100); }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        ++paintCount;
        states.append(option.state);
        widget = option.widget;
        optionIndex = option.index;
        shown.append(index.data().toString() + u' ' + index.data(Qt::UserRole + 2).toString());
        font = option.font;
        ratio = painter->device()->devicePixelRatio();
        const bool isLit = option.state & QStyle::State_MouseOver;
        painter->fillRect(option.rect, isLit ? litColor(index.row()) : restColor(index.row()));
    }

    mutable int paintCount = 0;
    mutable QVector<QStyle::State> states;
    mutable const QWidget* widget = nullptr;
    mutable QModelIndex optionIndex;
    mutable QStringList shown;
    mutable QFont font;
    mutable qreal ratio = 0;
};

/// Holds nothing but a number, and answers from that, as the rows of the home page do.
class AnsweringRow : public QListWidgetItem
{
public:
    explicit AnsweringRow(int number) : m_number(number) { setSizeHint(QSize(120, 100)); }

    QVariant data(int role) const override
    {
        if (role == Qt::DisplayRole)
            return QString::number(m_number);
        if (role == ItemRoles::RoleElementId)
            return QStringLiteral("id %1").arg(m_number);
        return QListWidgetItem::data(role);
    }

private:
    int m_number;
};

} // namespace

class ItemReorderOverlayTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void coversTheViewport();
    void slotsAreWhereTheRowsStood();
    void picturesComeFromTheDelegate();
    void picturesAreMadeOnce();
    void picturesAreMadeOfWhatIsInView();
    void picturesOutOfViewAreGivenUp_data();
    void picturesOutOfViewAreGivenUp();
    void picturesOfItemsThatArriveLater_data();
    void picturesOfItemsThatArriveLater();
    void rowsThatChangeMeanwhile_data();
    void rowsThatChangeMeanwhile();
    void showsTheRowsAsTiles();
    void movesTilesAndLeavesTheListAlone();
    void slotsStayWhereTheyAre();
    void scrolledList();
    void currentRowOutOfRange();
    void emptyList();
    void listThatChangesMeanwhile();
    void inEveryLanguage_data();
    void inEveryLanguage();

private:
    ItemReorderOverlay* makeOverlay(int slot = 0)
    {
        auto* overlay = new ItemReorderOverlay(m_list.get(), slot);
        m_clock->pass(2000);
        return overlay;
    }
    static ReorderTile* tile(const QWidget* overlay, int row)
    {
        for (auto* tile : overlay->findChildren<ReorderTile*>()) {
            if (tile->sourceRow() == row)
                return tile;
        }
        return nullptr;
    }
    QRect rowRect(int row) const { return m_list->visualItemRect(m_list->item(row)); }
    /// How far the tiles have moved down to make room for the hint.
    int inset(const QWidget* overlay) const { return tile(overlay, 0)->y() - rowRect(0).y(); }
    QStringList texts() const
    {
        QStringList result;
        for (int row = 0; row < m_list->count(); ++row)
            result.append(m_list->item(row)->text());
        return result;
    }

    std::unique_ptr<DrivenClock> m_clock;
    std::unique_ptr<QListWidget> m_list;
    ColorDelegate* m_delegate = nullptr;
};

void ItemReorderOverlayTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    m_clock = std::make_unique<DrivenClock>();
    m_list = std::make_unique<QListWidget>();
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setViewMode(QListView::IconMode);
    m_list->setMovement(QListView::Static);
    m_list->setGridSize(QSize(120, 100));
    m_list->setResizeMode(QListView::Adjust);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_delegate = new ColorDelegate(m_list.get());
    m_list->setItemDelegate(m_delegate);
    for (int row = 0; row < 8; ++row) {
        auto* item = new QListWidgetItem(QString::number(row), m_list.get());
        item->setSizeHint(QSize(120, 100));
    }
    m_list->resize(370, 250);
    m_list->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    QCOMPARE(rowRect(3).y(), rowRect(0).y() + 100); // three in a row
}

void ItemReorderOverlayTest::cleanup()
{
    m_list.reset();
    m_clock.reset();
}

void ItemReorderOverlayTest::coversTheViewport()
{
    const ItemReorderOverlay* overlay = makeOverlay();
    QCOMPARE(overlay->parentWidget(), m_list->viewport());
    QCOMPARE(overlay->geometry(), m_list->viewport()->rect());
    QCOMPARE(overlay->slotCount(), 8);
    QCOMPARE(overlay->columns(), 3);
    const QImage image = m_list->viewport()->grab().toImage();
    QCOMPARE(image.pixelColor(368, 248), QColor(Theme::colors().surface));
}

void ItemReorderOverlayTest::slotsAreWhereTheRowsStood()
{
    auto* overlay = new ItemReorderOverlay(m_list.get(), 0);
    for (int row = 0; row < 8; ++row)
        QCOMPARE(tile(overlay, row)->geometry(), rowRect(row)); // they start from there
    m_clock->pass(2000);
    const int room = inset(overlay);
    const QFont font = ReorderOverlay::hintFont(overlay->font());
    const QSize pill =
        ReorderOverlay::measureHintPill(font, Tr::t("reorder.hint"), overlay->width() - 16);
    QCOMPARE(room, pill.height() + 2 + 12);
    for (int row = 0; row < 8; ++row)
        QCOMPARE(tile(overlay, row)->geometry(), rowRect(row).translated(0, room));
}

void ItemReorderOverlayTest::picturesComeFromTheDelegate()
{
    QFont font = m_list->font();
    font.setItalic(true);
    m_list->setFont(font);
    m_list->setCurrentRow(2);
    m_list->setFocus();
    m_list->resize(370, 400); // all rows and the hint
    m_list->grab();
    QCoreApplication::processEvents();
    m_delegate->states.clear();
    ItemReorderOverlay* overlay = makeOverlay();
    for (int slot = 0; slot < 8; ++slot) {
        overlay->setCursorSlot(slot, false);
        overlay->grab();
    }
    QCOMPARE(m_delegate->states.size(), 16);
    QCOMPARE(m_delegate->states.count(QStyle::State_Enabled | QStyle::State_MouseOver), 8);
    QCOMPARE(m_delegate->states.count(QStyle::State_Enabled), 8);
    QCOMPARE(m_delegate->widget, m_list.get());
    QCOMPARE(m_delegate->optionIndex.row(), 7);
    QCOMPARE(m_delegate->optionIndex.model(), m_list->model());
    QVERIFY(m_delegate->font.italic());
    QCOMPARE(m_delegate->ratio, m_list->devicePixelRatioF());
}

void ItemReorderOverlayTest::picturesAreMadeOnce()
{
    m_list->resize(370, 400);
    ItemReorderOverlay* overlay = makeOverlay();
    overlay->grab();
    m_delegate->paintCount = 0;
    overlay->liftCursor();
    for (int i = 0; i < 5; ++i) {
        overlay->moveLifted(1);
        m_clock->pass(100);
        overlay->grab();
    }
    overlay->setScroll(20);
    overlay->dropLifted();
    m_clock->pass(1000);
    overlay->grab();
    QCOMPARE(m_delegate->paintCount, 0);
}

void ItemReorderOverlayTest::picturesAreMadeOfWhatIsInView()
{
    for (int row = 8; row < 3000; ++row)
        m_list->addItem(QString::number(row));
    m_list->grab();
    QCoreApplication::processEvents();
    m_delegate->paintCount = 0;
    auto* overlay = new ItemReorderOverlay(m_list.get(), 0);
    QCOMPARE(m_delegate->paintCount, 0);
    m_clock->pass(2000);
    overlay->grab();
    QCOMPARE(m_delegate->paintCount, 9);
    overlay->setCursorSlot(2999, true);
    overlay->grab();
    QVERIFY(m_delegate->paintCount <= 18);
    QCOMPARE(m_delegate->optionIndex.row(), 2999);
}

void ItemReorderOverlayTest::picturesOutOfViewAreGivenUp_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("areGivenUp");
    QTest::newRow("few") << 500 << false;
    QTest::newRow("many") << 501 << true;
}

void ItemReorderOverlayTest::picturesOutOfViewAreGivenUp()
{
    QFETCH(int, count);
    for (int row = 8; row < count; ++row)
        m_list->addItem(QString::number(row));
    m_list->grab();
    QCoreApplication::processEvents();
    ItemReorderOverlay* overlay = makeOverlay();
    const auto paintsAt = [&](int slot) {
        overlay->setCursorSlot(slot, true);
        m_delegate->paintCount = 0;
        overlay->grab();
        return m_delegate->paintCount;
    };
    paintsAt(0);
    QCOMPARE(paintsAt(0), 0);
    QVERIFY(paintsAt(count - 1) >= 8);
    QTEST(paintsAt(0) >= 9, "areGivenUp"); // those of the beginning anew
    QCOMPARE(paintsAt(0), 0);
}

void ItemReorderOverlayTest::picturesOfItemsThatArriveLater_data()
{
    QTest::addColumn<bool>("isInView");
    QTest::newRow("in view") << true;
    QTest::newRow("scrolled away meanwhile") << false;
}

void ItemReorderOverlayTest::picturesOfItemsThatArriveLater()
{
    QFETCH(bool, isInView);
    const QString name = isInView ? QStringLiteral("own.png") : QStringLiteral("other.png");
    const QString path = QDir(TestHome::dataDir()).filePath(name);
    QImage red(64, 64, QImage::Format_RGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(path));
    m_list->clear();
    GridTileDelegate delegate(12);
    m_list->setItemDelegate(&delegate);
    for (int row = 0; row < 30; ++row) {
        auto* item = new QListWidgetItem(QStringLiteral("item"), m_list.get());
        item->setSizeHint(QSize(120, 100));
        item->setData(ItemRoles::RoleIconToken, row == 0 ? path : QString());
    }
    ItemReorderOverlay* overlay = makeOverlay();
    const auto shown = [this] { return m_list->viewport()->grab().toImage(); };
    QVERIFY(Pixels::boxOfColor(shown(), Qt::red).isEmpty()); // asked for by this
    if (!isInView) {
        overlay->setCursorSlot(29, true);
        QVERIFY(tile(overlay, 0)->isHidden());
        QTRY_VERIFY(!tile(overlay, 0)->hasPicture()); // until then it has the one without it
        overlay->setCursorSlot(0, true);
    }
    QTRY_VERIFY(!Pixels::boxOfColor(shown(), Qt::red).isEmpty());
    QVERIFY(tile(overlay, 0)->geometry().contains(Pixels::boxOfColor(shown(), Qt::red)));
    m_list->setItemDelegate(m_delegate);
}

void ItemReorderOverlayTest::rowsThatChangeMeanwhile_data()
{
    QTest::addColumn<std::function<void(QListWidget*)>>("change");
    const auto add = [](const char* name, std::function<void(QListWidget*)> change) {
        QTest::newRow(name) << std::move(change);
    };
    add("cleared", [](QListWidget* list) { list->clear(); });
    add("cleared and filled", [](QListWidget* list) {
        list->clear();
        for (int i = 0; i < 9; ++i)
            list->addItem("other");
    });
    add("one gone", [](QListWidget* list) { delete list->takeItem(0); });
    add("one more", [](QListWidget* list) { list->insertItem(0, "other"); });
    add("sorted", [](QListWidget* list) { list->sortItems(Qt::DescendingOrder); });
}

void ItemReorderOverlayTest::rowsThatChangeMeanwhile()
{
    QFETCH(std::function<void(QListWidget*)>, change);
    m_list->clear();
    for (int row = 0; row < 8; ++row)
        m_list->addItem(new AnsweringRow(row));
    m_list->grab();
    QCoreApplication::processEvents();
    ItemReorderOverlay* overlay = makeOverlay();
    m_delegate->shown.clear();
    change(m_list.get());
    // The lit pictures of all but the first are still to be made.
    for (int row = 1; row < 8; ++row) {
        overlay->setCursorSlot(row, true);
        overlay->grab();
        QVERIFY(m_delegate->shown.contains(QStringLiteral("%1 id %1").arg(row)));
    }
    QVERIFY(!m_delegate->shown.join(u'|').contains("other"));
}

void ItemReorderOverlayTest::showsTheRowsAsTiles()
{
    const ItemReorderOverlay* overlay = makeOverlay(1);
    const QImage image = m_list->viewport()->grab().toImage();
    const QColor ground(Theme::colors().surface);
    const auto dimmed = [&ground](const QColor& color) {
        const auto mix = [](int a, int b) { return qRound(a * 0.75 + b * 0.25); };
        return QColor(mix(color.red(), ground.red()), mix(color.green(), ground.green()),
                      mix(color.blue(), ground.blue()));
    };
    const auto center = [overlay](int row) { return tile(overlay, row)->geometry().center(); };
    QVERIFY(Pixels::isNear(image.pixelColor(center(0)), dimmed(ColorDelegate::restColor(0)), 2));
    QCOMPARE(image.pixelColor(center(1)), ColorDelegate::litColor(1));
    QVERIFY(Pixels::isNear(image.pixelColor(center(2)), dimmed(ColorDelegate::restColor(2)), 2));
    // At 0.97 of 120 a tile leaves 1.8 px on both sides.
    QVERIFY(Pixels::isNear(image.pixelColor(tile(overlay, 0)->geometry().topLeft()), ground, 2));
    QCOMPARE(image.pixelColor(tile(overlay, 1)->geometry().topLeft()), ColorDelegate::litColor(1));
}

void ItemReorderOverlayTest::movesTilesAndLeavesTheListAlone()
{
    m_list->setCurrentRow(4);
    ItemReorderOverlay* overlay = makeOverlay(4);
    overlay->liftCursor();
    overlay->moveLifted(-overlay->columns());
    QCOMPARE(overlay->currentOrder(), QVector<int>({0, 4, 1, 2, 3, 5, 6, 7}));
    sendMouse(overlay, QEvent::MouseButtonPress,
              overlay->mapToGlobal(tile(overlay, 6)->geometry().center()));
    sendMouse(overlay, QEvent::MouseButtonRelease,
              overlay->mapToGlobal(tile(overlay, 6)->geometry().center()));
    sendMouse(overlay, QEvent::MouseButtonPress, overlay->mapToGlobal(QPoint(368, 248)));
    sendMouse(overlay, QEvent::MouseButtonPress, overlay->mapToGlobal(QPoint(5, 2)));
    QCOMPARE(texts(), QStringList({"0", "1", "2", "3", "4", "5", "6", "7"}));
    QCOMPARE(m_list->currentRow(), 4);
}

void ItemReorderOverlayTest::slotsStayWhereTheyAre()
{
    ItemReorderOverlay* overlay = makeOverlay(7);
    const int room = inset(overlay);
    overlay->liftCursor();
    overlay->moveLifted(-7);
    m_clock->pass(2000);
    const QVector<int> order = overlay->currentOrder();
    for (int slot = 0; slot < 8; ++slot)
        QCOMPARE(tile(overlay, order.at(slot))->geometry(), rowRect(slot).translated(0, room));
}

void ItemReorderOverlayTest::scrolledList()
{
    // Rows above the view have slots at negative places, which scrolling reaches.
    m_list->verticalScrollBar()->setValue(m_list->verticalScrollBar()->maximum());
    const int above = rowRect(0).y();
    QVERIFY(above < 0);
    ItemReorderOverlay* overlay = makeOverlay(7);
    const int room = inset(overlay);
    overlay->setScroll(-10000);
    QCOMPARE(tile(overlay, 0)->y(), above + room < 0 ? 0 : above + room);
    overlay->setCursorSlot(7, true);
    overlay->setCursorSlot(0, true);
    QVERIFY(tile(overlay, 0)->y() >= 0);
}

void ItemReorderOverlayTest::currentRowOutOfRange()
{
    QCOMPARE(makeOverlay(100)->cursorSlot(), 7);
    QCOMPARE(makeOverlay(-1)->cursorSlot(), 0);
}

void ItemReorderOverlayTest::emptyList()
{
    m_list->clear();
    ItemReorderOverlay* overlay = makeOverlay();
    QCOMPARE(overlay->slotCount(), 0);
    QCOMPARE(overlay->cursorSlot(), -1);
    QVERIFY(overlay->currentOrder().isEmpty());
    QVERIFY(!overlay->orderChanged());
    overlay->grab();
}

void ItemReorderOverlayTest::listThatChangesMeanwhile()
{
    ItemReorderOverlay* overlay = makeOverlay(2);
    overlay->liftCursor();
    overlay->moveLifted(3);
    m_list->clear();
    m_clock->pass(1000);
    overlay->moveLifted(-5);
    overlay->grab();
    QCOMPARE(overlay->currentOrder(), QVector<int>({2, 0, 1, 3, 4, 5, 6, 7}));
}

void ItemReorderOverlayTest::inEveryLanguage_data()
{
    addLanguageRows();
}

void ItemReorderOverlayTest::inEveryLanguage()
{
    // The hint stands above the tiles and in the view, on as many lines as it needs.
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    const ItemReorderOverlay* overlay = makeOverlay();
    const QFont font = ReorderOverlay::hintFont(overlay->font());
    const QString text = Tr::t("reorder.hint");
    const QSize pill = ReorderOverlay::measureHintPill(font, text, overlay->width() - 16);
    QVERIFY(pill.width() <= overlay->width() - 16);
    QCOMPARE(inset(overlay), pill.height() + 14);
    const QRect shown = Pixels::boxOfColor(m_list->viewport()->grab().toImage(),
                                           QColor(Theme::colors().surfaceContainerHighest));
    QVERIFY(qAbs(shown.width() - pill.width()) <= 1);
    QVERIFY(qAbs(shown.height() - pill.height()) <= 1);
}

QTEST_MAIN(ItemReorderOverlayTest)
#include "tst_itemreorderoverlay.moc"
