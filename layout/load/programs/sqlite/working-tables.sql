
-- Working tables: the columns of numbers of a table, and the texts in them.
DROP TABLE IF EXISTS temp.load_columns;
CREATE TEMP TABLE load_columns (column INTEGER PRIMARY KEY, name TEXT, decimals INTEGER);
DROP TABLE IF EXISTS temp.load_texts;
CREATE TEMP TABLE load_texts (column INTEGER, row INTEGER, text TEXT, number, PRIMARY KEY (column, row)) WITHOUT ROWID;
DROP TABLE IF EXISTS temp.load_messages;
CREATE TEMP TABLE load_messages (message TEXT);
DROP TABLE IF EXISTS temp.load_occurrences;
CREATE TEMP TABLE load_occurrences (k INTEGER PRIMARY KEY);
WITH RECURSIVE numbers (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM numbers WHERE n < <<occurrences>>)
INSERT INTO temp.load_occurrences SELECT n FROM numbers;
