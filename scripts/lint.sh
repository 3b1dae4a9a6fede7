#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# lint.sh [--fast | --tidy] [FILE…]: the checks of the sources; both kinds without an option.
#   --fast   clang-format, shellcheck, white space and file endings, the licence banner
#   --tidy   clang-tidy on the given sources, or on all; needs the build folder of the dev preset
set -uo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." || exit

# The files of this project, whether its history is at hand or not.
sources() {
    { git -c safe.directory="$PWD" ls-files 2>/dev/null ||
        find . -path ./build -prune -o -path ./.git -prune -o -type f -printf '%P\n'; } | sort
}

scripts() {
    sources | while IFS= read -r file; do
        if [[ $file == *.sh ]] ||
            { [[ $file != *.* || $file == .ci/run ]] && head -c 32 "$file" | grep -q '^#!/bin/bash'; }; then
            echo "$file"
        fi
    done
}

banners() {
    local file result=0
    while IFS= read -r file; do
        if ! head -4 "$file" | grep -q 'SPDX-License-Identifier: GPL-3.0-or-later'; then
            echo "$file: the licence banner is missing" >&2
            result=1
        fi
    done < <(sources | grep -E '\.(h|cpp|sh|cmake)$|(^|/)CMakeLists\.txt$|^resources/demo/')
    return $result
}

white_space() {
    local result=0 file
    while IFS= read -r file; do
        if [[ -s $file && -n $(tail -c1 "$file") ]]; then
            echo "$file: no newline at the end" >&2
            result=1
        fi
    done < <(sources | grep -E '\.(h|cpp|sh|cmake|json|ui|md|txt)$')
    if sources | grep -E '\.(h|cpp|sh|cmake|json|ui)$|CMakeLists\.txt$' |
        xargs -r -d '\n' grep -nHE '[[:blank:]]+$|'$'\t|\r' >&2; then
        echo "blanks at the end of a line, tabs or carriage returns in the lines above" >&2
        result=1
    fi
    return $result
}

fast() {
    local result=0
    sources | grep -E '\.(h|cpp)$' | xargs -r -d '\n' clang-format --dry-run -Werror || result=1
    scripts | xargs -r -d '\n' shellcheck -x || result=1
    white_space || result=1
    banners || result=1
    return $result
}

tidy() {
    { if (($#)); then printf '%s\n' "$@"; else sources; fi; } | grep '\.cpp$' |
        xargs -r -d '\n' scripts/tidy.sh
}

result=0
case ${1-} in
    --fast) fast ;;
    --tidy) shift; tidy "$@" ;;
    *) fast || result=1; tidy "$@" || result=1; exit $result ;;
esac
