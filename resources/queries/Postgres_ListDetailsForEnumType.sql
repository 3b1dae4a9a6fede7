-- Columns: label
-- The labels of one enumeration, in their order. Servers before 9.1 order labels by their oids:
-- enumsortorder then is the outer 0.
SELECT e.enumlabel AS label
FROM pg_catalog.pg_enum AS e
JOIN pg_catalog.pg_type AS t ON t.oid = e.enumtypid
JOIN pg_catalog.pg_namespace AS n ON n.oid = t.typnamespace
CROSS JOIN (SELECT 0 AS enumsortorder) AS unordered
WHERE n.nspname = '{TYPE_SCHEMA}'
  AND t.typname = '{TYPE_NAME}'
ORDER BY
    (SELECT enumsortorder FROM pg_catalog.pg_enum AS ordered WHERE ordered.oid = e.oid),
    e.oid
