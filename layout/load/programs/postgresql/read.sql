
\set ON_ERROR_STOP on
\set QUIET on
\encoding UTF8
\if :{?data}
\else
\set data <<data>>
\endif

BEGIN;
SET LOCAL standard_conforming_strings = on;
SET LOCAL client_min_messages = warning;
SELECT current_schema() AS schema \gset
\lo_import :data
\set file :LASTOID
SELECT set_config('load.file', :'file', true) AS ignored \gset

-- The lines of the file. A blank or erased line has no record type.
CREATE TEMPORARY TABLE lines (
  line bigint,
  text text,
  mark text GENERATED ALWAYS AS (
    <<mark>>
  ) STORED
) ON COMMIT DROP;
CREATE TEMPORARY TABLE counts (number integer GENERATED ALWAYS AS IDENTITY, text text) ON COMMIT DROP;

CREATE OR REPLACE FUNCTION pg_temp.decoded(bytes bytea) RETURNS text LANGUAGE sql IMMUTABLE AS $$
  SELECT <<decoding>>
$$;

-- A whole number, or NULL for any other text.
CREATE OR REPLACE FUNCTION pg_temp.whole_number(field text) RETURNS numeric LANGUAGE sql IMMUTABLE AS $$
  SELECT CASE WHEN field ~ '^ *[+-]?[0-9]+ *$' THEN field::numeric END
$$;

-- A number with decimals: without a decimal mark its digits are multiplied by the unit, 0.01 for two decimals.
CREATE OR REPLACE FUNCTION pg_temp.decimal_number(field text, unit numeric) RETURNS numeric LANGUAGE sql IMMUTABLE AS $$
  SELECT CASE
    WHEN field ~ '^ *[+-]?[0-9]+ *$' THEN field::numeric * unit
    WHEN field ~ '^ *[+-]?([0-9]+[.,][0-9]*|[.,][0-9]+) *$' THEN replace(field, ',', '.')::numeric
  END
$$;

-- Whether a field is neither blank nor a number.
CREATE OR REPLACE FUNCTION pg_temp.is_no_whole_number(field text) RETURNS boolean LANGUAGE sql IMMUTABLE AS $$
  SELECT field !~ '^ *([+-]?[0-9]+ *)?$'
$$;
CREATE OR REPLACE FUNCTION pg_temp.is_no_decimal_number(field text) RETURNS boolean LANGUAGE sql IMMUTABLE AS $$
  SELECT field !~ '^ *([+-]?([0-9]+[.,]?[0-9]*|[.,][0-9]+) *)?$'
$$;

-- Reads the file in pieces of one megabyte. A line that a piece cuts is completed by the next one.
DO $load$
DECLARE
  piece_size CONSTANT integer := 1048576;
  file_offset bigint := 0;
  piece bytea;
  rest bytea := '';
  piece_end integer;
  decoded text;
  texts text[];
  line_count bigint := 0;
  is_last boolean := false;
  bad_line bigint;
  bad_text text;
BEGIN
  IF current_setting('server_encoding') <> 'UTF8' THEN
    RAISE EXCEPTION 'The encoding of the database is %. Use a database in UTF8.', current_setting('server_encoding');
  END IF;
  WHILE NOT is_last LOOP
    piece := lo_get(current_setting('load.file')::oid, file_offset, piece_size);
    is_last := length(piece) < piece_size;
    IF file_offset = 0 AND substr(piece, 1, 3) = '\xefbbbf'::bytea THEN
      piece := substr(piece, 4);
    END IF;
    file_offset := file_offset + piece_size;
    piece := rest || piece;
    piece_end := length(piece);
    IF NOT is_last THEN
      WHILE piece_end > 0 AND get_byte(piece, piece_end - 1) <> 10 LOOP
        piece_end := piece_end - 1;
      END LOOP;
    END IF;
    rest := substr(piece, piece_end + 1);
    piece := substr(piece, 1, piece_end);
    BEGIN
      decoded := pg_temp.decoded(piece);
    EXCEPTION WHEN character_not_in_repertoire OR untranslatable_character THEN
      FOR bad_line, bad_text IN
        SELECT number, bytes
        FROM unnest(string_to_array(convert_from(piece, 'LATIN1'), E'\n')) WITH ORDINALITY AS each_line(bytes, number)
      LOOP
        BEGIN
          PERFORM pg_temp.decoded(convert_to(bad_text, 'LATIN1'));
        EXCEPTION WHEN character_not_in_repertoire OR untranslatable_character THEN
          RAISE EXCEPTION 'Line % is not valid UTF-8. If the file is in windows-1252, make this program with --encoding windows-1252.',
            line_count + bad_line;
        END;
      END LOOP;
      RAISE;
    END;
    texts := string_to_array(decoded, E'\n');
    IF right(decoded, 1) = E'\n' THEN
      texts := texts[1:cardinality(texts) - 1];
    END IF;
    INSERT INTO pg_temp.lines (line, text)
    SELECT line_count + number, rtrim(line_text, E'\r')
    FROM unnest(texts) WITH ORDINALITY AS each_line(line_text, number);
    line_count := line_count + cardinality(texts);
  END LOOP;
END
$load$;
CREATE INDEX ON pg_temp.lines (mark);
ANALYZE pg_temp.lines;
