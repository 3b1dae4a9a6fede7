-- Columns: column_name
-- The columns of one table's primary key, in the order of the key.
SELECT a.attname AS column_name
FROM (
    SELECT k.conrelid, k.conkey, pg_catalog.generate_subscripts(k.conkey, 1) AS place
    FROM pg_catalog.pg_constraint AS k
    WHERE k.contype = 'p'
      AND k.conrelid = '{ESCAPED_TABLE_PATH}'::pg_catalog.regclass::pg_catalog.oid
) AS part
JOIN pg_catalog.pg_attribute AS a
    ON a.attrelid = part.conrelid AND a.attnum = part.conkey[part.place]
ORDER BY part.place
