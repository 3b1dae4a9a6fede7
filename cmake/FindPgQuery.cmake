# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# PgQuery::PgQuery: PostgreSQL's own scanner and parser as a library, which comes without a CMake configuration.
find_path(PgQuery_INCLUDE_DIR pg_query.h)
find_library(PgQuery_LIBRARY pg_query)
mark_as_advanced(PgQuery_INCLUDE_DIR PgQuery_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(PgQuery REQUIRED_VARS PgQuery_LIBRARY PgQuery_INCLUDE_DIR)

if(PgQuery_FOUND AND NOT TARGET PgQuery::PgQuery)
    add_library(PgQuery::PgQuery UNKNOWN IMPORTED)
    set_target_properties(PgQuery::PgQuery PROPERTIES
        IMPORTED_LOCATION ${PgQuery_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${PgQuery_INCLUDE_DIR})
endif()
