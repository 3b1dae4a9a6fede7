CREATE OR REPLACE PROCEDURE new_procedure(message text)
LANGUAGE plpgsql
AS $$
BEGIN
	RAISE NOTICE '%', message;
END;
$$;
