#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "statistical/StatisticalImport_p.h"
#include "support/DebugCapture.h"
#include "support/StandardStream.h"
#include "support/Throws.h"

#include <readstat.h>

#include <QScopedValueRollback>
#include <QtTest>

#include <dlfcn.h>
#include <stdexcept>

struct TestAccess {
    static bool open(TDataImport &importer) { return importer.openFile(); }
};

namespace
{

/// The calls of ReadStat that this program makes, without those that ReadStat makes within them.
struct Calls {
    QStringList names;
    QVector<void *> contexts;  ///< of the parses
    bool isOfReadStat = false; ///< made within another

    int count(const char *name) const { return names.count(QLatin1String(name)); }
};

Calls &calls()
{
    static Calls made;
    return made;
}

// Records a call and returns ReadStat's function of this name, which a function below replaces in this program.
template <typename Function> Function *behind(const char *name)
{
    if (!calls().isOfReadStat)
        calls().names.append(QLatin1String(name));
    void *function = dlsym(RTLD_NEXT, name);
    if (!function)
        qFatal("%s: ReadStat is no shared library here", name);
    return reinterpret_cast<Function *>(function);
}

} // namespace

#define EXPORTED __attribute__((visibility("default")))
#define COUNTED_SETTER(name, Argument)                                                                                 \
    EXPORTED readstat_error_t name(readstat_parser_t *parser, Argument argument)                                       \
    {                                                                                                                  \
        return behind<decltype(name)>(#name)(parser, argument);                                                        \
    }
#define COUNTED_PARSE(name)                                                                                            \
    EXPORTED readstat_error_t name(readstat_parser_t *parser, const char *path, void *context)                         \
    {                                                                                                                  \
        calls().contexts.append(context);                                                                              \
        return behind<decltype(name)>(#name)(parser, path, context);                                                   \
    }

// All functions that set something on a parser, and those that parse. The program calls these instead of ReadStat's.
COUNTED_SETTER(readstat_set_metadata_handler, readstat_metadata_handler)
COUNTED_SETTER(readstat_set_note_handler, readstat_note_handler)
COUNTED_SETTER(readstat_set_variable_handler, readstat_variable_handler)
COUNTED_SETTER(readstat_set_fweight_handler, readstat_fweight_handler)
COUNTED_SETTER(readstat_set_value_handler, readstat_value_handler)
COUNTED_SETTER(readstat_set_value_label_handler, readstat_value_label_handler)
COUNTED_SETTER(readstat_set_error_handler, readstat_error_handler)
COUNTED_SETTER(readstat_set_progress_handler, readstat_progress_handler)
COUNTED_SETTER(readstat_set_open_handler, readstat_open_handler)
COUNTED_SETTER(readstat_set_close_handler, readstat_close_handler)
COUNTED_SETTER(readstat_set_seek_handler, readstat_seek_handler)
COUNTED_SETTER(readstat_set_read_handler, readstat_read_handler)
COUNTED_SETTER(readstat_set_update_handler, readstat_update_handler)
COUNTED_SETTER(readstat_set_io_ctx, void *)
COUNTED_SETTER(readstat_set_file_character_encoding, const char *)
COUNTED_SETTER(readstat_set_handler_character_encoding, const char *)
COUNTED_SETTER(readstat_set_row_limit, long)
COUNTED_SETTER(readstat_set_row_offset, long)
COUNTED_PARSE(readstat_parse_dta)
COUNTED_PARSE(readstat_parse_sav)

// Both functions call setters themselves.
EXPORTED readstat_parser_t *readstat_parser_init(void)
{
    auto *function = behind<decltype(readstat_parser_init)>("readstat_parser_init");
    const QScopedValueRollback<bool> inside(calls().isOfReadStat, true);
    return function();
}

EXPORTED void readstat_parser_free(readstat_parser_t *parser)
{
    auto *function = behind<decltype(readstat_parser_free)>("readstat_parser_free");
    const QScopedValueRollback<bool> inside(calls().isOfReadStat, true);
    function(parser);
}

/// Tests the calls of ReadStat.
class ReadStatCallsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { calls() = Calls(); }

    void openingMakesTheseCallsAndNoOthers_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isBuffered");
        QTest::addColumn<bool>("setsReading");
        for (const bool isSpss : { false, true }) {
            const char *name = isSpss ? "spss" : "stata";
            const QString made = QStringLiteral(VAN_MADE_DATA "/");
            const QString file = made + (isSpss ? QLatin1String("types.sav") : QLatin1String("types-118.dta"));
            const QString other = made + (isSpss ? QLatin1String("types-118.dta") : QLatin1String("types.sav"));
            const QString absent = QStringLiteral("/nowhere/absent");
            QTest::addRow("%s", name) << isSpss << file << false << false;
            QTest::addRow("%s, in large pieces", name) << isSpss << file << true << true;
            QTest::addRow("%s, of the other format", name) << isSpss << other << false << false;
            QTest::addRow("%s, absent", name) << isSpss << absent << false << false;
            QTest::addRow("%s, absent, in large pieces", name) << isSpss << absent << true << false;
        }
    }
    void openingMakesTheseCallsAndNoOthers()
    {
        QFETCH(bool, isSpss);
        QFETCH(QString, path);
        QFETCH(bool, isBuffered);
        QFETCH(bool, setsReading);
        TSTATADataImport stata(path);
        TSPSSDataImport spss(path);
        stata.setReadingBuffered(isBuffered);
        spss.setReadingBuffered(isBuffered);
        {
            const DebugCapture quiet;
            const StandardStream out(stdout);
            QVERIFY(TestAccess::open(isSpss ? static_cast<TDataImport &>(spss) : stata));
        }
        QStringList expected;
        for (const char *handler : { "readstat_set_value_label_handler", "readstat_set_variable_handler" }) {
            expected << "readstat_parser_init" << handler;
            if (setsReading)
                expected << "readstat_set_open_handler"
                         << "readstat_set_close_handler"
                         << "readstat_set_seek_handler"
                         << "readstat_set_read_handler"
                         << "readstat_set_update_handler"
                         << "readstat_set_io_ctx";
            expected << (isSpss ? "readstat_parse_sav" : "readstat_parse_dta") << "readstat_parser_free";
        }
        QCOMPARE(calls().names.join(QLatin1Char(' ')), expected.join(QLatin1Char(' ')));
        void *importer = isSpss ? static_cast<void *>(&spss) : &stata;
        QCOMPARE(calls().contexts, QVector<void *>(2, importer));
    }

    void parserIsFreedWhereAHandlerThrows_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<bool>("atLabels");
        QTest::newRow("stata, labels") << false << true;
        QTest::newRow("stata, variables") << false << false;
        QTest::newRow("spss, labels") << true << true;
        QTest::newRow("spss, variables") << true << false;
    }
    void parserIsFreedWhereAHandlerThrows()
    {
        QFETCH(bool, isSpss);
        QFETCH(bool, atLabels);
        const QString path = QStringLiteral(VAN_MADE_DATA "/")
            + (isSpss ? QLatin1String("types.sav") : QLatin1String("types-118.dta"));
        for (const auto buffering : { statistical::Buffering::off, statistical::Buffering::on }) {
            statistical::Reading reading(isSpss ? statistical::spss : statistical::stata, path, buffering);
            const auto onLabel
                = [](const char *, readstat_value_t, const char *, void *context) { return raiseIn(context); };
            const auto onVariable
                = [](int, readstat_variable_t *, const char *, void *context) { return raiseIn(context); };
            calls() = Calls();
            if (atLabels)
                QVERIFY_THROWS_EXCEPTION(std::runtime_error, reading.pass(onLabel, nullptr, &reading));
            else
                QVERIFY_THROWS_EXCEPTION(std::runtime_error, reading.pass(nullptr, onVariable, &reading));
            QCOMPARE(calls().count("readstat_parser_init"), 1);
            QCOMPARE(calls().count("readstat_parser_free"), 1);
        }
    }

private:
    static int raiseIn(void *reading)
    {
        return static_cast<statistical::Reading *>(reading)->run([] { throw std::runtime_error("words of it"); });
    }
};

QTEST_APPLESS_MAIN(ReadStatCallsTest)
#include "ReadStatCallsTest.moc"
