-- Columns: kind, is_meant, name, arguments
-- What there is under a name in a schema, or without one in the search path, whose kinds are those
-- that scripts are asked for by; with a member's name also the table's column or trigger. Names that
-- differ in case alone and overloads with other arguments are listed, too, as not meant. The schema
-- stands among the rows when it exists. What no script can tell of is of a kind of its own.
SELECT
    CASE
        WHEN c.relkind IN ('v', 'm')
            AND (n.nspname = 'information_schema' OR n.nspname ~ '^pg_'::pg_catalog.text)
            THEN 'system view'
        WHEN c.relkind = 'v' THEN 'view'
        WHEN c.relkind = 'm' THEN 'materialized-view'
        WHEN c.relkind = 'S' THEN 'sequence'
        WHEN c.relkind IN ('i', 'I') THEN 'index'
        ELSE 'table'
    END AS kind,
    c.relname = '{OBJECT_NAME}' AS is_meant,
    c.relname AS name,
    '' AS arguments
FROM pg_catalog.pg_class AS c
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE c.relkind IN ('r', 'p', 'f', 'v', 'm', 'S', 'i', 'I')
  AND (
      n.nspname = '{SCHEMA_NAME}'
      OR ('{SCHEMA_NAME}' = '' AND pg_catalog.pg_table_is_visible(c.oid)))
  AND pg_catalog.lower(c.relname::pg_catalog.text) = pg_catalog.lower('{OBJECT_NAME}')
UNION ALL
SELECT
    CASE t.typtype WHEN 'e' THEN 'enumeration' ELSE 'type' END,
    t.typname = '{OBJECT_NAME}',
    t.typname,
    ''
FROM pg_catalog.pg_type AS t
JOIN pg_catalog.pg_namespace AS n ON n.oid = t.typnamespace
LEFT JOIN pg_catalog.pg_class AS r ON r.oid = t.typrelid
WHERE n.nspname = '{SCHEMA_NAME}'
  AND t.typisdefined
  AND (r.relkind IS NULL OR r.relkind = 'c')
  AND pg_catalog.lower(t.typname::pg_catalog.text) = pg_catalog.lower('{OBJECT_NAME}')
UNION ALL
SELECT
    CASE
        WHEN n.nspname = 'information_schema' OR n.nspname ~ '^pg_'::pg_catalog.text
            THEN 'system function'
        ELSE 'function'
    END,
    p.proname = '{OBJECT_NAME}'
    AND '{ARGUMENTS}' IN (
        pg_catalog.pg_get_function_identity_arguments(p.oid),
        pg_catalog.oidvectortypes(p.proargtypes)),
    p.proname,
    pg_catalog.pg_get_function_identity_arguments(p.oid)
FROM pg_catalog.pg_proc AS p
JOIN pg_catalog.pg_namespace AS n ON n.oid = p.pronamespace
WHERE n.nspname = '{SCHEMA_NAME}'
  AND pg_catalog.lower(p.proname::pg_catalog.text) = pg_catalog.lower('{OBJECT_NAME}')
UNION ALL
SELECT 'column', a.attname = '{MEMBER_NAME}', a.attname, ''
FROM pg_catalog.pg_attribute AS a
JOIN pg_catalog.pg_class AS c ON c.oid = a.attrelid
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE n.nspname = '{SCHEMA_NAME}'
  AND c.relname = '{OBJECT_NAME}'
  AND a.attnum > 0
  AND NOT a.attisdropped
  AND pg_catalog.lower(a.attname::pg_catalog.text) = pg_catalog.lower('{MEMBER_NAME}')
UNION ALL
SELECT 'trigger', g.tgname = '{MEMBER_NAME}', g.tgname, ''
FROM pg_catalog.pg_trigger AS g
JOIN pg_catalog.pg_class AS c ON c.oid = g.tgrelid
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE n.nspname = '{SCHEMA_NAME}'
  AND c.relname = '{OBJECT_NAME}'
  AND pg_catalog.lower(g.tgname::pg_catalog.text) = pg_catalog.lower('{MEMBER_NAME}')
UNION ALL
SELECT 'database', d.datname = '{OBJECT_NAME}', d.datname, ''
FROM pg_catalog.pg_database AS d
WHERE '{SCHEMA_NAME}' = ''
  AND pg_catalog.lower(d.datname::pg_catalog.text) = pg_catalog.lower('{OBJECT_NAME}')
UNION ALL
SELECT 'schema', n.nspname = '{SCHEMA_NAME}', n.nspname, ''
FROM pg_catalog.pg_namespace AS n
WHERE pg_catalog.lower(n.nspname::pg_catalog.text) = pg_catalog.lower('{SCHEMA_NAME}')
