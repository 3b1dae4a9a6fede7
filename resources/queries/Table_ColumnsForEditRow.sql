-- Columns: column_name, column_default, pk_constraint_name, data_type
-- The columns of one table; when there is none of this name, the server's error says so. An
-- identity column reads as if its sequence were its default.
SELECT
    a.attname AS column_name,
    COALESCE(
        pg_catalog.pg_get_expr(d.adbin, d.adrelid),
        (
        -- A sequence that depends internally on a column makes it an identity column (since 10).
        SELECT
            'nextval(' || pg_catalog.quote_literal(s.oid::pg_catalog.regclass::pg_catalog.text)
                || '::regclass)'
        FROM pg_catalog.pg_depend AS owned
        JOIN pg_catalog.pg_class AS s ON s.oid = owned.objid AND s.relkind = 'S'
        WHERE owned.classid = 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid
          AND owned.refclassid = 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid
          AND owned.refobjid = a.attrelid
          AND owned.refobjsubid = a.attnum
          AND owned.deptype = 'i')) AS column_default,
    k.conname AS pk_constraint_name,
    pg_catalog.format_type(a.atttypid, a.atttypmod) AS data_type
FROM pg_catalog.pg_attribute AS a
LEFT JOIN pg_catalog.pg_attrdef AS d ON d.adrelid = a.attrelid AND d.adnum = a.attnum
LEFT JOIN pg_catalog.pg_constraint AS k
    ON k.conrelid = a.attrelid AND k.contype = 'p' AND a.attnum = ANY (k.conkey)
WHERE a.attnum > 0
  AND NOT a.attisdropped
  AND a.attrelid = COALESCE(
      (
          SELECT c.oid
          FROM pg_catalog.pg_class AS c
          JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
          WHERE n.nspname = '{TABLE_SCHEMA}' AND c.relname = '{TABLE_NAME}'),
      (SELECT '{ESCAPED_TABLE_PATH}'::pg_catalog.text::pg_catalog.regclass::pg_catalog.oid))
ORDER BY a.attnum
