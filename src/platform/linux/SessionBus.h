// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// Whether connecting to the session's message bus can only find a bus and never start one: without
/// an address and without the user's bus socket, or with an address that says so, the client
/// library would launch a bus of its own, which takes seconds.
bool hasSessionBus();
