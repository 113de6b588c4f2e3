// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "XClient.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>
#include <xcb/shm.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

namespace
{

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

} // namespace

XClient::XClient(const QString& display)
    : m_connection(xcb_connect(display.toLatin1().constData(), nullptr)), m_screen(nullptr)
{
    if (xcb_connection_has_error(m_connection))
        qFatal("cannot connect to display %s", qPrintable(display));
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    // Answers to pings are sent to those who watch the root window.
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, m_screen->root, XCB_CW_EVENT_MASK, &mask);
}

XClient::~XClient()
{
    if (m_picture)
        ::munmap(m_picture, pictureBytes());
    xcb_disconnect(m_connection);
}

xcb_atom_t XClient::atom(const char* name) const
{
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.cend())
        return *known;
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    if (!reply)
        qFatal("no atom %s", name);
    return *m_atoms.insert(name, reply->atom);
}

xcb_get_property_cookie_t XClient::askForPid(xcb_window_t window) const
{
    return xcb_get_property(m_connection, 0, window, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 0, 1);
}

/// 0 if the window doesn't tell, or is gone.
qint64 XClient::pidIn(xcb_get_property_cookie_t cookie) const
{
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != int(sizeof(uint32_t)))
        return 0;
    return *static_cast<uint32_t*>(xcb_get_property_value(reply.get()));
}

void XClient::collect(xcb_window_t window, QVector<Window>& found, qint64 pid) const
{
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    if (!tree)
        return;
    const std::span<const xcb_window_t> children(
        xcb_query_tree_children(tree.get()),
        static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    // All are asked before the first answer is waited for: this is done many times a second.
    std::vector<xcb_get_property_cookie_t> cookies;
    for (const xcb_window_t child : children)
        cookies.push_back(askForPid(child));
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (pidIn(cookies[i]) == pid)
            append(children[i], found);
        else
            collect(children[i], found, pid);
    }
}

void XClient::append(xcb_window_t window, QVector<Window>& found) const
{
    const auto geometryCookie = xcb_get_geometry(m_connection, window);
    const auto attributesCookie = xcb_get_window_attributes(m_connection, window);
    const auto originCookie = xcb_translate_coordinates(m_connection, window, m_screen->root, 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(m_connection, geometryCookie, nullptr));
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(m_connection, attributesCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(m_connection, originCookie, nullptr));
    if (!geometry || !attributes || !origin)
        return; // gone in the meantime
    found.append({window, QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height),
                  attributes->map_state == XCB_MAP_STATE_VIEWABLE});
}

QVector<XClient::Window> XClient::windowsOf(qint64 pid) const
{
    QVector<Window> found;
    collect(m_screen->root, found, pid);
    return found;
}

xcb_window_t XClient::focus() const
{
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

QString XClient::titleOf(xcb_window_t window) const
{
    constexpr uint32_t kMaxLength = 256; // of four bytes each
    const auto cookie = xcb_get_property(m_connection, 0, window, atom("_NET_WM_NAME"),
                                         atom("UTF8_STRING"), 0, kMaxLength);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply)
        return {};
    return QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()));
}

xcb_window_t XClient::makeWindow(const QRect& geometry)
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    const uint32_t values[] = {m_screen->white_pixel, XCB_EVENT_MASK_KEY_PRESS};
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_screen->root,
                      static_cast<int16_t>(geometry.x()), static_cast<int16_t>(geometry.y()),
                      static_cast<uint16_t>(geometry.width()),
                      static_cast<uint16_t>(geometry.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      m_screen->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    // The place is the user's wish, or the window manager chooses another.
    constexpr uint32_t kUserPosition = 1;
    const std::array<uint32_t, 18> sizeHints{kUserPosition};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, sizeHints.size(), sizeHints.data());
    xcb_map_window(m_connection, window);
    xcb_flush(m_connection);
    return window;
}

void XClient::setFocus(xcb_window_t window)
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

void XClient::activate(xcb_window_t window)
{
    constexpr uint32_t kSourcePager = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = kSourcePager;
    xcb_send_event(m_connection, 0, m_screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection);
}

void XClient::readEvents()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)})
        readEvent(*event);
}

