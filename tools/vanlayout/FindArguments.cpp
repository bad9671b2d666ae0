#include "FindArguments.h"

#include "Answer.h"
#include "LocaleText.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace
{

QString nameOf(const std::string &argument)
{
    return QFile::decodeName(argument.c_str());
}

bool isExisting(const std::string &argument)
{
    return argument == "-" || QFileInfo::exists(nameOf(argument));
}

bool isLikePath(const std::string &argument)
{
    static const std::array<QLatin1String, 9> extensions = {
        QLatin1String(".dcf"),  QLatin1String(".csdb"),     QLatin1String(".sav"),
        QLatin1String(".zsav"), QLatin1String(".por"),      QLatin1String(".dta"),
        QLatin1String(".xpt"),  QLatin1String(".sas7bdat"), QLatin1String(".json"),
    };
    const QString name = nameOf(argument);
    const auto isExtension = [&](QLatin1String extension) { return name.endsWith(extension, Qt::CaseInsensitive); };
    return name.contains(QLatin1Char('/')) || std::any_of(extensions.begin(), extensions.end(), isExtension);
}

bool isPath(const std::string &argument)
{
    return isExisting(argument) || isLikePath(argument);
}

QString problemWith(const FindArguments &divided, bool hasOnlyPath)
{
    if (hasOnlyPath)
        return QStringLiteral("there is no word to find; give words, then files and directories");
    if (!divided.paths.empty())
        return QString();
    const QString advice = QStringLiteral("name what to search after the words, such as . for this directory");
    if (divided.words.size() < 2)
        return QStringLiteral("there is no file or directory to search; ") + advice;
    return QStringLiteral("%1: no such file or directory; %2").arg(subjectOf(fromLocale(divided.words.back())), advice);
}

} // namespace

FindArguments divideArguments(const std::vector<std::string> &arguments, FindWords words)
{
    const bool needsWord = words == FindWords::Required;
    auto begin = arguments.begin();
    if (needsWord && !arguments.empty() && !(isExisting(*begin) && isLikePath(*begin)))
        ++begin;
    if (words != FindWords::None)
        begin = std::find_if(begin, arguments.end(), isPath);
    FindArguments divided;
    divided.words.assign(arguments.begin(), begin);
    divided.paths.assign(begin, arguments.end());
    const bool isOnlyPath = arguments.size() == 1 && isPath(arguments.front());
    divided.problem = problemWith(divided, needsWord && (divided.words.empty() || isOnlyPath));
    return divided;
}
