-- Columns: trigger_name, event, action, timing
-- One trigger (since 9.0) in pieces. The event will be upper-cased, so that columns whose names
-- need quotes are spelled in code points. The action follows FOR EACH ROW: where the trigger is
-- more or other than a script with that can make, a comment in front says so.
SELECT
    g.tgname AS trigger_name,
    pg_catalog.substr(
        CASE WHEN (g.flags & 4) <> 0 THEN ' OR INSERT' ELSE '' END
            || CASE WHEN (g.flags & 8) <> 0 THEN ' OR DELETE' ELSE '' END
            || CASE WHEN (g.flags & 16) <> 0 THEN ' OR UPDATE' ELSE '' END
            || COALESCE(
                ' OF ' || NULLIF(
                    pg_catalog.array_to_string(
                        ARRAY(
                            SELECT
                                CASE
                                    WHEN pg_catalog.quote_ident(a.attname::pg_catalog.text)
                                        = a.attname::pg_catalog.text THEN a.attname::pg_catalog.text
                                    ELSE 'U&"' || pg_catalog.array_to_string(
                                        ARRAY(
                                            SELECT
                                                E'\\+' || pg_catalog.lpad(
                                                    pg_catalog.to_hex(
                                                        pg_catalog.ascii(
                                                            pg_catalog.substr(
                                                                a.attname::pg_catalog.text, i, 1))),
                                                    6,
                                                    '0')
                                            FROM pg_catalog.generate_series(
                                                1,
                                                pg_catalog.length(a.attname::pg_catalog.text)) AS i
                                            ORDER BY i),
                                        '') || '"'
                                END
                            FROM pg_catalog.pg_attribute AS a
                            WHERE a.attrelid = g.tgrelid AND a.attnum = ANY (g.tgattr)
                            ORDER BY a.attnum),
                        ', '),
                    ''),
                '')
            || CASE WHEN (g.flags & 32) <> 0 THEN ' OR TRUNCATE' ELSE '' END,
        5) AS event,
    CASE
        WHEN g.definition ~ '^CREATE CONSTRAINT '::pg_catalog.text
            THEN E'/* The trigger is a constraint, which this script leaves out. */\n'
        ELSE ''
    END || CASE
        WHEN (g.flags & 1) = 0
            THEN E'/* The trigger is FOR EACH STATEMENT: change the line above. */\n'
        ELSE ''
    END || COALESCE(
        '/* Before FOR EACH belongs: '
        || pg_catalog.substring(g.definition, ' (REFERENCING .*) FOR EACH ')
        || E' */\n',
        '') || pg_catalog.substring(g.definition, ' FOR EACH (?:ROW|STATEMENT) (.*)$') AS action,
    CASE
        WHEN (g.flags & 64) <> 0 THEN 'INSTEAD OF'
        WHEN (g.flags & 2) <> 0 THEN 'BEFORE'
        ELSE 'AFTER'
    END AS timing
FROM (
    SELECT
        f.tgname,
        f.tgrelid,
        f.tgattr,
        f.tgtype::pg_catalog.int4 AS flags,
        pg_catalog.pg_get_triggerdef(f.oid) AS definition
    FROM pg_catalog.pg_trigger AS f
    JOIN pg_catalog.pg_class AS c ON c.oid = f.tgrelid
    JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
    WHERE n.nspname = '{SCHEMA_NAME}'
      AND c.relname = '{TABLE_NAME}'
      AND f.tgname = '{TRIGGER_NAME}'
      AND NOT f.tgisinternal
) AS g
