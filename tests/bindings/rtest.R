# Tests the installed R package: every layout is the one that the command prints, and its codes are those of
# `vanlayout show --codes`.
#
#     Rscript rtest.R TOOL PROJECT MADE_DATA [CORPUS]
#
# CTest runs it in several locales: in each, texts are in UTF-8. Every third file of the corpus is read.

library(vanlayout)
options(warn = 2)

arguments <- commandArgs(trailingOnly = TRUE)
TOOL <- arguments[1]
PROJECT <- arguments[2]
MADE_DATA <- arguments[3]
CORPUS <- arguments[4]
GOLDEN <- file.path(PROJECT, "tests/data/layout")
CENSUS <- file.path(PROJECT, "examples/census.dcf")
ABSENT <- "cannot be opened: No such file or directory"
Sys.setenv(VANLAYOUT = TOOL)

same <- function(wanted, got, ...) {
  if (!identical(wanted, got)) {
    cat(..., "\n", all.equal(wanted, got), "\n")
    stop("the values differ")
  }
}

failure <- function(expression) tryCatch(expression, vanlayout_error = identity)

# The text of a file in UTF-8. No text of R has a null character: U+FFFD replaces it.
text_of <- function(path) {
  text <- rawToChar(readBin(path, "raw", file.size(path)))
  Encoding(text) <- "UTF-8"
  gsub("\\u0000", "\\ufffd", text, fixed = TRUE)
}

json_of <- function(text) jsonlite::parse_json(text, simplifyVector = FALSE)

printed <- function(...) {
  output <- tempfile()
  on.exit(unlink(output))
  suppressWarnings(system2(TOOL, shQuote(c("show", "--quiet", ...)), stdout = output, stderr = FALSE))
  text_of(output)
}

# The layouts of the files that have one.
readable <- function(paths) {
  result <- failure(read_layouts(paths))
  if (inherits(result, "error")) result$layouts else result
}

write_bytes <- function(path, bytes) {
  encoded <- enc2utf8(path)
  Encoding(encoded) <- "unknown"
  output <- file(encoded, "wb")
  writeBin(bytes, output)
  close(output)
}

# A command that runs these lines of the shell.
fake <- function(...) {
  path <- tempfile("a command")
  writeLines(c("#!/bin/sh", ...), path)
  Sys.chmod(path, "755")
  path
}

CONTENT <- readBin(CENSUS, "raw", file.size(CENSUS))
TESTS <- list()

TESTS$golden_layouts_are_read <- function() {
  setwd(GOLDEN)
  names <- list.files(pattern = "[.](dcf|xml)$")
  stopifnot(length(names) > 50)
  layouts <- read_layouts(names)
  for (i in seq_along(names)) {
    golden <- paste0(tools::file_path_sans_ext(names[i]), ".json")
    same(json_of(text_of(golden)), to_list(layouts[[i]]), names[i])
  }
}

TESTS$to_list_is_what_the_command_prints <- function() {
  corpus <- Sys.glob(file.path(CORPUS, "*/*"))
  paths <- c(Sys.glob(file.path(MADE_DATA, "*.*")), corpus[seq_along(corpus) %% 3 == 0])
  wanted <- lapply(strsplit(printed("--format", "json", paths), "\n", fixed = TRUE)[[1]], json_of)
  wanted <- Filter(function(object) is.null(object$error), wanted)
  layouts <- readable(paths)
  same(length(wanted), length(layouts))
  for (i in seq_along(layouts)) {
    same(wanted[[i]], to_list(layouts[[i]]), layouts[[i]]$file)
  }
}

# The value of a member that the JSON form omits: the value that this part of the schema excludes, or NULL.
default_of <- function(form, forms) {
  if (!is.null(form[["$ref"]])) {
    form <- forms[[basename(form[["$ref"]])]]
  }
  if (is.logical(form$const)) {
    !form$const
  } else if (!is.null(form$minItems)) {
    list()
  } else if (identical(form$minimum, 1L)) {
    0L
  } else if (!is.null(form$minLength) || !is.null(form$enum) || !is.null(form$const)) {
    ""
  } else {
    form[["not"]]$const
  }
}

