-- Columns: column_name, data_type, is_nullable, column_default, character_maximum_length, numeric_precision, pk_constraint_name
-- The columns of one table, whose name may be given in quotes. The length of a character type
-- stands beside the type, not in it. An identity column reads as if its sequence were its default.
-- 1042 is character, 1043 is character varying.
SELECT
    a.attname AS column_name,
    pg_catalog.format_type(
        a.atttypid,
        CASE WHEN a.atttypid IN ('1042', '1043') THEN NULL ELSE a.atttypmod END) AS data_type,
    CASE WHEN a.attnotnull THEN 'NO' ELSE 'YES' END AS is_nullable,
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
    CASE WHEN a.atttypid IN ('1042', '1043') AND a.atttypmod > 4 THEN a.atttypmod - 4 END
        AS character_maximum_length,
    CASE pg_catalog.format_type(a.atttypid, NULL)
        WHEN 'smallint' THEN 16
        WHEN 'integer' THEN 32
        WHEN 'bigint' THEN 64
        WHEN 'real' THEN 24
        WHEN 'double precision' THEN 53
        WHEN 'numeric' THEN CASE WHEN a.atttypmod > 4 THEN ((a.atttypmod - 4) >> 16) & 65535 END
    END AS numeric_precision,
    k.conname AS pk_constraint_name
FROM pg_catalog.pg_attribute AS a
LEFT JOIN pg_catalog.pg_attrdef AS d ON d.adrelid = a.attrelid AND d.adnum = a.attnum
LEFT JOIN pg_catalog.pg_constraint AS k
    ON k.conrelid = a.attrelid AND k.contype = 'p' AND a.attnum = ANY (k.conkey)
WHERE a.attnum > 0
  AND NOT a.attisdropped
  AND a.attrelid = (
      SELECT named.oid
      FROM pg_catalog.pg_class AS named
      JOIN pg_catalog.pg_namespace AS n ON n.oid = named.relnamespace
      WHERE n.nspname = '{TABLE_SCHEMA}'
        AND named.relname IN (
          '{TABLE_NAME}', pg_catalog.btrim('{ESCAPED_TABLE_NAME}', '"')::pg_catalog.name)
      ORDER BY named.relname <> '{TABLE_NAME}'
      LIMIT 1)
ORDER BY a.attnum
