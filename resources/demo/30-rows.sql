-- SPDX-FileCopyrightText: 2026 The Dabro developers
-- SPDX-License-Identifier: GPL-3.0-or-later
-- pick(n, salt, m): a number from 0 to m - 1 that looks drawn by lot and is always the same.
CREATE FUNCTION pg_temp.pick(n bigint, salt integer, m integer) RETURNS integer
    LANGUAGE sql IMMUTABLE PARALLEL SAFE
    RETURN (((hashint8extended(n, salt) % m) + m) % m)::integer;

INSERT INTO crm.countries VALUES
    ('AT', 'Austria', '+43', true), ('BE', 'Belgium', '+32', true), ('CH', 'Switzerland', '+41', false),
    ('CZ', 'Czechia', '+420', true), ('DE', 'Germany', '+49', true), ('DK', 'Denmark', '+45', true),
    ('ES', 'Spain', '+34', true), ('FI', 'Finland', '+358', true), ('FR', 'France', '+33', true),
    ('GB', 'United Kingdom', '+44', false), ('GR', 'Greece', '+30', true), ('IE', 'Ireland', '+353', true),
    ('IT', 'Italy', '+39', true), ('JP', 'Japan', '+81', false), ('NL', 'Netherlands', '+31', true),
    ('NO', 'Norway', '+47', false), ('PL', 'Poland', '+48', true), ('PT', 'Portugal', '+351', true),
    ('SE', 'Sweden', '+46', true), ('US', 'United States', '+1', false);

INSERT INTO crm.customers (first_name, last_name, email, phone, born, newsletter, interests, preferences,
    credit_limit, registered_at)
SELECT first, last,
    lower(translate(first || '.' || last, 'áäåçéèëíïñóöøúüœßąćęłńśźżŠšřůýž ''', 'aaaceeeiinooouuosacelnszzssruyz'))
        || n || '@example.' || (ARRAY['com', 'org', 'net'])[1 + pg_temp.pick(n, 3, 3)],
    CASE WHEN pg_temp.pick(n, 4, 4) > 0 THEN '+49 30 ' || 1000000 + pg_temp.pick(n, 5, 8999999) END,
    CASE WHEN pg_temp.pick(n, 6, 5) > 0 THEN date '1940-01-01' + pg_temp.pick(n, 7, 24000) END,
    pg_temp.pick(n, 8, 3) = 0,
    (ARRAY['{}', '{green tea}', '{black tea,gifts}', '{pots,"hand-made"}', '{"loose leaf",organic,cups}'])
        [1 + pg_temp.pick(n, 9, 5)]::text[],
    jsonb_build_object('language', (ARRAY['en', 'de', 'fr', 'es', 'pl'])[1 + pg_temp.pick(n, 10, 5)],
        'parcel', jsonb_build_object('leave_at_door', pg_temp.pick(n, 11, 2) = 0, 'floor', pg_temp.pick(n, 12, 6))),
    CASE WHEN pg_temp.pick(n, 13, 10) = 0 THEN 500 * (1 + pg_temp.pick(n, 14, 10)) END,
    timestamptz '2019-03-01 08:00+01' + n * interval '2 hours 37 minutes' + pg_temp.pick(n, 15, 3600) * interval '1 second'
