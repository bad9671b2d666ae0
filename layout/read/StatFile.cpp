#include "read/Formats_p.h"
#include "read/StatFileCollector_p.h"
#include "read/StatFileTexts_p.h"
#include "util/BufferedDevice_p.h"
#include "util/SpssDictionary_p.h"

#include <QFile>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <clocale>
#include <iterator>
#include <memory>
#include <new>
#include <optional>

namespace vanlayout
{

namespace
{

using stat::Collector;

struct StatFormat {
    Format format;
    readstat_error_t (*parse)(readstat_parser_t *parser, const char *path, void *context);
    const char *name; ///< in messages
};

// clang-format off
const StatFormat formats[] = {
    {Format::Spss,         readstat_parse_sav,      "an SPSS file"},
    {Format::SpssPortable, readstat_parse_por,      "an SPSS portable file"},
    {Format::Stata,        readstat_parse_dta,      "a Stata file"},
    {Format::Sas,          readstat_parse_sas7bdat, "a SAS data set"},
    {Format::SasXport,     readstat_parse_xport,    "a SAS transport file"},
};

// SAS files begin with 32 bytes, of which the sixteenth states whether the file is a data set or a catalog.
constexpr int sasMagicSize = 32;
constexpr int sasKindAt = 15;
constexpr char sasDataSet = '\x60';
constexpr char sasCatalog = '\x63';
constexpr std::array<uchar, sasMagicSize> sasMagic = {
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xc2, 0xea, 0x81, 0x60,
    0xb3, 0x14, 0x11, 0xcf, 0xbd, 0x92, 0x08, 0x00, 0x09, 0xc7, 0x31, 0x8c, 0x18, 0x1f, 0x10, 0x11,
};
// clang-format on

bool isSasOfKind(const QByteArray &head, char kind)
{
    QByteArray magic(reinterpret_cast<const char *>(sasMagic.data()), sasMagicSize);
    magic[sasKindAt] = kind;
    return head.startsWith(magic);
}

// Stata files from version 117 on begin with this tag.
const char stataTag[] = "<stata_dta>";

// The version of an older Stata file, which is its first byte; 0 for any other file.
int oldStataVersion(const QByteArray &head)
{
    constexpr int firstVersion = 102;
    constexpr int lastVersion = 115;
    constexpr int headOfVersion102 = 8;
    const int version = static_cast<uchar>(head.at(0));
    const bool hasByteOrder = head.size() > 1 && (head.at(1) == 1 || head.at(1) == 2);
    // The oldest version does not state its byte order. Its header contains zeros, but a text does not.
    if (version == firstVersion)
        return hasByteOrder || head.left(headOfVersion102).contains('\0') ? version : 0;
    return hasByteOrder && version > firstVersion && version <= lastVersion ? version : 0;
}

// The version that a Stata file states; 0 if it states none.
int stataVersion(const QByteArray &head)
{
    if (!head.startsWith(stataTag))
        return oldStataVersion(head);
    const QByteArray tag("<release>");
    const int begin = head.indexOf(tag);
    return begin < 0 ? 0 : head.mid(begin + tag.size(), 3).toInt();
}

bool isStata(const QByteArray &head)
{
    return head.startsWith(stataTag) || oldStataVersion(head) != 0;
}

// A label of a CSPro dictionary, which begins with a bracket, can contain the same words.
bool isPortable(const QByteArray &head)
{
    constexpr int searched = 512;
    const QByteArray begin = head.left(searched);
    if (!begin.contains("SPSS PORT FILE") && !begin.contains("SPSSPORT"))
        return false;
    const QByteArray text = (head.startsWith("\xEF\xBB\xBF") ? begin.mid(3) : begin).trimmed();
    return !text.startsWith('[') && !text.startsWith('{');
}

Format formatOf(const QByteArray &head)
{
    if (head.startsWith("$FL2") || head.startsWith("$FL3"))
        return Format::Spss;
    if (isStata(head))
        return Format::Stata;
    if (isSasOfKind(head, sasDataSet))
        return Format::Sas;
    if (head.startsWith("HEADER RECORD*******LIB"))
        return Format::SasXport;
    return isPortable(head) ? Format::SpssPortable : Format::None;
}

/// While an object exists, ReadStat writes characters of portable files in UTF-8 on this thread, because it uses the
/// encoding of the locale.
class Utf8Locale
{
public:
    Utf8Locale()
        : utf8(newlocale(LC_ALL_MASK, "C.UTF-8", nullptr))
        , previous(utf8 ? uselocale(utf8) : nullptr)
    {
    }
    ~Utf8Locale()
    {
        if (utf8) {
            uselocale(previous);
            freelocale(utf8);
        }
    }
    Utf8Locale(const Utf8Locale &) = delete;
    Utf8Locale &operator=(const Utf8Locale &) = delete;

private:
    locale_t utf8;
    locale_t previous;
};

using Parser = std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t *)>;

Parser makeParser()
{
    Parser parser(readstat_parser_init(), readstat_parser_free);
    if (!parser)
        throw std::bad_alloc();
    return parser;
}

/// The result of a parse.
struct Outcome {
    readstat_error_t error = READSTAT_OK;
    QString words;         ///< the reason why it ended early
    QString deviceProblem; ///< problem of the device; empty if it did not fail
};

// The message of ReadStat for the end of a parse.
QString wordsFor(readstat_error_t error, const Collector &collector)
{
    const QString words = QString::fromUtf8(readstat_error_message(error));
    const QString more = collector.words();
    return more.isEmpty() ? words : QStringLiteral("%1 (%2)").arg(words, more);
}

template <typename Parse>
Outcome parseFrom(BufferedDevice &file, Collector &collector, readstat_parser_t *parser, Parse parse)
{
    const Utf8Locale utf8;
    file.attachTo(parser);
    Outcome outcome;
    outcome.error = parse(parser, "", &collector);
    collector.rethrow();
    if (outcome.error == READSTAT_ERROR_USER_ABORT && collector.hasEndedParse())
        outcome.error = READSTAT_OK;
    outcome.words = file.isReadOverAndOver() ? QStringLiteral("its parts refer back to each other")
                                             : wordsFor(outcome.error, collector);
    outcome.deviceProblem = file.problem();
    return outcome;
}

QString catalogProblem(const QString &path, Collector &collector)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.isSequential())
        return file.isOpen() ? QStringLiteral("is not a regular file")
                             : QStringLiteral("cannot be opened: %1").arg(file.errorString());
    if (!isSasOfKind(file.peek(sasMagicSize), sasCatalog))
        return QStringLiteral("is not a SAS catalog");
    const Parser parser = makeParser();
    collector.attachCatalogTo(parser.get());
    collector.makeRoomFor(file.size());
    BufferedDevice source(file);
    const Outcome outcome = parseFrom(source, collector, parser.get(), readstat_parse_sas7bcat);
    if (!outcome.deviceProblem.isEmpty())
        return QStringLiteral("cannot be read: %1").arg(outcome.deviceProblem);
    return outcome.error != READSTAT_OK ? outcome.words : QString();
}

