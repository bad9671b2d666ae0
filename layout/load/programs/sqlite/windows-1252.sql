
-- The data are in windows-1252: each byte outside ASCII becomes its character. Bytes without one keep their number.
DROP TABLE IF EXISTS temp.load_characters;
CREATE TEMP TABLE load_characters (code TEXT PRIMARY KEY, character TEXT);
WITH RECURSIVE
  numbers (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM numbers WHERE n < 255),
  other (n, code) AS (VALUES
    (128, 8364), (130, 8218), (131, 402), (132, 8222), (133, 8230), (134, 8224), (135, 8225), (136, 710), (137, 8240),
    (138, 352), (139, 8249), (140, 338), (142, 381), (145, 8216), (146, 8217), (147, 8220), (148, 8221), (149, 8226),
    (150, 8211), (151, 8212), (152, 732), (153, 8482), (154, 353), (155, 8250), (156, 339), (158, 382), (159, 376))
INSERT INTO temp.load_characters
  SELECT printf('%02X', n), char(coalesce(other.code, n)) FROM numbers LEFT JOIN other USING (n);
UPDATE temp.load_lines SET l = (
    WITH RECURSIVE places (i) AS (SELECT 1 UNION ALL SELECT i + 2 FROM places WHERE i + 2 < length(codes))
    SELECT group_concat(character, '') FROM (
      SELECT character FROM places CROSS JOIN temp.load_characters ON code = substr(codes, i, 2) ORDER BY i))
  FROM (SELECT line, hex(l) AS codes FROM temp.load_wide_lines) WHERE load_lines.rowid = line;