FROM generate_series(1, 20000) AS n,
    LATERAL (SELECT
        (ARRAY['Ada', 'Aïsha', 'Amélie', 'Anders', 'Beatriz', 'Björn', 'Carla', 'Clémence', 'Dario', 'Elif', 'Emil',
            'Esther', 'Fatima', 'Felix', 'Giulia', 'Hanna', 'Henrik', 'Ines', 'Ivo', 'Jana', 'João', 'Kasia', 'Kofi',
            'Léa', 'Liam', 'Łukasz', 'Maja', 'Marek', 'Mei', 'Nadia', 'Niamh', 'Noé', 'Ola', 'Paula', 'Quentin',
            'Rafael', 'Rosa', 'Sanna', 'Sören', 'Tomasz', 'Uma', 'Víctor', 'Wanda', 'Yuki', 'Zoë', '陽子', 'Σοφία', 'Ольга'])
            [1 + pg_temp.pick(n, 1, 48)] AS first,
        (ARRAY['Abel', 'Almeida', 'Andersen', 'Baumann', 'Bianchi', 'Brennan', 'Castro', 'Dąbrowska', 'de Vries', 'Dubois',
            'Eriksson', 'Fischer', 'Fontaine', 'García', 'Grün', 'Haas', 'Hansen', 'Ibrahim', 'Jansen', 'Kaya', 'Keller',
            'Kowalski', 'Kröger', 'Laurent', 'Lindqvist', 'Lopes', 'Maier', 'Mensah', 'Moreau', 'Müller', 'Nakamura',
            'Novák', 'O''Connor', 'O''Neill', 'Okafor', 'Papadakis', 'Peeters', 'Petit', 'Quinn', 'Ricci', 'Rossi',
            'Sánchez', 'Schäfer', 'Silva', 'Šimek', 'Søndergaard', 'Tanaka', 'Virtanen', 'Weiß', 'Wójcik', 'Zając'])
            [1 + pg_temp.pick(n, 2, 51)] AS last) AS names;

INSERT INTO crm.addresses
SELECT c.id, kind,
    ROW(c.first_name || ' ' || c.last_name,
        (ARRAY['Mill Lane', 'Rue des Tilleuls', 'Lindenstraße', 'Calle Mayor', 'Via Roma', 'Kerkstraat', 'Storgatan',
            'ulica Długa', 'Harbour Road', 'Rua Nova'])[1 + pg_temp.pick(c.id, 20 + i, 10)] || ' ' || 1 + pg_temp.pick(c.id, 22 + i, 180),
        lpad(pg_temp.pick(c.id, 24 + i, 99999)::text, 5, '0'),
        (ARRAY['Aarhus', 'Bergen', 'Brno', 'Cork', 'Gdańsk', 'Genève', 'Graz', 'Köln', 'Leeds', 'Lyon', 'Malmö', 'Porto',
            'Sevilla', 'Tampere', 'Torino', 'Utrecht', '京都'])[1 + pg_temp.pick(c.id, 26 + i, 17)],
        (ARRAY['DK', 'NO', 'CZ', 'IE', 'PL', 'CH', 'AT', 'DE', 'GB', 'FR', 'SE', 'PT', 'ES', 'FI', 'IT', 'NL', 'JP'])
            [1 + pg_temp.pick(c.id, 26 + i, 17)])::crm.postal_address,
    point(pg_temp.pick(c.id, 28 + i, 300000) / 10000.0 - 5, 40 + pg_temp.pick(c.id, 30 + i, 250000) / 10000.0),
    c.registered_at::date
FROM crm.customers AS c, (VALUES (0, 'home'), (1, 'work')) AS kinds(i, kind)
WHERE i = 0 OR pg_temp.pick(c.id, 32, 4) = 0;

INSERT INTO staff.employees (id, name, role, manager_id, salary, hired_on)
SELECT n,
    (ARRAY['Ruth', 'Tariq', 'Birgit', 'Colm', 'Dana', 'Enzo', 'Freya', 'Goran', 'Hedda', 'Ilse'])[1 + n % 10] || ' ' ||
    (ARRAY['Brook', 'Hollow', 'Larsen', 'Meyer'])[1 + n / 10],
    CASE WHEN n = 1 THEN 'owner' WHEN n <= 4 THEN 'head of department'
        ELSE (ARRAY['packer', 'buyer', 'support', 'tea taster'])[1 + n % 4] END,
    CASE WHEN n = 1 THEN NULL WHEN n <= 4 THEN 1 ELSE 2 + n % 3 END,
    (90000 / (1 + sqrt(n)) + 24000)::numeric(9, 2)::money,
    date '2010-05-01' + n * 131
FROM generate_series(1, 39) AS n;
SELECT setval(pg_get_serial_sequence('staff.employees', 'id'), 39);

INSERT INTO staff.shifts
SELECT e.id, tsrange(day + interval '8 hours' * (e.id % 2), day + interval '8 hours' * (1 + e.id % 2)), e.role
FROM staff.employees AS e, generate_series(timestamp '2025-05-01 06:00', '2025-06-30', interval '1 day') AS day
WHERE extract(isodow FROM day) < 6 AND e.id > 4;