TESTS$objects_have_the_members_of_the_schema <- function() {
  forms <- json_of(text_of(file.path(PROJECT, "docs/layout.schema.json")))[["$defs"]]
  forms$capture <- forms$item$properties$capture
  forms$link <- forms$relation$properties$links$items
  names <- c(value_set = "valueSet", occurrence_label = "occurrenceLabel", columns = "recordType")
  shapes <- vanlayout:::SHAPES
  for (kind in names(shapes)) {
    form <- forms[[if (kind %in% names(names)) names[[kind]] else kind]]
    same(names(form$properties), names(shapes[[kind]]), kind)
    stopifnot(unlist(form$required) %in% vanlayout:::ALWAYS[[kind]])
    for (key in setdiff(names(form$properties), vanlayout:::ALWAYS[[kind]])) {
      same(default_of(form$properties[[key]], forms), shapes[[kind]][[key]], kind, key)
    }
  }
}

TESTS$codes_are_those_of_the_command <- function() {
  compared <- 0
  for (layout in readable(c(CENSUS, Sys.glob(file.path(GOLDEN, "*.dcf")), Sys.glob(file.path(MADE_DATA, "*.*"))))) {
    rows <- utils::read.csv(
      text = printed("--format", "csv", "--codes", layout$file), colClasses = "character", na.strings = character(),
      encoding = "UTF-8", check.names = FALSE
    )
    language <- if (names(rows)[6] == "label") "" else sub("^label_", "", names(rows)[6])
    names(rows)[6] <- "label"
    codes <- as.data.frame(layout, language = language)
    columns <- c("item", "valueSet", "from", "to", "label", "special")
    if (!any(grepl("[\r\n]", unlist(codes)))) { # read.csv changes line ends
      for (column in columns) same(enc2utf8(rows[[column]]), codes[[column]], layout$file, column)
      compared <- compared + nrow(codes)
    }
  }
  stopifnot(compared > 400)
}

TESTS$members_and_helpers <- function() {
  layout <- read_layout(CENSUS)
  same(c("HOUSING", "POPULATION", "MORTALITY"), vapply(layout$levels[[1]]$records, `[[`, "", "name"))
  items <- layout_items(layout)
  same(56L, length(items))
  same("PROVINCE", names(items)[1])
  item <- items$H07_RENT
  same(list("Monthly rent in crowns", 20L, 9L, 2L, TRUE, 1L),
       list(label_of(item), item$start, item$length, item$decimals, item$decimalMark, item$occurrences))
  same(paste0("Layout of ", CENSUS, ": cspro-text, 56 items"), utils::capture.output(print(layout)))
}

TESTS$frames_of_a_value_set_of_an_item_and_of_the_layout <- function() {
  layout <- read_layout(CENSUS)
  item <- layout_items(layout)$P06_AGE
  codes <- as.data.frame(item$valueSets[[1]])
  same(data.frame(from = c("0", "999"), to = c("110", ""), label = c("Years", "Not stated"),
                  special = c("", "missing")), codes)
  all <- as.data.frame(item)
  same(c("P06_AGE_VS1", "P06_AGE_VS1", "P06_AGE_VS2", "P06_AGE_VS2", "P06_AGE_VS2"), all$valueSet)
  whole <- as.data.frame(layout)
  same(c("level", "record", "item", "valueSet", "from", "to", "label", "special"), names(whole))
  part <- whole[whole$item == "P06_AGE", names(all)]
  rownames(part) <- NULL
  same(all, part)
  same(c("ORVANDIA_CENSUS_QUEST", "(ids)", "PROVINCE"), unlist(whole[1, 1:3], use.names = FALSE))
  same(c(0L, 5L), dim(as.data.frame(layout_items(layout)$H07_RENT)))
}

