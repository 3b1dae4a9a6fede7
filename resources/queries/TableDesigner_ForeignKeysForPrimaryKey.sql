-- Columns: table_name
-- The tables with foreign keys to this column, named as a query would have to. The table's schema
-- is not known here: better a table too many than one that loses its key unannounced.
SELECT DISTINCT k.conrelid::pg_catalog.regclass::pg_catalog.text AS table_name
FROM pg_catalog.pg_constraint AS k
JOIN pg_catalog.pg_class AS target ON target.oid = k.confrelid
JOIN pg_catalog.pg_attribute AS a ON a.attrelid = k.confrelid AND a.attnum = ANY (k.confkey)
WHERE k.contype = 'f'
  AND target.relname = '{TABLE_NAME}'
  AND a.attname = '{COLUMN_NAME}'
ORDER BY table_name
