-- SPDX-FileCopyrightText: 2026 The Dabro developers
-- SPDX-License-Identifier: GPL-3.0-or-later
-- For every two types of the catalogue that no operator of the system takes exactly, one that fails.
CREATE SCHEMA evil;
SET search_path = pg_catalog;
DO $do$
DECLARE
    trap record;
BEGIN
    FOR trap IN
        SELECT l.name AS l, r.name AS r, o.name AS operator, o.result
        FROM (VALUES ('oid'), ('name'), ('text'), ('"char"'), ('int2'), ('int4'), ('int8'), ('bool'),
                     ('regclass'), ('regproc'), ('regtype'), ('json'), ('int2[]'), ('int2vector'))
            AS l (name)
        CROSS JOIN (VALUES ('oid'), ('name'), ('text'), ('"char"'), ('int2'), ('int4'), ('int8'),
                           ('bool'), ('regclass'), ('regproc'), ('regtype'), ('json'), ('int2[]'),
                           ('int2vector')) AS r (name)
        CROSS JOIN (VALUES ('=', 'bool'), ('<>', 'bool'), ('>', 'bool'), ('~', 'bool'),
                           ('!~', 'bool'), ('||', 'text'), ('->>', 'text'), ('&', 'int4'),
                           ('>>', 'int4'), ('-', 'int4'), ('+', 'int4')) AS o (name, result)
        WHERE NOT EXISTS (
            SELECT 1 FROM pg_operator AS own
            WHERE own.oprname = o.name
              AND own.oprleft = l.name::regtype AND own.oprright = r.name::regtype)
    LOOP
        EXECUTE format(
            'CREATE OR REPLACE FUNCTION evil.%I(%s, %s) RETURNS %s LANGUAGE plpgsql AS '
            '$$BEGIN RAISE ''trapped''; END$$',
            trap.result, trap.l, trap.r, trap.result);
        EXECUTE format(
            'CREATE OPERATOR evil.%s (LEFTARG = %s, RIGHTARG = %s, PROCEDURE = evil.%I)',
            trap.operator, trap.l, trap.r, trap.result);
    END LOOP;
END
$do$;
