DROP TABLE temp.load_lines;
DROP TABLE temp.load_wide_lines;
DROP TABLE temp.load_columns;
DROP TABLE temp.load_texts;
DROP TABLE temp.load_messages;
DROP TABLE temp.load_occurrences;
