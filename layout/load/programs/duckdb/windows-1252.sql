  -- As text, bytes outside of ASCII are hexadecimal, such as \xE9. The five free bytes of windows-1252 stay as they are.
  SELECT CASE WHEN contains(line, '\x')
    THEN str_split(line, '\x')[1] || array_to_string([
      CASE WHEN left(part, 1) IN ('8', '9')
        THEN substr('€' || chr(129) || '‚ƒ„…†‡ˆ‰Š‹Œ' || chr(141) || 'Ž' || chr(143) || chr(144) || '‘’“”•–—˜™š›œ' || chr(157)
          || 'žŸ', CAST('0x' || left(part, 2) AS INTEGER) - 127, 1)
        ELSE chr(CAST('0x' || left(part, 2) AS INTEGER))
      END || substr(part, 3) FOR part IN str_split(line, '\x')[2:]], '')
    ELSE line
  END AS text
  FROM (
    SELECT CASE WHEN right(line, 4) = '\x0D' THEN left(line, -4) ELSE line END AS line
    FROM (
      SELECT unnest(str_split(
        CASE WHEN right(content, 4) = '\x0A' THEN left(content, -4) ELSE content END, '\x0A')) AS line
      FROM (
        SELECT CASE WHEN bytes LIKE '\xEF\xBB\xBF%' ESCAPE '^' THEN substr(bytes, 13) ELSE bytes END AS content
        FROM (
          SELECT CAST(content AS VARCHAR) AS bytes
          FROM read_blob(getvariable('load_file'))
        )
      )
      WHERE content <> ''
    )
  )
