#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# install-packages.sh [--list FILE] GROUP…: installs what is missing of the groups in scripts/packages.
# Quiet and quick when nothing is missing; otherwise needs root, or sudo without a password. What
# cannot be installed ends it with one line that names the packages.
set -euo pipefail
export LC_ALL=C.UTF-8

list=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/packages
if [[ ${1-} == --list ]]; then
    list=$2
    shift 2
fi

wanted=()
for group; do
    mapfile -t members < <(awk -v group="$group" '$1 == group { print $2 }' "$list")
    ((${#members[@]})) || { echo "dabro: $list has no group '$group'" >&2; exit 2; }
    wanted+=("${members[@]}")
done

is_installed() {
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

find_missing() {
    missing=()
    local package
    for package in "${wanted[@]}"; do
        is_installed "$package" || missing+=("$package")
    done
}

command -v dpkg-query apt-get >/dev/null || {
    echo "dabro: this is no Debian system; install by hand what these Debian packages hold: ${wanted[*]}" >&2
    exit 1
}
find_missing
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
        echo "dabro: missing packages; as root run: apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo -n)
fi

# Debian starts a server as soon as its package is there. We only want the programs: for the time of
# the installation nothing may start, and no database cluster is made that would start at boot.
policy=/usr/sbin/policy-rc.d
cluster_policy=/etc/postgresql-common/createcluster.d/dabro-while-installing.conf
mark='# Written by dabro for the time of an installation.'
had_sshd=no
is_installed openssh-server && had_sshd=yes

restore_policies() {
    if "${as_root[@]}" grep -qsF "$mark" "$policy"; then "${as_root[@]}" rm -f "$policy"; fi
    "${as_root[@]}" rm -f "$cluster_policy"
}

hold_services() {
    if [[ ! -e $policy ]]; then
        printf '#!/bin/sh\n%s\nexit 101\n' "$mark" | "${as_root[@]}" tee "$policy" >/dev/null
        "${as_root[@]}" chmod 755 "$policy"
    fi
    if ! is_installed postgresql-common; then
        "${as_root[@]}" mkdir -p "${cluster_policy%/*}"
        printf '%s\ncreate_main_cluster = false\n' "$mark" |
            "${as_root[@]}" tee "$cluster_policy" >/dev/null
    fi
}

apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -y -qq \
        -o DPkg::Lock::Timeout=120 -o Acquire::Retries=1 -o Dpkg::Use-Pty=0 "$@" </dev/null
}

echo "Installing ${missing[*]}"
log=$(mktemp)
trap 'restore_policies; rm -f "$log"' EXIT
trap 'exit 130' INT TERM HUP
hold_services
apt update >>"$log" 2>&1 || true
if ! apt install --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
    # One that cannot be had must not keep the others away.
    for package in "${missing[@]}"; do
        apt install --no-install-recommends "$package" >>"$log" 2>&1 || true
    done
fi
if [[ $had_sshd == no ]] && is_installed openssh-server && command -v systemctl >/dev/null; then
    "${as_root[@]}" systemctl disable --quiet ssh.service >>"$log" 2>&1 || true
fi

find_missing
if ((${#missing[@]})); then
    reason=$(grep -m1 '^E: ' "$log" || true)
    echo "dabro: cannot install ${missing[*]}${reason:+ (${reason#E: })}" >&2
    exit 1
fi
