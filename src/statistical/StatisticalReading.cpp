#include "statistical/StatisticalReading_p.h"

#include "statistical/BufferedFile_p.h"
#include "statistical/FileGuards_p.h"

#include <QFile>
#include <QFileInfo>

#include <memory>
#include <utility>

namespace statistical
{

int SingleCalls::runWithReading(const std::function<void(Reading &)> &work)
{
    Reading single(format);
    work(single);
    return READSTAT_HANDLER_OK;
}

Reading::Reading(const Format &fileFormat)
    : format(fileFormat)
    , notes(fileFormat)
{
}

Reading::Reading(const Format &fileFormat, const QString &path, Buffering fileBuffering)
    : format(fileFormat)
    , bounds(fileFormat.widestNames)
    , notes(fileFormat)
    , localPath(path.toLocal8Bit())
{
    // The path as ReadStat sees it, up to the first NUL. Only a regular file is opened here: a pipe would block.
    const QString seenPath = QFile::decodeName(localPath.constData());
    if (!QFileInfo(seenPath).isFile())
        return;
    bounds = format.nameBounds(seenPath);
    readProblem = format.problem(seenPath);
    isRefused = !readProblem.isNull();
    buffering = fileBuffering;
}

bool Reading::hasRoomFor(qint64 bytes)
{
    labelBytesLeft -= bytes;
    if (labelBytesLeft >= 0)
        return true;
    readProblem.line = QStringLiteral("has more than %1 bytes of value labels, which is the limit").arg(maxLabelBytes);
    return false;
}

readstat_error_t Reading::pass(readstat_value_label_handler onLabel, readstat_variable_handler onVariable,
                               void *context)
{
    if (isRefused)
        return READSTAT_ERROR_PARSE;
    const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t *)> parser(readstat_parser_init(),
                                                                                   readstat_parser_free);
    if (!parser)
        return READSTAT_ERROR_MALLOC; // LCOV_EXCL_LINE: a lack of memory
    if (onLabel)
        readstat_set_value_label_handler(parser.get(), onLabel);
    if (onVariable)
        readstat_set_variable_handler(parser.get(), onVariable);
    BufferedFile file;
    if (buffering == Buffering::on)
        file.attachTo(parser.get());
    const readstat_error_t result = format.parse(parser.get(), localPath.constData(), context);
    if (raised)
        std::rethrow_exception(std::exchange(raised, nullptr));
    if (file.error() != 0)
        readProblem = deviceProblem(file.error());
    return result;
}

} // namespace statistical
