#include "Load.h"

#include "Answer.h"
#include "LayoutInput.h"
#include "LocaleText.h"
#include "OutputDirectory.h"
#include "OutputFile.h"
#include "load/Load.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>

using namespace vanlayout;

namespace
{

LoadOptions optionsOf(const LoadCall &call)
{
    LoadOptions options;
    options.data = QFile::decodeName(call.data.c_str());
    options.encoding = call.encoding == "windows-1252" ? DataEncoding::Windows1252 : DataEncoding::Utf8;
    options.language = fromLocale(call.language);
    options.occurrences = call.occurrences == "long" ? OccurrenceForm::Long : OccurrenceForm::Wide;
    options.specials = call.specials == "keep" ? SpecialForm::Keep : SpecialForm::Missing;
    for (const std::string &record : call.records)
        options.records.append(fromLocale(record));
    return options;
}

int write(const LoadFile &file, const QString &path, const QString &input)
{
    return writeAnswer(path, input, [&](QIODevice &device) { device.write(file.text); });
}

int makeDirectory(const QString &path)
{
    if (QDir().mkpath(path))
        return statusFine;
    return noAnswerFor(path,
                       QFileInfo::exists(path) ? QStringLiteral("is not a directory; a program is written into one")
                                               : QStringLiteral("the directory cannot be created"));
}

int writeInto(const QString &directory, const LoadProgram &program, const QString &input)
{
    const int status = makeDirectory(directory);
    if (status != statusFine)
        return status;
    if (program.files.size() == 1)
        return write(program.files.constFirst(), inDirectory(directory, program.files.constFirst().name), input);
    std::vector<NamedAnswer> answers;
    for (const LoadFile &file : program.files)
        answers.push_back({ inDirectory(directory, file.name), [&](QIODevice &device) { device.write(file.text); } });
    return writeAnswers(answers, input);
}

int writeProgram(const LoadCall &call, const LoadProgram &program, const QString &input)
{
    const QString output = QFile::decodeName(call.output.c_str());
    if (output.isEmpty())
        return noAnswerFor(output, QStringLiteral("no such directory"));
    if (output != QLatin1String("-"))
        return writeInto(output, program, input);
    if (program.files.size() == 1)
        return write(program.files.constFirst(), output, input);
    complain(QString(), QStringLiteral("several files are written into a directory; name it with -o DIRECTORY"));
    return statusNoAnswer;
}

} // namespace

std::vector<std::string> loadTargetWords()
{
    std::vector<std::string> words;
    const QStringList targets = loadTargets();
    for (const QString &word : targets)
        words.push_back(word.toStdString());
    return words;
}

int writeLoadProgram(const LoadCall &call)
{
    const QString file = QFile::decodeName(call.file.c_str());
    return answerFor(file, [&] {
        const Layout layout = readExactLayout(file, ReadOptions());
        if (const Problem *error = layout.error())
            return noAnswerFor(file, messageOf(*error));
        // The target has been checked by the parser.
        const LoadProgram program = makeLoadProgram(layout, *loadTargetOf(fromLocale(call.target)), optionsOf(call));
        return program.problem.isEmpty() ? writeProgram(call, program, file) : noAnswerFor(file, program.problem);
    });
}
