-- SPDX-FileCopyrightText: 2026 The Dabro developers
-- SPDX-License-Identifier: GPL-3.0-or-later
-- 20 schemas of 1,000 tables with 8 columns, 100 views and 100 functions each.
DO $do$
BEGIN
    FOR s IN 1 .. 20 LOOP
        EXECUTE format('CREATE SCHEMA area_%s', s);
        FOR t IN 1 .. 1000 LOOP
            EXECUTE format(
                'CREATE TABLE area_%s.orders_of_region_%s (id integer PRIMARY KEY, '
                'customer_name varchar(%s) NOT NULL, amount numeric(12, 2) DEFAULT 0, placed_at '
                'timestamptz NOT NULL DEFAULT now(), note text, tags text[], paid boolean, place point)',
                s, t, 20 + t % 5);
        END LOOP;
        FOR t IN 1 .. 100 LOOP
            EXECUTE format(
                'CREATE VIEW area_%s.unpaid_%s AS SELECT id, amount FROM '
                'area_%s.orders_of_region_%s WHERE NOT paid', s, t, s, t);
            EXECUTE format(
                'CREATE FUNCTION area_%s.total_%s(region integer, since date DEFAULT now()) '
                'RETURNS numeric LANGUAGE sql AS ''SELECT 1.0''', s, t);
        END LOOP;
    END LOOP;
END
$do$;
VACUUM ANALYZE;
