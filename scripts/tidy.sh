#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# tidy.sh SOURCE…: clang-tidy on sources; needs the build folder of the dev preset.
# Most of its time goes into the headers of Qt and the standard library, so sources that are compiled
# alike are looked at several at once, included by one file. A source that was clean is remembered by
# what the compiler sees of it, and not looked at again.
set -uo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." || exit

root=$PWD
cache=${XDG_CACHE_HOME:-$HOME/.cache}/dabro/clang-tidy

# What the compiler is told for a source, without the names of files.
flags_of() {
    awk -v file="$root/$1" '
        /^  "command":/ { command = $0 }
        /^  "file":/ && index($0, "\"" file "\"") { print command; exit }' \
        build/dev/compile_commands.json |
        sed -E 's/^  "command": "(\S*ccache )?\S+ //; s/ -o \S+ -c .*//; s/\\(.)/\1/g'
}

# Prints flags, name and fingerprint of a source that was not found clean before. The fingerprint
# covers the comments that clang-tidy obeys, and no path.
outstanding() {
    local source=$1 flags print
    flags=$(flags_of "$source")
    [[ $flags ]] || { echo "$source: not part of the build" >&2; return 1; }
    print=$({
        cat .clang-tidy
        clang-tidy --version
        cd build/dev && eval "c++ $flags -E -C -P -w '$root/$source'" 2>/dev/null
    } | sha256sum | cut -d' ' -f1)
    [[ -e $cache/$print ]] || printf '%s\t%s\t%s\n' "$flags" "$source" "$print"
}

# Joins outstanding sources of equal flags, up to ten a line.
batches() {
    sort | awk -F '\t' '
        $1 != flags || count == 10 { if (NR > 1) print line; line = flags = $1; count = 0 }
        { line = line "\t" $2; ++count }
        END { if (NR) print line }'
}

# The sources of a batch that the compiler refuses after those before them, such as for a name in
# both their anonymous namespaces.
refused() {
    (cd build/dev && eval "c++ $1 -fsyntax-only -w '$2'" 2>&1) |
        sed -nE "s|^$root/([^:]+\.cpp):[0-9]+:[0-9]+: error: .*|\1|p" | sort -u
}

remember() {
    local source
    for source; do
        : >"$cache/$(awk -F '\t' -v s="$source" '$2 == s { print $3 }' "$TMPDIR/outstanding")"
    done
}

# look FLAGS SOURCE…
look() {
    local flags=$1 sources=("${@:2}") others batch output result=0
    batch=$(mktemp --suffix=.cpp) || return
    printf "#include \"$root/%s\"\n" "${sources[@]}" >"$batch"
    if ((${#sources[@]} > 1)); then
        mapfile -t others < <(refused "$flags" "$batch")
        if ((${#others[@]} && ${#others[@]} < ${#sources[@]})); then
            look "$flags" "${others[@]}" || result=1
            mapfile -t sources < <(printf '%s\n' "${sources[@]}" |
                grep -vxFf <(printf '%s\n' "${others[@]}"))
            look "$flags" "${sources[@]}" || result=1
            return $result
        fi
    fi
    if output=$(cd build/dev && eval "clang-tidy --quiet --config-file='$root/.clang-tidy' \
            --checks=-bugprone-suspicious-include '$batch' -- $flags" 2>&1); then
        remember "${sources[@]}"
    elif ((${#sources[@]} > 1)) && grep -qF '[clang-diagnostic-error' <<<"$output"; then
        for batch in "${sources[@]}"; do look "$flags" "$batch" || result=1; done
        return $result
    else
        grep -vE '^[0-9]+ (warning|error)|^Suppressed|^Use -header|^Error while' <<<"$output" >&2
        return 1
    fi
}

# Runs this script with option and a line of standard input, as often as there are lines.
parallel() {
    xargs -r -d '\n' -P "$(nproc)" -n1 scripts/tidy.sh "$1"
}

look_at_all() {
    local result=0
    mkdir -p "$cache"
    find "$cache" -type f -mtime +30 -delete
    TMPDIR=$(mktemp -d) || return
    export TMPDIR
    trap 'rm -rf "$TMPDIR"' EXIT
    printf '%s\n' "$@" | parallel --outstanding >"$TMPDIR/outstanding" || result=1
    batches <"$TMPDIR/outstanding" | parallel --look || result=1
    return $result
}

case ${1-} in
    --outstanding) outstanding "$2" ;;
    --look)
        IFS=$'\t' read -ra fields <<<"$2"
        look "${fields[@]}"
        ;;
    *) look_at_all "$@" ;;
esac
