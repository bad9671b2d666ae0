<<head>>

<<settings>>

# A column of a table. It is a part of the lines of the data file, except "occ" and "item_occ".
#   role      "id", "occ", "item_occ" or "item"
#   type      "number" or "text"
#   first     the first of its characters, from 1
#   length    in characters
#   decimals  the digits after the decimal mark, if the mark is not written
#   codes     position in CODES, or NA
column <- function(name, role, type = "number", first = 0, length = 0, decimals = 0, codes = NA, label = "") {
  list(name = name, role = role, type = type, first = first, length = length, decimals = decimals, codes = codes,
       label = label)
}

# A table, one for each record type. An item table has the occurrences of one repeating item, a row for each.
#   file         name of its file, without extension
#   mark         the record type of its lines
#   record       of an item table: position of the table of its record in TABLES; NA for a record table
#   occurrences  of the item
#   step         from an occurrence to the next, in characters
#   first        the first character of the first occurrence, from 1
#   length       of an occurrence
table_of <- function(name, file, label, mark, columns, record = NA, occurrences = 1, step = 0, first = 0, length = 0) {
  list(name = name, file = file, label = label, mark = mark, columns = columns, record = record,
       occurrences = occurrences, step = step, first = first, length = length)
}

# The codes of an item: those of its first value set.
#   rows     as in the dictionary: from, to, label, special meaning
#   labels   the labels of single codes: code, label, and what the code becomes
#   special  from, to, and what these become: "value", "missing", "m" or "r"; the first that holds a value counts
codes_of <- function(rows, labels, special) {
  by_row <- function(texts, columns) matrix(as.character(texts), ncol = columns, byrow = TRUE)
  list(rows = by_row(rows, 4), labels = by_row(labels, 3), special = by_row(special, 3))
}

# The texts of this program are in UTF-8, whatever the locale is.
utf8 <- function(x) {
  if (is.list(x)) {
    x[] <- lapply(x, utf8)
  } else if (is.character(x)) {
    Encoding(x) <- "UTF-8"
  }
  x
}

# The codes of the items. Several columns may share them.
<<codes>>

# The tables and their columns. Record tables come first.
<<tables>>

CODES <- utf8(CODES)
TABLES <- utf8(TABLES)
KNOWN_TYPES <- utf8(KNOWN_TYPES)
CHUNK <- 100000 # lines that are read at once
PROGRESS <- 5 # seconds from one report of progress to the next

# ----------------------------------------------------------------------------------------------------------------------
# Lines

# The bytes 80 to 9F of windows-1252, as ISO-8859-1 has them, and their characters. Five bytes have no character and
# stand for themselves.
WINDOWS_BYTES <- intToUtf8(c(0x80, 0x82:0x8C, 0x8E, 0x91:0x9C, 0x9E, 0x9F))
WINDOWS_CHARACTERS <- intToUtf8(c(
  0x20AC, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x017D, 0x2018,
  0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x017E, 0x0178))

without_byte_order_mark <- function(line) {
  bytes <- charToRaw(line)
  if (length(bytes) < 3 || !identical(bytes[1:3], as.raw(c(0xEF, 0xBB, 0xBF)))) {
    return(line)
  }
  rawToChar(bytes[-(1:3)])
}

# Lines as they are in the file become texts in UTF-8. "before" is the number of the lines before them.
decoded <- function(lines, before, path) {
  if (ENCODING == "windows-1252") {
    wide <- grepl("[^ -~]", lines, perl = TRUE, useBytes = TRUE)
    lines[wide] <- chartr(WINDOWS_BYTES, WINDOWS_CHARACTERS, iconv(lines[wide], "ISO-8859-1", "UTF-8"))
    return(lines)
  }
  Encoding(lines) <- "UTF-8"
  wrong <- which(!validUTF8(lines))
  if (length(wrong)) {
    stop(sprintf(paste("%s: line %d is not valid UTF-8. If the file is in windows-1252, make this program anew with",
                       "--encoding windows-1252."), path, before + wrong[1]), call. = FALSE)
  }
  lines
}