void XClient::readEvent(const xcb_generic_event_t& event)
{
    const int type = event.response_type & ~0x80; // the rest tells whether another client sent it
    if (type == XCB_KEY_PRESS)
        ++m_keyPressCount;
    if (type != XCB_CLIENT_MESSAGE)
        return;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (message.window == m_screen->root && message.type == atom("WM_PROTOCOLS") &&
        message.data.data32[0] == atom("_NET_WM_PING"))
        m_answeredNumber = message.data.data32[1];
}

int XClient::takeKeyPressCount()
{
    focus(); // a round trip: whatever was on its way is here afterwards
    readEvents();
    return std::exchange(m_keyPressCount, 0);
}

void XClient::askToClose(xcb_window_t window)
{
    sendProtocol(window, atom("WM_DELETE_WINDOW"), XCB_CURRENT_TIME);
}

void XClient::ping(xcb_window_t window)
{
    sendProtocol(window, atom("_NET_WM_PING"), ++m_pingNumber); // comes back as it is
}

void XClient::sendProtocol(xcb_window_t window, xcb_atom_t protocol, uint32_t time)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = protocol;
    event.data.data32[1] = time;
    event.data.data32[2] = window;
    xcb_send_event(m_connection, 0, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection);
}

bool XClient::hasAnswered()
{
    readEvents();
    return m_answeredNumber == m_pingNumber;
}

QVector<xcb_keycode_t> XClient::keycodesOf(xcb_keysym_t keysym) const
{
    QVector<xcb_keycode_t> result;
    xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(m_connection);
    const Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    xcb_key_symbols_free(symbols);
    for (const xcb_keycode_t* code = codes.get(); code && *code != XCB_NO_SYMBOL; ++code)
        result.append(*code);
    return result;
}

bool XClient::grabKeycode(xcb_keycode_t code, quint16 modifiers)
{
    const auto cookie = xcb_grab_key_checked(m_connection, 0, m_screen->root, modifiers, code,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_generic_error_t> error(xcb_request_check(m_connection, cookie));
    return !error;
}

bool XClient::grabKey(xcb_keysym_t keysym, quint16 modifiers)
{
    bool isGranted = false;
    for (const xcb_keycode_t code : keycodesOf(keysym))
        isGranted = grabKeycode(code, modifiers);
    return isGranted;
}

bool XClient::isGrabbedByOther(xcb_keycode_t code, quint16 modifiers)
{
    if (!grabKeycode(code, modifiers))
        return true;
    xcb_ungrab_key(m_connection, code, m_screen->root, modifiers);
    xcb_flush(m_connection);
    return false;
}

void XClient::ungrabKey(xcb_keysym_t keysym, quint16 modifiers)
{
    for (const xcb_keycode_t code : keycodesOf(keysym))
        xcb_ungrab_key(m_connection, code, m_screen->root, modifiers);
    xcb_flush(m_connection);
}

bool XClient::hasWindowManager() const
{
    const auto cookie = xcb_get_property(m_connection, 0, m_screen->root,
                                         atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 0, 1);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    return reply && xcb_get_property_value_length(reply.get()) > 0;
}

bool XClient::hasCompositor() const
{
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, atom("_NET_WM_CM_S0")), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void XClient::pressKeys(const QVector<xcb_keysym_t>& keysyms)
{
    QVector<xcb_keycode_t> codes;
    for (const xcb_keysym_t keysym : keysyms)
        codes.append(keycodesOf(keysym).value(0));
    pressKeycodes(codes);
}

void XClient::pressKeycodes(const QVector<xcb_keycode_t>& codes)
{
    for (const xcb_keycode_t code : codes)
        fakeInput(XCB_KEY_PRESS, code);
    for (auto code = codes.crbegin(); code != codes.crend(); ++code)
        fakeInput(XCB_KEY_RELEASE, *code);
    focus(); // a round trip
}

void XClient::setKeyDown(xcb_keycode_t code, bool isDown)
{
    fakeInput(isDown ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
    focus(); // a round trip
}

void XClient::fakeInput(uint8_t type, uint8_t detail, const QPoint& position)
{
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_screen->root,
                        static_cast<int16_t>(position.x()), static_cast<int16_t>(position.y()), 0);
}

void XClient::movePointer(const QPoint& position)
{
    fakeInput(XCB_MOTION_NOTIFY, 0, position);
    focus(); // a round trip
}

void XClient::click(const QPoint& position, uint8_t button)
{
    movePointer(position);
    fakeInput(XCB_BUTTON_PRESS, button);
    fakeInput(XCB_BUTTON_RELEASE, button);
    focus(); // a round trip
}

void XClient::setButtonDown(bool isDown)
{
    fakeInput(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1);
    focus(); // a round trip
}

QRgb XClient::pixel(const QPoint& position) const
{
    const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root,
                                      static_cast<int16_t>(position.x()),
                                      static_cast<int16_t>(position.y()), 1, 1, ~0U);
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(m_connection, cookie, nullptr));
    if (!reply)
        qFatal("no picture of the screen");
    const QImage image(xcb_get_image_data(reply.get()), 1, 1, QImage::Format_RGB32);
    return image.pixel(0, 0);
}

