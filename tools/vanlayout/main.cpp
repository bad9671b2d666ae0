#include "Answer.h"
#include "Codebook.h"
#include "DiffCommand.h"
#include "Explain.h"
#include "Export.h"
#include "Fields.h"
#include "LookupCheck.h"
#include "Memory.h"
#include "Printable.h"
#include "Show.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <QLoggingCategory>
#include <QTextCodec>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#ifdef Q_OS_UNIX
#include <langinfo.h>
#endif

namespace
{

constexpr int mibAscii = 3;

bool isVerbose = false;

// Lines of the library and of Qt reach standard error with --verbose alone; what would end the process becomes one line
// and a status.
void handleMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (type == QtFatalMsg) {
        complain(QString(), message.section(QLatin1Char('\n'), 0, 0));
        std::_Exit(statusNoAnswer);
    }
    if (!isVerbose)
        return;
    // Some lines of the library are nothing but line feeds.
    const bool isSpace
        = std::all_of(message.begin(), message.end(), [](QChar unit) { return unit == QLatin1Char('\n'); });
    printToStandardError(isSpace ? QString() : message);
}

// Qt may have been built to take UTF-8 for the encoding of every locale.
QTextCodec *codecOfLocale()
{
#ifdef Q_OS_UNIX
    return QTextCodec::codecForName(nl_langinfo(CODESET));
#else
    return QTextCodec::codecForLocale();
#endif
}

void useLocale()
{
    std::setlocale(LC_ALL, "");
    QTextCodec *codec = codecOfLocale();
    if (!codec || codec->mibEnum() == mibAscii || std::setlocale(LC_CTYPE, nullptr) == std::string("C"))
        codec = QTextCodec::codecForName("UTF-8");
    QTextCodec::setCodecForLocale(codec);
    std::setlocale(LC_NUMERIC, "C");
}

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
    command.add_flag("--labels", options.showsValues, "show the value labels beneath each item of the table");
    command.add_flag("--codes", options.showsCodes, "CSV with one line a code instead of one line an item");
    command
        .add_option("--variable", options.variables,
                    "show this variable alone, * and ? allowed; more after commas, or the option again")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME");
    command.add_option("--language", options.language, "language of the labels; the primary one by default")
        ->type_name("CODE");
    command.add_flag("--languages", options.listsLanguages, "list the languages of each file");
    command.add_option("--catalog", options.catalog, "SAS catalog with the value labels of a SAS data set")
        ->type_name("FILE");
    command.add_flag("--problems", options.listsProblems, "list the problems of each file, with their lines");
    command.add_flag("--quiet", options.isQuiet, "write no line about warnings to standard error");
    command.add_option("FILE", options.files, "files to show; - is standard input")->required();
}

void describeFields(CLI::App &command, FieldsOptions &options)
{
    addChoice(command, "--format", options.format, { "table", "json", "csv" }, "table, json or csv");
    addType(command, options.type, "how to read the files; auto goes by their content");
    addChoice(command, "--decimals", options.decimals, { "ask", "yes", "no" },
              "whether decimal codes become integers; ask shows a dialog");
    command.add_option("FILE", options.files, "files to read")->required();
}

void describeLookup(CLI::App &command, LookupOptions &options)
{
    addFormat(command, options.format);
    addSeparator(command, options.separator, "what parts a key from its value");
    addChoice(command, "--mode", options.mode, { "count", "errors", "both" },
              "count the values, report errors, or both");
    command.add_option("--max-messages", options.maxMessages, "the message behind so many says so; none by default")
        ->check(CLI::Range(0, std::numeric_limits<int>::max()))
        ->type_name("N");
    command.add_option("FILE", options.file, "lookup file to check")->required();
}

void describeExplain(CLI::App &command, ExplainOptions &options)
{
    addFormat(command, options.format);
    addChoice(command, "--type", options.type, { "auto", "cspro", "cspro8", "stata", "spss", "lookup" },
              "how to read the files; auto goes by their content");
    addDecimals(command, options.decimals);
    addSeparator(command, options.separator, "of lookups: what parts a key from its value");
    command.add_flag("--all", options.showsAll, "show every place of a kind, not the first ten");
    command.add_option("FILE", options.files, "files to explain")->required();
}

void describeDiff(CLI::App &command, DiffOptions &options)
{
    addFormat(command, options.format);
    addType(command, options.oldType, "how to read OLD; auto goes by its content", "--old-type");
    addType(command, options.newType, "how to read NEW; auto goes by its content", "--new-type");
    addDecimals(command, options.decimals);
    command.add_option("OLD", options.oldFile, "file with the layout as it was")->required();
    command.add_option("NEW", options.newFile, "file with the layout as it is")->required();
}

