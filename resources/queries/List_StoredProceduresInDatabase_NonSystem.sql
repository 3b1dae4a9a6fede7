-- Columns: function_name, arguments, schema_name
-- Functions, procedures, aggregates and window functions of every schema of users, or of the one
-- that the clause names. The arguments are what DROP FUNCTION takes between its parentheses. What
-- extensions or types bring along (the constructors of a range) is left out.
SELECT
    p.proname AS function_name,
    pg_catalog.pg_get_function_identity_arguments(p.oid) AS arguments,
    n.nspname AS schema_name
FROM pg_catalog.pg_proc AS p
JOIN pg_catalog.pg_namespace AS n ON n.oid = p.pronamespace
WHERE n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND p.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.classid = 'pg_catalog.pg_proc'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype IN ('e', 'i'))
  {SCHEMA_CLAUSE}
