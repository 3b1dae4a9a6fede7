-- Columns: trigger_name, definition
-- The triggers of one table (since 9.0). EXECUTE FUNCTION (since 11) reads as the older EXECUTE
-- PROCEDURE, which every version takes and from which the function's name is taken.
SELECT
    g.tgname AS trigger_name,
    pg_catalog.regexp_replace(
        pg_catalog.pg_get_triggerdef(g.oid), '^(.*) EXECUTE FUNCTION ', E'\\1 EXECUTE PROCEDURE ')
        AS definition
FROM pg_catalog.pg_trigger AS g
JOIN pg_catalog.pg_class AS c ON c.oid = g.tgrelid
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE n.nspname = '{TABLE_SCHEMA}'
  AND c.relname = '{TABLE_NAME}'
  AND NOT g.tgisinternal
ORDER BY g.tgname
