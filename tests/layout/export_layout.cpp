// Writes the layout of a file in a form for other programs: export_layout FORM FILE [LANGUAGE]. With --each, it writes
// those of several files: export_layout --each FORM FILE... . Each begins with a line of its status and its size.

#include "read/Reader.h"
#include "write/CodebookCsv.h"
#include "write/Csvw.h"
#include "write/Ddi.h"
#include "write/Exportable.h"
#include "write/Frictionless.h"
#include "write/JsonSchema.h"
#include "write/Markdown.h"

#include <QBuffer>
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

// 2 if the file has no layout that can be written in the form, 1 if the device failed.
int exportFile(const QString &form, const QString &file, const QString &language, QIODevice &device)
{
    const auto write = forms().find(form);
    const Layout layout = readLayout(file);
    if (write == forms().end() || !layout.isRead() || !exportProblem(layout).isEmpty())
        return 2;
    return write->second(layout, device, language) ? 0 : 1;
}

int exportEach(const QString &form, const QStringList &files, QIODevice &device)
{
    for (const QString &file : files) {
        QBuffer document;
        document.open(QIODevice::WriteOnly);
        const int status = exportFile(form, file, QString(), document);
        const QByteArray head = QByteArray::number(status) + ' ' + QByteArray::number(document.data().size()) + '\n';
        if (device.write(head + document.data()) < 0)
            return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QFile output;
    if (argc < 3 || !output.open(stdout, QIODevice::WriteOnly))
        return 1;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromUtf8(argv[i]));
    if (arguments.constFirst() == QLatin1String("--each"))
        return exportEach(arguments.at(1), arguments.mid(2), output);
    return exportFile(arguments.at(0), arguments.at(1), arguments.value(2), output);
}
