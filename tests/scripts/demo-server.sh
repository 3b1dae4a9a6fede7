#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Starts the demo server, kills it and what surrounds it in every way, and looks at what is left.
set -uo pipefail

server=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../../scripts/demo-server
psql=$(printf '%s\n' /usr/lib/postgresql/*/bin/psql | sort -V | tail -1)
work=$(mktemp -d /tmp/dabro-test-XXXXXX)
chmod 711 "$work"
export DABRO_DEMO_DIR="$work/a demo"
cluster="$DABRO_DEMO_DIR/cluster"
holders=()

cleanup() {
    ((${#holders[@]} == 0)) || kill "${holders[@]}" 2>/dev/null
    wait_until nothing_runs
    rm -rf "$work"
}
trap cleanup EXIT

check() { echo "-- $1"; }
fail() {
    echo "FAILED: $*" >&2
    cat "$DABRO_DEMO_DIR/log" >&2
    exit 1
}
wait_until() {
    local deadline=$((SECONDS + 60))
    until "$@"; do
        ((SECONDS < deadline)) || fail "waited in vain for: $*"
        sleep 0.02
    done
}

# Whoever works in the test's folder, the server and its back ends, by their process numbers.
processes() {
    find /proc -mindepth 2 -maxdepth 2 -path '/proc/[0-9]*/cwd' -lname "$work/*" 2>/dev/null | cut -d/ -f3
}
nothing_runs() { [[ -z $(processes) ]]; }
postmaster() { head -1 "$cluster/postmaster.pid"; }
supervisor() { ps -o ppid= -p "$(postmaster)" | tr -d ' '; }

# hold N: starts the holder number N, whose standard input is open until drop N; leaves its URI in uri.
hold() {
    mkfifo "$work/in$1" "$work/out$1"
    "$server" hold <"$work/in$1" >"$work/out$1" 2>>"$work/messages" 11>&- 12>&- &
    holders[$1]=$!
    eval "exec 1$1>'$work/in$1'"
    read -r uri <"$work/out$1" || fail "holder $1 tells no URI: $(cat "$work/messages")"
    rm "$work/in$1" "$work/out$1"
}
drop() {
    eval "exec 1$1>&-"
    wait "${holders[$1]}"
    unset "holders[$1]"
}
query() { "$psql" -XAtq "$uri" -c "$1" 2>&1; }
expect() {
    local found
    found=$(query "$1")
    [[ $found == "$2" ]] || fail "$1 gives '$found' instead of '$2'"
}
rows='SELECT count(*) > 300000 FROM order_items'

check "killed while it loads, it leaves no half of a database"
"$server" hold </dev/zero >/dev/null 2>&1 &
holders[0]=$!
wait_until test -e "$DABRO_DEMO_DIR/staging/postmaster.pid"
kill -KILL "${holders[0]}"
wait "${holders[0]}" 2>/dev/null
unset 'holders[0]'
[[ ! -e $cluster ]] || fail "there is a database already"

check "it loads the sample and listens on a socket of its owner's alone"
hold 1
expect "$rows" t
expect "SELECT current_setting('listen_addresses') = ''" t
socket=$(sed -n 5p "$cluster/postmaster.pid")
[[ $(stat -c %a "$socket") == 700 ]] || fail "others can enter $socket"
expect "CREATE TABLE public.kept (a integer); INSERT INTO public.kept VALUES (42); SELECT a FROM public.kept" 42

check "a second user shares it and outlives the first"
first=$(postmaster)
hold 2
drop 1
expect "SELECT 1" 1
[[ $(postmaster) == "$first" ]] || fail "there was a second server"

check "it ends with its last user"
drop 2
wait_until nothing_runs
[[ ! -e $cluster/postmaster.pid ]] || fail "it was not shut down properly"

check "it ends when that user is killed"
hold 1
expect "SELECT a FROM public.kept" 42
kill -KILL "${holders[1]}"
drop 1 2>/dev/null
wait_until nothing_runs

check "a command runs with its URI and ends with its status"
# shellcheck disable=SC2016  # the server sets the variable
found=$("$server" run bash -c '"$0" -XAtc "SELECT a FROM public.kept" "$DABRO_DEMO_URI"; exit 7' "$psql")
[[ $? == 7 && $found == 42 ]] || fail "run gave '$found'"
wait_until nothing_runs

check "it recovers when it was killed under its users"
hold 1
kill -KILL "$(postmaster)"
hold 2
expect "SELECT a FROM public.kept" 42
drop 1
expect "SELECT 1" 1

check "it ends when its supervisor is killed"
kill -KILL "$(supervisor)"
wait_until nothing_runs
drop 2

check "it recovers when all were killed"
hold 1
mapfile -t all < <(supervisor; processes; echo "${holders[1]}")
kill -KILL "${all[@]}"
drop 1 2>/dev/null
wait_until nothing_runs
[[ -e $cluster/postmaster.pid ]] || fail "it was not killed"

check "it takes a number in a file that was left behind for nobody's"
sed -i "1s/.*/$$/" "$cluster/postmaster.pid"
hold 1
expect "SELECT a FROM public.kept" 42
drop 1
wait_until nothing_runs

check "users that come at the same time get one server"
mkfifo "$work/forever"
exec 13<>"$work/forever"
for n in 1 2 3 4; do
    # shellcheck disable=SC2016
    "$server" run bash -c '"$0" -XAtc "SELECT pg_postmaster_start_time()" "$DABRO_DEMO_URI"; read -r' \
        "$psql" <&13 >"$work/answer$n" 2>&1 &
    holders[n]=$!
done
for n in 1 2 3 4; do wait_until test -s "$work/answer$n"; done
[[ $(cat "$work"/answer? | sort -u | wc -l) == 1 ]] || fail "they saw: $(cat "$work"/answer?)"
kill "${holders[@]}"
wait "${holders[@]}" 2>/dev/null
holders=()
wait_until nothing_runs

check "a folder with a long name works"
long="$work/$(printf 'a%.0s' {1..120})"
mv "$DABRO_DEMO_DIR" "$long"
DABRO_DEMO_DIR=$long
cluster=$long/cluster
hold 1
expect "SELECT a FROM public.kept" 42
socket=$(sed -n 5p "$cluster/postmaster.pid")
"$server" reset 2>/dev/null && fail "a database in use was thrown away"
drop 1
wait_until nothing_runs
rm -rf "$socket"

check "reset throws it away"
"$server" reset
[[ ! -e $cluster ]] || fail "it is still there"
rm -rf "$socket"