void readCatalog(const Input &input, Format format, Collector &collector, Diagnostics &diagnostics)
{
    const QString path = input.options.catalog;
    if (path.isEmpty())
        return;
    if (format != Format::Sas && format != Format::SasXport) {
        diagnostics.inform("catalog-not-used", QStringLiteral("the catalog %1 is only for SAS files").arg(path));
        return;
    }
    const QString problem = catalogProblem(path, collector);
    if (!problem.isEmpty())
        diagnostics.warn("catalog-not-read", QStringLiteral("the catalog %1: %2").arg(path, problem));
    collector.forgetWords();
}

const char *idOf(readstat_error_t error)
{
    switch (error) {
    case READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION:
        return "unsupported-version";
    case READSTAT_ERROR_UNSUPPORTED_COMPRESSION:
        return "unsupported-compression";
    case READSTAT_ERROR_UNSUPPORTED_CHARSET:
    case READSTAT_ERROR_CONVERT:
    case READSTAT_ERROR_CONVERT_BAD_STRING:
    case READSTAT_ERROR_CONVERT_SHORT_STRING:
    case READSTAT_ERROR_CONVERT_LONG_STRING:
        return "wrong-encoding";
    default:
        return "damaged-file";
    }
}

QString describe(const StatFormat &format, const QByteArray &head)
{
    const QString name = QLatin1String(format.name);
    const int version = format.format == Format::Stata ? stataVersion(head) : 0;
    return version > 0 ? QStringLiteral("%1 of version %2").arg(name).arg(version) : name;
}

