// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

/// Loaded into the program, where it shows a window as Qt makes it by itself. The program has none
/// such: its own are tools and dialogs with a parent, for which Qt never ends a process.
class PlainWindow : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "PlainWindow.json")

public:
    QObject* create(const QString& /*name*/, const QString& /*specification*/) override
    {
        auto* timer = new QTimer;
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, timer, [] {
            auto* window = new QWidget;
            window->setAttribute(Qt::WA_DeleteOnClose);
            window->resize(321, 123); // a width that no window of the program has
            window->show();
        });
        timer->start(0);
        return timer;
    }
};

#include "PlainWindow.moc"
