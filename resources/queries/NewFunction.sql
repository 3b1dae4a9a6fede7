CREATE OR REPLACE FUNCTION new_function(first integer, second integer DEFAULT 0)
RETURNS integer
LANGUAGE plpgsql
STABLE
AS $$
BEGIN
	RETURN first + second;
END;
$$;
