-- Columns: type_name, type_id, label
-- The labels of every enumeration, in their order. Types of the same name are told apart by their
-- schemas. Servers before 9.1 order labels by their oids: enumsortorder then is the outer 0.
SELECT
    CASE
        WHEN pg_catalog.pg_type_is_visible(t.oid) THEN ''
        ELSE n.nspname::pg_catalog.text || '.'
    END || t.typname::pg_catalog.text AS type_name,
    t.oid AS type_id,
    e.enumlabel AS label
FROM pg_catalog.pg_enum AS e
JOIN pg_catalog.pg_type AS t ON t.oid = e.enumtypid
JOIN pg_catalog.pg_namespace AS n ON n.oid = t.typnamespace
CROSS JOIN (SELECT 0 AS enumsortorder) AS unordered
ORDER BY
    n.nspname,
    t.typname,
    (SELECT enumsortorder FROM pg_catalog.pg_enum AS ordered WHERE ordered.oid = e.oid),
    e.oid