void finish(const StatFormat &format, const Input &input, const Outcome &outcome, Collector &collector,
            Diagnostics &diagnostics)
{
    if (outcome.error == READSTAT_OK) {
        collector.finish();
        if (!collector.words().isEmpty())
            diagnostics.inform("reader-remark", QStringLiteral("while the file was read: %1").arg(collector.words()));
    } else if (collector.hasVariables()) {
        collector.finish();
        diagnostics.warn(
            "reading-ended",
            QStringLiteral("reading ended after the variables, so value labels and notes may be missing: %1")
                .arg(outcome.words));
    } else {
        diagnostics.fail(
            idOf(outcome.error),
            QStringLiteral("the file is %1 that cannot be read: %2").arg(describe(format, input.head), outcome.words));
    }
}

// The result for a file that must not be parsed, because ReadStat does not handle some SPSS files safely; none for any
// other file.
std::optional<Outcome> refusalOf(Format format, QIODevice &device)
{
    if (format != Format::Spss)
        return std::nullopt;
    const qint64 begin = device.pos();
    const SpssDictionary dictionary = walkSpssDictionary(device, SpssDocuments::areRead);
    const QString problem = dictionary.problem();
    if (!dictionary.isReadable || !device.seek(begin))
        return Outcome{ READSTAT_ERROR_READ, QString(), device.errorString() };
    if (problem.isNull())
        return std::nullopt;
    return Outcome{ READSTAT_ERROR_PARSE, QStringLiteral("it ") + problem, QString() };
}

Outcome parse(const StatFormat &format, const Input &input, Collector &collector, Diagnostics &diagnostics)
{
    if (const std::optional<Outcome> refusal = refusalOf(format.format, input.device))
        return *refusal;
    readCatalog(input, format.format, collector, diagnostics);
    const Parser parser = makeParser();
    collector.attachTo(parser.get());
    BufferedDevice file(input.device);
    collector.makeRoomFor(file.size());
    return parseFrom(file, collector, parser.get(), format.parse);
}

} // namespace

bool isStatFile(const QByteArray &head)
{
    return formatOf(head) != Format::None || isSasOfKind(head, sasCatalog);
}

void readStatFile(Input &input, Layout &layout, Diagnostics &diagnostics)
{
    if (isSasOfKind(input.head, sasCatalog)) {
        diagnostics.fail(
            "catalog-alone",
            QStringLiteral("the file is a SAS catalog, which holds label sets and no layout; read the data "
                           "set and name this file as its catalog"));
        return;
    }
    layout.format = formatOf(input.head);
    const StatFormat &format = *std::find_if(std::begin(formats), std::end(formats), [&](const StatFormat &candidate) {
        return candidate.format == layout.format;
    });
    Collector collector(input, layout, diagnostics);
    const Outcome outcome = parse(format, input, collector, diagnostics);
    if (outcome.deviceProblem.isEmpty())
        finish(format, input, outcome, collector, diagnostics);
    else
        diagnostics.fail("cannot-read", QStringLiteral("cannot be read: %1").arg(outcome.deviceProblem));
}

} // namespace vanlayout