INSERT INTO crm.notes (customer_id, employee_id, author, text, written_at)
SELECT 1 + pg_temp.pick(n, 40, 20000), 5 + pg_temp.pick(n, 41, 35), 'support',
    (ARRAY['Called about a late parcel.', 'Asked for a catalogue.', E'Two complaints:\n1. cup chipped\n2. wrong lid',
        'Prefers to be written to.', 'Sent a voucher; "very happy" 😊'])[1 + pg_temp.pick(n, 42, 5)],
    timestamp '2024-01-02 09:00' + n * interval '2 hours 11 minutes'
FROM generate_series(1, 5000) AS n;

INSERT INTO shop.categories VALUES
    (1, NULL, 'Tea', 'tea'), (2, 1, 'Black tea', 'black-tea'), (3, 1, 'Green tea', 'green-tea'),
    (4, 1, 'White tea', 'white-tea'), (5, 1, 'Oolong', 'oolong'), (6, 1, 'Herbs & fruit', 'herbs-and-fruit'),
    (7, NULL, 'Ware', 'ware'), (8, 7, 'Pots', 'pots'), (9, 7, 'Cups', 'cups'), (10, 7, 'Kettles', 'kettles'),
    (11, 8, 'Cast iron', 'cast-iron'), (12, 8, 'Porcelain', 'porcelain'), (13, NULL, 'Gifts', 'gifts'),
    (14, 2, 'Smoked', 'smoked');

INSERT INTO shop.products (sku, name, category_id, description, price, weight_g, size, attributes, tags, discontinued, updated_at)
SELECT CASE WHEN tea THEN 'T' ELSE 'W' END || '-' || lpad(n::text, 5, '0'),
    initcap(adjective || ' ' || noun) || CASE WHEN tea THEN ', ' || grams || ' g' ELSE ' No. ' || n % 97 END,
    CASE WHEN tea THEN (ARRAY[2, 3, 4, 5, 6, 14])[1 + pg_temp.pick(n, 50, 6)] ELSE (ARRAY[8, 9, 10, 11, 12, 13])[1 + pg_temp.pick(n, 51, 6)] END,
    CASE WHEN pg_temp.pick(n, 52, 8) > 0 THEN 'A ' || adjective || ' ' || noun || ' from ' ||
        (ARRAY['a small garden', 'the second harvest', 'an old workshop', 'our own kiln'])[1 + pg_temp.pick(n, 53, 4)] || '.' END,
    CASE WHEN tea THEN round(grams * (4 + pg_temp.pick(n, 54, 14)) / 100.0, 1) - 0.05 ELSE 9.90 + 5 * pg_temp.pick(n, 55, 40) END,
    CASE WHEN tea THEN grams ELSE 200 + 10 * pg_temp.pick(n, 56, 150) END,
    CASE WHEN NOT tea THEN ROW(60 + pg_temp.pick(n, 57, 200), 50 + pg_temp.pick(n, 58, 180), 60 + pg_temp.pick(n, 57, 200))::shop.dimensions END,
    CASE WHEN tea THEN jsonb_build_object('minutes', 1 + pg_temp.pick(n, 59, 5), 'celsius', 70 + 5 * pg_temp.pick(n, 60, 7), 'organic', pg_temp.pick(n, 61, 3) = 0)
        ELSE jsonb_build_object('dishwasher', pg_temp.pick(n, 62, 2) = 0, 'colours', jsonb_build_array('sand', 'slate', 'moss')) END,
    ARRAY[adjective, CASE WHEN tea THEN 'tea' ELSE 'ware' END],
    pg_temp.pick(n, 63, 20) = 0,
    timestamptz '2024-11-01 10:00+01' + n * interval '3 hours'
