#include "Convert.h"

#include "Answer.h"
#include "LayoutInput.h"
#include "LocaleText.h"
#include "OutputFile.h"
#include "TextStyle.h"
#include "convert/Dictionary.h"
#include "convert/StatisticalFile.h"
#include "write/CSProJson.h"
#include "write/CSProText.h"

#include <QFile>
#include <QIODevice>

#include <algorithm>

using namespace vanlayout;

namespace
{

bool isDictionary(const Layout &layout)
{
    return layout.format == Format::CSProText || layout.format == Format::CSProJson;
}

// Whether reading changed or omitted a statement, so that the layout does not have it.
bool isOfChangedStatement(const Problem &problem)
{
    static const char *const ids[]
        = { "bad-bytes",     "bad-number",      "neither-yes-nor-no", "unknown-word",     "reading-ended",
            "too-much-text", "too-many-extras", "label-cut",          "too-many-problems" };
    return std::any_of(std::begin(ids), std::end(ids), [&](const char *id) { return problem.id == QLatin1String(id); });
}

/// One conversion.
class Conversion
{
public:
    explicit Conversion(const ConvertCall &convertCall)
        : call(convertCall)
        , file(QFile::decodeName(call.file.c_str()))
    {
    }

    int run()
    {
        return answerFor(file, [&] {
            layout = readExactLayout(file, ReadOptions());
            if (const Problem *error = layout.error())
                return noAnswerFor(file, messageOf(*error));
            isReadWhole = complainOfReading();
            return call.target == "sav" || call.target == "dta" ? toStatisticalFile() : toDictionary();
        });
    }

private:
    // Returns whether the layout has all statements of the file as they are.
    bool complainOfReading() const
    {
        bool isWhole = true;
        for (const Problem &problem : layout.problems) {
            if (!isOfChangedStatement(problem))
                continue;
            isWhole = false;
            complainOfFile(
                file, (problem.path.isEmpty() ? QString() : problem.path + QStringLiteral(": ")) + messageOf(problem));
        }
        return isWhole;
    }

    int toDictionary()
    {
        if (!call.language.empty())
            return noAnswerFor(file,
                               QStringLiteral("is written with all of its languages; --language is for sav and dta"));
        const CSProTextStyle style = styleOf(layout);
        if (!isDictionary(layout)) {
            MadeDictionary made = makeDictionary(layout, ids());
            if (!made.problem.isEmpty())
                return noAnswerFor(file, made.problem);
            layout = made.layout;
            losses = made.losses;
        } else if (!call.ids.empty()) {
            return noAnswerFor(file, QStringLiteral("has id items already; --ids is for statistical files"));
        }
        return write([&](QIODevice &device) {
            if (call.target == "cspro-text")
                writeCSProText(layout, device, style, &losses);
            else
                writeCSProJson(layout, device, &losses);
        });
    }

    int toStatisticalFile()
    {
        if (!call.ids.empty())
            return noAnswerFor(
                file, QStringLiteral("a statistical file has no id items; --ids is for cspro-text and cspro-json"));
        const QString language = fromLocale(call.language);
        const QString problem = problemWithLanguage(layout, language);
        if (!problem.isEmpty())
            return noAnswerFor(file, problem);
        const StatisticalFile made = makeStatisticalFile(
            layout, call.target == "sav" ? StatisticalFormat::Sav : StatisticalFormat::Dta, language);
        if (!made.problem.isEmpty())
            return noAnswerFor(file, made.problem);
        losses = made.losses;
        return write([&](QIODevice &device) { device.write(made.bytes); });
    }

    QStringList ids() const
    {
        QStringList names;
        for (const std::string &name : call.ids)
            names.append(fromLocale(name));
        return names;
    }

    int write(const AnswerWriter &writer)
    {
        const int status = writeAnswer(QFile::decodeName(call.output.c_str()), file, writer);
        if (status != statusFine)
            return status;
        for (const Loss &loss : qAsConst(losses))
            complainOfFile(file,
                           (loss.path.isEmpty() ? QString() : loss.path + QStringLiteral(": "))
                               + QStringLiteral("cannot hold ") + loss.what);
        return losses.isEmpty() && isReadWhole ? statusFine : statusFinding;
    }

    const ConvertCall &call;
    QString file;
    Layout layout;
    Losses losses;
    bool isReadWhole = true;
};

} // namespace

std::vector<std::string> convertTargets()
{
    return { "cspro-text", "cspro-json", "sav", "dta" };
}

int convertFile(const ConvertCall &call)
{
    return Conversion(call).run();
}
