# The exact layout of census and survey data files, as the command `vanlayout show --format json` reads it.

LAYOUT_VERSION <- 1L
FILES_PER_CALL <- 200 # a system limits the length of a command

# The members of each kind of object, with their default values; NULL if there is no default. The names are those of
# the JSON form.
SHAPES <- list(
  layout = list(
    layoutVersion = LAYOUT_VERSION, file = "", format = "", container = "", formatVersion = "", encoding = "",
    name = "", labels = list(), note = "", aliases = list(), languages = list(), recordType = NULL,
    relativePositions = NULL, decimalMark = FALSE, zeroFill = FALSE, editable = TRUE, security = NULL,
    readOptimization = NULL, enableBinaryItems = NULL, valueSetImages = NULL, rows = NULL, created = NULL,
    modified = NULL, weight = "", levels = list(), relations = list(), extras = list(), problems = list()
  ),
  level = list(name = "", labels = list(), note = "", aliases = list(), ids = list(), records = list()),
  record = list(
    name = "", labels = list(), note = "", aliases = list(), recordType = "", required = TRUE, maximum = 1L,
    length = NULL, occurrenceLabels = list(), items = list()
  ),
  item = list(
    name = "", labels = list(), note = "", aliases = list(), type = "", start = 0L, length = 0L, occurrences = 1L,
    occurrenceLabels = list(), subitemOf = "", decimals = 0L, decimalMark = FALSE, zeroFill = FALSE, capture = NULL,
    storage = "", format = "", measure = "", alignment = "", displayWidth = 0L, missing = list(), valueSets = list()
  ),
  value_set = list(name = "", labels = list(), note = "", aliases = list(), link = "", values = list()),
  value = list(labels = list(), note = "", special = "", image = "", textColor = "", ranges = list()),
  range = list(from = "", to = ""),
  label = list(language = "", text = ""),
  language = list(name = "", label = ""),
  occurrence_label = list(occurrence = 0L, labels = list()),
  columns = list(start = 0L, length = 0L),
  security = list(
    settings = NULL, allowDataViewerModifications = NULL, allowExport = NULL, cachedPasswordMinutes = NULL
  ),
  capture = list(type = "", dateFormat = ""),
  relation = list(name = "", aliases = list(), primary = "", links = list()),
  link = list(primaryLink = "", secondary = "", secondaryLink = ""),
  extra = list(path = "", key = "", value = "", line = 0L),
  problem = list(severity = "", id = "", line = 0L, path = "", message = "")
)

# The members that the JSON form has even with their default values.
ALWAYS <- list(
  layout = c("layoutVersion", "file", "format", "levels"), level = c("name", "ids", "records"),
  record = c("name", "items"), item = c("name", "type", "length"), value_set = c("name", "values"), value = "ranges",
  range = "from", label = "text", language = c("name", "label"), occurrence_label = c("occurrence", "labels"),
  columns = c("start", "length"), capture = "type", relation = c("name", "primary", "links"), link = "secondary",
  extra = c("path", "key", "value"), problem = c("severity", "id", "message")
)

# The kind of the objects that a member holds. The recordType of a record is a text.
KINDS <- c(
  levels = "level", ids = "item", records = "record", items = "item", valueSets = "value_set", values = "value",
  ranges = "range", missing = "range", labels = "label", languages = "language", occurrenceLabels = "occurrence_label",
  recordType = "columns", security = "security", capture = "capture", relations = "relation", links = "link",
  extras = "extra", problems = "problem"
)

# The members of each kind that hold objects.
HOLDERS <- lapply(SHAPES, function(shape) intersect(names(shape), names(KINDS)))

# The classes of the objects that have codes.
CLASSES <- c(layout = "vanlayout", item = "vanlayout_item", value_set = "vanlayout_value_set")

# Applies change(object, kind) to the objects that an object of this kind holds.
change_held <- function(object, kind, change) {
  for (key in HOLDERS[[kind]]) {
    held <- object[[key]]
    if (is.list(held) && !is.null(names(held))) {
      object[[key]] <- change(held, KINDS[[key]])
    } else if (is.list(held)) {
      object[[key]] <- lapply(held, change, KINDS[[key]])
    }
  }
  object
}

# An object of the JSON form with all of its members. Keys of later releases of the command are ignored.
complete <- function(object, kind) {
  made <- SHAPES[[kind]]
  keys <- names(object)[names(object) %in% names(made)]
  made[keys] <- object[keys]
  made <- change_held(made, kind, complete)
  if (kind %in% names(CLASSES)) structure(made, class = CLASSES[[kind]]) else made
}

