#include "CommandLine.h"

#include "Answer.h"
#include "Codebook.h"
#include "Completion.h"
#include "Concord.h"
#include "Convert.h"
#include "Diff.h"
#include "Explain.h"
#include "Export.h"
#include "Fields.h"
#include "Find.h"
#include "Lint.h"
#include "LintSettings.h"
#include "Load.h"
#include "LocaleText.h"
#include "LookupCheck.h"
#include "Show.h"
#include "Suggestion.h"
#include "vanlayout_version.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <functional>
#include <iostream>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

using Choices = std::vector<std::string>;

void addChoice(CLI::App &command, const char *name, std::string &chosen, const Choices &choices, const char *help)
{
    command.add_option(name, chosen, help)->check(CLI::IsMember(choices))->capture_default_str();
}

void addFormat(CLI::App &command, std::string &format)
{
    addChoice(command, "--format", format, { "table", "json" }, "table or json");
}

void addType(CLI::App &command, std::string &type, const char *help, const char *name = "--type")
{
    addChoice(command, name, type, { "auto", "cspro", "cspro8", "stata", "spss" }, help);
}

void addDecimals(CLI::App &command, std::string &decimals)
{
    addChoice(command, "--decimals", decimals, { "yes", "no" }, "whether decimal codes become integers");
}

void addSeparator(CLI::App &command, std::string &separator, const char *help)
{
    addChoice(command, "--separator", separator, { "space", "tab", "comma", "semicolon", "colon" }, help);
}

