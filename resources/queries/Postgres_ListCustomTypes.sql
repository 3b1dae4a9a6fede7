-- Columns: schema_name, type_name, kind
-- The types that users made, with pg_type.typtype as their kind: enumerations (e), composites (c),
-- domains (d), ranges (r) and base types (b). What another object brings along is left out: the
-- rows of tables, arrays, and the multirange of a range.
-- 3079 is pg_extension, which the text may not name because servers before 9.1 have none.
SELECT n.nspname AS schema_name, t.typname AS type_name, t.typtype AS kind
FROM pg_catalog.pg_type AS t
JOIN pg_catalog.pg_namespace AS n ON n.oid = t.typnamespace
LEFT JOIN pg_catalog.pg_class AS c ON c.oid = t.typrelid
LEFT JOIN pg_catalog.pg_type AS element ON element.oid = t.typelem
WHERE t.typisdefined
  AND t.typtype IN ('b', 'c', 'd', 'e', 'r')
  AND (c.relkind IS NULL OR c.relkind = 'c')
  AND (element.typarray IS NULL OR element.typarray <> t.oid)
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND t.oid NOT IN (
      SELECT d.objid
      FROM pg_catalog.pg_depend AS d
      WHERE d.refclassid = '3079'
        AND d.classid = 'pg_catalog.pg_type'::pg_catalog.regclass::pg_catalog.oid
        AND d.deptype = 'e')
  {SCHEMA_CLAUSE}