# Short texts are filled with blanks.
padded <- function(texts, length) {
  paste0(texts, strrep(" ", pmax(0, length - nchar(texts, "chars"))))
}

is_blank <- function(texts) {
  !grepl("[^ ]", texts, perl = TRUE)
}

# ----------------------------------------------------------------------------------------------------------------------
# Values

# A number: blanks, a sign, digits with at most one mark before, among or after them, blanks.
WHOLE_NUMBER <- "^ *[+-]?[0-9]+ *$"
NUMBER <- "^ *[+-]?([0-9]+[.,]?[0-9]*|[.,][0-9]+) *$"

missing_number <- function(becomes) {
  if (becomes == "missing") NA_real_ else haven::tagged_na(becomes)
}

# Replaces special codes by what they become.
with_special_codes <- function(values, special, is_within, missing_value) {
  open <- !is.na(values)
  for (rule in seq_len(nrow(special))) {
    found <- open & is_within(special[rule, 1], special[rule, 2])
    open <- open & !found
    if (any(found) && special[rule, 3] != "value") {
      values[found] <- missing_value(special[rule, 3])
    }
  }
  values
}

# The numbers of texts. The digits are divided by a power of ten, so that the result is the number nearest to the text.
numbers_of <- function(texts, decimals) {
  texts <- gsub(" ", "", texts, fixed = TRUE)
  negative <- startsWith(texts, "-")
  texts <- sub("^[+-]", "", texts)
  mark <- regexpr("[.,]", texts)
  after <- ifelse(mark > 0, nchar(texts) - mark, decimals)
  values <- as.numeric(sub("[.,]", "", texts)) / 10^after
  ifelse(negative, 0 - values, values)
}

# The digits of numbers in one form, such as "-12.5".
exact_texts <- function(texts, decimals) {
  texts <- gsub(" ", "", texts, fixed = TRUE)
  digits <- sub("[.,]", "", sub("^[+-]", "", texts))
  mark <- regexpr("[.,]", texts)
  after <- ifelse(mark > 0, nchar(texts) - mark, decimals)
  digits <- paste0(strrep("0", pmax(0, after - nchar(digits))), digits)
  made <- paste0(sub("^0+", "", substr(digits, 1, nchar(digits) - after)), ".",
                 sub("0+$", "", substring(digits, nchar(digits) - after + 1)))
  paste0(ifelse(startsWith(texts, "-") & made != ".", "-", ""), made)
}

# Whether numbers are a code, or in a range of codes. A code of more digits than a double holds is compared as text.
is_number_within <- function(texts, values, low, high, column) {
  if (low == high && column$length > 15) {
    return(!is.na(values) & exact_texts(texts, column$decimals) == exact_texts(low, 0))
  }
  !is.na(values) & values >= numbers_of(low, 0) & values <= numbers_of(high, 0)
}

# The cells of a numeric column, and how many texts are neither blank nor numbers. Each different text is looked at once.
number_cells <- function(texts, column) {
  different <- unique(texts)
  is_number <- grepl(if (column$decimals > 0) NUMBER else WHOLE_NUMBER, different, perl = TRUE)
  values <- rep(NA_real_, length(different))
  values[is_number] <- numbers_of(different[is_number], column$decimals)
  if (!is.na(column$codes)) {
    numbers <- values
    values <- with_special_codes(values, CODES[[column$codes]]$special, function(low, high) {
      is_number_within(different, numbers, low, high, column)
    }, missing_number)
  }
  wrong <- !is_number & !is_blank(different)
  place <- match(texts, different)
  list(values = values[place], bad = sum(wrong[place]))
}

# The cells of a text column, without trailing blanks.
text_cells <- function(texts, column) {
  different <- unique(texts)
  values <- sub(" +$", "", different, perl = TRUE)
  if (!is.na(column$codes)) {
    values <- with_special_codes(values, CODES[[column$codes]]$special, function(low, high) values == low,
                                 function(becomes) NA_character_)
  }
  list(values = values[match(texts, different)], bad = 0)
}

