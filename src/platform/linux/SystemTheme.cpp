// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SystemTheme.h"

#include "SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QPointer>
#include <QString>
#include <QVariant>

namespace
{

constexpr QLatin1String kService("org.freedesktop.portal.Desktop");
constexpr QLatin1String kPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String kInterface("org.freedesktop.portal.Settings");
constexpr QLatin1String kNamespace("org.freedesktop.appearance");
constexpr QLatin1String kKey("color-scheme");
constexpr uint kPreferDark = 1;     // 0 is no preference, 2 is light
constexpr int kFirstAnswerMs = 100; // how long start-up waits for a portal that is slow

/// The portal wraps its answer once more than the change signal does, and some portals less often.
bool saysDark(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = qvariant_cast<QDBusVariant>(value).variant();
    return value.userType() == QMetaType::UInt && value.toUInt() == kPreferDark;
}

QDBusMessage readRequest()
{
    QDBusMessage request =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    request << QString(kNamespace) << QString(kKey);
    return request;
}

/// Holds the portal's last word, so that nobody who paints ever waits for the bus.
class ColorSchemeWatch : public QObject
{
    Q_OBJECT

public:
    explicit ColorSchemeWatch(QObject* parent);

    bool isDark() const { return m_isDark; }

private slots:
    void onSettingChanged(const QDBusMessage& change);

private:
    void askNow(const QDBusConnection& bus);
    void askLater(const QDBusConnection& bus);
    void adopt(const QDBusMessage& reply);

    bool m_isDark = false;
};

ColorSchemeWatch::ColorSchemeWatch(QObject* parent) : QObject(parent)
{
    if (!hasSessionBus())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // Before the question, so that no change falls between the two.
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(onSettingChanged(QDBusMessage)));
    askNow(bus);
}

void ColorSchemeWatch::onSettingChanged(const QDBusMessage& change)
{
    // The whole message, since QtDBus refuses to connect a slot that takes a variant.
    const QVariantList arguments = change.arguments();
    if (arguments.value(0).toString() == kNamespace && arguments.value(1).toString() == kKey)
        m_isDark = saysDark(arguments.value(2));
}

void ColorSchemeWatch::askNow(const QDBusConnection& bus)
{
    // A blocking call, since the windows are about to be built in one palette or the other. It
    // turns no event loop, so nothing else of the start-up can run in between.
    const QDBusMessage reply = bus.call(readRequest(), QDBus::Block, kFirstAnswerMs);
    if (QDBusError(reply).type() == QDBusError::NoReply)
        askLater(bus);
    else
        adopt(reply);
}

void ColorSchemeWatch::askLater(const QDBusConnection& bus)
{
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(readRequest()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](auto* finished) {
        adopt(finished->reply());
        finished->deleteLater();
    });
}

void ColorSchemeWatch::adopt(const QDBusMessage& reply)
{
    if (reply.type() == QDBusMessage::ReplyMessage)
        m_isDark = saysDark(reply.arguments().value(0));
}

} // namespace

bool Platform::prefersDark()
{
    // Owned by the application, so that it leaves the bus before the bus connection goes.
    static QPointer<ColorSchemeWatch> s_watch;
    if (!s_watch && QCoreApplication::instance())
        s_watch = new ColorSchemeWatch(QCoreApplication::instance());
    return s_watch && s_watch->isDark();
}

#include "SystemTheme.moc"