# The reverse of complete().
plain <- function(object, kind) {
  shape <- SHAPES[[kind]]
  made <- unclass(object)
  is_default <- vapply(names(shape), function(key) identical(made[[key]], shape[[key]]), NA)
  change_held(made[!is_default | names(shape) %in% ALWAYS[[kind]]], kind, plain)
}

to_list <- function(layout) plain(layout, "layout")

# Ends with an error of class "vanlayout_error". Its `layouts` are those of the files that were read.
fail <- function(message, status = NA_integer_, layouts = list()) {
  stop(structure(
    list(message = message, call = NULL, status = status, layouts = layouts),
    class = c("vanlayout_error", "error", "condition")
  ))
}

# The path of the command: the argument, the environment variable VANLAYOUT, or `vanlayout` of PATH.
command_path <- function(command) {
  if (is.null(command)) {
    command <- Sys.getenv("VANLAYOUT")
  }
  if (!nzchar(command)) {
    command <- "vanlayout"
  }
  path <- unname(Sys.which(native(command)))
  if (!nzchar(path)) {
    fail(paste0(
      command, ": no such command; install vanlayout, or set the environment variable VANLAYOUT to its path"
    ))
  }
  path
}

# Paths as the system takes them. A path with characters that the locale lacks is passed in UTF-8, as in the C locale.
native <- function(paths) {
  made <- enc2native(paths)
  texts <- enc2utf8(paths)
  lacking <- enc2utf8(made) != texts
  Encoding(texts) <- "unknown"
  made[lacking] <- texts[lacking]
  path.expand(made)
}

# Texts that the command printed: in UTF-8, messages in the encoding of the locale.
as_utf8 <- function(lines) {
  Encoding(lines[validUTF8(lines)]) <- "UTF-8"
  enc2utf8(lines)
}

# Runs the command and returns its exit status, the lines of its result and its messages. An R text cannot contain the
# null character, so U+FFFD replaces it.
run <- function(command, arguments, input) {
  output <- tempfile("vanlayout")
  errors <- tempfile("vanlayout")
  on.exit(unlink(c(output, errors)))
  arguments <- c("show", "--format", "json", arguments)
  status <- suppressWarnings(system2(
    command, vapply(arguments, shQuote, ""), stdout = output, stderr = errors, stdin = input
  ))
  printed <- as_utf8(readLines(output, warn = FALSE))
  null <- grepl("\\u0000", printed, fixed = TRUE)
  printed[null] <- gsub("(?<!\\\\)((?:\\\\\\\\)*)\\\\u0000", "\\1\\\\ufffd", printed[null], perl = TRUE)
  list(status = status, printed = printed, messages = as_utf8(readLines(errors, warn = FALSE)))
}

# The layout in a line that the command printed; NULL if the line states why a file has none.
parsed <- function(line) {
  object <- jsonlite::parse_json(line, simplifyVector = FALSE)
  if ("error" %in% names(object)) {
    return(NULL)
  }
  if (!identical(object$layoutVersion, LAYOUT_VERSION)) {
    fail(paste0(
      object$file, ": the layout has version ", object$layoutVersion, ", but this package reads version ",
      LAYOUT_VERSION, "; install the package of the same release as the command"
    ))
  }
  complete(object, "layout")
}

read_part <- function(files, input, catalog, command) {
  options <- if (!is.null(catalog)) paste0("--catalog=", native(catalog))
  ended <- run(command, c(options, "--", native(files)), input)
  message <- paste(sub("^vanlayout: ", "", ended$messages), collapse = "\n")
  if (!nzchar(message)) {
    message <- paste0(command, ": no layout was printed, and the exit status is ", ended$status)
  }
  layouts <- tryCatch(
    lapply(ended$printed[nzchar(ended$printed)], parsed),
    error = function(error) if (inherits(error, "vanlayout_error")) stop(error) else fail(message, ended$status)
  )
  layouts <- Filter(Negate(is.null), layouts)
  if (ended$status != 0 || length(layouts) != length(files)) {
    fail(message, ended$status, layouts)
  }
  layouts
}

