#include "Export.h"

#include "Answer.h"
#include "LocaleText.h"
#include "write/CodebookCsv.h"
#include "write/Csvw.h"
#include "write/Ddi.h"
#include "write/Exportable.h"
#include "write/Frictionless.h"
#include "write/JsonSchema.h"
#include "write/Markdown.h"

#include <algorithm>
#include <iterator>

using namespace vanlayout;

namespace
{

void toDdi(const Layout &layout, QIODevice &device, const ExportOptions &options)
{
    DdiOptions ddi;
    ddi.title = fromLocale(options.title);
    ddi.profile = options.profile == "ipums" ? DdiProfile::Ipums : DdiProfile::Plain;
    writeDdi(layout, device, ddi);
}

void toCsvw(const Layout &layout, QIODevice &device, const ExportOptions &options)
{
    CsvwOptions csvw;
    csvw.title = fromLocale(options.title);
    writeCsvw(layout, device, csvw);
}

void toJsonSchema(const Layout &layout, QIODevice &device, const ExportOptions &options)
{
    JsonSchemaOptions schema;
    schema.title = fromLocale(options.title);
    schema.language = fromLocale(options.output.language);
    writeJsonSchema(layout, device, schema);
}

void toFrictionless(const Layout &layout, QIODevice &device, const ExportOptions &options)
{
    FrictionlessOptions package;
    package.title = fromLocale(options.title);
    package.language = fromLocale(options.output.language);
    writeFrictionless(layout, device, package);
}

void toMarkdown(const Layout &layout, QIODevice &device, const ExportOptions &options)
{
    MarkdownOptions page;
    page.title = fromLocale(options.title);
    page.language = fromLocale(options.output.language);
    writeMarkdown(layout, device, page);
}

void toCsv(const Layout &layout, QIODevice &device, const ExportOptions &options)
{
    CodebookCsvOptions csv;
    csv.language = fromLocale(options.output.language);
    csv.isForExcel = options.isForExcel;
    writeCodebookCsv(layout, device, csv);
}

/// Options that only some forms accept.
enum Taken : unsigned { TakesTitle = 1, TakesLanguage = 2, TakesProfile = 4, TakesExcel = 8 };

/// True if a form has a column for each occurrence, so that a few bytes of a dictionary can make it arbitrarily large.
enum class Occurrences { Counted, Repeated };

struct ExportTarget {
    const char *name;   ///< value of --to
    const char *ending; ///< extension of its files
    Occurrences occurrences;
    unsigned taken;
    void (*write)(const Layout &layout, QIODevice &device, const ExportOptions &options);
};

constexpr ExportTarget targets[] = {
    { "ddi", ".xml", Occurrences::Repeated, TakesTitle | TakesProfile, toDdi },
    { "csvw", ".csv-metadata.json", Occurrences::Repeated, TakesTitle, toCsvw },
    { "json-schema", ".schema.json", Occurrences::Repeated, TakesTitle | TakesLanguage, toJsonSchema },
    { "frictionless", ".datapackage.json", Occurrences::Repeated, TakesTitle | TakesLanguage, toFrictionless },
    { "markdown", ".md", Occurrences::Counted, TakesTitle | TakesLanguage, toMarkdown },
    { "csv", ".csv", Occurrences::Counted, TakesLanguage | TakesExcel, toCsv },
};

// The name has been checked by the parser.
const ExportTarget &targetNamed(const std::string &name)
{
    return *std::find_if(std::begin(targets), std::end(targets),
                         [&](const ExportTarget &target) { return name == target.name; });
}

// The forms that accept an option, such as "csv" or "ddi, csvw and markdown".
QString targetsThatTake(Taken option)
{
    QStringList names;
    for (const ExportTarget &target : targets) {
        if (target.taken & option)
            names.append(QLatin1String(target.name));
    }
    const QString last = names.takeLast();
    return names.isEmpty() ? last : names.join(QLatin1String(", ")) + QLatin1String(" and ") + last;
}

// An option without a meaning for the form is an error, because the caller expects an effect.
QString problemWithOptions(const ExportOptions &options, const ExportTarget &target)
{
    struct {
        bool isGiven;
        Taken option;
        const char *name;
    } const given[] = {
        { !options.title.empty(), TakesTitle, "--title" },
        { !options.output.language.empty(), TakesLanguage, "--language" },
        { !options.profile.empty(), TakesProfile, "--profile" },
        { options.isForExcel, TakesExcel, "--excel" },
    };
    for (const auto &entry : given) {
        if (entry.isGiven && !(target.taken & entry.option))
            return QStringLiteral("%1 can only be used with --to %2")
                .arg(QLatin1String(entry.name), targetsThatTake(entry.option));
    }
    return QString();
}

} // namespace

std::vector<std::string> exportTargets()
{
    std::vector<std::string> names;
    for (const ExportTarget &target : targets)
        names.emplace_back(target.name);
    return names;
}

int exportLayouts(ExportOptions options)
{
    const ExportTarget &target = targetNamed(options.target);
    const QString problem = problemWithOptions(options, target);
    if (!problem.isEmpty()) {
        complain(QString(), problem);
        return statusNoAnswer;
    }
    options.output.ending = QLatin1String(target.ending);
    LayoutForm form;
    if (target.occurrences == Occurrences::Repeated)
        form.problem = exportProblem;
    form.write = [&](const Layout &layout, QIODevice &device) { target.write(layout, device, options); };
    return writeLayouts(options.output, form);
}