# ----------------------------------------------------------------------------------------------------------------------
# Parts of the data file. Their cells are collected in an environment: for each column a list of vectors, one
# for each part, under the positions of the table and of the column in it.

key_of <- function(place, number) paste(place, number)

new_collection <- function() {
  list2env(list(parts = new.env(), bad = new.env(), rows = numeric(length(TABLES)), unknown = 0, blank = 0, lines = 0))
}

add_part <- function(collection, key, values) {
  collection$parts[[key]] <- c(collection$parts[[key]], list(values))
}

# "offset" is the distance of the occurrence of each line from the first one, in characters.
add_cells <- function(collection, place, number, lines, offset = 0) {
  column <- TABLES[[place]]$columns[[number]]
  texts <- substr(lines, column$first + offset, column$first + offset + column$length - 1)
  cells <- if (column$type == "number") number_cells(texts, column) else text_cells(texts, column)
  key <- key_of(place, number)
  add_part(collection, key, cells$values)
  collection$bad[[key]] <- sum(collection$bad[[key]], cells$bad)
}

# The role of each column of a table.
roles_of <- function(table) vapply(table$columns, function(column) column$role, "")

# The positions of the columns that are taken from the lines. An item table has the ids of the table of its record.
fields_of <- function(table) {
  which(roles_of(table) %in% if (is.na(table$record)) c("id", "item") else "item")
}

add_record_rows <- function(collection, place, lines) {
  for (number in fields_of(TABLES[[place]])) {
    add_cells(collection, place, number, lines)
  }
  collection$rows[place] <- collection$rows[place] + length(lines)
}

# Adds a row for each occurrence that is not blank. Under "row" is the row of its line in the table of its record.
add_item_rows <- function(collection, place, lines, rows_before) {
  table <- TABLES[[place]]
  starts <- table$first + (seq_len(table$occurrences) - 1) * table$step
  filled <- vapply(starts, function(first) !is_blank(substr(lines, first, first + table$length - 1)),
                   logical(length(lines)))
  found <- which(t(matrix(filled, ncol = table$occurrences))) - 1
  line <- found %/% table$occurrences + 1
  from_0 <- found %% table$occurrences
  add_part(collection, key_of(place, "row"), rows_before + line)
  add_part(collection, key_of(place, which(roles_of(table) == "item_occ")), from_0 + 1)
  for (number in fields_of(table)) {
    add_cells(collection, place, number, lines[line], from_0 * table$step)
  }
  collection$rows[place] <- collection$rows[place] + length(line)
}

is_item_table <- function(table) !is.na(table$record)

# Adds the rows of the lines of one record.
add_lines <- function(collection, place, lines) {
  rows_before <- collection$rows[place]
  add_record_rows(collection, place, lines)
  for (other in seq_along(TABLES)) {
    if (is_item_table(TABLES[[other]]) && TABLES[[other]]$record == place) {
      add_item_rows(collection, other, lines, rows_before)
    }
  }
}

add_part_of_file <- function(collection, lines) {
  blank <- is_blank(lines)
  collection$blank <- collection$blank + sum(blank)
  collection$lines <- collection$lines + length(lines)
  lines <- lines[!blank]
  erased <- startsWith(lines, "~")
  types <- NULL
  known <- !erased
  if (length(RECORD_TYPE)) {
    types <- padded(substr(lines, RECORD_TYPE[1], sum(RECORD_TYPE) - 1), RECORD_TYPE[2])
    known <- !erased & types %in% KNOWN_TYPES
  }
  collection$unknown <- collection$unknown + sum(!known)
  for (place in Filter(function(place) !is_item_table(TABLES[[place]]), seq_along(TABLES))) {
    add_lines(collection, place, lines[if (is.null(types)) known else known & types == TABLES[[place]]$mark])
  }
}

# ----------------------------------------------------------------------------------------------------------------------
# Tables

