-- Columns: column_name, is_pk, column_type, is_nullable, default_value
-- The columns of one table or view. An identity column reads as if its sequence were its default.
SELECT
    a.attname AS column_name,
    COALESCE(a.attnum = ANY (k.conkey), false) AS is_pk,
    pg_catalog.format_type(a.atttypid, a.atttypmod) AS column_type,
    NOT a.attnotnull AS is_nullable,
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
          AND owned.deptype = 'i')) AS default_value
FROM pg_catalog.pg_attribute AS a
LEFT JOIN pg_catalog.pg_attrdef AS d ON d.adrelid = a.attrelid AND d.adnum = a.attnum
LEFT JOIN pg_catalog.pg_constraint AS k ON k.conrelid = a.attrelid AND k.contype = 'p'
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
