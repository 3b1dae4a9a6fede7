-- Columns: schema_name, sequence_name
-- The sequences of every schema of users, or of the one that the clause names.
-- 3079 is pg_extension, which the text may not name because servers before 9.1 have none.
SELECT n.nspname AS schema_name, c.relname AS sequence_name
FROM pg_catalog.pg_class AS c
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE c.relkind = 'S'
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND c.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.refclassid = '3079'
        AND d.classid = 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype = 'e')
  {SCHEMA_CLAUSE}
