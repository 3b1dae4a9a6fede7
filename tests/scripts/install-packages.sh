#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# What install-packages.sh says when there is nothing to do, and when there is nothing that it can do.
set -uo pipefail

install=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../../scripts/install-packages.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"
cp "$install" "$work/install"
chmod 755 "$work/install"
printf '%s\n' '# a comment' 'here bash' 'here dpkg' 'away bash' 'away dabro-no-such-package' \
    'away dabro-nor-this' >"$work/list"
chmod 644 "$work/list"

# An apt that has nothing keeps the registries out of this; sudo has nothing to offer either.
mkdir "$work/bin"
printf '#!/bin/sh\necho "E: Unable to locate package" >&2\nexit 100\n' >"$work/bin/apt-get"
printf '#!/bin/sh\nexit 1\n' >"$work/bin/sudo"
chmod -R a+rX,u+x "$work/bin"
chmod 755 "$work"/bin/*
export PATH="$work/bin:$PATH"

# as_user COMMAND…: not as root, whoever runs the tests.
as_user() {
    if ((EUID == 0)); then
        setpriv --reuid=nobody --regid=nogroup --clear-groups "$@"
    else
        "$@"
    fi
}

# expect STATUS PATTERN COMMAND…: the exit status, and all that the command says.
expect() {
    local status=$1 pattern=$2 found result
    shift 2
    found=$("$@" 2>&1 </dev/null)
    result=$?
    # shellcheck disable=SC2053  # a pattern
    if [[ $result != "$status" || $found != $pattern ]]; then
        echo "FAILED: $* ended with $result and said: $found" >&2
        exit 1
    fi
    echo "ok: $*"
}

missing="dabro-no-such-package dabro-nor-this"
expect 0 "" "$work/install" --list "$work/list" here
expect 0 "" as_user "$work/install" --list "$work/list" here
expect 2 "dabro: * has no group 'nowhere'" "$work/install" --list "$work/list" nowhere
expect 1 "dabro: missing packages; as root run: apt-get install --no-install-recommends $missing" \
    as_user "$work/install" --list "$work/list" here away
if ((EUID == 0)); then
    expect 1 "Installing $missing"$'\n'"dabro: cannot install $missing (Unable to locate package)" \
        "$work/install" --list "$work/list" away here
    [[ ! -e /usr/sbin/policy-rc.d ]] || ! grep -q dabro /usr/sbin/policy-rc.d || exit 1
fi
