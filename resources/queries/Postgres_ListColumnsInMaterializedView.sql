-- Columns: column_name, column_type, is_nullable
-- The columns of one materialized view.
SELECT
    a.attname AS column_name,
    pg_catalog.format_type(a.atttypid, a.atttypmod) AS column_type,
    NOT a.attnotnull AS is_nullable
FROM pg_catalog.pg_attribute AS a
WHERE a.attnum > 0
  AND NOT a.attisdropped
  AND a.attrelid = (
      -- The name comes as SQL would have it: with quotes around it, or around each of the two parts
      -- of a name with a dot. Among names that read alike, the one without quotes in it is meant.
      SELECT named.oid
      FROM pg_catalog.pg_class AS named
      JOIN pg_catalog.pg_namespace AS n ON n.oid = named.relnamespace
      WHERE n.nspname = '{TABLE_SCHEMA}'
        AND named.relname IN (
          '{TABLE_NAME}',
          pg_catalog.regexp_replace('{TABLE_NAME}', '^"(.*)"$', E'\\1')::pg_catalog.name,
          pg_catalog.regexp_replace(
              '{TABLE_NAME}', '^"?([^.]*?)"?[.]"?([^.]*?)"?$', E'\\1.\\2')::pg_catalog.name)
      ORDER BY pg_catalog.length(named.relname::pg_catalog.text)
      LIMIT 1)
ORDER BY a.attnum