QImage XClient::screenshot()
{
    // In memory that the server writes to: a picture is megabytes, and tests wait for the screen to
    // come to rest by taking one after the other.
    if (!m_picture)
        shareMemoryForPictures();
    const auto cookie =
        xcb_shm_get_image(m_connection, m_screen->root, 0, 0, m_screen->width_in_pixels,
                          m_screen->height_in_pixels, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment, 0);
    const Reply<xcb_shm_get_image_reply_t> reply(
        xcb_shm_get_image_reply(m_connection, cookie, nullptr));
    if (!reply)
        qFatal("no picture of the screen");
    QImage picture = QImage(m_picture, m_screen->width_in_pixels, m_screen->height_in_pixels,
                            QImage::Format_RGB32)
                         .copy();
    if (m_lamp != XCB_WINDOW_NONE)
        picture.setPixelColor(lampPlace(), m_rootColor);
    return picture;
}

std::size_t XClient::pictureBytes() const
{
    return sizeof(QRgb) * m_screen->width_in_pixels * m_screen->height_in_pixels;
}

void XClient::shareMemoryForPictures()
{
    const int memory = ::memfd_create("picture", MFD_CLOEXEC);
    if (memory < 0 || ::ftruncate(memory, static_cast<off_t>(pictureBytes())) != 0)
        qFatal("no memory for pictures");
    void* mapped = ::mmap(nullptr, pictureBytes(), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
    if (mapped == MAP_FAILED)
        qFatal("no memory for pictures");
    m_picture = static_cast<uchar*>(mapped);
    m_segment = xcb_generate_id(m_connection);
    // Closes the descriptor.
    xcb_shm_attach_fd(m_connection, m_segment, memory, 0);
}

void XClient::makeLamp()
{
    m_lamp = xcb_generate_id(m_connection);
    const uint32_t isUnmanaged = 1;
    const QPoint place = lampPlace();
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_lamp, m_screen->root,
                      static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()), 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, m_screen->root_visual,
                      XCB_CW_OVERRIDE_REDIRECT, &isUnmanaged);
    xcb_map_window(m_connection, m_lamp);
}

void XClient::switchLamp()
{
    if (m_lamp == XCB_WINDOW_NONE)
        makeLamp();
    m_isLampOn = !m_isLampOn;
    const uint32_t pixel = lampColor().rgb() & 0xffffffU;
    xcb_change_window_attributes(m_connection, m_lamp, XCB_CW_BACK_PIXEL, &pixel);
    const uint32_t mode = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection, m_lamp, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    xcb_clear_area(m_connection, 0, m_lamp, 0, 0, 0, 0);
    xcb_flush(m_connection);
}

bool XClient::hasLampChanged() const
{
    return QColor(pixel(lampPlace())) == lampColor();
}

void XClient::paintRoot(const QColor& color)
{
    m_rootColor = color;
    const uint32_t pixel = color.rgb() & 0xffffffU;
    xcb_change_window_attributes(m_connection, m_screen->root, XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(m_connection, 0, m_screen->root, 0, 0, 0, 0);
    xcb_flush(m_connection);
}
