-- SPDX-FileCopyrightText: 2026 The Dabro developers
-- SPDX-License-Identifier: GPL-3.0-or-later
-- The sample: Brook & Hollow, who sell tea, pots and cups. Files are loaded in the order of their names,
-- in one transaction. Every value comes from arithmetic, so each load gives the same rows.

CREATE SCHEMA crm;
CREATE SCHEMA shop;
CREATE SCHEMA warehouse;
CREATE SCHEMA staff;
CREATE SCHEMA analytics;
CREATE SCHEMA audit;
CREATE SCHEMA "Odd Names";
CREATE SCHEMA extensions;

CREATE EXTENSION btree_gist SCHEMA extensions;

CREATE TYPE shop.order_status AS ENUM ('draft', 'placed', 'paid', 'packed', 'shipped', 'delivered', 'returned', 'cancelled');
CREATE TYPE shop.payment_method AS ENUM ('card', 'bank transfer', 'direct debit', 'gift voucher', 'invoice');
CREATE TYPE warehouse.movement_kind AS ENUM ('receipt', 'dispatch', 'correction', 'return');

CREATE TYPE crm.postal_address AS (
    recipient text,
    street text,
    postal_code varchar(12),
    city text,
    country_code char(2)
);
CREATE TYPE shop.dimensions AS (
    width_mm integer,
    height_mm integer,
    depth_mm integer
);
CREATE TYPE shop.price_range AS RANGE (subtype = numeric);

CREATE DOMAIN crm.email AS text
    CONSTRAINT email_has_an_at CHECK (VALUE ~ '^[^@[:space:]]+@[^@[:space:]]+\.[a-z]+$');
CREATE DOMAIN shop.price AS numeric(10, 2)
    CONSTRAINT price_is_not_negative CHECK (VALUE >= 0);
CREATE DOMAIN shop.percentage AS numeric(5, 2) DEFAULT 0 NOT NULL
    CONSTRAINT percentage_is_within_bounds CHECK (VALUE BETWEEN 0 AND 100);
CREATE DOMAIN shop.rating AS smallint
    CONSTRAINT rating_has_five_stars CHECK (VALUE BETWEEN 1 AND 5);

CREATE SEQUENCE shop.invoice_number START WITH 100000 INCREMENT BY 1 CACHE 10;
CREATE SEQUENCE warehouse.pallet_number AS integer MINVALUE 1 MAXVALUE 9999 CYCLE;
