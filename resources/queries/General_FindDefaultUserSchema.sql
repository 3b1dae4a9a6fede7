-- Columns: default_schema
-- The schema in which the user's new objects are made: the first of the search path that exists. NULL when none does.
SELECT pg_catalog.current_schema() AS default_schema
