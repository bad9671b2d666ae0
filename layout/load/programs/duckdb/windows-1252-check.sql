SET VARIABLE load_check = (
  SELECT error('There is no data file ' || getvariable('load_data'))
  WHERE NOT EXISTS (SELECT * FROM glob(getvariable('load_file')))
);
