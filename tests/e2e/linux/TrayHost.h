// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// The panel of a desktop as far as a tray icon meets it: hosts the icon, opens its menu, and shows
/// its balloons. Lives on a session bus.
class TrayHost : public QObject
{
    Q_OBJECT

public:
    /// Ends the test run if the bus can't be reached.
    explicit TrayHost(const QString& busAddress);
    ~TrayHost() override;

    bool hasItem() const { return !m_item.isEmpty(); }

    /// Texts of the icon's menu, top to bottom.
    QStringList menuLabels();

    /// Chooses an entry; ends the test run if there is none of that text.
    void clickMenuEntry(const QString& label);

    /// Every balloon so far, as icon, time in ms, title and text with bars between.
    QStringList balloons() const { return m_balloons; }

    void addItem(const QString& service) { m_item = service; }
    void addBalloon(const QStringList& parts) { m_balloons.append(parts.join(QLatin1Char('|'))); }

private:
    struct Entry
    {
        int id = 0;
        QString label;
    };

    QVector<Entry> menuEntries();

    QDBusConnection m_bus;
    QString m_item;
    QStringList m_balloons;
};

/// The interface under which icons register themselves.
class TrayWatcherObject : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    explicit TrayWatcherObject(TrayHost* host) : m_host(host) {}

    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }

public slots:
    void RegisterStatusNotifierItem(const QString& service);

private:
    TrayHost* m_host;
};

/// The interface that shows balloons.
class TrayBalloonObject : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    explicit TrayBalloonObject(TrayHost* host) : m_host(host) {}

public slots:
    QStringList GetCapabilities() { return {QStringLiteral("body")}; }
    uint Notify(const QString& application, uint replaces, const QString& icon,
                const QString& title, const QString& text, const QStringList& actions,
                const QVariantMap& hints, int timeoutMs);

private:
    TrayHost* m_host;
};
