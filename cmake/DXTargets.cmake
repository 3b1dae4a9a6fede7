# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# A folder is a target. It sees its own headers and those of the folders it USES, because each folder's
# headers are staged alone in an include directory of their own: including any other folder does not compile.

# Makes <ROOM>_<folder>_headers, the include path of one folder.
function(_dx_stage_headers room folder)
    set(staged ${CMAKE_BINARY_DIR}/include/${room}_${folder})
    file(MAKE_DIRECTORY ${staged})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${folder} ${staged}/${folder} SYMBOLIC)
    add_library(${room}_${folder}_headers INTERFACE)
    target_include_directories(${room}_${folder}_headers INTERFACE ${staged})
endfunction()

# dx_add_library(<folder> SOURCES … [GENERATED file …] [INTO library] [USES folder …] [PUBLIC lib …] [PRIVATE lib …] [MOC])
# One folder of DXShared: object files for the DXShared library, or for the one given, and DXShared::<folder> for those
# outside. GENERATED sources carry their whole path.
function(dx_add_library folder)
    cmake_parse_arguments(arg "MOC" "INTO" "SOURCES;GENERATED;USES;PUBLIC;PRIVATE" ${ARGN})
    if(NOT arg_INTO)
        set(arg_INTO DXShared)
    endif()
    _dx_stage_headers(DXShared ${folder})
    target_link_libraries(DXShared_${folder}_headers INTERFACE ${arg_PUBLIC})
    list(TRANSFORM arg_SOURCES PREPEND ${folder}/)
    add_library(DXShared_${folder} OBJECT ${arg_SOURCES} ${arg_GENERATED})
    list(TRANSFORM arg_USES REPLACE "(.+)" "DXShared_\\1_headers")
    target_link_libraries(DXShared_${folder} PRIVATE DXCompiler DXShared_${folder}_headers ${arg_USES}
        ${arg_PUBLIC} ${arg_PRIVATE})
    target_compile_definitions(DXShared_${folder} PRIVATE DXSHARED_LIBRARY)
    set_target_properties(DXShared_${folder} PROPERTIES AUTOMOC ${arg_MOC})
    target_sources(${arg_INTO} PRIVATE $<TARGET_OBJECTS:DXShared_${folder}>)
    target_link_libraries(${arg_INTO} PRIVATE ${arg_PUBLIC} ${arg_PRIVATE})
    add_library(DXShared_${folder}_api INTERFACE)
    target_link_libraries(DXShared_${folder}_api INTERFACE DXShared_${folder}_headers ${arg_INTO})
    add_library(DXShared::${folder} ALIAS DXShared_${folder}_api)
endfunction()

# dx_add_driver_folder(<driver> <folder> SOURCES … [GENERATED file …] [USES target …] [PUBLIC lib …] [PRIVATE lib …] [MOC])
# One folder of a driver: a static library that the plugin and the tests link. GENERATED sources carry their whole path.
function(dx_add_driver_folder driver folder)
    cmake_parse_arguments(arg "MOC" "" "SOURCES;GENERATED;USES;PUBLIC;PRIVATE" ${ARGN})
    _dx_stage_headers(${driver} ${folder})
    list(TRANSFORM arg_SOURCES PREPEND ${folder}/)
    add_library(${driver}_${folder} STATIC ${arg_SOURCES} ${arg_GENERATED})
    set_target_properties(${driver}_${folder} PROPERTIES AUTOMOC ${arg_MOC})
    target_link_libraries(${driver}_${folder}
        PUBLIC ${driver}_${folder}_headers ${arg_USES} ${arg_PUBLIC}
        PRIVATE DXCompiler ${arg_PRIVATE})
    add_library(${driver}::${folder} ALIAS ${driver}_${folder})
endfunction()

# dx_add_driver(<driver> SOURCES … FOLDERS target … [PRIVATE lib …])
# The loadable driver: a module in lib/drivers that exports its plugin entry (<driver>Plugin.cpp) and nothing else
# that it links. SOURCES are the bodies that see every folder; tests link them as <driver>::factory, whole, because the
# folders below need them and they need the folders.
function(dx_add_driver driver)
    cmake_parse_arguments(arg "" "" "SOURCES;FOLDERS;PRIVATE" ${ARGN})
    add_library(${driver}_factory OBJECT ${arg_SOURCES})
    target_link_libraries(${driver}_factory PUBLIC ${arg_FOLDERS} PRIVATE DXCompiler ${arg_PRIVATE})
    add_library(${driver}::factory ALIAS ${driver}_factory)
    add_library(${driver} MODULE ${driver}Plugin.cpp)
    set_target_properties(${driver} PROPERTIES PREFIX "" AUTOMOC ON
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/drivers INSTALL_RPATH "$ORIGIN/..")
    target_link_libraries(${driver} PRIVATE DXCompiler ${driver}_factory ${arg_FOLDERS} ${arg_PRIVATE})
    target_link_options(${driver} PRIVATE -Wl,--exclude-libs,ALL)
    install(TARGETS ${driver} LIBRARY DESTINATION ${DX_DRIVER_INSTALL_DIR} COMPONENT dabro-runtime)
endfunction()

# dx_add_app_library(<folder> [MOC] SOURCES … [USES target …] [PRIVATE lib …])
# One folder of the app: the static library dabro_<folder>_core, which its program and the tests link.
function(dx_add_app_library folder)
    cmake_parse_arguments(arg "MOC" "" "SOURCES;USES;PRIVATE" ${ARGN})
    _dx_stage_headers(app ${folder})
    list(TRANSFORM arg_SOURCES PREPEND ${folder}/)
    add_library(dabro_${folder}_core STATIC ${arg_SOURCES})
    set_target_properties(dabro_${folder}_core PROPERTIES AUTOMOC ${arg_MOC})
    target_link_libraries(dabro_${folder}_core PUBLIC app_${folder}_headers ${arg_USES}
        PRIVATE DXCompiler ${arg_PRIVATE})
endfunction()

# dx_add_test(<name> SOURCES … LIBS …): a GoogleTest program under CTest; it runs with a QCoreApplication.
function(dx_add_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBS;DEFINITIONS;LABELS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE DXCompiler dx_test_support ${arg_LIBS})
    target_compile_definitions(${name} PRIVATE ${arg_DEFINITIONS})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}")
endfunction()

# dx_add_bench(<name> SOURCES … LIBS …): a program that prints one line with a ratio; never run as a test.
function(dx_add_bench name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE DXCompiler ${arg_LIBS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
endfunction()
