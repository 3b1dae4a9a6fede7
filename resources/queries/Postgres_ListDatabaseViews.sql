-- Columns: table_schema, table_name
-- The views of every schema of users, or of the one that the clause names.
-- 3079 is pg_extension, which the text may not name because servers before 9.1 have none.
SELECT table_schema, table_name
FROM (
    SELECT n.nspname AS table_schema, c.relname AS table_name
    FROM pg_catalog.pg_class AS c
    JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
    WHERE c.relkind IN ('v')
      AND n.nspname <> 'information_schema'
      AND n.nspname !~ '^pg_'::pg_catalog.text
      AND c.oid NOT IN (
          SELECT d.objid
          FROM pg_catalog.pg_depend AS d
          WHERE d.refclassid = '3079'
            AND d.classid = 'pg_catalog.pg_class'::pg_catalog.regclass::pg_catalog.oid
            AND d.deptype = 'e')
) AS views
WHERE true {SCHEMA_CLAUSE}
