-- Columns: schema_name, object_name, object_type, sort_order, default_schema, search_text, details
-- Tables, then views, then functions (with their arguments as details), each by name: what the
-- lists of the tree hold. A user whose search path leads nowhere has an empty default schema.
-- 3079 is pg_extension, which the text may not name because servers before 9.1 have none.
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
WHERE c.relkind IN ('r', 'p', 'f', 'v')
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND c.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.refclassid = '3079'
        AND d.classid = 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype = 'e')
UNION ALL
SELECT
    n.nspname,
    p.proname,
    'FUNCTION',
    3,
    COALESCE(pg_catalog.current_schema(), ''),
    p.proname,
    pg_catalog.pg_get_function_identity_arguments(p.oid)
FROM pg_catalog.pg_proc AS p
JOIN pg_catalog.pg_namespace AS n ON n.oid = p.pronamespace
WHERE n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND p.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.classid = 'pg_catalog.pg_proc'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype IN ('e', 'i'))
ORDER BY sort_order, object_name, schema_name, details