FROM generate_series(1, 1200) AS n,
    LATERAL (SELECT n % 3 > 0 AS tea, (ARRAY[50, 100, 250, 500])[1 + pg_temp.pick(n, 64, 4)] AS grams,
        (ARRAY['golden', 'misty', 'quiet', 'early', 'smoky', 'silver', 'wild', 'royal', 'mellow', 'crisp'])[1 + pg_temp.pick(n, 65, 10)] AS adjective) AS a,
    LATERAL (SELECT CASE WHEN tea THEN (ARRAY['leaf', 'breakfast blend', 'sencha', 'needle', 'oolong', 'rooibos', 'peppermint', 'jasmine'])[1 + pg_temp.pick(n, 66, 8)]
        ELSE (ARRAY['pot', 'cup', 'kettle', 'bowl', 'caddy', 'strainer', 'tray'])[1 + pg_temp.pick(n, 67, 7)] END AS noun) AS b;

INSERT INTO shop.product_images (product_id, position, content)
SELECT id, 1, convert_to(format('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 40 40"><circle cx="20" cy="20" r="%s" fill="hsl(%s,60%%,45%%)"/></svg>',
    8 + id % 11, id * 37 % 360), 'UTF8')
FROM shop.products WHERE id % 4 = 0;

INSERT INTO shop.special_prices (product_id, valid, discount)
SELECT 1 + 3 * n, daterange(date '2024-01-01' + 90 * i + n % 30, date '2024-01-01' + 90 * i + n % 30 + 21), 5 * (1 + pg_temp.pick(n * 8 + i, 70, 6))
FROM generate_series(0, 390) AS n, generate_series(0, 7) AS i;

INSERT INTO shop.coupons VALUES
    ('WELCOME5', 5, 0, 'infinity'), ('SPRING25', 10, 30, '2025-06-01 00:00+02'), ('TEATIME', 7.5, 20, '2026-01-01 00:00+01'),
    ('FRIENDS', 15, 50, 'infinity'), ('LATE-NIGHT', 2.5, 0, '2024-12-31 23:59+01');

INSERT INTO shop.orders
SELECT n, day, 1 + pg_temp.pick(n, 80, 20000) * pg_temp.pick(n, 81, 20000) / 20000,
    CASE WHEN pg_temp.pick(n, 82, 40) = 0 THEN 'cancelled' WHEN pg_temp.pick(n, 82, 40) = 1 THEN 'returned'
        WHEN n > 119900 THEN 'placed' WHEN n > 119700 THEN 'paid' WHEN n > 119500 THEN 'packed' WHEN n > 119000 THEN 'shipped'
        ELSE 'delivered' END::shop.order_status,
    (ARRAY['WELCOME5', 'TEATIME', 'FRIENDS'])[1 + pg_temp.pick(n, 83, 30)],
    CASE WHEN pg_temp.pick(n, 84, 4) = 0 THEN 0 ELSE 4.90 END,
    CASE WHEN n <= 119500 THEN 5 + pg_temp.pick(n, 85, 35) END,
    ('198.51.100.' || pg_temp.pick(n, 86, 256))::inet,
    CASE WHEN n <= 119000 THEN md5('parcel' || n)::uuid END,
    day + time '06:00' + pg_temp.pick(n, 87, 57600) * interval '1 second'
FROM generate_series(1, 120000) AS n, LATERAL (SELECT date '2023-01-01' + (n / 120000.0 * 1000)::integer) AS days(day);

INSERT INTO shop.order_items (order_id, placed_on, line, product_id, quantity, unit_price, discount)
SELECT o.id, o.placed_on, line, p.id, 1 + pg_temp.pick(o.id * 8 + line, 90, 4) * pg_temp.pick(o.id * 8 + line, 91, 2), p.price,
    CASE WHEN pg_temp.pick(o.id * 8 + line, 92, 12) = 0 THEN 10 ELSE 0 END
FROM shop.orders AS o, generate_series(1, 1 + pg_temp.pick(o.id, 93, 5)) AS line, shop.products AS p
WHERE p.id = 1 + pg_temp.pick(o.id * 8 + line, 94, 1200) * (1 + pg_temp.pick(o.id * 8 + line, 95, 100)) / 100;