void describeShow(CLI::App &command, ShowOptions &options)
{
    addChoice(command, "--format", options.format, { "table", "json", "csv" }, "table, json or csv");
    command.add_flag("--pretty", options.isPretty, "indent the JSON form");
    command.add_flag("--labels", options.showsValues, "show the value labels below each item of the table");
    CLI::Option *codes
        = command.add_flag("--codes", options.showsCodes, "CSV with one line per code instead of one per item");
    command
        .add_option("--variable", options.variables,
                    "show only this variable; * and ? are wildcards, several are separated by commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command.add_option("--language", options.language, "language of the labels; the primary one by default")
        ->type_name("CODE");
    CLI::Option *languages
        = command.add_flag("--languages", options.listsLanguages, "list the languages of each file")->excludes(codes);
    command.add_option("--catalog", options.catalog, "SAS catalog with the value labels of a SAS data set")
        ->type_name("FILE");
    command.add_flag("--problems", options.listsProblems, "list the problems of each file, with line numbers")
        ->excludes(codes)
        ->excludes(languages);
    command.add_flag("--quiet", options.isQuiet, "print no line about warnings on standard error");
    command.add_option("FILE", options.files, "files to show; - is standard input")->required();
}

void describeFields(CLI::App &command, FieldsOptions &options)
{
    addChoice(command, "--format", options.format, { "table", "json", "csv" }, "table, json or csv");
    addType(command, options.type, "format of the files; auto determines it from their content");
    addChoice(command, "--decimals", options.decimals, { "ask", "yes", "no" },
              "whether decimal codes become integers; ask shows a dialog");
    command.add_option("FILE", options.files, "files to read")->required();
}

void describeLookup(CLI::App &command, LookupOptions &options)
{
    addFormat(command, options.format);
    addSeparator(command, options.separator, "separator between a key and its value");
    addChoice(command, "--mode", options.mode, { "count", "errors", "both" },
              "count the values, report errors, or both");
    command
        .add_option("--max-messages", options.maxMessages,
                    "the first message after N is replaced by a message about the limit")
        ->check(CLI::Range(0, std::numeric_limits<int>::max()))
        ->type_name("N");
    command.add_option("FILE", options.file, "lookup file to check")->required();
}

void describeExplain(CLI::App &command, ExplainOptions &options)
{
    addFormat(command, options.format);
    addChoice(command, "--type", options.type, { "auto", "cspro", "cspro8", "stata", "spss", "lookup" },
              "format of the files; auto determines it from their content");
    addDecimals(command, options.decimals);
    addSeparator(command, options.separator, "for lookups: separator between a key and its value");
    command.add_flag("--all", options.showsAll, "show every place of a kind, not only the first ten variables");
    command.add_flag("--summary", options.isSummary, "show one line per file");
    command
        .add_option("--fail-on", options.failures,
                    "notes that give status 1: lost (the default), changed (or lost), or a kind such as subitem; "
                    "several are separated by commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(explainFailures()))
        ->option_text("KIND");
    command.add_option("FILE", options.files, "files to explain")->required();
}

void describeDiff(CLI::App &command, DiffCall &options)
{
    addChoice(command, "--format", options.format, { "table", "json", "html" }, "table, json or html");
    command.add_flag("--summary", options.isSummary, "print the number of differences of each kind");
    const auto addKinds = [&](const char *name, std::vector<std::string> &kinds, const char *help) {
        command.add_option(name, kinds, help)
            ->delimiter(',')
            ->allow_extra_args(false)
            ->check(CLI::IsMember(diffKindWords(), CLI::ignore_case))
            ->option_text("KIND");
    };
    addKinds("--only", options.only, "show only this kind, such as item-label; several are separated by commas");
    addKinds("--ignore", options.ignored, "omit this kind; several are separated by commas");
    command.add_option("--language", options.language, "compare only the labels of this language; all by default")
        ->type_name("CODE");
    command.add_option("-o,--output", options.output, "file to write; standard output if - or absent")
        ->type_name("OUTPUT");
    command.add_option("OLD", options.oldFile, "file with the old layout; - is standard input")->required();
    command.add_option("NEW", options.newFile, "file with the new layout; - is standard input")->required();
}

void describeFind(CLI::App &command, FindCall &call)
{
    addChoice(command, "--format", call.format, { "table", "csv", "json" }, "table, csv or json");
    command
        .add_option("-e,--word", call.words, "word to find; if it is given, all arguments are files and directories")
        ->allow_extra_args(false)
        ->type_name("WORD");
    CLI::Option *codes
        = command
              .add_option("--codes", call.codes, "find this code, also within a range; several are separated by commas")
              ->delimiter(',')
              ->allow_extra_args(false)
              ->type_name("CODE");
    CLI::Option *places
        = command.add_option("--in", call.places, "search words only there: name, label, value or note")
              ->delimiter(',')
              ->allow_extra_args(false)
              ->check(CLI::IsMember({ "name", "label", "value", "note" }))
              ->option_text("PLACE");
    CLI::Option *any = command.add_flag("--any", call.isAny, "one of the words and codes is enough");
    CLI::Option *regex = command.add_flag("--regex", call.isPattern, "the words are regular expressions");
    command.add_flag("--sets", call.listsSets, "list identical value sets once, with the variables that have them")
        ->excludes("--word")
        ->excludes(codes)
        ->excludes(places)
        ->excludes(any)
        ->excludes(regex);
    command
        .add_option("--language", call.language, "language of the labels that are shown; the primary one by default")
        ->type_name("CODE");
    command.add_option("-o,--output", call.output, "file to write; standard output if - or absent")
        ->type_name("OUTPUT");
    command
        .add_option("WORD... PATH", call.arguments,
                    "words to find, then the files and directories to search; - is standard input")
        ->required();
}

void describeConcord(CLI::App &command, ConcordCall &call)
{
    addChoice(command, "--format", call.format, { "table", "csv", "json", "html", "recodeflow" },
              "table, csv, json, html or recodeflow");
    command.add_option("--table", call.table, "for CSV: the table to write; variables by default")
        ->check(CLI::IsMember({ "variables", "codes" }));
    command.add_flag("--all", call.showsAll, "for a table: show also what is the same in all rounds");
    command.add_flag("--excel", call.isForExcel, "for CSV: a byte-order mark for spreadsheets, and no formulas");
    command.add_option("--language", call.language, "language of the labels; the primary one by default")
        ->type_name("CODE");
    command
        .add_option("-o,--output", call.output,
                    "file to write, or directory for two tables; standard output if - or absent")
        ->type_name("OUTPUT");
    command.add_option("--map", call.map, "map with decisions: which items are the same variable, and which are not")
        ->type_name("FILE");
    command
        .add_option("--write-map", call.writtenMap, "write the map, in which decisions can be entered, to this file")
        ->type_name("FILE");
    command.add_option("FILE", call.files, "files of the rounds, the earliest first; - is standard input")->required();
}

void addOutput(CLI::App &command, LayoutOutput &output)
{
    command.add_flag("-r,--recursive", output.walksDirectories,
                     "read the files in directories and their subdirectories");
    command.add_option("--catalog", output.catalog, "SAS catalog with the value labels of a SAS data set")
        ->type_name("FILE");
}

void describeCodebook(CLI::App &command, CodebookOptions &options)
{
    command
        .add_option("--language", options.output.language, "language in which a page opens; the primary one by default")
        ->type_name("CODE");
    command.add_flag("--no-problems", options.hasNoProblems, "omit the problems of the files");
    addOutput(command, options.output);
    options.output.output.clear();
    CLI::Option *output = command
                              .add_option("-o,--output", options.output.output,
                                          "page to write, - is standard output; for several files, the directory of "
                                          "their pages and an index; required "
                                          "unless --open is given")
                              ->type_name("OUTPUT");
    command.add_flag("--open", options.isOpened,
                     "open the page or the index in a browser; without -o, it is a temporary file");
    command.parse_complete_callback([&options, output] {
        if (!options.isOpened && output->empty())
            throw CLI::RequiredError(output->get_name());
    });
    command.add_option("FILE", options.output.files, "files and directories to read; - is standard input")->required();
}

void describeExport(CLI::App &command, ExportOptions &options)
{
    command.add_option("--to", options.target, "form to write")->check(CLI::IsMember(exportTargets()))->required();
    command.add_option("--title", options.title, "title of the study; the label of the dictionary by default")
        ->type_name("TEXT");
    command.add_option("--language", options.output.language, "language of the labels; the primary one by default")
        ->type_name("CODE");
    command.add_option("--profile", options.profile, "for DDI: ipums adds what its readers need")
        ->check(CLI::IsMember({ "plain", "ipums" }));
    command.add_flag("--excel", options.isForExcel, "for CSV: a byte-order mark for spreadsheets, and no formulas");
    addOutput(command, options.output);
    command
        .add_option("-o,--output", options.output.output,
                    "file to write, or directory for several files; standard output if - or absent")
        ->type_name("OUTPUT");
    command.add_option("FILE", options.output.files, "files and directories to export; - is standard input")
        ->required();
}

void describeLoad(CLI::App &command, LoadCall &call)
{
    command.add_option("--to", call.target, "program or database that loads the data")
        ->check(CLI::IsMember(loadTargetWords()))
        ->required();
    command
        .add_option("--data", call.data,
                    "data file that the program reads; by default the name of the dictionary, .dat")
        ->type_name("PATH");
    addChoice(command, "--encoding", call.encoding, { "utf-8", "windows-1252" }, "encoding of the data file");
    command.add_option("--language", call.language, "language of the labels; the primary one by default")
        ->type_name("CODE");
    addChoice(command, "--occurrences", call.occurrences, { "wide", "long" },
              "a column for each occurrence of an item, or a table with a row for each");
    addChoice(command, "--specials", call.specials, { "missing", "keep" },
              "whether codes that mean missing or refused become missing");
    command.add_option("--records", call.records, "load only this record; several are separated by commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command
        .add_option("-o,--output", call.output,
                    "directory of the program, which is created if it is absent; standard output if - or absent")
        ->type_name("DIRECTORY");
    command.add_option("FILE", call.file, "dictionary of the data, or CSPro data file with one; - is standard input")
        ->required();
}

void describeConvert(CLI::App &command, ConvertCall &call)
{
    command.add_option("--to", call.target, "format to write")->check(CLI::IsMember(convertTargets()))->required();
    command
        .add_option("--ids", call.ids,
                    "variable of a statistical file that becomes an id item; several are separated by commas")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command
        .add_option("--language", call.language, "for sav and dta: language of the labels; the primary one by default")
        ->type_name("CODE");
    command.add_option("-o,--output", call.output, "file to write; standard output if - or absent")
        ->type_name("OUTPUT");
    command.add_option("FILE", call.file, "file to convert; - is standard input")->required();
}

void describeLint(CLI::App &command, LintCall &call)
{
    addChoice(command, "--format", call.format, { "table", "json", "sarif" }, "table, json or sarif");
    command.add_flag("--pretty", call.isPretty, "indent the JSON form");
    command.add_flag("--all", call.showsAll, "for a table: show all findings of a rule, not only the first ten");
    const auto addRules = [&](const char *name, std::vector<std::string> &rules, const char *help) {
        command.add_option(name, rules, help)
            ->delimiter(',')
            ->allow_extra_args(false)
            ->check(CLI::IsMember(lintRuleIds(), CLI::ignore_case))
            ->option_text("ID");
    };
    addRules("--only", call.only, "check only this rule, such as overlap; several are separated by commas");
    addRules("--disable", call.disabled, "do not check this rule; several are separated by commas");
    command.add_flag("--list-rules", call.listsRules, "list the rules and exit");
    command.add_flag("--fix", call.isFixed,
                     "correct what has one right result, and print the difference; with -o, write the dictionary");
    command.add_flag("-r,--recursive", call.walksDirectories, "read the files in directories and their subdirectories");
    command
        .add_option("-o,--output", call.output,
                    "file for the findings, or for the corrected dictionary; standard output if - or absent")
        ->type_name("OUTPUT");
    CLI::Option *files = command.add_option("FILE", call.files, "files and directories to check; - is standard input");
    command.parse_complete_callback([&call, files] {
        if (!call.listsRules && files->empty())
            throw CLI::RequiredError(files->get_name());
    });
}

// All commands and options that are allowed at this position.
std::vector<std::string> knownWords(const CLI::App &app)
{
    std::vector<std::string> words = commandsOf(app);
    for (const CLI::Option *option : app.get_options()) {
        const std::vector<std::string> spellings = spellingsOf(*option);
        words.insert(words.end(), spellings.begin(), spellings.end());
    }
    return words;
}

// A command also accepts the options of the tool.
std::vector<std::string> knownOptions(const CLI::App &app, const CLI::App &command)
{
    std::vector<std::string> words = knownWords(command);
    for (const std::string &word : knownWords(app)) {
        if (word.front() == '-')
            words.push_back(word);
    }
    return words;
}

// An option without its value: `--format=csv` is `--format`.
std::string withoutValue(const std::string &word)
{
    return word.substr(0, word.find('='));
}

// Names an unknown command; the parser would only report that a command is missing.
std::string problemWithWord(const CLI::App &app, const CLI::ParseError &error)
{
    const std::vector<CLI::App *> parsed = app.get_subcommands();
    const std::vector<std::string> rest = app.remaining(true);
    if (rest.empty())
        return std::string();
    const bool isOption = !rest.front().empty() && rest.front().front() == '-';
    // A remaining word was given before the command if the command lacks a required one.
    if (parsed.empty() || (!isOption && error.get_name() == "RequiredError"))
        return (rest.front().empty() ? "''" : rest.front()) + ": no such command or option"
            + suggestionFor(withoutValue(rest.front()), knownWords(app));
    if (!isOption)
        return std::string();
    return rest.front() + ": no such option of " + parsed.front()->get_name()
        + suggestionFor(withoutValue(rest.front()), knownOptions(app, *parsed.front()));
}

// A value that is not in the list: the parser names option, value and list. A long list is omitted.
std::string problemWithValue(const CLI::App &app, const std::string &problem)
{
    constexpr char separator[] = ": ";
    constexpr char listMark[] = " not in {";
    constexpr size_t longList = 20;
    const size_t start = problem.find(separator);
    const size_t end = problem.find(listMark);
    if (start == std::string::npos || end == std::string::npos || end < start)
        return problem;
    const std::string name = problem.substr(0, start);
    const std::string value = problem.substr(start + sizeof separator - 1, end - start - sizeof separator + 1);
    for (const CLI::App *command : app.get_subcommands()) {
        const CLI::Option *option = command->get_option_no_throw(name);
        if (!option)
            continue;
        const std::vector<std::string> choices = choicesOf(*option);
        return (choices.size() > longList ? problem.substr(0, end) + " is not known" : problem)
            + suggestionFor(value, choices);
    }
    return problem;
}

QString problemWithCall(const CLI::App &app, const CLI::ParseError &error)
{
    const std::string problem = problemWithWord(app, error);
    return fromLocale(problem.empty() ? problemWithValue(app, error.what()) : problem);
}

int runFields(const FieldsOptions &options, int argc, char **argv)
{
    std::unique_ptr<QApplication> application;
    if (options.decimals == "ask") {
        if (!hasDisplay()) {
            complain(QString(), QStringLiteral("--decimals ask needs a display"));
            return statusNoAnswer;
        }
        application = std::make_unique<QApplication>(argc, argv);
    }
    return showFields(options);
}

/// The commands, their options, and the functions that run them.
class CommandLine
{
public:
    explicit CommandLine(bool &verbose)
        : app("Shows, explains, compares and exports the layout of census and survey data: variables, positions, types "
              "and value labels; writes programs that load the data; checks lookup files.",
              "vanlayout")
        , isVerbose(verbose)
    {
        app.set_help_flag("-h,--help", "print the help and exit");
        app.set_version_flag("--version", "vanlayout " VANLAYOUT_VERSION_STRING, "print the version and exit");
        app.add_flag("--verbose", isVerbose, "write the library's debug lines to standard error");
        app.require_subcommand(1);
        app.fallthrough();
        app.footer("vanlayout help COMMAND shows the options of a command, and examples.");
        addCommands();
        addCompletion();
        addHelp();
    }

    int run(int argc, char **argv)
    {
        try {
            app.parse(argc, argv);
        } catch (const CLI::Success &answer) {
            return statusAfterOutput(app.exit(answer)); // --help and --version
        } catch (const CLI::ParseError &error) {
            complain(QString(), problemWithCall(app, error));
            return statusNoAnswer;
        }
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, isVerbose);
        const auto asked = [](const Command &command) { return command.app->parsed(); };
        const auto command = std::find_if(commands.begin(), commands.end(), asked);
        return command != commands.end() ? command->run(argc, argv) : statusNoAnswer;
    }

private:
    struct Command {
        const CLI::App *app;
        std::function<int(int argc, char **argv)> run;
    };

    CLI::App &add(const char *name, const char *help, const char *examples, std::function<int(int, char **)> run)
    {
        CLI::App *command = app.add_subcommand(name, help);
        command->footer(std::string("Examples:\n") + examples);
        commands.push_back({ command, std::move(run) });
        return *command;
    }

    void addCommands()
    {
        describeShow(add("show", "Show the exact layout of each FILE.",
                         "  vanlayout show census.dcf\n"
                         "  vanlayout show --labels --variable SEX,AGE census.dcf\n"
                         "  vanlayout show --format csv --codes survey.sav > codes.csv",
                         [this](int, char **) { return show(showOptions); }),
                     showOptions);
        describeFields(add("fields", "Show the fields that the importers of the library make from each FILE.",
                           "  vanlayout fields census.dcf\n"
                           "  vanlayout fields --format csv census.dcf survey.sav",
                           [this](int argc, char **argv) { return runFields(fieldsOptions, argc, argv); }),
                       fieldsOptions);
        describeExplain(add("explain", "Explain what the list of fields loses or changes in each FILE.",
                            "  vanlayout explain census.dcf\n"
                            "  vanlayout explain --summary --fail-on changed census.dcf survey.sav\n"
                            "  vanlayout explain --format json census.dcf",
                            [this](int, char **) { return explain(explainOptions); }),
                        explainOptions);
        describeLookup(add("lookup", "Check the lookup FILE and print the report.",
                           "  vanlayout lookup --separator tab occupations.txt",
                           [this](int, char **) { return checkLookup(lookupOptions); }),
                       lookupOptions);
        describeDiff(add("diff", "Compare the exact layouts of OLD and NEW.",
                         "  vanlayout diff round1.dcf round2.dcf\n"
                         "  vanlayout diff --summary --ignore item-start round1.dcf round2.dcf\n"
                         "  vanlayout diff --format html -o changes.html round1.dcf round2.dcf",
                         [this](int, char **) { return diffLayouts(diffOptions); }),
                     diffOptions);
        describeFind(add("find", "Find variables by words and codes in the layouts of each PATH.",
                         "  vanlayout find religion surveys\n"
                         "  vanlayout find mother alive --in label --format csv 2009.dcf 2019.sav\n"
                         "  vanlayout find --codes 98 --word refused surveys\n"
                         "  vanlayout find --sets surveys",
                         [this](int, char **) { return findVariables(findCall); }),
                     findCall);
        describeConcord(add("concord", "List the variables and codes of several rounds, and what changed.",
                            "  vanlayout concord round1.dcf round2.dcf round3.dcf\n"
                            "  vanlayout concord --format csv --table codes round1.dcf round2.dcf > codes.csv\n"
                            "  vanlayout concord --format html -o rounds.html round1.dcf round2.dcf\n"
                            "  vanlayout concord --format recodeflow -o recode round1.dcf round2.dcf\n"
                            "  vanlayout concord --write-map map.csv round1.dcf round2.dcf\n"
                            "  vanlayout concord --map map.csv round1.dcf round2.dcf",
                            [this](int, char **) { return concordLayouts(concordCall); }),
                        concordCall);
        describeCodebook(add("codebook", "Write the codebook of each FILE as an HTML page.",
                             "  vanlayout codebook census.dcf -o census.html\n"
                             "  vanlayout codebook --open census.dcf\n"
                             "  vanlayout codebook --language FR census.dcf survey.sav -o codebooks/\n"
                             "  vanlayout codebook -r surveys -o codebooks/",
                             [this](int, char **) { return writeCodebookPages(codebookOptions); }),
                         codebookOptions);
        describeExport(add("export", "Write the layout of each FILE in a standard form.",
                           "  vanlayout export --to ddi census.dcf -o census.xml\n"
                           "  vanlayout export --to markdown --language FR census.dcf -o census.md\n"
                           "  vanlayout export --to frictionless -r dictionaries -o packages",
                           [this](int, char **) { return exportLayouts(exportOptions); }),
                       exportOptions);
        describeLoad(add("load", "Write the program that loads the data of the dictionary FILE.",
                         "  vanlayout load --to sqlite census.dcf > census.sql\n"
                         "  vanlayout load --to r --data census.dat -o programs census.dcf\n"
                         "  vanlayout load --to spss --records PERSON --specials keep -o programs census.dcf",
                         [this](int, char **) { return writeLoadProgram(loadCall); }),
                     loadCall);
        describeConvert(add("convert", "Write the layout of FILE in another format.",
                            "  vanlayout convert --to cspro-json census.dcf -o census8.dcf\n"
                            "  vanlayout convert --to cspro-text --ids HHID,LINE survey.sav -o survey.dcf\n"
                            "  vanlayout convert --to dta census.dcf -o census.dta",
                            [this](int, char **) { return convertFile(convertCall); }),
                        convertCall);
        describeLint(add("lint", "List what is wrong or risky in each FILE, or correct it.",
                         "  vanlayout lint census.dcf\n"
                         "  vanlayout lint --disable gap,duplicate-label -r dictionaries\n"
                         "  vanlayout lint --format sarif -o findings.sarif census.dcf\n"
                         "  vanlayout lint --fix census.dcf -o corrected.dcf",
                         [this](int, char **) { return lintFiles(lintCall); }),
                     lintCall);
    }

    void addCompletion()
    {
        CLI::App &completion = add("completion", "Print the completion script for SHELL.",
                                   "  vanlayout completion bash > ~/.local/share/bash-completion/completions/vanlayout",
                                   [this](int, char **) {
                                       std::cout << completionScript(app, shell);
                                       return statusAfterOutput(statusFine);
                                   });
        completion.add_option("SHELL", shell, "bash, fish or zsh")
            ->required()
            ->check(CLI::IsMember(shellsWithCompletion()));
    }

    void addHelp()
    {
        CLI::App &help = add("help", "Show the options of COMMAND, and examples.", "  vanlayout help show",
                             [this](int, char **) { return printHelp(); });
        help.add_option("COMMAND", helpTopic, "command to describe; the list of commands by default")
            ->check(CLI::IsMember(commandsOf(app)));
    }
    int printHelp() const
    {
        const CLI::App *topic = helpTopic.empty() ? nullptr : app.get_subcommand(helpTopic);
        std::cout << (topic ? topic->help(app.get_name())
                            : app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal));
        return statusAfterOutput(statusFine);
    }

    CLI::App app;
    bool &isVerbose;
    std::vector<Command> commands;
    ShowOptions showOptions;
    FieldsOptions fieldsOptions;
    ExplainOptions explainOptions;
    LookupOptions lookupOptions;
    DiffCall diffOptions;
    FindCall findCall;
    ConcordCall concordCall;
    CodebookOptions codebookOptions;
    ExportOptions exportOptions;
    LoadCall loadCall;
    ConvertCall convertCall;
    LintCall lintCall;
    std::string helpTopic;
    std::string shell;
};

} // namespace

int runCommandLine(int argc, char **argv, bool &isVerbose)
{
    return CommandLine(isVerbose).run(argc, argv);
}
