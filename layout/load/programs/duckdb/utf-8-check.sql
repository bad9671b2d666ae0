SET VARIABLE load_check = (
  SELECT error('Line ' || min(line) || CASE WHEN any_value(error_type) = 'INVALID ENCODING'
    THEN ' is not valid UTF-8. If the file is in windows-1252, make this program with --encoding windows-1252.'
    ELSE ': ' || any_value(error_message) END)
  FROM temp.load_rejects HAVING count(*) > 0
);
