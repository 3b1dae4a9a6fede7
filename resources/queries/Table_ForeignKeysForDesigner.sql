-- Columns: constraint_name, column_name, foreign_table_schema, foreign_table_name, foreign_column_name, update_rule, delete_rule
-- The foreign keys of one table, a row for each pair of columns.
SELECT
    k.conname AS constraint_name,
    own.attname AS column_name,
    target_schema.nspname AS foreign_table_schema,
    target.relname AS foreign_table_name,
    foreign_column.attname AS foreign_column_name,
    CASE k.confupdtype
        WHEN 'a' THEN 'NO ACTION'
        WHEN 'r' THEN 'RESTRICT'
        WHEN 'c' THEN 'CASCADE'
        WHEN 'n' THEN 'SET NULL'
        WHEN 'd' THEN 'SET DEFAULT'
    END AS update_rule,
    CASE k.confdeltype
        WHEN 'a' THEN 'NO ACTION'
        WHEN 'r' THEN 'RESTRICT'
        WHEN 'c' THEN 'CASCADE'
        WHEN 'n' THEN 'SET NULL'
        WHEN 'd' THEN 'SET DEFAULT'
    END AS delete_rule
FROM (
    SELECT pair.*, pg_catalog.generate_subscripts(pair.conkey, 1) AS place
    FROM pg_catalog.pg_constraint AS pair
    JOIN pg_catalog.pg_class AS c ON c.oid = pair.conrelid
    JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
    WHERE pair.contype = 'f'
      AND n.nspname = '{TABLE_SCHEMA}'
      AND c.relname = '{TABLE_NAME}'
) AS k
JOIN pg_catalog.pg_class AS target ON target.oid = k.confrelid
JOIN pg_catalog.pg_namespace AS target_schema ON target_schema.oid = target.relnamespace
JOIN pg_catalog.pg_attribute AS own
    ON own.attrelid = k.conrelid AND own.attnum = k.conkey[k.place]
JOIN pg_catalog.pg_attribute AS foreign_column
    ON foreign_column.attrelid = k.confrelid AND foreign_column.attnum = k.confkey[k.place]
ORDER BY k.conname, k.place
