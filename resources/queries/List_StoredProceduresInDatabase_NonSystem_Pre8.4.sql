-- Columns: function_name, arguments, schema_name
-- As its namesake, where functions tell no more of their arguments than the types.
SELECT
    p.proname AS function_name,
    pg_catalog.oidvectortypes(p.proargtypes) AS arguments,
    n.nspname AS schema_name
FROM pg_catalog.pg_proc AS p
JOIN pg_catalog.pg_namespace AS n ON n.oid = p.pronamespace
WHERE n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  {SCHEMA_CLAUSE}
