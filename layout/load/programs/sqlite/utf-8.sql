
-- Lines that are not valid UTF-8 stop the program. In each line, ASCII is skipped; the next character has to have the
-- bytes of its code; then it is removed, and so on. (U+FFFE and U+FFFF are valid, but have no code in SQLite.)
DROP TABLE IF EXISTS temp.load_ascii;
CREATE TEMP TABLE load_ascii AS
  WITH RECURSIVE numbers (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM numbers WHERE n < 127)
  SELECT group_concat(char(n), '') AS characters FROM numbers;
DROP TABLE IF EXISTS temp.load_bad_line;
CREATE TEMP TABLE load_bad_line AS
  WITH RECURSIVE
    rest (line, text) AS (
      SELECT line, ltrim(l, characters) FROM temp.load_wide_lines, temp.load_ascii
      UNION ALL
      SELECT line, ltrim(replace(text, substr(text, 1, 1), ''), characters) FROM rest, temp.load_ascii
      WHERE text <> '' AND (CAST(substr(text, 1, 1) AS BLOB) = CAST(char(unicode(text)) AS BLOB)
        OR CAST(substr(text, 1, 1) AS BLOB) IN (x'EFBFBE', x'EFBFBF'))
    )
  SELECT min(line) AS line FROM rest
  WHERE text <> '' AND CAST(substr(text, 1, 1) AS BLOB) <> CAST(char(unicode(text)) AS BLOB)
    AND CAST(substr(text, 1, 1) AS BLOB) NOT IN (x'EFBFBE', x'EFBFBF');
SELECT 'Line ' || line || ' is not valid UTF-8; empty lines do not count. Write the program with '
    || '--encoding windows-1252 if the data have that encoding.'
  FROM temp.load_bad_line WHERE line IS NOT NULL;
DROP TABLE IF EXISTS temp.load_stop;
CREATE TEMP TABLE load_stop (n CONSTRAINT "the data file is not valid UTF-8" CHECK (n = 0));
INSERT INTO temp.load_stop SELECT count(line) FROM temp.load_bad_line;
