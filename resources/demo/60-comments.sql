-- SPDX-FileCopyrightText: 2026 The Dabro developers
-- SPDX-License-Identifier: GPL-3.0-or-later
COMMENT ON DATABASE shop IS 'The sample database: a shop that sells tea and what one drinks it from';

COMMENT ON SCHEMA crm IS 'Who buys: customers, where they live, what was said';
COMMENT ON SCHEMA shop IS 'What is sold, and the orders';
COMMENT ON SCHEMA warehouse IS 'Where things are and where they come from';
COMMENT ON SCHEMA staff IS 'Who works here, and when';
COMMENT ON SCHEMA analytics IS 'Figures, and one table with every kind of value';
COMMENT ON SCHEMA audit IS 'Who changed what';
COMMENT ON SCHEMA "Odd Names" IS 'Names that need quoting';

COMMENT ON TABLE crm.countries IS 'Countries that we deliver to';
COMMENT ON TABLE crm.customers IS 'Everybody who has ever ordered';
COMMENT ON COLUMN crm.customers.number IS 'What is printed on letters; made from the id';
COMMENT ON COLUMN crm.customers.email IS 'Unique without regard to case';
COMMENT ON COLUMN crm.customers.credit_limit IS 'In euros; none means that invoices are not offered';
COMMENT ON COLUMN crm.customers.preferences IS 'Language, and what the parcel service should do';
COMMENT ON TABLE crm.addresses IS 'One address of each kind for a customer';
COMMENT ON TABLE crm.notes IS 'What support wrote down; clerks see their own notes only';
COMMENT ON TABLE staff.employees IS 'A tree: everybody but the owner has a manager';
COMMENT ON TABLE staff.shifts IS 'Nobody can be in two shifts at once';
COMMENT ON TABLE shop.categories IS 'A tree of what we sell; see category_tree';
COMMENT ON TABLE shop.products IS 'Everything that was ever for sale';
COMMENT ON COLUMN shop.products.sku IS 'Stock keeping unit: T for tea, W for ware';
COMMENT ON COLUMN shop.products.search IS 'Made from name and description';
COMMENT ON TABLE shop.product_images IS 'Pictures, as bytes';
COMMENT ON TABLE shop.special_prices IS 'Discounts for a time; at most one at a time for each product';
COMMENT ON TABLE shop.coupons IS 'Codes that lower the price of an order';
COMMENT ON TABLE shop.orders IS 'One partition a year';
COMMENT ON COLUMN shop.orders.client_address IS 'From where it was ordered';
COMMENT ON TABLE shop.order_items IS 'The largest table';
COMMENT ON COLUMN shop.order_items.line_total IS 'quantity × unit_price, less the discount';
COMMENT ON TABLE shop.payments IS 'What came in';
COMMENT ON TABLE shop.reviews IS 'One review by each customer for each product';
COMMENT ON TABLE warehouse.suppliers IS 'Who delivers to us';
COMMENT ON TABLE warehouse.sites IS 'Our three warehouses';
COMMENT ON TABLE warehouse.stock IS 'What lies on which shelf';
COMMENT ON TABLE warehouse.movements IS 'Partitioned by kind';
COMMENT ON TABLE audit.changes IS 'Written by triggers; a rule keeps rows from being deleted';
COMMENT ON TABLE analytics.visits IS 'Not logged: empty after a crash';
COMMENT ON TABLE analytics.type_gallery IS 'One row of everyday values, and rows of values that are hard to show';
COMMENT ON TABLE "Odd Names"."Weekly ""Specials"" 🍒" IS 'It''s a table; its name has "quotes", blanks and a cherry';
COMMENT ON COLUMN "Odd Names"."Weekly ""Specials"" 🍒"."Größe, in cm" IS 'Measured with a ruler';

COMMENT ON VIEW shop.order_totals IS 'What each order comes to';
COMMENT ON MATERIALIZED VIEW analytics.monthly_revenue IS 'Refreshed by analytics.refresh()';
COMMENT ON FUNCTION shop.price_of(integer) IS 'Today''s list price';
COMMENT ON FUNCTION shop.price_of(text) IS 'The list price by SKU';
COMMENT ON FUNCTION shop.price_of(integer, date) IS 'The price on a day, specials included';
COMMENT ON PROCEDURE shop.place_order(integer, text, integer, bigint) IS 'Orders one kind of product for a customer';
COMMENT ON TYPE shop.order_status IS 'From draft to delivered, or back';
COMMENT ON TYPE crm.postal_address IS 'As it is written on a parcel';
COMMENT ON DOMAIN shop.rating IS 'One to five stars';
COMMENT ON INDEX shop.products_by_price IS 'Covers the catalogue''s front page';
COMMENT ON CONSTRAINT items_of_order ON shop.order_items IS 'Both columns, because orders are partitioned by day';
COMMENT ON TRIGGER record_changes ON shop.products IS 'Every change of a product is recorded';
COMMENT ON SEQUENCE shop.invoice_number IS 'Invoices are numbered without regard to the year';
