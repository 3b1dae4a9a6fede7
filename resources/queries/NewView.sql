CREATE OR REPLACE VIEW new_view AS
SELECT
	n AS id,
	'Name ' || n AS name
FROM
	generate_series(1, 10) AS n;