void describeCodebook(CLI::App &command, CodebookOptions &options)
{
    addType(command, options.type, "how to read the file; auto goes by its content");
    addDecimals(command, options.decimals);
    command.add_option("-o,--output", options.output, "page to write; - is standard output")
        ->required()
        ->type_name("PAGE");
    command.add_option("FILE", options.file, "file to write the codebook of")->required();
}

void describeExport(CLI::App &command, ExportOptions &options)
{
    command.add_option("--to", options.target, "DDI Codebook, CSV on the Web metadata, or JSON Schema")
        ->check(CLI::IsMember({ "ddi", "csvw", "json-schema" }))
        ->required();
    addType(command, options.type, "how to read the file; auto goes by its content");
    addDecimals(command, options.decimals);
    command.add_option("-o,--output", options.output, "file to write; - is standard output, as is none")
        ->type_name("OUTPUT");
    command.add_option("FILE", options.file, "file to export the layout of")->required();
}

// A word that is no command is named; the parser would only say that a command is missing.
QString problemWithCall(const CLI::App &app, const CLI::ParseError &error)
{
    const std::vector<std::string> rest = app.remaining();
    if (app.get_subcommands().empty() && !rest.empty())
        return QString::fromLocal8Bit(rest.front().c_str()) + QLatin1String(": no such command or option");
    return QString::fromLocal8Bit(error.what());
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

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(handleMessage);
    useLocale();
    tuneMemory();

    CLI::App app(
        "Shows, explains, compares and exports the layout of census and survey data: variables, positions, types "
        "and value labels; checks lookup files.",
        "vanlayout");
    app.set_version_flag("--version", "vanlayout " VAN_VERSION);
    app.add_flag("--verbose", isVerbose, "write the library's debug lines to standard error");
    app.require_subcommand(1);
    app.fallthrough();
    // What each command was asked for, and what answers it.
    std::vector<std::pair<const CLI::App *, std::function<int()>>> commands;
    ShowOptions showOptions;
    CLI::App *showCommand = app.add_subcommand("show", "Show the exact layout of each FILE.");
    describeShow(*showCommand, showOptions);
    commands.emplace_back(showCommand, [&] { return show(showOptions); });
    FieldsOptions fieldsOptions;
    CLI::App *fieldsCommand
        = app.add_subcommand("fields", "Show the fields that the importers of the library make of each FILE.");
    describeFields(*fieldsCommand, fieldsOptions);
    commands.emplace_back(fieldsCommand, [&] { return runFields(fieldsOptions, argc, argv); });
    ExplainOptions explainOptions;
    CLI::App *explainCommand
        = app.add_subcommand("explain", "Tell what of each FILE was lost or changed on the way in.");
    describeExplain(*explainCommand, explainOptions);
    commands.emplace_back(explainCommand, [&] { return explain(explainOptions); });
    LookupOptions lookupOptions;
    CLI::App *lookupCommand = app.add_subcommand("lookup", "Check the lookup FILE and print the report.");
    describeLookup(*lookupCommand, lookupOptions);
    commands.emplace_back(lookupCommand, [&] { return checkLookup(lookupOptions); });
    DiffOptions diffOptions;
    CLI::App *diffCommand = app.add_subcommand("diff", "Compare the layouts of OLD and NEW variable by variable.");
    describeDiff(*diffCommand, diffOptions);
    commands.emplace_back(diffCommand, [&] { return diffLayouts(diffOptions); });
    CodebookOptions codebookOptions;
    CLI::App *codebookCommand = app.add_subcommand("codebook", "Write the codebook of FILE as an HTML page.");
    describeCodebook(*codebookCommand, codebookOptions);
    commands.emplace_back(codebookCommand, [&] { return writeCodebook(codebookOptions); });
    ExportOptions exportOptions;
    CLI::App *exportCommand = app.add_subcommand("export", "Write the layout of FILE in a form of another standard.");
    describeExport(*exportCommand, exportOptions);
    commands.emplace_back(exportCommand, [&] { return exportLayout(exportOptions); });
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &answer) {
        return statusAfterOutput(app.exit(answer)); // --help and --version
    } catch (const CLI::ParseError &error) {
        complain(QString(), problemWithCall(app, error));
        return statusNoAnswer;
    }
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, isVerbose);
    const auto asked = [](const auto &command) { return command.first->parsed(); };
    const auto command = std::find_if(commands.begin(), commands.end(), asked);
    return command != commands.end() ? command->second() : statusNoAnswer;
}
