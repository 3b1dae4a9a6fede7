-- Columns: trigger_name, trigger_definition, action_timing, event_manipulation
-- The triggers of one table (since 9.0), a row for each event; the definition is what follows the
-- name of the table.
SELECT
    g.tgname AS trigger_name,
    pg_catalog.substring(
        pg_catalog.pg_get_triggerdef(g.oid), ' ((?:REFERENCING|FOR EACH) .*)$')
        AS trigger_definition,
    CASE
        WHEN (g.tgtype::pg_catalog.int4 & 64) <> 0 THEN 'INSTEAD OF'
        WHEN (g.tgtype::pg_catalog.int4 & 2) <> 0 THEN 'BEFORE'
        ELSE 'AFTER'
    END AS action_timing,
    event.name AS event_manipulation
FROM pg_catalog.pg_trigger AS g
JOIN pg_catalog.pg_class AS c ON c.oid = g.tgrelid
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
JOIN (VALUES (4, 'INSERT'), (8, 'DELETE'), (16, 'UPDATE'), (32, 'TRUNCATE')) AS event (flag, name)
    ON (g.tgtype::pg_catalog.int4 & event.flag) <> 0
WHERE n.nspname = '{TABLE_SCHEMA}'
  AND c.relname = '{TABLE_NAME}'
  AND NOT g.tgisinternal
ORDER BY g.tgname, event.flag
