-- Everything that scripts are about, a line a fact.
WITH own AS (
    SELECT oid, nspname FROM pg_namespace WHERE nspname !~ '^pg_' AND nspname <> 'information_schema'
), facts AS (
    SELECT format('%s %s.%s', CASE relkind WHEN 'v' THEN 'view' WHEN 'm' THEN 'matview'
            WHEN 'S' THEN 'sequence' WHEN 'i' THEN 'index' WHEN 'c' THEN 'type' ELSE 'table' END,
        nspname, relname) AS fact
    FROM pg_class JOIN own ON own.oid = relnamespace
    WHERE relkind NOT IN ('t', 'I')
    UNION ALL
    SELECT format('column %s.%s %s %s: %s%s%s%s%s%s', nspname, relname,
        row_number() OVER (PARTITION BY attrelid ORDER BY attnum), attname,
        format_type(atttypid, atttypmod),
        CASE WHEN attcollation <> typcollation THEN ' COLLATE ' || attcollation::regcollation END,
        ' DEFAULT ' || pg_get_expr(adbin, adrelid), CASE WHEN attnotnull THEN ' NOT NULL' END,
        ' identity ' || nullif(attidentity::text, ''), ' generated ' || nullif(attgenerated::text, ''))
    FROM pg_attribute AS a JOIN pg_class AS c ON c.oid = attrelid JOIN own ON own.oid = relnamespace
    JOIN pg_type AS t ON t.oid = atttypid
    LEFT JOIN pg_attrdef AS d ON adrelid = attrelid AND adnum = attnum
    WHERE attnum > 0 AND NOT attisdropped AND relkind IN ('r', 'p', 'f', 'v', 'm', 'c')
    UNION ALL
    SELECT format('key %s.%s: %s', nspname, relname, pg_get_constraintdef(k.oid))
    FROM pg_constraint AS k JOIN pg_class AS c ON c.oid = conrelid JOIN own ON own.oid = relnamespace
    WHERE contype = 'p'
    UNION ALL
    SELECT format('counter %s: %s+%s [%s, %s]%s', seqrelid::regclass, seqstart, seqincrement, seqmin,
        seqmax, CASE WHEN seqcycle THEN ' cycle' END)
    FROM pg_sequence
    UNION ALL
    SELECT format('definition %s.%s: %s %s', nspname, relname, pg_get_viewdef(c.oid), reloptions)
    FROM pg_class AS c JOIN own ON own.oid = relnamespace WHERE relkind IN ('v', 'm')
    UNION ALL
    SELECT format('function %s.%s(%s): %s %s', nspname, proname,
        pg_get_function_identity_arguments(p.oid), prokind,
        CASE WHEN prokind = 'a' THEN concat_ws(',', aggtransfn, aggtranstype::regtype, aggfinalfn,
                aggcombinefn, agginitval, aggfinalextra, aggkind)
            ELSE pg_get_functiondef(p.oid) END)
    FROM pg_proc AS p JOIN own ON own.oid = pronamespace
    LEFT JOIN pg_aggregate ON aggfnoid = p.oid
    WHERE p.oid NOT IN (SELECT objid FROM pg_depend WHERE deptype = 'i')
    UNION ALL
    SELECT format('label %s.%s %s %s', nspname, typname,
        row_number() OVER (PARTITION BY enumtypid ORDER BY enumsortorder), enumlabel)
    FROM pg_enum JOIN pg_type AS t ON t.oid = enumtypid JOIN own ON own.oid = typnamespace
    UNION ALL
    SELECT format('type %s %s.%s', typtype, nspname, typname)
    FROM pg_type JOIN own ON own.oid = typnamespace WHERE typtype IN ('d', 'e', 'r')
    UNION ALL
    SELECT format('trigger %s', pg_get_triggerdef(oid)) FROM pg_trigger WHERE NOT tgisinternal
)
SELECT string_agg(btrim(regexp_replace(fact, '\s+', ' ', 'g')), E'\n') FROM facts;
