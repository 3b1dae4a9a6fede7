# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Finds QScintilla for Qt 6, which comes without a CMake package: target QScintilla::QScintilla.
find_package(Qt6 6.4 QUIET COMPONENTS PrintSupport Widgets)
find_path(QSCINTILLA_INCLUDE_DIR Qsci/qsciscintilla.h PATH_SUFFIXES qt6)
find_library(QSCINTILLA_LIBRARY qscintilla2_qt6)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(QScintilla
    REQUIRED_VARS QSCINTILLA_LIBRARY QSCINTILLA_INCLUDE_DIR Qt6PrintSupport_FOUND Qt6Widgets_FOUND)
if(QScintilla_FOUND AND NOT TARGET QScintilla::QScintilla)
    add_library(QScintilla::QScintilla UNKNOWN IMPORTED)
    set_target_properties(QScintilla::QScintilla PROPERTIES
        IMPORTED_LOCATION ${QSCINTILLA_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${QSCINTILLA_INCLUDE_DIR}
        INTERFACE_LINK_LIBRARIES "Qt6::Widgets;Qt6::PrintSupport")
endif()