TESTS$a_language_falls_back_to_the_primary_one <- function() {
  value <- list(labels = list(list(language = "EN", text = "House"), list(language = "FR", text = "Maison"),
                              list(language = "ES", text = "")), special = "", ranges = list())
  codes <- c("", "fr", "ES", "DE")
  same(c("House", "Maison", "House", "House"), unname(vapply(codes, label_of, "", object = value)))
  value_set <- structure(list(name = "V", values = list(value)), class = "vanlayout_value_set")
  same(data.frame(from = "", to = "", label = "Maison", special = ""), as.data.frame(value_set, language = "FR"))
}

TESTS$paths_with_odd_characters <- function() {
  names <- c("-o.dcf", "--help", "a b.dcf", "it's \"q\" $HOME `x`!.dcf", "\u00e9t\u00e9 \u65e5.dcf", "two\nlines.dcf")
  for (name in names) {
    write_bytes(name, CONTENT)
    same(name, read_layout(name)$file)
    same(c(name, name), vapply(read_layouts(c(name, name)), `[[`, "", "file"))
  }
}

TESTS$raw_vectors_and_standard_input <- function() {
  same(56L, length(layout_items(read_layout(CONTENT))))
  same("-", read_layout(CONTENT)$file)
  run <- function(script, stdin) {
    arguments <- c("-e", shQuote(script), shQuote(CENSUS))
    system2(file.path(R.home("bin"), "Rscript"), arguments, stdin = stdin, stdout = TRUE)
  }
  same("ORVANDIA_CENSUS_DICT", run("cat(vanlayout::read_layout('-')$name)", CENSUS))
  write_bytes("kept", charToRaw("kept\n")) # only "-" reads standard input
  Sys.setenv(VANLAYOUT = fake("cat", paste0("exec '", TOOL, "' \"$@\"")))
  on.exit(Sys.setenv(VANLAYOUT = TOOL))
  same("ORVANDIA_CENSUS_DICT kept",
       run("cat(vanlayout::read_layout(commandArgs(TRUE))$name, readLines('stdin'))", "kept"))
}

TESTS$catalogs <- function() {
  data <- file.path(MADE_DATA, "survey.sas7bdat")
  file.symlink(file.path(MADE_DATA, "formats.sas7bcat"), "-c d.sas7bcat")
  same(0L, nrow(as.data.frame(read_layout(data))))
  stopifnot(nrow(as.data.frame(read_layout(data, catalog = "-c d.sas7bcat"))) > 0)
}

TESTS$texts_do_not_depend_on_the_locale <- function() {
  write_bytes("\u00e9.dcf", charToRaw(enc2utf8("[Dictionary]\r\nName=D\r\nLabel=\u00e9t\u00e9 \u65e5\r\n")))
  layout <- read_layout("\u00e9.dcf")
  same(charToRaw("\xc3\xa9t\xc3\xa9 \xe6\x97\xa5"), charToRaw(label_of(layout)))
  same("UTF-8", Encoding(label_of(layout)))
  same(paste0("n\u00f6.dcf: ", ABSENT), conditionMessage(failure(read_layout("n\u00f6.dcf"))))
}

TESTS$warnings_are_problems_of_the_layout <- function() {
  write_bytes("w.dcf", c(CONTENT, charToRaw("\n[Nonsense]\nA=1\n")))
  same("warning", read_layout("w.dcf")$problems[[1]]$severity)
  same(paste0("absent: ", ABSENT), conditionMessage(failure(read_layouts(c("w.dcf", "absent")))))
}

TESTS$null_characters_are_replaced <- function() {
  writeLines('{"layoutVersion":1,"file":"","format":"","name":"\\u0000\\u0000a\\\\u0000\\\\\\u0000","levels":[]}', "made")
  same("\ufffd\ufffda\\u0000\\\ufffd", read_layout("made", command = fake("cat made"))$name)
}

