-- SPDX-FileCopyrightText: 2026 The Dabro developers
-- SPDX-License-Identifier: GPL-3.0-or-later
-- What computes: views, functions, procedures, triggers, rules, policies and roles.

CREATE VIEW shop.order_totals AS
SELECT o.id, o.placed_on, o.customer_id, o.status, count(*) AS lines, o.shipping + sum(i.line_total) AS total
FROM shop.orders AS o JOIN shop.order_items AS i ON (i.order_id, i.placed_on) = (o.id, o.placed_on)
GROUP BY o.id, o.placed_on, o.customer_id, o.status, o.shipping;

CREATE VIEW shop.products_on_sale WITH (security_barrier) AS
SELECT id, sku, name, category_id, price, tags FROM shop.products WHERE NOT discontinued
WITH LOCAL CHECK OPTION;

CREATE RECURSIVE VIEW shop.category_tree (id, path, depth) AS
SELECT id, name, 0 FROM shop.categories WHERE parent_id IS NULL
UNION ALL
SELECT c.id, t.path || ' › ' || c.name, t.depth + 1
FROM shop.categories AS c JOIN category_tree AS t ON t.id = c.parent_id;

CREATE VIEW crm.mailing_list AS
SELECT c.number, c.first_name, c.last_name, c.email, (a.address).city, (a.address).country_code
FROM crm.customers AS c JOIN crm.addresses AS a ON a.customer_id = c.id AND a.kind = 'home'
WHERE c.newsletter;

CREATE MATERIALIZED VIEW analytics.monthly_revenue AS
SELECT date_trunc('month', o.placed_on)::date AS month, c.name AS category, count(DISTINCT o.id) AS orders,
    sum(i.line_total) AS revenue
FROM shop.orders AS o
    JOIN shop.order_items AS i ON i.order_id = o.id
    JOIN shop.products AS p ON p.id = i.product_id
    JOIN shop.categories AS c ON c.id = p.category_id
WHERE o.status NOT IN ('cancelled', 'returned')
GROUP BY 1, 2;
CREATE UNIQUE INDEX monthly_revenue_key ON analytics.monthly_revenue (month, category);
CREATE MATERIALIZED VIEW analytics.not_filled_yet AS SELECT * FROM analytics.visits WITH NO DATA;

CREATE FUNCTION shop.price_of(product_id integer) RETURNS shop.price
    LANGUAGE sql STABLE STRICT PARALLEL SAFE
BEGIN ATOMIC
    SELECT p.price FROM shop.products AS p WHERE p.id = price_of.product_id;
END;

CREATE FUNCTION shop.price_of(sku text) RETURNS shop.price
    LANGUAGE sql STABLE STRICT
    AS $$ SELECT p.price FROM shop.products AS p WHERE p.sku = price_of.sku $$;

CREATE FUNCTION shop.price_of(product_id integer, day date) RETURNS shop.price
    LANGUAGE sql STABLE STRICT
AS $$
    SELECT round(p.price * (100 - coalesce(s.discount, 0)) / 100, 2)
    FROM shop.products AS p LEFT JOIN shop.special_prices AS s ON s.product_id = p.id AND s.valid @> day
    WHERE p.id = price_of.product_id
$$;

CREATE FUNCTION shop.best_sellers(how_many integer DEFAULT 10, since date DEFAULT '-infinity')
    RETURNS TABLE (product text, pieces bigint, revenue numeric)
    LANGUAGE sql STABLE ROWS 10
AS $$
    SELECT p.name, sum(i.quantity), sum(i.line_total)
    FROM shop.order_items AS i JOIN shop.products AS p ON p.id = i.product_id
    WHERE i.placed_on >= since
    GROUP BY p.id, p.name ORDER BY 3 DESC LIMIT how_many
$$;

CREATE FUNCTION crm.one_line(address crm.postal_address, VARIADIC hidden text[] DEFAULT '{}') RETURNS text
    LANGUAGE sql IMMUTABLE
AS $$
    SELECT concat_ws(', ', CASE WHEN 'recipient' <> ALL (hidden) THEN address.recipient END, address.street,
        concat_ws(' ', address.postal_code, address.city), address.country_code)
$$;

CREATE FUNCTION shop.stock_report(INOUT product_id integer, OUT on_hand bigint, OUT sites text[])
    LANGUAGE plpgsql STABLE
AS $body$
BEGIN
    SELECT sum(s.on_hand), array_agg(s.site::text ORDER BY s.site) INTO on_hand, sites
    FROM warehouse.stock AS s WHERE s.product_id = stock_report.product_id AND s.on_hand > 0;
    IF on_hand IS NULL THEN
        RAISE WARNING 'there is no product % in stock', product_id USING HINT = 'Look at warehouse.stock.';
    ELSIF on_hand < 100 THEN
        RAISE NOTICE 'only % pieces of product % are left', on_hand, product_id;
    END IF;
END
$body$;

CREATE FUNCTION analytics.middle(anyarray) RETURNS anyelement
    LANGUAGE sql IMMUTABLE STRICT
    AS 'SELECT ($1)[(array_lower($1, 1) + array_upper($1, 1)) / 2]';