# A column of all parts. The parts are released.
taken <- function(collection, place, number) {
  key <- key_of(place, number)
  is_text <- is.numeric(number) && TABLES[[place]]$columns[[number]]$type == "text"
  empty <- if (is_text) character() else numeric()
  values <- do.call(c, c(list(empty), collection$parts[[key]]))
  collection$parts[[key]] <- NULL
  values
}

# A number for each row: equal for rows with the same ids. A missing id equals a missing id.
case_numbers <- function(ids, rows) {
  numbers <- rep(1, rows)
  for (values in ids) {
    different <- unique(values[!is.na(values)])
    codes <- match(values, different)
    codes[is.na(values)] <- 0
    numbers <- numbers * (length(different) + 1) + codes
    numbers <- match(numbers, unique(numbers))
  }
  numbers
}

# The number of each row within its case, from 1.
occurrence_numbers <- function(ids, rows) {
  cases <- case_numbers(ids, rows)
  made <- numeric(rows)
  made[order(cases, method = "radix")] <- sequence(tabulate(cases))
  made
}

# The values of a column with its label and those of its codes.
labelled_column <- function(values, column) {
  labels <- if (is.na(column$codes)) matrix("", 0, 3) else CODES[[column$codes]]$labels
  labels <- labels[labels[, 3] == "value" | (labels[, 3] %in% c("m", "r") & !duplicated(labels[, 3])), , drop = FALSE]
  if (column$type == "text") {
    labels <- labels[labels[, 3] == "value", , drop = FALSE]
    codes <- labels[, 1]
  } else {
    codes <- vapply(seq_len(nrow(labels)), function(row) {
      if (labels[row, 3] == "value") numbers_of(labels[row, 1], 0) else missing_number(labels[row, 3])
    }, 0)
  }
  label <- if (nzchar(column$label)) column$label
  if (length(codes)) {
    names(codes) <- labels[, 2]
    # Codes of more digits than a double holds can be the same number: the label of the first counts.
    codes <- codes[!duplicated(codes) | is.na(codes)]
    return(haven::labelled(values, codes, label))
  }
  attr(values, "label") <- label
  values
}

data_frame <- function(columns, rows, label = "") {
  frame <- structure(columns, row.names = .set_row_names(rows), class = "data.frame")
  attr(frame, "label") <- if (nzchar(label)) label
  frame
}

record_columns <- function(collection, place) {
  table <- TABLES[[place]]
  roles <- roles_of(table)
  columns <- lapply(seq_along(roles), function(number) taken(collection, place, number))
  if ("occ" %in% roles) {
    columns[[which(roles == "occ")]] <- occurrence_numbers(columns[roles == "id"], collection$rows[place])
  }
  columns
}

# The columns of an item table. Its ids, and "occ", are those of the line in the table of the record.
item_columns <- function(collection, place, record) {
  table <- TABLES[[place]]
  rows <- taken(collection, place, "row")
  lapply(seq_along(table$columns), function(number) {
    if (table$columns[[number]]$role %in% c("id", "occ")) record[[number]][rows] else taken(collection, place, number)
  })
}

# The codes of all columns, as texts: one row for each code or range of codes.
codes_table <- function() {
  rows <- list()
  for (table in TABLES) {
    for (column in Filter(function(column) !is.na(column$codes), table$columns)) {
      codes <- CODES[[column$codes]]$rows
      rows[[length(rows) + 1]] <- cbind(rep(table$name, nrow(codes)), rep(column$name, nrow(codes)), codes)
    }
  }
  rows <- do.call(rbind, c(list(matrix("", 0, 6)), rows))
  columns <- lapply(1:6, function(number) rows[, number])
  names(columns) <- c("table_name", "column_name", "code_from", "code_to", "label", "special")
  data_frame(columns, nrow(rows))
}

