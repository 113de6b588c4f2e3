// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>

#include <optional>
#include <utility>

/// A dialog from its making to its answer. Its parent may be deleted while it is open, as a rebuild
/// of a window does it, and takes the dialog along; a dialog that stood on the stack would be
/// deleted a second time there. GUI thread only.
template <typename Dialog>
class ModalRun
{
public:
    /// Makes the dialog; the arguments are those of its constructor.
    template <typename... Arguments>
    explicit ModalRun(Arguments&&... arguments)
        : m_dialog(new Dialog(std::forward<Arguments>(arguments)...))
    {}
    ~ModalRun() { delete m_dialog; }
    ModalRun(const ModalRun&) = delete;
    ModalRun& operator=(const ModalRun&) = delete;

    /// Opens the dialog and waits for its end.
    /// \returns its result; nothing if it is gone, and what it belonged to with it.
    [[nodiscard]] std::optional<int> exec()
    {
        const int result = m_dialog->exec();
        return m_dialog ? std::optional(result) : std::nullopt;
    }

    /// Not once `exec` has returned nothing.
    Dialog* operator->() const { return m_dialog; }

private:
    QPointer<Dialog> m_dialog;
};