read_layout <- function(file, catalog = NULL, command = NULL) {
  command <- command_path(command)
  if (is.raw(file)) {
    input <- tempfile("vanlayout")
    on.exit(unlink(input))
    writeBin(file, input)
    return(read_part("-", input, catalog, command)[[1]])
  }
  stopifnot(is.character(file), length(file) == 1, !is.na(file))
  input <- if (file == "-") "" else nullfile()
  read_part(file, input, catalog, command)[[1]]
}

read_layouts <- function(files, catalog = NULL, command = NULL) {
  stopifnot(is.character(files), !anyNA(files))
  command <- command_path(command)
  layouts <- list()
  failures <- list()
  for (part in split(files, (seq_along(files) - 1) %/% FILES_PER_CALL)) {
    input <- if ("-" %in% part) "" else nullfile()
    read <- tryCatch(read_part(part, input, catalog, command), vanlayout_error = identity)
    if (inherits(read, "vanlayout_error")) {
      failures <- c(failures, list(read))
      read <- read$layouts
    }
    layouts <- c(layouts, read)
  }
  if (length(failures) > 0) {
    fail(paste(vapply(failures, conditionMessage, ""), collapse = "\n"), failures[[1]]$status, layouts)
  }
  layouts
}

label_of <- function(object, language = "") {
  for (part in object$labels) {
    if (nzchar(language) && nzchar(part$text) && tolower(part$language) == tolower(language)) {
      return(part$text)
    }
  }
  if (length(object$labels) > 0) object$labels[[1]]$text else ""
}

# Applies use(level, record, items) to the ids of each level and to each of its records, in the order of the file.
each_record <- function(layout, use) {
  do.call(c, lapply(layout$levels, function(level) {
    c(
      use(level$name, "(ids)", level$ids),
      do.call(c, lapply(level$records, function(record) use(level$name, record$name, record$items)))
    )
  }))
}

layout_items <- function(layout) {
  items <- each_record(layout, function(level, record, items) items)
  stats::setNames(as.list(items), vapply(items, `[[`, "", "name"))
}

# Binds matrices of codes, which have these columns.
stack <- function(parts, columns) {
  empty <- matrix(character(), 0, length(columns), dimnames = list(NULL, columns))
  do.call(rbind, c(list(empty), parts))
}

VALUE_SET_COLUMNS <- c("from", "to", "label", "special")
ITEM_COLUMNS <- c("valueSet", VALUE_SET_COLUMNS)
LAYOUT_COLUMNS <- c("level", "record", "item", ITEM_COLUMNS)

# A row for each code or range; a value without a code has one row.
value_codes <- function(value, language) {
  ranges <- if (length(value$ranges) > 0) value$ranges else list(SHAPES$range)
  from <- vapply(ranges, `[[`, "", "from")
  to <- vapply(ranges, `[[`, "", "to")
  cbind(from, to, label = label_of(value, language), special = value$special)
}

value_set_codes <- function(value_set, language) {
  stack(lapply(value_set$values, value_codes, language), VALUE_SET_COLUMNS)
}

item_codes <- function(item, language) {
  stack(lapply(item$valueSets, function(value_set) {
    codes <- value_set_codes(value_set, language)
    cbind(valueSet = rep(value_set$name, nrow(codes)), codes)
  }), ITEM_COLUMNS)
}

layout_codes <- function(layout, language) {
  stack(each_record(layout, function(level, record, items) {
    lapply(items, function(item) {
      codes <- item_codes(item, language)
      repeated <- function(name) rep(name, nrow(codes))
      cbind(level = repeated(level), record = repeated(record), item = repeated(item$name), codes)
    })
  }), LAYOUT_COLUMNS)
}

as.data.frame.vanlayout <- function(x, row.names = NULL, optional = FALSE, ..., language = "") {
  as.data.frame(layout_codes(x, language), row.names, optional, stringsAsFactors = FALSE)
}

as.data.frame.vanlayout_item <- function(x, row.names = NULL, optional = FALSE, ..., language = "") {
  as.data.frame(item_codes(x, language), row.names, optional, stringsAsFactors = FALSE)
}

as.data.frame.vanlayout_value_set <- function(x, row.names = NULL, optional = FALSE, ..., language = "") {
  as.data.frame(value_set_codes(x, language), row.names, optional, stringsAsFactors = FALSE)
}

print.vanlayout <- function(x, ...) {
  cat("Layout of ", x$file, ": ", x$format, ", ", length(layout_items(x)), " items\n", sep = "")
  invisible(x)
}
