# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT

# The two addresses of the program's makers that it shows. Those that stand here lead nowhere, and
# so does an empty one: a build that is given away has to have others.
set(orlimo_placeholder_of_ORLIMO_FEEDBACK_EMAIL feedback@orlimo.example)
set(orlimo_placeholder_of_ORLIMO_STORE_URL https://orlimo.example/)
set(ORLIMO_FEEDBACK_EMAIL "${orlimo_placeholder_of_ORLIMO_FEEDBACK_EMAIL}" CACHE STRING
    "Address that the feedback entry puts into the clipboard")
set(ORLIMO_STORE_URL "${orlimo_placeholder_of_ORLIMO_STORE_URL}" CACHE STRING
    "Address of the program's store page")

foreach(address ORLIMO_FEEDBACK_EMAIL ORLIMO_STORE_URL)
    if("${${address}}" STREQUAL "")
        set(${address} "${orlimo_placeholder_of_${address}}")
    endif()
    if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND
            "${${address}}" STREQUAL "${orlimo_placeholder_of_${address}}")
        message(WARNING "${address} is ${${address}}, which leads nowhere. "
            "Give this release an address with -D${address}=...")
    endif()
endforeach()
