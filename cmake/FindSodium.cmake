# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Finds libsodium, which comes without a CMake package: target Sodium::Sodium.
find_path(SODIUM_INCLUDE_DIR sodium.h)
find_library(SODIUM_LIBRARY sodium)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Sodium REQUIRED_VARS SODIUM_LIBRARY SODIUM_INCLUDE_DIR)
if(Sodium_FOUND AND NOT TARGET Sodium::Sodium)
    add_library(Sodium::Sodium UNKNOWN IMPORTED)
    set_target_properties(Sodium::Sodium PROPERTIES IMPORTED_LOCATION ${SODIUM_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${SODIUM_INCLUDE_DIR})
endif()
