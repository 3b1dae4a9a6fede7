-- Columns: server_version
SELECT pg_catalog.version() AS server_version
