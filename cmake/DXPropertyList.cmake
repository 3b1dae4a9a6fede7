# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Property lists from plain files, so that a word list has a word a line and a query is a file that psql can run.
#
#   dx_add_property_list(<var> <name> WORDS <file>)       an array: one word a line, # begins a comment
#   dx_add_property_list(<var> <name> TEXTS <file> …)     a dictionary: each file's text under its name
#
# appends the path of the built <name>.plist to <var>. The file is its own generator (cmake -P).

if(CMAKE_SCRIPT_MODE_FILE)
    function(xml_text result text)
        string(REPLACE "&" "&amp;" text "${text}")
        string(REPLACE "<" "&lt;" text "${text}")
        # A reader of XML turns CR LF into LF unless the CR is written as a reference.
        string(REPLACE "\r" "&#13;" text "${text}")
        set(${result} "${text}" PARENT_SCOPE)
    endfunction()

    set(xml "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n")
    if(KIND STREQUAL "WORDS")
        string(APPEND xml "<array>\n")
        file(STRINGS ${FILES} words REGEX "^[^#]")
        foreach(word IN LISTS words)
            xml_text(word "${word}")
            string(APPEND xml "<string>${word}</string>\n")
        endforeach()
        string(APPEND xml "</array>\n")
    else()
        string(APPEND xml "<dict>\n")
        string(REPLACE "|" ";" FILES "${FILES}")
        foreach(file IN LISTS FILES)
            cmake_path(GET file STEM LAST_ONLY title)
            file(READ ${file} text)
            xml_text(text "${text}")
            string(APPEND xml "<key>${title}</key>\n<string>${text}</string>\n")
        endforeach()
        string(APPEND xml "</dict>\n")
    endif()
    file(WRITE ${OUTPUT} "${xml}</plist>\n")
    return()
endif()

set(DX_PROPERTY_LIST_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

function(dx_add_property_list var name kind)
    set(files ${ARGN})
    list(TRANSFORM files PREPEND ${CMAKE_SOURCE_DIR}/)
    list(JOIN files "|" joined)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/resources/${name}.plist)
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DKIND=${kind} "-DFILES=${joined}" -DOUTPUT=${output} -P ${DX_PROPERTY_LIST_SCRIPT}
        DEPENDS ${files} ${DX_PROPERTY_LIST_SCRIPT} VERBATIM)
    set(${var} ${${var}} ${output} PARENT_SCOPE)
endfunction()

# dx_add_resources(<var> <name> FILES <file> …): a source file that holds the files as :/<name>/<file name>,
# appended to <var>; the program registers it with Q_INIT_RESOURCE(<name>).
function(dx_add_resources var name)
    cmake_parse_arguments(arg "" "" "FILES" ${ARGN})
    set(qrc ${CMAKE_CURRENT_BINARY_DIR}/${name}.qrc)
    set(output ${CMAKE_CURRENT_BINARY_DIR}/qrc_${name}.cpp)
    set(xml "<RCC><qresource prefix=\"/${name}\">\n")
    foreach(file IN LISTS arg_FILES)
        cmake_path(GET file FILENAME alias)
        string(APPEND xml "<file alias=\"${alias}\">${file}</file>\n")
    endforeach()
    file(CONFIGURE OUTPUT ${qrc} CONTENT "${xml}</qresource></RCC>\n" @ONLY)
    add_custom_command(OUTPUT ${output}
        COMMAND Qt6::rcc --name ${name} -o ${output} ${qrc}
        DEPENDS ${qrc} ${arg_FILES} VERBATIM)
    set(${var} ${${var}} ${output} PARENT_SCOPE)
endfunction()
