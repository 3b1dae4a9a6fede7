# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The flags that every target of ours is compiled with; nothing of them leaks to what we link.
add_library(DXCompiler INTERFACE)
target_compile_options(DXCompiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wcast-qual -Wformat=2 -Wundef -Wextra-semi -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond;-Wlogical-op;-Wsuggest-override>)
target_compile_definitions(DXCompiler INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(DX_SANITIZE)
    add_compile_options(-fsanitize=${DX_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${DX_SANITIZE})
    # GCC takes the branches that the sanitizers insert for paths on which a value was never set.
    target_compile_options(DXCompiler INTERFACE -Wno-maybe-uninitialized)
    if(DX_SANITIZE MATCHES "address")
        add_compile_options(-fsanitize=undefined -fno-sanitize-recover=undefined)
        add_link_options(-fsanitize=undefined)
    endif()
else()
    # A symbol that no library defines is found when the library is linked, not when it is loaded.
    add_link_options(-Wl,--no-undefined)
endif()
