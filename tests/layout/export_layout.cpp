// Writes the layout of a file in a form for other programs: export_layout FORM FILE [LANGUAGE].

#include "read/Reader.h"
#include "write/CodebookCsv.h"
#include "write/Csvw.h"
#include "write/Ddi.h"
#include "write/Exportable.h"
#include "write/Frictionless.h"
#include "write/JsonSchema.h"
#include "write/Markdown.h"

#include <QFile>

#include <cstdio>
#include <functional>
#include <map>

using namespace vanlayout;

namespace
{

using Write = std::function<bool(const Layout &, QIODevice &, const QString &language)>;

const std::map<QString, Write> &forms()
{
    static const std::map<QString, Write> table = {
        { "csvw", [](const Layout &layout, QIODevice &device, const QString &) { return writeCsvw(layout, device); } },
        { "csv",
          [](const Layout &layout, QIODevice &device, const QString &language) {
              return writeCodebookCsv(layout, device, { language, false });
          } },
        { "ddi", [](const Layout &layout, QIODevice &device, const QString &) { return writeDdi(layout, device); } },
        { "ddi-ipums",
          [](const Layout &layout, QIODevice &device, const QString &) {
              return writeDdi(layout, device, { QString(), DdiProfile::Ipums });
          } },
        { "frictionless",
          [](const Layout &layout, QIODevice &device, const QString &language) {
              return writeFrictionless(layout, device, { QString(), language });
          } },
        { "markdown",
          [](const Layout &layout, QIODevice &device, const QString &language) {
              return writeMarkdown(layout, device, { QString(), language });
          } },
        { "json-schema",
          [](const Layout &layout, QIODevice &device, const QString &language) {
              return writeJsonSchema(layout, device, { QString(), language });
          } },
    };
    return table;
}

} // namespace

int main(int argc, char **argv)
{
    QFile output;
    if (argc < 3 || !output.open(stdout, QIODevice::WriteOnly))
        return 1;
    const auto form = forms().find(QString::fromUtf8(argv[1]));
    const Layout layout = readLayout(QString::fromUtf8(argv[2]));
    if (form == forms().end() || !layout.isRead() || !exportProblem(layout).isEmpty())
        return 2;
    return form->second(layout, output, QString::fromUtf8(argc > 3 ? argv[3] : "")) ? 0 : 1;
}
