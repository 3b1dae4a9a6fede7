#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Other servers that cannot be fetched are no failure, and are not passed over in silence.
set -uo pipefail

script=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../../scripts/test-other-servers.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
printf '#!/bin/sh\necho "npm error network" >&2\nexit 1\n' >"$work/bin/npm"
chmod 755 "$work/bin/npm"

said=$(PATH=$work/bin:$PATH DABRO_SERVER_CACHE=$work/cache "$script" 2>&1)
result=$?
if ((result)) || [[ $said != *"No other servers tested"* ]]; then
    echo "FAILED: it ended with $result and said: $said" >&2
    exit 1
fi
