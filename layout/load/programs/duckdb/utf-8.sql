  -- One column without quotes or separators. Lines may end in LF or CR LF, also in one file.
  SELECT coalesce(line, '') AS text
  FROM read_csv(getvariable('load_file'),
    columns = {'line': 'VARCHAR'}, delim = '', quote = '', escape = '', header = false, auto_detect = false,
    compression = 'none', strict_mode = false, new_line = '\r\n', parallel = false, max_line_size = 2000000,
    store_rejects = true, rejects_table = 'load_rejects', rejects_scan = 'load_scans', rejects_limit = 1)
