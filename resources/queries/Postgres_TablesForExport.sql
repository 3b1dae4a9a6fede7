-- Columns: table_schema, table_name, column_name, column_type, is_nullable, is_pk
-- The columns of all tables of users.
-- Each type is spelled out once, not once a column: three times as fast on a large catalogue.
-- 3079 is pg_extension, which the text may not name because servers before 9.1 have none.
SELECT
    n.nspname AS table_schema,
    c.relname AS table_name,
    a.attname AS column_name,
    t.type_name AS column_type,
    NOT a.attnotnull AS is_nullable,
    COALESCE(a.attnum = ANY (k.conkey), false) AS is_pk
FROM pg_catalog.pg_class AS c
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
JOIN pg_catalog.pg_attribute AS a ON a.attrelid = c.oid
JOIN (
    SELECT
        used.atttypid,
        used.atttypmod,
        pg_catalog.format_type(used.atttypid, used.atttypmod) AS type_name
    FROM pg_catalog.pg_attribute AS used
    WHERE used.attnum > 0 AND NOT used.attisdropped
    GROUP BY used.atttypid, used.atttypmod
) AS t ON t.atttypid = a.atttypid AND t.atttypmod = a.atttypmod
LEFT JOIN pg_catalog.pg_constraint AS k ON k.conrelid = c.oid AND k.contype = 'p'
WHERE c.relkind IN ('r', 'p', 'f')
  AND a.attnum > 0
  AND NOT a.attisdropped
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND c.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.refclassid = '3079'
        AND d.classid = 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype = 'e')
ORDER BY n.nspname, c.relname, a.attnum
