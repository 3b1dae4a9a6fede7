-- Columns: schema_name
-- The schemas of users, not those of the system, of temporary objects or of extensions.
-- 3079 is pg_extension, which the text may not name because servers before 9.1 have none.
SELECT n.nspname AS schema_name
FROM pg_catalog.pg_namespace AS n
WHERE n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND n.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.refclassid = '3079'
        AND d.classid = 'pg_catalog.pg_namespace'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype = 'e')
ORDER BY pg_catalog.lower(n.nspname::pg_catalog.text), n.nspname
