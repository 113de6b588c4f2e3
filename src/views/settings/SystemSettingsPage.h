// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HotkeyRecorderFilter.h"

#include <QString>
#include <QWidget>

/// The page of the two system-wide hotkeys: each is recorded or set back to its default here.
/// GUI thread only.
class SystemSettingsPage : public QWidget
{
    Q_OBJECT

public:
    /// \param getMainHotkey, getSpotlightHotkey are asked at each use: a controller goes with its
    /// window, at another time than the page. One that gives null leaves its hotkey as it is.
    SystemSettingsPage(HotkeyRecorderFilter::ControllerGetter getMainHotkey,
                       HotkeyRecorderFilter::ControllerGetter getSpotlightHotkey,
                       QWidget* parent = nullptr);

private:
    /// What differs between the rows.
    struct Row
    {
        QString title;
        QString objectName; ///< what the names of its buttons end in
        HotkeyManager::Slot* slot = nullptr;
        HotkeyRecorderFilter::ControllerGetter getController;
    };

    QWidget* buildRow(const Row& row);
    QWidget* buildControl(const Row& row);
    /// True if the default is in force now; else the user has been told.
    bool resetHotkey(const Row& row);

    HotkeyRecorderFilter::ControllerGetter m_getMainHotkey;
    HotkeyRecorderFilter::ControllerGetter m_getSpotlightHotkey;
};
