-- Columns: attribute_name, attribute_type
-- The attributes of one composite type, in their order; other types have none.
SELECT
    a.attname AS attribute_name,
    pg_catalog.format_type(a.atttypid, a.atttypmod) AS attribute_type
FROM pg_catalog.pg_type AS t
JOIN pg_catalog.pg_namespace AS n ON n.oid = t.typnamespace
JOIN pg_catalog.pg_attribute AS a ON a.attrelid = t.typrelid
WHERE n.nspname = '{TYPE_SCHEMA}'
  AND t.typname = '{TYPE_NAME}'
  AND a.attnum > 0
  AND NOT a.attisdropped
ORDER BY a.attnum
