CREATE TABLE new_table
(
	id bigserial PRIMARY KEY,
	name text NOT NULL,
	created_at timestamp with time zone NOT NULL DEFAULT now()
);
