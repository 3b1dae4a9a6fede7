-- Columns: schema_name, object_name, object_type, sort_order, default_schema, search_text, details
-- As its namesake, where functions tell no more of their arguments than the types.
SELECT
    n.nspname AS schema_name,
    c.relname AS object_name,
    CASE c.relkind WHEN 'v' THEN 'VIEW' ELSE 'TABLE' END AS object_type,
    CASE c.relkind WHEN 'v' THEN 2 ELSE 1 END AS sort_order,
    COALESCE(pg_catalog.current_schema(), '') AS default_schema,
    c.relname AS search_text,
    '' AS details
FROM pg_catalog.pg_class AS c
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE c.relkind IN ('r', 'v')
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
UNION ALL
SELECT
    n.nspname,
    p.proname,
    'FUNCTION',
    3,
    COALESCE(pg_catalog.current_schema(), ''),
    p.proname,
    pg_catalog.oidvectortypes(p.proargtypes)
FROM pg_catalog.pg_proc AS p
JOIN pg_catalog.pg_namespace AS n ON n.oid = p.pronamespace
WHERE n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
ORDER BY sort_order, object_name, schema_name, details
