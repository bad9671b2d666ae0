
-- Two variables may be set before this program:
--   SET VARIABLE data = 'FILE';            another data file
--   SET VARIABLE parquet = 'DIRECTORY';    files TABLE.parquet in that directory, instead of tables
DROP TABLE IF EXISTS temp."load lines";
DROP TABLE IF EXISTS temp."load counts";
DROP TABLE IF EXISTS temp.load_rejects;
DROP TABLE IF EXISTS temp.load_scans;

-- The path is a pattern for DuckDB. In brackets, a character such as * is that character. A path with a backslash as well
-- is found as it is.
SET VARIABLE load_data = coalesce(getvariable('data'), <<data>>);
SET VARIABLE load_file = regexp_replace(getvariable('load_data'), '([*?\[])', '[\1]', 'g');
SET VARIABLE load_file = CASE
  WHEN EXISTS (SELECT * FROM glob(getvariable('load_file'))) THEN getvariable('load_file')
  ELSE getvariable('load_data')
END;

-- If Parquet files are made, the tables are empty ones in a database in memory, which is left at the end.
ATTACH IF NOT EXISTS ':memory:' AS load_scratch;
SET VARIABLE load_home = CASE
  WHEN current_database() = 'load_scratch' THEN getvariable('load_home')
  ELSE '"' || replace(current_database(), '"', '""') || '"."' || replace(current_schema(), '"', '""') || '"'
END;
SET schema = CASE WHEN getvariable('parquet') IS NULL THEN getvariable('load_home') ELSE 'load_scratch.main' END;

-- The digits of a whole number, or NULL for any other text.
CREATE OR REPLACE TEMPORARY MACRO load_whole(field) AS
  CASE WHEN regexp_full_match(field, ' *[+-]?[0-9]+ *') THEN trim(field, ' ') END;

-- A number with decimals. Without a decimal mark its digits are divided by the scale, 100.0 for two decimals.
CREATE OR REPLACE TEMPORARY MACRO load_decimal(field, scale) AS
  CASE
    WHEN regexp_full_match(field, ' *[+-]?[0-9]+ *') THEN CAST(trim(field, ' ') AS DOUBLE) / scale
    WHEN regexp_full_match(field, ' *[+-]?([0-9]+[.,][0-9]*|[.,][0-9]+) *')
    THEN CAST(replace(trim(field, ' '), ',', '.') AS DOUBLE)
  END + 0.0;

-- The same for more than 15 digits, which are divided as text. The exponent is 'e-2' for two decimals.
CREATE OR REPLACE TEMPORARY MACRO load_long_decimal(field, exponent) AS
  CASE
    WHEN regexp_full_match(field, ' *[+-]?[0-9]+ *') THEN CAST(trim(field, ' ') || exponent AS DOUBLE)
    WHEN regexp_full_match(field, ' *[+-]?([0-9]+[.,][0-9]*|[.,][0-9]+) *')
    THEN CAST(replace(trim(field, ' '), ',', '.') AS DOUBLE)
  END + 0.0;

-- Whether a field is neither blank nor a number.
CREATE OR REPLACE TEMPORARY MACRO load_is_no_whole(field) AS
  NOT regexp_full_match(field, ' *([+-]?[0-9]+ *)?');
CREATE OR REPLACE TEMPORARY MACRO load_is_no_decimal(field) AS
  NOT regexp_full_match(field, ' *([+-]?([0-9]+[.,]?[0-9]*|[.,][0-9]+) *)?');

BEGIN TRANSACTION;
<<check>>
-- The lines of the file. A blank or erased line has no record type.
CREATE TEMPORARY TABLE "load lines" AS
SELECT
  text,
  CASE WHEN text NOT LIKE '~%' AND rtrim(text, ' ') <> '' THEN <<mark>> END AS mark
FROM (
<<lines>>
);
CREATE TEMPORARY TABLE "load counts" (text VARCHAR);
