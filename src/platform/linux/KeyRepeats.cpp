// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "KeyRepeats.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace
{

/// A held key repeats as a release and a press of the same time. Qt knows them for a repeat only if
/// the press has been read by the time it handles the release, which is a matter of luck.
class RepeatMarker : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (!watched->isWindowType())
            return false;
        if (event->type() == QEvent::KeyRelease)
            noteRelease(*static_cast<const QKeyEvent*>(event));
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto& press = *static_cast<const QKeyEvent*>(event);
        if (press.isAutoRepeat() || !isRepeat(press))
            return false;
        event->setAccepted(sendAsRepeat(watched, press));
        return true;
    }

private:
    void noteRelease(const QKeyEvent& release)
    {
        m_releasedCode = release.nativeScanCode();
        m_releasedAt = release.timestamp();
    }

    bool isRepeat(const QKeyEvent& press) const
    {
        return press.timestamp() != 0 && press.timestamp() == m_releasedAt &&
               press.nativeScanCode() == m_releasedCode;
    }

    static bool sendAsRepeat(QObject* window, const QKeyEvent& press)
    {
        constexpr bool isAutoRepeat = true;
        QKeyEvent repeat(press.type(), press.key(), press.modifiers(), press.nativeScanCode(),
                         press.nativeVirtualKey(), press.nativeModifiers(), press.text(),
                         isAutoRepeat, static_cast<quint16>(press.count()), press.device());
        repeat.setTimestamp(press.timestamp());
        QCoreApplication::sendEvent(window, &repeat);
        return repeat.isAccepted();
    }

    quint32 m_releasedCode = 0;
    quint64 m_releasedAt = 0;
};

} // namespace

void KeyRepeats::watch()
{
    QCoreApplication* application = QCoreApplication::instance();
    application->installEventFilter(new RepeatMarker(application));
}