CREATE AGGREGATE analytics.product_of(numeric) (SFUNC = numeric_mul, STYPE = numeric, INITCOND = '1');

CREATE FUNCTION shop.cheaper(shop.products, shop.products) RETURNS boolean
    LANGUAGE sql IMMUTABLE RETURN ($1).price < ($2).price;
CREATE OPERATOR shop.<<< (LEFTARG = shop.products, RIGHTARG = shop.products, FUNCTION = shop.cheaper);

CREATE PROCEDURE shop.place_order(customer integer, sku text, pieces integer DEFAULT 1, INOUT order_id bigint DEFAULT NULL)
    LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog
AS $body$
BEGIN
    SELECT coalesce(max(id), 0) + 1 INTO order_id FROM shop.orders;
    INSERT INTO shop.orders (id, placed_on, customer_id, status) VALUES (order_id, current_date, customer, 'placed');
    INSERT INTO shop.order_items (order_id, placed_on, line, product_id, quantity, unit_price)
    SELECT place_order.order_id, current_date, 1, p.id, pieces, p.price FROM shop.products AS p WHERE p.sku = place_order.sku;
    IF NOT FOUND THEN
        RAISE EXCEPTION 'there is no product %', sku USING ERRCODE = 'foreign_key_violation', HINT = 'SKUs look like T-00001.';
    END IF;
END
$body$;

CREATE PROCEDURE analytics.refresh()
    LANGUAGE plpgsql
AS $body$
BEGIN
    REFRESH MATERIALIZED VIEW analytics.monthly_revenue;
    COMMIT;
    RAISE NOTICE 'refreshed at %', to_char(clock_timestamp(), 'HH24:MI');
END
$body$;

CREATE FUNCTION audit.record() RETURNS trigger
    LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog
AS $body$
BEGIN
    INSERT INTO audit.changes (relation, operation, before, after)
    VALUES (TG_RELID, TG_OP, CASE WHEN TG_OP <> 'INSERT' THEN to_jsonb(OLD) END,
        CASE WHEN TG_OP <> 'DELETE' THEN to_jsonb(NEW) END);
    RETURN NULL;
END
$body$;

CREATE FUNCTION audit.touch() RETURNS trigger
    LANGUAGE plpgsql AS 'BEGIN NEW.updated_at := now(); RETURN NEW; END';

CREATE FUNCTION shop.announce() RETURNS trigger
    LANGUAGE plpgsql
AS $body$
BEGIN
    PERFORM pg_notify('orders', format('{"operation": "%s"}', TG_OP));
    RETURN NULL;
END
$body$;

CREATE FUNCTION shop.withdraw_product() RETURNS trigger
    LANGUAGE plpgsql
AS $body$
BEGIN
    UPDATE shop.products SET discontinued = true WHERE id = OLD.id;
    RETURN OLD;
END
$body$;

CREATE TRIGGER record_changes AFTER INSERT OR UPDATE OR DELETE ON shop.products
    FOR EACH ROW EXECUTE FUNCTION audit.record();
CREATE TRIGGER touch BEFORE UPDATE OF name, price, description ON shop.products
    FOR EACH ROW WHEN (OLD.price IS DISTINCT FROM NEW.price OR OLD.name <> NEW.name) EXECUTE FUNCTION audit.touch();
CREATE TRIGGER announce AFTER INSERT OR UPDATE OR DELETE OR TRUNCATE ON shop.coupons
    FOR EACH STATEMENT EXECUTE FUNCTION shop.announce();
CREATE CONSTRAINT TRIGGER record_later AFTER UPDATE ON crm.customers
    DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION audit.record();
CREATE TRIGGER sleeping AFTER DELETE ON shop.orders FOR EACH ROW EXECUTE FUNCTION audit.record();
ALTER TABLE shop.orders DISABLE TRIGGER sleeping;
CREATE TRIGGER withdraw INSTEAD OF DELETE ON shop.products_on_sale
    FOR EACH ROW EXECUTE FUNCTION shop.withdraw_product();
CREATE RULE nobody_deletes AS ON DELETE TO audit.changes DO INSTEAD NOTHING;

-- A role of this name may be left by somebody who tried things out.
DO $$
BEGIN
    IF NOT EXISTS (SELECT FROM pg_catalog.pg_roles WHERE rolname = 'shop_reader') THEN
        CREATE ROLE shop_reader;
        CREATE ROLE shop_clerk LOGIN IN ROLE shop_reader;
    END IF;
END $$;
GRANT USAGE ON SCHEMA crm, shop, warehouse, analytics TO shop_reader;
GRANT SELECT ON ALL TABLES IN SCHEMA shop, warehouse, analytics TO shop_reader;
GRANT SELECT (id, first_name, last_name) ON crm.customers TO shop_reader;
GRANT INSERT, UPDATE ON shop.orders, shop.order_items, crm.notes TO shop_clerk;
ALTER TABLE crm.notes ENABLE ROW LEVEL SECURITY;
CREATE POLICY own_notes ON crm.notes FOR ALL TO shop_clerk USING (author = current_user);

ALTER DATABASE shop SET search_path = shop, crm, warehouse, public;
