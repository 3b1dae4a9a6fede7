-- Columns: definition, schema_name
-- The query of the view of this name, with its CHECK OPTION (since 9.4); a comment in front tells of
-- options that stand elsewhere (since 9.2). Of several schemas', the last row is the one that the
-- name alone reaches, and says that there are others.
SELECT
    CASE
        WHEN pg_catalog.count(*) OVER () > 1 THEN
            '-- This is the one in schema '
            || pg_catalog.translate(n.nspname::pg_catalog.text, E'\r\n', '  ')
            || E'; other schemas have a view of this name too.\n'
        ELSE ''
    END || COALESCE(
        '/* Before AS belongs: WITH (' || NULLIF(
            pg_catalog.array_to_string(
                ARRAY(
                    SELECT option
                    FROM pg_catalog.unnest(c.reloptions) AS option
                    WHERE option !~ '^check_option='::pg_catalog.text),
                ', '),
            '') || E') */\n',
        '') || COALESCE(
        pg_catalog.rtrim(pg_catalog.pg_get_viewdef(c.oid, true), ';') || (
            SELECT
                E'\n  WITH '
                || pg_catalog.upper(pg_catalog.substr(option, pg_catalog.length('check_option=') + 1))
                || ' CHECK OPTION;'
            FROM pg_catalog.unnest(c.reloptions) AS option
            WHERE option ~ '^check_option='::pg_catalog.text),
        pg_catalog.pg_get_viewdef(c.oid, true)) AS definition,
    n.nspname AS schema_name
FROM pg_catalog.pg_class AS c
JOIN pg_catalog.pg_namespace AS n ON n.oid = c.relnamespace
WHERE c.relkind = 'v'
  AND c.relname = '{VIEW_NAME}'
  AND n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
ORDER BY pg_catalog.pg_table_is_visible(c.oid), n.nspname DESC
