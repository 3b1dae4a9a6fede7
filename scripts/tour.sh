#!/bin/bash
# SPDX-FileCopyrightText: 2026 The Dabro developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# tour.sh PROGRAMS FOLDER: shows on the demo database, whose URI is in DABRO_DEMO_URI, what the client
# does: in pictures of its window, light and dark, at 100 % and 200 %, and then at the terminal. Each
# step leaves a file in the folder; a step that ends as it should not ends the tour.
set -uo pipefail

client=$1/dabro-cli
folder=$2
step=0
mkdir -p "$folder"
rm -f "$folder"/[0-9][0-9]-* "$folder"/*.png

# window APPEARANCE PERCENT: takes the window through its stations.
window() {
    local screens=$folder/screens.json name=$1-$2 scale=$(($2 / 100))
    printf '{"screens":[{"name":"tour","x":0,"y":0,"width":%d,"height":%d,"logicalDpi":96,"dpr":1}]}\n' \
        $((1440 * scale)) $((900 * scale)) >"$screens"
    printf '\nThe window, %s, at %s %%\n' "$1" "$2"
    if ! QT_QPA_PLATFORM=offscreen:configfile=$screens QT_SCALE_FACTOR=$scale "$programs/dabro-tour" \
        "$folder" "$name" "$DABRO_DEMO_URI" 2>"$folder/$name.messages" </dev/null; then
        cat "$folder/$name.messages" >&2
        echo "The window did not come through its tour; see $folder/$name-*.png" >&2
        exit 1
    fi
    rm "$folder/$name.messages" "$screens"
}

programs=$1
for percent in 100 200; do
    for appearance in light dark; do window $appearance $percent; done
done

# show STATUS FILE TITLE ARGUMENT…: runs the client, whose exit status must be one that STATUS matches.
show() {
    local status=$1 file title=$3 found
    step=$((step + 1))
    file=$folder/$(printf '%02d' $step)-$2
    "$client" "${@:4}" >"$file" 2>"$file.messages" </dev/null
    found=$?
    finish "$status" "$found" "$file" "$title"
}

# finish STATUS FOUND FILE TITLE: judges and prints what a step left.
finish() {
    local LC_ALL=C.UTF-8 file=$3 part lines line
    printf '\n%2d. %s\n' $step "$4"
    for part in "$file" "$file.messages"; do
        if [[ -s $part ]]; then
            mapfile -t -n 12 lines <"$part"
            for line in "${lines[@]}"; do echo "      ${line:0:100}"; done
            (($(wc -l <"$part") <= 12)) || echo "      … and $(($(wc -l <"$part") - 12)) lines more"
        else
            rm "$part"
        fi
    done
    if [[ ! $2 =~ ^($1)$ ]]; then
        echo "This step ended with status $2 instead of $1; see $file*" >&2
        exit 1
    fi
}

# query STATUS FILE TITLE ARGUMENT…: show, with the database put before the arguments.
query() { show "$1" "$2" "$3" query "$DABRO_DEMO_URI" "${@:4}"; }

cancelled() {
    local file pid waits=0
    step=$((step + 1))
    file=$folder/$(printf '%02d' $step)-cancel.txt
    # A shell without job control starts what runs beside it deaf to Ctrl-C.
    env --default-signal=INT "$client" query "$DABRO_DEMO_URI" \
        "SELECT 'counting sheep', pg_sleep(600)" >"$file" 2>"$file.messages" </dev/null &
    pid=$!
    until [[ $("$client" query --format tsv --no-header "$DABRO_DEMO_URI" "SELECT count(*) FROM pg_stat_activity
            WHERE query LIKE '%sheep%' AND wait_event = 'PgSleep'" 2>/dev/null </dev/null) == 1 ]]; do
        if ((++waits == 100)) || ! kill -0 $pid 2>/dev/null; then break; fi
        sleep 0.1
    done
    kill -INT $pid 2>/dev/null
    wait $pid
    finish '1|130' $? "$file" "Ctrl-C cancels a statement that would take ten minutes"
}

printf '\nAt the terminal\n'
show 0 ping.txt "What answers, and how it is reached" ping "$DABRO_DEMO_URI"
query 0 grid.txt "A grid: what sells best" 'SELECT * FROM best_sellers(8)'
query 0 batch.txt "Several statements, each with its message" "
    CREATE TEMPORARY TABLE basket (sku text PRIMARY KEY, pieces integer);
    INSERT INTO basket VALUES ('T-00001', 2), ('W-00003', 1);
    UPDATE basket SET pieces = pieces + 1 WHERE sku LIKE 'T%';
    SELECT b.*, p.name, p.price FROM basket AS b JOIN products AS p USING (sku);
    DROP TABLE basket"
query 1 error.txt "An error, marked where it is" "SELECT name, prize
FROM products
WHERE price > 100"
query 0 notice.txt "A warning with its hint, besides the grid" 'SELECT * FROM stock_report(-5)'
query 0 types.txt "Values that are hard to show" \
    'SELECT id, exact, double_precision, bytes, moment, duration, labels FROM analytics.type_gallery'
query 0 names.txt "Names that are hard to quote" 'TABLE "Odd Names"."Weekly ""Specials"" 🍒"'
query 0 orders.csv "CSV: a month's orders" --format csv \
    "SELECT id, placed_on, status, total FROM order_totals WHERE placed_on BETWEEN '2024-05-01' AND '2024-05-31' ORDER BY id"
query 0 products.jsonl "JSON lines: products and their attributes" --format jsonl \
    'SELECT id, sku, name, price, discontinued, attributes FROM products ORDER BY id LIMIT 100'
query 0 items.tsv "Tab-separated: all rows of the largest table" --format tsv 'TABLE order_items'
cancelled

printf '\nEverything that was printed is in %s\n' "$folder"
