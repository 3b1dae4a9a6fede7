-- Columns: definition
-- What makes the function, procedure or aggregate of this name, which may be qualified, with these
-- arguments, which may be without names. Of several schemas', the last row is the one that the name
-- alone reaches, and says that there are others. Servers lack columns of pg_aggregate that came
-- later: these names then are those of the outer row.
SELECT
    CASE
        WHEN pg_catalog.count(*) OVER () > 1 THEN
            '-- This is the one in schema '
            || pg_catalog.translate(n.nspname::pg_catalog.text, E'\r\n', '  ')
            || E'; other schemas have a function of this name too.\n'
        ELSE ''
    END || CASE
        WHEN g.aggfnoid IS NULL
            THEN pg_catalog.rtrim(pg_catalog.pg_get_functiondef(p.oid), E'\n') || ';'
        ELSE 'CREATE AGGREGATE ' || pg_catalog.quote_ident(n.nspname::pg_catalog.text) || '.'
            || pg_catalog.quote_ident(p.proname::pg_catalog.text) || '('
            || COALESCE(NULLIF(pg_catalog.pg_get_function_identity_arguments(p.oid), ''), '*')
            || E') (\n\t'
            || pg_catalog.array_to_string(
                ARRAY[
                    'SFUNC = ' || g.aggtransfn::pg_catalog.text,
                    'STYPE = ' || pg_catalog.format_type(g.aggtranstype, NULL),
                    'FINALFUNC = ' || NULLIF(g.aggfinalfn::pg_catalog.text, '-'),
                    (
                        SELECT CASE WHEN aggfinalextra THEN 'FINALFUNC_EXTRA' END
                        FROM pg_catalog.pg_aggregate AS own
                        WHERE own.aggfnoid::pg_catalog.oid = p.oid),
                    (
                        SELECT 'COMBINEFUNC = ' || NULLIF(aggcombinefn::pg_catalog.text, '-')
                        FROM pg_catalog.pg_aggregate AS own
                        WHERE own.aggfnoid::pg_catalog.oid = p.oid),
                    'INITCOND = ' || pg_catalog.quote_literal(g.agginitval),
                    'SORTOP = OPERATOR('
                        || NULLIF(g.aggsortop::pg_catalog.regoper::pg_catalog.text, '0') || ')'],
                E',\n\t')
            || E'\n);'
    END AS definition
FROM pg_catalog.pg_proc AS p
JOIN pg_catalog.pg_namespace AS n ON n.oid = p.pronamespace
LEFT JOIN pg_catalog.pg_aggregate AS g ON g.aggfnoid::pg_catalog.oid = p.oid
CROSS JOIN (SELECT false AS aggfinalextra, '-' AS aggcombinefn) AS later
WHERE n.nspname <> 'information_schema'
  AND n.nspname !~ '^pg_'::pg_catalog.text
  AND '{FUNCTION_NAME}' IN (
    p.proname::pg_catalog.text,
    pg_catalog.quote_ident(p.proname::pg_catalog.text),
    n.nspname::pg_catalog.text || '.' || p.proname::pg_catalog.text,
    pg_catalog.quote_ident(n.nspname::pg_catalog.text) || '.'
        || pg_catalog.quote_ident(p.proname::pg_catalog.text))
  AND '{FUNCTION_OVERLOAD}' IN (
    pg_catalog.pg_get_function_identity_arguments(p.oid),
    pg_catalog.oidvectortypes(p.proargtypes))
ORDER BY pg_catalog.pg_function_is_visible(p.oid), n.nspname DESC
