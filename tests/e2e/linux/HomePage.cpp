// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace
{

// The grid: three columns in what margins and header leave of the window.
constexpr QPoint kGrid{44, 176};
constexpr QSize kCell{176, 132};
constexpr int kColumns = 3;

/// Where the pointer is out of the way: over a tile it would choose that.
constexpr QPoint kCorner{2, 2};

} // namespace

HomePage::HomePage(Desktop& desktop) : m_desktop(desktop), m_program(desktop)
{
    m_desktop.client().movePointer(kCorner);
}

QPoint HomePage::tile(int index)
{
    return kGrid + QPoint(kCell.width() * (index % kColumns), kCell.height() * (index / kColumns)) +
           QPoint(kCell.width(), kCell.height()) / 2;
}

void HomePage::waitFor(const std::function<bool()>& condition, const char* failure) const
{
    m_program.waitFor(condition, failure);
}

void HomePage::start()
{
    m_program.start();
}

bool HomePage::isUp() const
{
    const XClient::Window window = m_program.homeWindow();
    return window.isViewable && m_desktop.client().focus() == window.id;
}

void HomePage::show()
{
    if (!m_program.homeWindow().isViewable)
        m_program.key(QStringLiteral("ctrl+alt+space"));
    waitForHome();
}

void HomePage::showAgain()
{
    if (m_program.homeWindow().isViewable)
        m_program.key(QStringLiteral("ctrl+alt+space"));
    waitUntilGone();
    show();
}

bool HomePage::hasKeyboard() const
{
    return isUp() || otherWindowWithKeyboard() != XCB_WINDOW_NONE;
}

void HomePage::bringUp()
{
    // Something that was under way may send the window away again.
    constexpr int kPresses = 12;
    for (int i = 0; i < kPresses; ++i) {
        if (!m_program.homeWindow().isViewable)
            m_program.key(QStringLiteral("ctrl+alt+space"));
        if (QTest::qWaitFor([this] { return hasKeyboard(); }, Desktop::PatienceMs / kPresses))
            return;
    }
    waitFor([] { return false; }, "the program doesn't come up");
}

void HomePage::waitUntilGone() const
{
    waitFor([this] { return !m_program.homeWindow().isViewable; }, "the home page doesn't go away");
}

void HomePage::press(std::initializer_list<xcb_keysym_t> keys) const
{
    for (const xcb_keysym_t key : keys)
        chord({key});
}

void HomePage::press(xcb_keysym_t key, int times) const
{
    for (int i = 0; i < times; ++i)
        chord({key});
}

void HomePage::chord(std::initializer_list<xcb_keysym_t> keys) const
{
    m_desktop.client().pressKeys(keys);
    m_program.waitForKeysToBeHandled();
}

void HomePage::type(const QString& text) const
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        if (i > 0)
            press({Return});
        if (!lines.at(i).isEmpty())
            m_program.type(lines.at(i));
    }
    m_program.waitForKeysToBeHandled();
}

void HomePage::click(const QPoint& place, uint8_t button) const
{
    clickOnScreen(m_program.homeWindow().geometry.topLeft() + place, button);
}

void HomePage::clickOnScreen(const QPoint& place, uint8_t button) const
{
    m_desktop.client().click(place, button);
    // The window manager holds a click back for a moment, and it counts for where the pointer is
    // when it is let go.
    m_program.settledScreenshot();
    m_desktop.client().movePointer(kCorner);
    m_program.waitForKeysToBeHandled();
}

void HomePage::takeWithPointer(const QPoint& place) const
{
    movePointer(place);
    m_desktop.client().setButtonDown(true);
    m_program.waitForKeysToBeHandled();
}

void HomePage::movePointer(const QPoint& place) const
{
    m_desktop.client().movePointer(m_program.homeWindow().geometry.topLeft() + place);
    m_program.waitForKeysToBeHandled();
}

void HomePage::dropFromPointer() const
{
    m_desktop.client().setButtonDown(false);
    m_program.waitForKeysToBeHandled();
    m_desktop.client().movePointer(kCorner);
}

void HomePage::chooseRow(int row) const
{
    press(Down, row + 1);
    press({Return});
}

void HomePage::openAddMenu() const
{
    press({Up, Left, Left, Return});
}

void HomePage::openTemplateMenu() const
{
    press({Up, Left, Return});
}

void HomePage::fillEditor(const QString& name, TypeRow type, const QString& value) const
{
    this->type(name);
    press({Return, Return}); // to the type, and its menu
    chooseRow(type);
    const bool canBrowse = type == ApplicationRow || type == FileRow || type == BulkRow;
    press(Down, canBrowse ? 2 : 1);
    this->type(value);
    press({Down, Right, Return}); // past the button for cancelling
}

void HomePage::goToItem(int index) const
{
    press({Down});
    press(Down, index / kColumns);
    press(Right, index % kColumns);
}

xcb_window_t HomePage::otherWindowWithKeyboard() const
{
    const xcb_window_t focus = m_desktop.client().focus();
    const QVector<XClient::Window> windows = m_desktop.client().windowsOf(m_program.processId());
    for (const XClient::Window& window : windows) {
        if (window.id == focus && window.isViewable && window.id != m_program.homeWindow().id)
            return window.id;
    }
    return XCB_WINDOW_NONE;
}

xcb_window_t HomePage::waitForDialog(xcb_window_t notThis) const
{
    xcb_window_t dialog = XCB_WINDOW_NONE;
    waitFor(
        [&] {
            dialog = otherWindowWithKeyboard();
            return dialog != XCB_WINDOW_NONE && dialog != notThis;
        },
        "no dialog comes up");
    return dialog;
}

void HomePage::waitForHome() const
{
    waitFor([this] { return isUp(); }, "the home page doesn't have the keyboard");
}

QJsonObject HomePage::document() const
{
    const QByteArray bytes = m_program.readData(QStringLiteral("data.json"));
    if (bytes.isEmpty())
        return {};
    const QJsonDocument parsed = QJsonDocument::fromJson(bytes);
    if (!parsed.isObject())
        qFatal("the document can't be parsed:\n%s", bytes.constData());
    return parsed.object();
}

QStringList HomePage::sections() const
{
    QStringList names;
    for (const QJsonValue& name : document().value(QStringLiteral("categories")).toArray())
        names.append(name.toString());
    return names;
}

QJsonArray HomePage::items(const QString& section) const
{
    return document().value(QStringLiteral("sectionElements")).toObject().value(section).toArray();
}

QStringList HomePage::itemNames(const QString& section) const
{
    QStringList names;
    for (const QJsonValue& item : items(section))
        names.append(item.toObject().value(QStringLiteral("name")).toString());
    return names;
}

QJsonObject HomePage::item(const QString& section, int index) const
{
    return items(section).at(index).toObject();
}