make_tables <- function(collection) {
  made <- list()
  frames <- list()
  for (place in seq_along(TABLES)) {
    table <- TABLES[[place]]
    made[[place]] <- if (is_item_table(table)) {
      item_columns(collection, place, made[[table$record]])
    } else {
      record_columns(collection, place)
    }
    columns <- Map(labelled_column, made[[place]], table$columns)
    names(columns) <- vapply(table$columns, function(column) column$name, "")
    frames[[table$name]] <- data_frame(columns, collection$rows[place], table$label)
  }
  frames[["codes"]] <- codes_table()
  frames
}

# ----------------------------------------------------------------------------------------------------------------------
# The data file

# Prints the counts of a run.
report_counts <- function(collection) {
  count <- function(number) format(number, scientific = FALSE)
  for (place in seq_along(TABLES)) {
    table <- TABLES[[place]]
    message(table$name, ": ", count(collection$rows[place]), " rows")
    for (number in fields_of(table)) {
      bad <- collection$bad[[key_of(place, number)]]
      if (!is.null(bad) && bad > 0) {
        message(table$name, ".", table$columns[[number]]$name, ": ", count(bad), " values are no numbers")
      }
    }
  }
  if (collection$unknown > 0) message(count(collection$unknown), " lines of no known record type")
  if (collection$blank > 0) message(count(collection$blank), " blank lines")
}

read_file <- function(path) {
  if (!file.exists(path) || dir.exists(path)) {
    stop(path, ": there is no such file", call. = FALSE)
  }
  collection <- new_collection()
  # The full path, because file() takes names such as "stdin" for something else.
  connection <- file(normalizePath(path), "rb")
  on.exit(close(connection))
  size <- file.size(path)
  bytes <- 0
  next_report <- proc.time()[["elapsed"]] + PROGRESS
  repeat {
    lines <- readLines(connection, CHUNK, warn = FALSE)
    if (!length(lines)) {
      return(collection)
    }
    bytes <- bytes + sum(nchar(lines, "bytes")) + length(lines)
    if (collection$lines == 0) {
      lines[1] <- without_byte_order_mark(lines[1])
    }
    add_part_of_file(collection, decoded(lines, collection$lines, path))
    if (proc.time()[["elapsed"]] >= next_report) {
      message(path, ": ", min(100, floor(100 * bytes / size)), " % read")
      next_report <- proc.time()[["elapsed"]] + PROGRESS
    }
  }
}

# Loads the data file. The result is a list with the data frame of each record by its name, and the data frame "codes".
# The counts of rows, and of values that are no numbers, are messages.
load_data <- function(data = DATA) {
  if (!requireNamespace("haven", quietly = TRUE)) {
    stop("This program needs the package haven. Install it with install.packages(\"haven\").", call. = FALSE)
  }
  collection <- read_file(data)
  report_counts(collection)
  make_tables(collection)
}

# Writes each table to a file of its name. Files of an earlier run are replaced when all are written.
write_tables <- function(frames, directory) {
  dir.create(directory, showWarnings = FALSE, recursive = TRUE)
  temporary <- tempfile(".load-", directory)
  if (!dir.create(temporary)) {
    stop(directory, ": nothing can be written there", call. = FALSE)
  }
  on.exit(unlink(temporary, recursive = TRUE))
  files <- c(vapply(TABLES, function(table) table$file, ""), "codes")
  for (number in seq_along(files)) {
    connection <- gzfile(file.path(temporary, paste0(files[number], ".rds")), "wb", compression = 1)
    saveRDS(frames[[number]], connection)
    close(connection)
  }
  names <- list.files(temporary)
  if (!all(file.rename(file.path(temporary, names), file.path(directory, names)))) {
    stop(directory, ": not all files could be written", call. = FALSE)
  }
}

main <- function(arguments) {
  if (length(arguments) > 2) {
    stop("Usage: Rscript PROGRAM [DATA [OUT]]", call. = FALSE)
  }
  frames <- load_data(if (length(arguments) > 0) arguments[1] else DATA)
  write_tables(frames, if (length(arguments) > 1) arguments[2] else ".")
}

if (sys.nframe() == 0 && !interactive()) {
  main(commandArgs(trailingOnly = TRUE))
}
