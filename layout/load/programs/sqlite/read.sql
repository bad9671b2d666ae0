
-- The program stops at the first error.
.bail on
.headers off

-- The temporary database has large pages, which are read and written faster. 0 is the size of SQLite for others again.
PRAGMA temp.page_size = 32768;
PRAGMA temp.page_size = 0;

-- Each line of the data file becomes a row. The first separator is a byte that no line has.
DROP TABLE IF EXISTS temp.load_lines;
CREATE TEMP TABLE load_lines (l TEXT);
.mode ascii
.separator "\<<separator>>" "\n"
.import <<path>> load_lines
.mode list

-- A directory reads like an empty file. (This is looked at only if there are no lines.)
DROP TABLE IF EXISTS temp.load_place;
CREATE TEMP TABLE load_place (mode CONSTRAINT "the data file is a directory" CHECK (mode / 4096 <> 4));
INSERT INTO temp.load_place SELECT CASE (SELECT count(*) FROM temp.load_lines)
    WHEN 0 THEN (SELECT mode FROM fsdir(<<place>>) LIMIT 1) END;
DROP TABLE temp.load_place;

-- A byte-order mark is not part of the first line.
UPDATE temp.load_lines SET l = CAST(substr(CAST(l AS BLOB), 4) AS TEXT)
  WHERE rowid = 1 AND substr(CAST(l AS BLOB), 1, 3) = x'EFBBBF';

-- The lines that are not plain ASCII. A byte that continues a character has no place of its own, unless it is the first,
-- so that the place of the line feed is less than the number of bytes; a byte that begins a character that does not
-- follow reads as U+FFFD.
DROP TABLE IF EXISTS temp.load_wide_lines;
CREATE TEMP TABLE load_wide_lines AS
  SELECT rowid AS line, l FROM temp.load_lines
  WHERE instr(' ' || l || char(10), char(10)) < length(CAST(l AS BLOB)) + 2 OR l GLOB '*' || char(65533) || '*';
