// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// The data roles of a row that shows an item, in whatever list it stands. The name is the display
/// role, an icon of the row's own the decoration role.
namespace ItemRoles
{

enum Role {
    RoleOriginalIndex = 256, ///< int, own items: place in their section
    RoleElementId = 258,     ///< QString, own items
    RoleItemType = 261,      ///< QString, all but headers; empty counts as "URL"
    RoleReserved = 262,      ///< int, always 0
    RoleIconToken = 263,     ///< QString, icon string of the row
    RoleCategory = 264,      ///< QString, own items: section name
    RoleSynthetic = 265,     ///< bool: no stored item stands behind the row
    RoleValue = 266,         ///< QString, synthetic rows: what to launch
    RoleIsHeader = 267,      ///< bool
    RoleGroupFirst = 268,    ///< bool
    RoleGroupLast = 269,     ///< bool
    RoleIsHint = 270,        ///< bool
    RoleNextFree = 271       ///< first number that others may use
};

} // namespace ItemRoles
