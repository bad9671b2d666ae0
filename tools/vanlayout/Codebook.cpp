#include "Codebook.h"

#include "LocaleText.h"
#include "OutputFile.h"
#include "write/Codebook.h"

using vanlayout::CodebookIndexEntry;
using vanlayout::Layout;

int writeCodebookPages(const CodebookOptions &options)
{
    LayoutOutput call = options.output;
    call.ending = QStringLiteral(".html");
    call.index = QStringLiteral("index.html");
    vanlayout::CodebookOptions pageOptions;
    pageOptions.language = fromLocale(call.language);
    pageOptions.hasProblems = !options.hasNoProblems;

    QVector<CodebookIndexEntry> entries;
    LayoutForm form;
    form.write = [&](const Layout &layout, QIODevice &device) { writeCodebook(layout, device, pageOptions); };
    form.written = [&](const Layout &layout, const QString &name) { entries.append(indexEntryOf(layout, name)); };
    form.writeIndex = [&](const QString &path) {
        return writeAnswer(path, QString(),
                           [&](QIODevice &device) { writeCodebookIndex(entries, device, pageOptions); });
    };
    return writeLayouts(call, form);
}