TESTS$many_files_are_read_in_order <- function() {
  names <- sprintf("%03d.dcf", 1:250)
  for (name in names) write_bytes(name, charToRaw("[Dictionary]\nName=D\n[Level]\nName=L\n"))
  names[240] <- "absent"
  command <- fake("echo >> calls", paste0("exec '", TOOL, "' \"$@\""))
  result <- failure(read_layouts(names, command = command))
  same(2L, length(readLines("calls")))
  same(paste0("absent: ", ABSENT), conditionMessage(result))
  same(names[-240], vapply(result$layouts, `[[`, "", "file"))
  same(list(), read_layouts(character()))
}

TESTS$failures_have_the_message_of_the_command <- function() {
  result <- failure(read_layout("/absent/a.dcf"))
  same(paste0("/absent/a.dcf: ", ABSENT), conditionMessage(result))
  same(2L, result$status)
  result <- failure(read_layouts(c("/absent/a", CENSUS, "/absent/b")))
  same(paste0("/absent/a: ", ABSENT, "\n/absent/b: ", ABSENT), conditionMessage(result))
  same(1L, length(result$layouts))
  for (script in c("exit 0", "echo text", "echo 5")) {
    command <- fake(script)
    result <- failure(read_layout(CENSUS, command = command))
    same(paste0(command, ": no layout was printed, and the exit status is 0"), conditionMessage(result))
  }
  command <- fake("echo 'vanlayout: --format: no such option of show' >&2; exit 2")
  result <- failure(read_layout(CENSUS, command = command))
  same("--format: no such option of show", conditionMessage(result))
}

TESTS$the_command_is_the_argument_or_of_the_environment_or_of_the_path <- function() {
  path <- Sys.getenv("PATH")
  on.exit(Sys.setenv(VANLAYOUT = TOOL, PATH = path))
  same("/absent/c: no such command; install vanlayout, or set the environment variable VANLAYOUT to its path",
       conditionMessage(failure(read_layout(CENSUS, command = "/absent/c"))))
  Sys.setenv(VANLAYOUT = "/absent/b")
  same(56L, length(layout_items(read_layout(CENSUS, command = TOOL))))
  stopifnot(inherits(failure(read_layout(CENSUS)), "vanlayout_error"))
  Sys.setenv(VANLAYOUT = "", PATH = paste0(dirname(TOOL), ":", path))
  same(56L, length(layout_items(read_layout(CENSUS))))
}

TESTS$keys_of_later_releases_are_ignored_and_another_version_is_an_error <- function() {
  made <- paste0('{"layoutVersion":1,"file":"f","format":"new","new":{"a":[1]},"levels":[{"name":"L","ids":[],',
                 '"records":[{"name":"R","new":[],"items":[{"name":"I","type":"alpha","length":3,"new":true,',
                 '"missing":[{"from":"01","new":1}]}]}]}]}')
  layout <- read_layout("f", command = fake(paste0("echo '", made, "'")))
  same("new", layout$format)
  same(list(list(from = "01", to = "")), layout_items(layout)$I$missing)
  same(json_of(gsub('"new":(\\{"a":\\[1\\]\\}|\\[\\]|true),|,"new":1', "", made)), to_list(layout))
  command <- fake(paste0("echo '", sub('"layoutVersion":1', '"layoutVersion":2', made), "'"))
  stopifnot(startsWith(conditionMessage(failure(read_layout("f", command = command))),
                       "f: the layout has version 2, but this package reads version 1"))
}

failed <- 0
for (name in names(TESTS)) {
  directory <- tempfile()
  dir.create(directory)
  setwd(directory)
  tryCatch(TESTS[[name]](), error = function(error) {
    cat("FAILED:", name, "\n", conditionMessage(error), "\n")
    failed <<- failed + 1
  })
}
cat(length(TESTS), "tests,", failed, "failed\n")
quit(status = failed > 0)
