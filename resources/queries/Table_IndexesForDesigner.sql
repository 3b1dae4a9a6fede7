-- Columns: index_name, index_type, index_is_unique, index_fields
-- The indexes of one table with the columns or expressions of their keys, in order. A column that
-- an index only carries along has no operator class and is no part of the key.
SELECT
    x.relname AS index_name,
    m.amname AS index_type,
    i.indisunique AS index_is_unique,
    ARRAY(
        SELECT
            COALESCE(
                a.attname::pg_catalog.text,
                pg_catalog.pg_get_indexdef(i.indexrelid, place + 1, true))
        FROM pg_catalog.generate_series(0, pg_catalog.array_upper(i.indclass, 1)) AS place
        LEFT JOIN pg_catalog.pg_attribute AS a
            ON a.attrelid = i.indrelid AND a.attnum = i.indkey[place] AND a.attnum <> 0
        ORDER BY place
    ) AS index_fields
FROM pg_catalog.pg_index AS i
JOIN pg_catalog.pg_class AS x ON x.oid = i.indexrelid
JOIN pg_catalog.pg_am AS m ON m.oid = x.relam
JOIN pg_catalog.pg_class AS c ON c.oid = i.indrelid
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE n.nspname = '{TABLE_SCHEMA}'
  AND c.relname = '{TABLE_NAME}'
ORDER BY x.relname
