-- Columns: definition, schema_name
-- The query of the materialized view (since 9.3) of this name; of several schemas', the last row is
-- the one that the name alone reaches, and says that there are others.
SELECT
    CASE
        WHEN pg_catalog.count(*) OVER () > 1 THEN
            '-- This is the one in schema '
            || pg_catalog.translate(n.nspname::pg_catalog.text, E'\r\n', '  ')
            || E'; other schemas have a materialized view of this name too.\n'
        ELSE ''
    END || pg_catalog.pg_get_viewdef(c.oid, true) AS definition,
    n.nspname AS schema_name
FROM pg_catalog.pg_class AS c
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE c.relkind = 'm'
  AND c.relname = '{VIEW_NAME}'
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
ORDER BY pg_catalog.pg_table_is_visible(c.oid), n.nspname DESC
