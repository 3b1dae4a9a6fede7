#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# build.sh PRESET [TARGET…]: configures build/PRESET where that is needed, and builds it.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."

preset=$1
shift
mkdir -p build 2>/dev/null
[[ -w build ]] || { echo "dabro: cannot write to $PWD/build; build in a clone of your own" >&2; exit 1; }

# A configured folder configures itself again when its CMake files change.
log=build/$preset.configure.log
if [[ ! -e build/$preset/build.ninja || CMakePresets.json -nt build/$preset/build.ninja ]]; then
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi
exec cmake --build --preset "$preset" ${1:+--target "$@"}
