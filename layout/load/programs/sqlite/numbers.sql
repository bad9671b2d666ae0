
-- The number of a text that is not simply digits, times the power of ten of its column: a sign, digits with at most one
-- decimal mark, and a mark only where the column has decimals. NULL for any other text. The `=` before a text keeps it from
-- becoming a number when it is stored.
UPDATE temp.load_texts SET number = (
  SELECT CASE
      WHEN digits = '' OR digits GLOB '*[^0-9]*' OR length(unsigned) - length(digits) > (decimals > 0) THEN NULL
      WHEN behind > decimals THEN CAST(sign || digits AS REAL) / CAST('1e' || (behind - decimals) AS REAL)
      WHEN length(digits) + decimals - behind <= 18
        THEN CAST(sign || digits || replace(printf('%*s', decimals - behind, ''), ' ', '0') AS INTEGER)
      ELSE CAST(sign || digits || 'e' || (decimals - behind) AS REAL) END
  FROM (
    SELECT *, replace(replace(unsigned, '.', ''), ',', '') AS digits, CASE instr(replace(unsigned, ',', '.'), '.')
        WHEN 0 THEN decimals
        ELSE length(unsigned) - instr(replace(unsigned, ',', '.'), '.') END AS behind
    FROM (
      SELECT decimals, CASE WHEN text LIKE '-%' THEN '-' ELSE '' END AS sign,
        CASE WHEN substr(text, 1, 1) IN ('-', '+') THEN substr(text, 2) ELSE text END AS unsigned
      FROM (SELECT trim(substr(load_texts.text, 1 + (load_texts.text LIKE '=%')), ' ') AS text, decimals FROM temp.load_columns c
            WHERE c.column = load_texts.column))));
