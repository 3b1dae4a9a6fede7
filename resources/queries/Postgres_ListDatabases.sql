-- Columns: database_name
-- The databases that the user may connect to.
SELECT d.datname AS database_name
FROM pg_catalog.pg_database AS d
WHERE d.datallowconn
  AND pg_catalog.has_database_privilege(d.oid, 'CONNECT')
ORDER BY d.datname
