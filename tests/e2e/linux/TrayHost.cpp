// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TrayHost.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

#include <algorithm>

namespace
{

const QString kConnectionName = QStringLiteral("trayhost");
const QString kWatcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString kBalloonService = QStringLiteral("org.freedesktop.Notifications");
const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString kMenuPath = QStringLiteral("/MenuBar");

QDBusMessage menuCall(const QString& service, const QString& method, const QVariantList& arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, kMenuPath, kMenuInterface, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

TrayHost::TrayHost(const QString& busAddress)
    : m_bus(QDBusConnection::connectToBus(busAddress, kConnectionName))
{
    auto* watcher = new TrayWatcherObject(this);
    watcher->setParent(this);
    auto* balloons = new TrayBalloonObject(this);
    balloons->setParent(this);
    const bool isUp = m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), watcher,
                                           QDBusConnection::ExportAllSlots |
                                               QDBusConnection::ExportAllProperties) &&
                      m_bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"),
                                           balloons, QDBusConnection::ExportAllSlots) &&
                      m_bus.registerService(kWatcherService) &&
                      m_bus.registerService(kBalloonService);
    if (!isUp)
        qFatal("the tray host doesn't come up");
}

TrayHost::~TrayHost()
{
    m_bus.unregisterService(kWatcherService);
    m_bus.unregisterService(kBalloonService);
    QDBusConnection::disconnectFromBus(kConnectionName);
}

QVector<TrayHost::Entry> TrayHost::menuEntries()
{
    const QDBusMessage reply = m_bus.call(
        menuCall(m_item, QStringLiteral("GetLayout"), {0, -1, QStringList()}), QDBus::BlockWithGui);
    if (reply.arguments().size() < 2)
        qFatal("the tray menu doesn't answer: %s", qPrintable(reply.errorMessage()));
    const auto root = reply.arguments().at(1).value<QDBusArgument>();
    QVector<Entry> entries;
    int rootId = 0;
    QVariantMap rootProperties;
    root.beginStructure();
    root >> rootId >> rootProperties;
    root.beginArray();
    while (!root.atEnd()) {
        QDBusVariant child;
        root >> child;
        const auto item = child.variant().value<QDBusArgument>();
        Entry entry;
        QVariantMap properties;
        item.beginStructure();
        item >> entry.id >> properties;
        item.beginArray(); // no entry has a menu of its own
        item.endArray();
        item.endStructure();
        entry.label = properties.value(QStringLiteral("label")).toString();
        entries.append(entry);
    }
    root.endArray();
    root.endStructure();
    return entries;
}

QStringList TrayHost::menuLabels()
{
    QStringList labels;
    const QVector<Entry> entries = menuEntries();
    for (const Entry& entry : entries)
        labels.append(entry.label);
    return labels;
}

void TrayHost::clickMenuEntry(const QString& label)
{
    const QVector<Entry> entries = menuEntries();
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [&label](const Entry& e) { return e.label == label; });
    if (entry == entries.end())
        qFatal("the tray menu has no entry %s", qPrintable(label));
    const QVariant data = QVariant::fromValue(QDBusVariant(QString()));
    m_bus.call(
        menuCall(m_item, QStringLiteral("Event"), {entry->id, QStringLiteral("clicked"), data, 0U}),
        QDBus::BlockWithGui);
}

void TrayWatcherObject::RegisterStatusNotifierItem(const QString& service)
{
    // Some icons give the path of their object instead of a name on the bus.
    m_host->addItem(service.startsWith(QLatin1Char('/')) ? message().service() : service);
}

uint TrayBalloonObject::Notify(const QString& application, uint replaces, const QString& icon,
                               const QString& title, const QString& text,
                               const QStringList& actions, const QVariantMap& hints, int timeoutMs)
{
    Q_UNUSED(application);
    Q_UNUSED(replaces);
    Q_UNUSED(actions);
    Q_UNUSED(hints);
    m_host->addBalloon({icon, QString::number(timeoutMs), title, text});
    return 1;
}