INSERT INTO shop.payments
SELECT row_number() OVER (ORDER BY o.id), o.id, o.placed_on, method, o.shipping + sum(i.line_total), min(o.changed_at) + interval '7 minutes',
    CASE WHEN method = 'card' THEN jsonb_build_object('last_digits', lpad(pg_temp.pick(o.id, 100, 10000)::text, 4, '0')) END
FROM shop.orders AS o JOIN shop.order_items AS i ON i.order_id = o.id,
    LATERAL (SELECT (ARRAY['card', 'card', 'bank transfer', 'direct debit', 'invoice', 'gift voucher'])[1 + pg_temp.pick(o.id, 101, 6)]::shop.payment_method) AS m(method)
WHERE o.status NOT IN ('placed', 'cancelled')
GROUP BY o.id, o.placed_on, o.shipping, method;

INSERT INTO shop.reviews
SELECT 1 + pg_temp.pick(n, 110, 1200), 1 + pg_temp.pick(n, 111, 20000), 5 - pg_temp.pick(n, 112, 3) * pg_temp.pick(n, 113, 3),
    (ARRAY['Lovely', 'As described', 'Not for me', 'Again and again', NULL])[1 + pg_temp.pick(n, 114, 5)],
    (ARRAY['Arrived quickly and well wrapped.', E'Tastes of hay.\nMy cat likes it.', 'The lid does not quite fit.', 'Ein Genuss – jeden Morgen!', NULL])[1 + pg_temp.pick(n, 115, 5)],
    pg_temp.pick(n, 116, 40), timestamptz '2023-02-01 12:00+01' + n * interval '33 minutes'
FROM generate_series(1, 40000) AS n
ON CONFLICT DO NOTHING;

INSERT INTO warehouse.suppliers
SELECT n, (ARRAY['Green Hill Estates', 'North Kiln', 'Harbour Imports', 'Old Mill Pottery', 'Fern & Daughters', 'Eastern Leaf'])[n],
    (ARRAY['JP', 'DK', 'GB', 'PL', 'IE', 'JP'])[n], n * interval '9 days 6 hours', ('203.0.113.' || n * 16 || '/28')::cidr
FROM generate_series(1, 6) AS n;

INSERT INTO warehouse.sites VALUES
    ('CRK', 'Cork', '06:00', '22:00+01', '[(0,0),(60,0),(60,35),(0,35)]'), ('KLN', 'Köln', '05:30', '21:30+02', '((0,0),(80,0),(80,50),(0,50))'),
    ('GDA', 'Gdańsk', '00:00', '24:00+02', NULL);

INSERT INTO warehouse.stock
SELECT s.code, p.id, 1 + pg_temp.pick(p.id, 120, 6), chr(65 + pg_temp.pick(p.id, 121, 20)) || '-' || pg_temp.pick(p.id, 122, 60),
    pg_temp.pick(p.id * 4 + ascii(s.code), 123, 400), pg_temp.pick(p.id, 124, 12)
FROM warehouse.sites AS s, shop.products AS p;

INSERT INTO warehouse.movements
SELECT n, kind, (ARRAY['CRK', 'KLN', 'GDA'])[1 + pg_temp.pick(n, 130, 3)], 1 + pg_temp.pick(n, 131, 1200),
    CASE kind WHEN 'dispatch' THEN -1 - pg_temp.pick(n, 132, 5) WHEN 'correction' THEN pg_temp.pick(n, 133, 7) - 3 ELSE 1 + pg_temp.pick(n, 134, 60) END,
    timestamptz '2023-01-01 06:00+01' + n * interval '14 minutes'
FROM generate_series(1, 100000) AS n,
    LATERAL (SELECT (ARRAY['dispatch', 'dispatch', 'dispatch', 'receipt', 'receipt', 'return', 'correction'])[1 + pg_temp.pick(n, 135, 7)]::warehouse.movement_kind) AS k(kind);

INSERT INTO analytics.visits
SELECT day, hour, page, 5 + pg_temp.pick(extract(epoch FROM day)::bigint + hour * 7 + length(page), 140, 400), 20 + pg_temp.pick(hour + length(page), 141, 3000) / 7.0
FROM generate_series(date '2024-01-01', '2025-09-30', interval '1 day') AS day, generate_series(0, 23) AS hour,
    unnest(ARRAY['/', '/tea', '/ware', '/basket']) AS page;

