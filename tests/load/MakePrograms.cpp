// Makes many load programs in one process, for the tests with generated dictionaries.
//
//     make_programs < JOBS
//
// A job is one line of JSON: {"target": word, "dictionary": path, "data": path, "directory": path}. The directory
// exists. The line of output is empty, or the reason why there is no program.
#include "load/Load.h"
#include "read/Reader.h"
#include "write/LayoutJson.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <iostream>
#include <string>

using namespace vanlayout;

namespace
{

QString write(const LoadFile &file, const QString &directory)
{
    QFile output(QDir(directory).filePath(file.name));
    const bool isWritten = output.open(QIODevice::WriteOnly) && output.write(file.text) == file.text.size();
    return isWritten ? QString() : QStringLiteral("cannot write ") + output.fileName();
}

QString makeProgram(const Layout &layout, const QJsonObject &job)
{
    const std::optional<LoadTarget> target = loadTargetOf(job[QLatin1String("target")].toString());
    if (!target)
        return QStringLiteral("unknown target");
    LoadOptions options;
    options.data = job[QLatin1String("data")].toString();
    const LoadProgram program = makeLoadProgram(layout, *target, options);
    for (const LoadFile &file : program.files) {
        const QString problem = write(file, job[QLatin1String("directory")].toString());
        if (!problem.isEmpty())
            return problem;
    }
    return program.problem;
}

QByteArray run(const QJsonObject &job)
{
    const Layout layout = readLayout(job[QLatin1String("dictionary")].toString());
    const QString problem = job.contains(QLatin1String("target")) ? makeProgram(layout, job) : QString();
    if (!problem.isEmpty())
        return problem.toUtf8() + '\n';
    QBuffer json;
    json.open(QIODevice::WriteOnly);
    writeLayoutJson(layout, json);
    return json.data();
}

} // namespace

int main()
{
    for (std::string line; std::getline(std::cin, line);)
        std::cout << run(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object()).toStdString() << std::flush;
    return 0;
}
