// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAnimationDriver>
#include <QCoreApplication>

/// The time of all animations of the process as long as it lives: it stands still unless a test
/// advances it, however slow the machine is.
class DrivenClock : public QAnimationDriver
{
public:
    DrivenClock()
    {
        // Time counts from the start of the first animation of those that run at once.
        connect(this, &QAnimationDriver::started, this, [this] { m_elapsedMs = 0; });
        install();
    }

    ~DrivenClock() override { uninstall(); }

    qint64 elapsed() const override { return m_elapsedMs; }

    /// Lets animations that have been started begin, then lets `ms` pass in one step.
    void pass(int ms)
    {
        // It takes a turn to end what runs no more, and one each to begin with an animation and
        // with the clock.
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        if (!isRunning())
            return; // to advance it would start it
        m_elapsedMs += ms;
        advance();
    }

private:
    qint64 m_elapsedMs = 0;
};