INSERT INTO analytics.type_gallery VALUES
(1, 'everyday values', 7, 12345678901, 1234.50, 1.5, 2.718281828459045, 19.99, true, 'x', 'fixed', 'limited', 'unlimited', '\xdeadbeef',
    '2025-03-30', '14:05:09', '14:05:09.25+02', '2025-03-30 14:05:09', '2025-03-30 14:05:09.123+02', '1 year 2 mons 3 days 04:05:06.789',
    'b0e2a1d4-3c5f-4c7e-9d8a-0123456789ab', B'10110001', B'101', '192.0.2.7/24', '192.0.2.0/24', '02:00:5e:10:00:01',
    '{"b": 1, "a": [true, null]}', '{"b": 1, "a": [true, null]}', '<tea kind="green">sencha</tea>', to_tsvector('english', 'Pots and cups'), 'pot & !cup',
    '(1.5,-2)', '((0,0),(4,0),(4,3))', '[1,10)', '{[2025-01-01,2025-02-01),[2025-04-01,)}', '{{1,2,3},{4,5,6}}', '{plain,"with, comma","with \"quotes\"",NULL}',
    'shipped', '{draft,"paid"}', ROW('Ada Abel', 'Mill Lane 3', '12345', 'Cork', 'IE'), '16/B374D848', 'shop.orders'),
(2, 'the ends of the scale', -32768, 9223372036854775807, 'NaN', '-Infinity', 1.7976931348623157e308, -92233720368547758.08, false, ' ', '', '', '', '',
    '4713-01-01 BC', '24:00:00', '00:00:00-15:59', 'infinity', '-infinity', '-178000000 years', '00000000-0000-0000-0000-000000000000',
    B'00000000', B'', '::1', '2001:db8::/32', 'ff:ff:ff:ff:ff:ff', 'null', '""', '', '', '', '(Infinity,NaN)', '((0,0))', 'empty', '{}', '{}', '{}',
    'draft', '{}', ROW(NULL, NULL, NULL, NULL, NULL), '0/0', 'pg_catalog.pg_class'),
(3, 'digits that must not be lost', 0, 9007199254740993, 123456789012345678901234567890.123456789012345678901234567890, 0.1, 0.1, 0.01, NULL, 'é',
    'é', 'naïve', E'several\nlines\twith tab and \\ and ''quotes''', decode('00ff00', 'hex'), '9999-12-31', '23:59:59.999999', '23:59:59.999999+15:59',
    '0001-01-01 00:00:00', '9999-12-31 23:59:59.999+00', '00:00:00.000001', 'ffffffff-ffff-ffff-ffff-ffffffffffff', B'11111111', B'1111111111111111',
    '10.0.0.0/8', '10.0.0.0/8', '00:00:00:00:00:00', '[1e400, 0.10]', '[0.10, 1.000]', '<a/>', 'a:1A b:2', '''it''''s''', '(0,0)', '((0,0),(1,1),(1,0))',
    '(,)', '{(,)}', '[0:1]={7,8}', '{🍒,"",null,"NULL"}', NULL, '{NULL}', ROW('名', '"quoted"', 'a,b', 'x\y', NULL), 'FFFFFFFF/FFFFFFFF', NULL);
INSERT INTO analytics.type_gallery (id, remark) VALUES (4, 'nothing at all');

INSERT INTO "Odd Names"."Weekly ""Specials"" 🍒" ("select", "It's 50 % off?", "Größe, in cm", "名前", " leading and trailing ", "a.b", "$1") VALUES
    ('from', true, 12.5, '急須', ' spaces ', 1, '$2'), ('; DROP TABLE', false, NULL, '湯呑み', '', 2, NULL), ('''quoted''', NULL, 0.1, NULL, NULL, NULL, '%s');
INSERT INTO "Odd Names"."order" VALUES ('alice', 'window', 4), ('O''Hara', 'terrace', 2);
INSERT INTO "Odd Names"."MixedCase" VALUES (1, 2, 3);
INSERT INTO "Odd Names"."no columns" DEFAULT VALUES;
