#include "StatFile.h"
#include "import/DataProvider.h"
#include "import/SourceField.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "statistical/StatisticalImport_p.h"
#include "support/Callable.h"
#include "support/DebugCapture.h"
#include "support/LocaleCodec.h"
#include "support/StandardStream.h"
#include "support/Throws.h"
#include "support/VirtualSlot.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <type_traits>

struct TestAccess {
    static QString id(TDataImport &importer) { return importer.getDataProviderId(); }
    static QList<TGenericField *> fields(const TDataImport &importer)
    {
        return importer.fields ? *importer.fields : QList<TGenericField *>();
    }
    static bool hasList(const TDataImport &importer) { return importer.fields != nullptr; }
    static double stateValue(const TDataImport &importer) { return importer.stateValue; }
    template <typename Importer> static auto &labelSets(Importer &importer) { return importer.labelSets; }
    template <typename Importer> static auto &variables(Importer &importer) { return importer.variables; }
    template <typename Importer> static auto &byName(Importer &importer) { return importer.variablesByName; }
    static void setNumbers(TSTATADataImport &importer, int first, int second)
    {
        importer.number1 = first;
        importer.number2 = second;
    }
    static QPair<int, int> numbers(const TSTATADataImport &importer) { return { importer.number1, importer.number2 }; }
    template <typename Importer> static std::ptrdiff_t slotOfId() { return virtualSlot(&Importer::getDataProviderId); }
    template <typename Importer> static std::ptrdiff_t slotOfType()
    {
        return virtualSlot(&Importer::getDataProviderType);
    }
    template <typename Importer> static std::ptrdiff_t slotOfOpening() { return virtualSlot(&Importer::openFile); }
    template <typename Importer> static std::ptrdiff_t slotOfSelection()
    {
        return virtualSlot(&Importer::selectLayoutSource);
    }
};

namespace
{

const QString made = QStringLiteral(VAN_MADE_DATA "/");
const QString stataTypes = made + QStringLiteral("types-118.dta");
const QString spssTypes = made + QStringLiteral("types.sav");

CALLABLE(CallsId, getDataProviderId());
CALLABLE(CallsType, getDataProviderType());
CALLABLE(CallsOpening, openFile());
CALLABLE(CallsReading, openRead(QString()));
CALLABLE(CallsSelection, selectLayoutSource());
CALLABLE(CallsLabelHandler, handleValueLabel("", readstat_value_t(), "", nullptr));
CALLABLE(CallsVariableHandler, handleVariable(0, nullptr, "", nullptr));
CALLABLE(SeesVariables, variables);
CALLABLE(SeesAddresses, variablesByName);
CALLABLE(SeesLabelSets, labelSets);

// A subclass of an importer, and the members that it may write.
template <typename Importer> struct Heir : Importer {
    CALLABLE(CallsOpening, openFile());
    CALLABLE(CallsReading, openRead(QString()));
    CALLABLE(SeesVariables, variables);
    CALLABLE(SeesAddresses, variablesByName);
    CALLABLE(SeesLabelSets, labelSets);
};

QString describe(const TGenericField &field)
{
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
        .arg(field.name, field.label)
        .arg(int(field.type))
        .arg(field.length)
        .arg(field.minimum, field.maximum, field.valueLabels);
}

QStringList describe(const TDataImport &importer)
{
    QStringList lines;
    for (const TGenericField *field : TestAccess::fields(importer))
        lines.append(describe(*field));
    return lines;
}

QStringList openedNames(TDataImport &importer)
{
    return *std::unique_ptr<QStringList>(importer.selectLayoutSource());
}

// A reading, and the actions of its handlers.
struct HandledReading {
    static int label(const char * /*set*/, readstat_value_t /*value*/, const char * /*text*/, void *context)
    {
        return handle(context);
    }
    static int variable(int /*index*/, readstat_variable_t * /*variable*/, const char * /*set*/, void *context)
    {
        return handle(context);
    }
    static int handle(void *context)
    {
        auto *self = static_cast<HandledReading *>(context);
        ++self->calls;
        return self->reading.run([&] {
            if (self->calls == self->throwsAt)
                throw std::runtime_error("words of it");
        });
    }

    statistical::Reading reading;
    int throwsAt = 0;
    int calls = 0;
};

template <typename Importer> QStringList read(const QString &path)
{
    Importer importer(path);
    openedNames(importer);
    return describe(importer);
}

} // namespace

/// Tests whole Stata and SPSS files with their importers.
class StatisticalImportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exceptionInAHandlerIsRaisedAfterThePass_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<bool>("atLabels");
        QTest::addColumn<bool>("endsThePass");
        QTest::newRow("stata, labels") << false << true << true;
        QTest::newRow("stata, variables") << false << false << true;
        QTest::newRow("spss, labels") << true << true << false; // ReadStat continues with the labels that follow
        QTest::newRow("spss, variables") << true << false << true;
    }
    void exceptionInAHandlerIsRaisedAfterThePass()
    {
        QFETCH(bool, isSpss);
        QFETCH(bool, atLabels);
        QFETCH(bool, endsThePass);
        for (const auto buffering : { statistical::Buffering::off, statistical::Buffering::on }) {
            HandledReading handled = { statistical::Reading(isSpss ? statistical::spss : statistical::stata,
                                                            isSpss ? spssTypes : stataTypes, buffering) };
            const auto pass = [&] {
                handled.calls = 0;
                return handled.reading.pass(atLabels ? HandledReading::label : nullptr,
                                            atLabels ? nullptr : HandledReading::variable, &handled);
            };
            QCOMPARE(pass(), READSTAT_OK);
            const int all = handled.calls;
            QVERIFY(all > 3);
            for (handled.throwsAt = 1; handled.throwsAt <= 2; ++handled.throwsAt) {
                QVERIFY_THROWS_EXCEPTION(std::runtime_error, pass());
                QCOMPARE(handled.calls == handled.throwsAt, endsThePass);
            }
            handled.throwsAt = 0;
            QCOMPARE(pass(), READSTAT_OK); // it is raised once
            QCOMPARE(handled.calls, all);
        }
    }

    void stataFileBecomesTheseFields()
    {
        const QString nines80(81, QLatin1Char('9'));
        QCOMPARE(read<TSTATADataImport>(stataTypes),
                 (QStringList{
                     "tiny|A byte|1|1|0|9|", "small|An int|1|2|1|2|1 Yes\t2 No\t", "wide|A long|1|4|1|2|1 Yes\t2 No\t",
                     QString::fromLatin1("odd|Odd labels|1|4|0|30000|0 Zero\t9 \t30000 Na\xC3\xAFve caf\xC3\xA9\t"),
                     "single|A float|2|4|0|9999|", QString::fromLatin1("full|\xC3\x89tat civil|2|8|0|99999999|"),
                     "name|A text|3|6|0|999999|", // a declared 5 arrives as 6
                     "remark|A longer text|3|81|0|" + nines80 + "|",
                     "essay|A strL|3|0|0||", // a long text arrives as a text of width 0
                 }));
    }

    void everyStataVersionIsRead_data()
    {
        QTest::addColumn<int>("version");
        for (const int version : { 105, 108, 110, 111, 113, 114, 115, 117, 118, 119 })
            QTest::addRow("%d", version) << version;
    }
    void everyStataVersionIsRead()
    {
        QFETCH(int, version);
        TSTATADataImport importer(made + QStringLiteral("types-%1.dta").arg(version));
        const DebugCapture quiet;
        const StandardStream out(stdout);
        QCOMPARE(openedNames(importer).size(), version < 117 ? 8 : 9);
        QCOMPARE(out.taken(), QByteArray());
        QCOMPARE(describe(*importer.fieldByName(QStringLiteral("small"))),
                 QStringLiteral("small|An int|1|2|1|2|1 Yes\t2 No\t"));
        QCOMPARE(describe(*importer.fieldByName(QStringLiteral("name"))), QStringLiteral("name|A text|3|6|0|999999|"));
    }

    void spssFileBecomesTheseFields_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *file : { "types.sav", "types-rows.sav", "types.zsav" })
            QTest::newRow(file) << made + QLatin1String(file);
    }
    void spssFileBecomesTheseFields()
    {
        QFETCH(QString, file);
        QCOMPARE(read<TSPSSDataImport>(file),
                 (QStringList{
                     "F80|Whole number|1|8|1|2|1 Yes\t2 No\t",
                     "F82|With decimals|2|8|1|2|1.000000 Yes\t2.000000 No\t",
                     "F100|Wide|1|1|0|9|",
                     "F102|Wide with decimals|2|1|0.5|1.5|0.500000 Half\t1.500000 \t", // -1 is lost
                     "WHOLE|Shares, no decimals|1|4|1|7|1 One\t2 Two and a half\t7 Seven\t",
                     "REAL|Shares, decimals|2|6|1|7|1 One\t2 Two and a half\t7 Seven\t",
                     QString::fromUtf8("DAY|\xE6\x97\xA5\xE4\xBB\x98|1|0|0||"),
                     QString::fromUtf8("SEX|A text|3|8|||M Male\tF F\xC3\xA9minin\t"),
                     "NAME|A wider text|3|2|||",
                     "ESSAY|A very long text|3|6|||",
                 }));
    }

    void extendedMissingValuesOfStataAreLargeIntegers()
    {
        StatFile file(StatFile::dta, 118);
        readstat_label_set_t *set = file.intLabels("set", { { 1, "One" } });
        readstat_label_tagged_value(set, 'a', "Refused");
        file.variable("v", READSTAT_TYPE_INT32, "V", "%8.0g", set);
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("tagged.dta"));
        file.save(path.toStdString());
        QCOMPARE(read<TSTATADataImport>(path),
                 QStringList(QStringLiteral("v|V|1|4|1|2.14748e+09|1 One\t2147483622 Refused\t")));
    }

    void setOfWhichNoLabelHasATextIsEmpty()
    {
        // A variable names a set that is not in the file.
        StatFile file(StatFile::dta, 118);
        const auto *set = file.intLabels("set", { { 1, "One" } });
        file.variable("v", READSTAT_TYPE_INT8, "V", "%8.0g", set);
        std::string bytes = file.bytes();
        const size_t place = bytes.rfind("set");
        bytes.replace(place, 3, "SET");
        const QTemporaryDir directory;
        QFile damaged(directory.filePath(QStringLiteral("other-set.dta")));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(bytes.data(), qint64(bytes.size()));
        damaged.close();
        QCOMPARE(read<TSTATADataImport>(damaged.fileName()), QStringList(QStringLiteral("v|V|1|1|0|9|")));
    }

    void idIsTypeAndSourceName()
    {
        TSTATADataImport stata(stataTypes);
        TSPSSDataImport spss(spssTypes);
        QCOMPARE(TestAccess::id(stata), QStringLiteral("STATA_") + stataTypes);
        QCOMPARE(TestAccess::id(spss), QStringLiteral("SPSS_") + spssTypes);
        QCOMPARE(static_cast<TDataImport &>(stata).getDataProviderType(), QStringLiteral("STATA"));
        QCOMPARE(static_cast<TDataImport &>(spss).getDataProviderType(), QStringLiteral("SPSS"));
    }

    void selectionLogsItsLines()
    {
        TSTATADataImport stata(stataTypes);
        {
            const DebugCapture log;
            openedNames(stata);
            QCOMPARE(log.taken(),
                     (QStringList{ "TSTATADataImport - selectLayoutSource", "DataImport - selectLayoutSource" }));
        }
        TSPSSDataImport spss(spssTypes);
        const DebugCapture log;
        openedNames(spss);
        QCOMPARE(log.taken(), QStringList(QStringLiteral("DataImport - selectLayoutSource")));
    }

    void openingSetsTheState()
    {
        TSTATADataImport stata(stataTypes);
        TSPSSDataImport spss(spssTypes);
        for (TDataImport *importer : { static_cast<TDataImport *>(&stata), static_cast<TDataImport *>(&spss) }) {
            QCOMPARE(TestAccess::stateValue(*importer), 0.0);
            QVERIFY(importer->openFile());
            QCOMPARE(TestAccess::stateValue(*importer), 1.0);
            QVERIFY(!importer->isMultiple());
            QCOMPARE(importer->getGroupCount(), 0);
            QCOMPARE(importer->getRecordTypeStart(), 0);
        }
    }

    void stataOpensAnewEachTime()
    {
        TSTATADataImport importer(stataTypes);
        const QStringList names = openedNames(importer);
        const auto formerVariables = TestAccess::variables(importer);
        QCOMPARE(openedNames(importer), names);
        QCOMPARE(TestAccess::variables(importer).size(), size_t(names.size()));
        QVERIFY(TestAccess::variables(importer) != formerVariables);
        QCOMPARE(formerVariables.front()->name, names.first()); // the former ones stay alive
        QVERIFY(TestAccess::byName(importer).size() <= size_t(names.size()));
    }

    void spssOpensTwiceAndDoublesTheFields()
    {
        TSPSSDataImport importer(spssTypes);
        const QStringList names = openedNames(importer);
        const auto formerVariables = TestAccess::variables(importer);
        const QStringList again = openedNames(importer);
        QCOMPARE(again, names + names);
        QCOMPARE(TestAccess::variables(importer).size(), size_t(2 * names.size()));
        QVERIFY(TestAccess::variables(importer).front() == formerVariables.front());
        QCOMPARE(describe(importer).mid(names.size()), describe(importer).mid(0, names.size()));
    }

    void onlySpssKeepsTheAddressesOfFormerOpenings()
    {
        const char address = 0;
        TSPSSDataImport spss(spssTypes);
        TSPSSVariable ofSpss(&spss);
        TestAccess::byName(spss)[&address] = &ofSpss;
        openedNames(spss);
        QCOMPARE(TestAccess::byName(spss).count(&address), size_t(1));
        QVERIFY(TestAccess::byName(spss).at(&address) == &ofSpss);
        QVERIFY(TestAccess::byName(spss).size() > 1);

        TSTATADataImport stata(stataTypes);
        TSTATAVariable ofStata(&stata);
        TestAccess::byName(stata)[&address] = &ofStata;
        openedNames(stata);
        QCOMPARE(TestAccess::byName(stata).count(&address), size_t(0));
    }

    void openingEmptiesTheLabelSets()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("changing.dta"));
        QVERIFY(QFile::copy(stataTypes, path));
        TSTATADataImport importer(path);
        openedNames(importer);
        QCOMPARE(TestAccess::labelSets(importer).size(), size_t(2));
        QCOMPARE(TestAccess::labelSets(importer).count("yesno"), size_t(1));
        QVERIFY(QFile::remove(path));
        const DebugCapture quiet;
        const StandardStream out(stdout);
        openedNames(importer);
        QVERIFY(TestAccess::labelSets(importer).empty());
        QVERIFY(TestAccess::variables(importer).empty());
        QVERIFY(TestAccess::byName(importer).empty());
        QVERIFY(TestAccess::fields(importer).isEmpty());
        QVERIFY(!importer.fieldByName(QStringLiteral("tiny")));
    }

    void failureOfStataIsALineOnStandardOutput_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("number");
        QTest::newRow("absent") << QStringLiteral("/nowhere/absent.dta") << int(READSTAT_ERROR_OPEN);
        QTest::newRow("another format") << spssTypes << int(READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION);
        QTest::newRow("letters beyond ASCII")
            << QString::fromUtf8("/nowhere/\xC3\xA9tat.dta") << int(READSTAT_ERROR_OPEN);
    }
    void failureOfStataIsALineOnStandardOutput()
    {
        QFETCH(QString, path);
        QFETCH(int, number);
        TSTATADataImport importer(path);
        const DebugCapture quiet;
        const StandardStream out(stdout);
        const StandardStream err(stderr);
        QVERIFY(static_cast<TDataImport &>(importer).openFile());
        QCOMPARE(out.taken(),
                 QByteArray("Error processing " + path.toLocal8Bit() + ": " + QByteArray::number(number) + "\n"));
        QCOMPARE(err.taken(), QByteArray());
        QVERIFY(TestAccess::fields(importer).isEmpty());
    }

    void failureOfSpssIsSilent()
    {
        for (const QString &path : { QStringLiteral("/nowhere/absent.sav"), stataTypes }) {
            TSPSSDataImport importer(path);
            const DebugCapture quiet;
            const StandardStream out(stdout);
            const StandardStream err(stderr);
            QVERIFY(static_cast<TDataImport &>(importer).openFile());
            QCOMPARE(out.taken(), QByteArray());
            QCOMPARE(err.taken(), QByteArray());
            QVERIFY(TestAccess::fields(importer).isEmpty());
        }
    }

    void pathIsInTheEncodingOfTheLocale()
    {
        const LocaleCodec latin1("ISO-8859-1");
        const QTemporaryDir directory;
        const QByteArray name = fileNamesAreUtf8 ? "\xC3\xA9" : "\xE9";
        pathIsInLocale<TSTATADataImport>(directory, stataTypes, name + ".dta");
        pathIsInLocale<TSPSSDataImport>(directory, spssTypes, name + ".sav");
    }

    void errorLineIsInTheEncodingOfTheLocale()
    {
        const LocaleCodec latin1("ISO-8859-1");
        TSTATADataImport importer(QString::fromLatin1("/nowhere/\xE9.dta"));
        const DebugCapture quiet;
        const StandardStream out(stdout);
        openedNames(importer);
        QCOMPARE(out.taken(),
                 QByteArray("Error processing /nowhere/") + (fileNamesAreUtf8 ? "\xC3\xA9" : "\xE9") + ".dta: 1\n");
    }

    void errorStreamTakesTheLine()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("line"));
        TSTATADataImport importer(QStringLiteral("/nowhere/absent.dta"));
        const DebugCapture quiet;
        const StandardStream out(stdout);
        std::FILE *stream = std::fopen(QFile::encodeName(path).constData(), "w");
        QVERIFY(stream);
        importer.setErrorStream(stream);
        openedNames(importer);
        std::fclose(stream);
        importer.setErrorStream(nullptr);
        openedNames(importer);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("Error processing /nowhere/absent.dta: 1\n"));
        QCOMPARE(out.taken(), QByteArray());
    }

    void bufferedReadingIsOffUntilAskedForAndCopied()
    {
        TSTATADataImport stata(stataTypes);
        TSPSSDataImport spss(spssTypes);
        QVERIFY(!stata.isReadingBuffered());
        QVERIFY(!spss.isReadingBuffered());
        stata.setReadingBuffered(true);
        spss.setReadingBuffered(true);
        QVERIFY(TSTATADataImport(stata).isReadingBuffered());
        QVERIFY(TSPSSDataImport(spss).isReadingBuffered());
        openedNames(stata);
        openedNames(spss);
        QCOMPARE(describe(stata), read<TSTATADataImport>(stataTypes));
        QCOMPARE(describe(spss), read<TSPSSDataImport>(spssTypes));
    }

    void copiesShareFieldsAndLabels()
    {
        copiesShare(TSTATADataImport(stataTypes));
        copiesShare(TSPSSDataImport(spssTypes));
    }

    void stataCopiesItsNumbers()
    {
        TSTATADataImport importer;
        QCOMPARE(TestAccess::numbers(importer), qMakePair(0, 0));
        TestAccess::setNumbers(importer, 3, 4);
        QCOMPARE(TestAccess::numbers(TSTATADataImport(importer)), qMakePair(3, 4));
        TSTATADataImport assigned;
        assigned = importer;
        QCOMPARE(TestAccess::numbers(assigned), qMakePair(3, 4));
    }

    void moveTakesNothing()
    {
        moveLeaves(TSTATADataImport(stataTypes));
        moveLeaves(TSPSSDataImport(spssTypes));
    }

    void fieldsAnswerTheirQuestions_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("isBlank");
        QTest::newRow("text") << int(vtString) << "x" << false;
        QTest::newRow("blank text") << int(vtString) << " \t " << true;
        QTest::newRow("empty text") << int(vtString) << "" << true;
        QTest::newRow("blank integer") << int(vtInteger) << " " << false;
        QTest::newRow("blank real") << int(vtReal) << "" << false;
        QTest::newRow("blank of no type") << int(vtNone) << "" << false;
    }
    void fieldsAnswerTheirQuestions()
    {
        QFETCH(int, type);
        QFETCH(QString, value);
        TSTATAVariable stata(nullptr);
        TSPSSVariable spss(nullptr);
        for (TGenericField *field : { static_cast<TGenericField *>(&stata), static_cast<TGenericField *>(&spss) }) {
            field->type = vtString; // a field of another type would not keep the text
            field->length = 10;
            field->setAsString(value);
            field->type = eVanVarType(type);
            QTEST(field->isBlank(), "isBlank");
            QVERIFY(!field->isNotApplicable());
            QCOMPARE(field->getGroup(), QString());
            field->addValueLabel(QStringLiteral("1"), QStringLiteral("One"));
            QCOMPARE(field->valueLabels, QString());
        }
        // The two formats differ, and neither uses a value.
        QVERIFY(!stata.isMissing());
        QVERIFY(spss.isMissing());
    }

    void providerTakesTheFields()
    {
        TSTATADataImport stata(stataTypes);
        openedNames(stata);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&stata);
        QCOMPARE(provider.getFields()->size(), 9);
        const TVpSourceField *small = provider.getFields()->at(1);
        QCOMPARE(small->FieldType, QStringLiteral("INTEGER"));
        QCOMPARE(small->valueLabels, QStringLiteral("1 Yes\t2 No\t"));
        QCOMPARE(small->DataProviderType, QStringLiteral("STATA"));

        TSPSSDataImport spss(spssTypes);
        openedNames(spss);
        provider.genericGetFieldsFrom(&spss);
        QCOMPARE(provider.getFields()->size(), 10);
        QCOMPARE(provider.getFields()->at(1)->FieldType, QStringLiteral("REAL"));
        QCOMPARE(provider.getFields()->at(1)->providerId, QStringLiteral("SPSS_") + spssTypes);
    }

    void setSharedByManyIsWrittenOnce()
    {
        StatFile file(StatFile::sav);
        const auto *set = file.labels("set", { { 1, "One" }, { 2, "Two" } });
        for (const char *name : { "A", "B", "C" })
            file.variable(name, READSTAT_TYPE_DOUBLE, "", "F8.0", set);
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("shared.sav"));
        file.save(path.toStdString());
        TSPSSDataImport importer(path);
        openedNames(importer);
        const QList<TGenericField *> fields = TestAccess::fields(importer);
        QCOMPARE(fields.size(), 3);
        QCOMPARE(fields[0]->valueLabels, QStringLiteral("1 One\t2 Two\t"));
        QVERIFY(fields[0]->valueLabels.constData() == fields[1]->valueLabels.constData());
        QVERIFY(fields[0]->valueLabels.constData() == fields[2]->valueLabels.constData());
    }

    void openingIsOnlyForTheBase()
    {
        onlyTheBaseCalls<TSTATADataImport>();
        onlyTheBaseCalls<TSPSSDataImport>();
    }

    void selectionAndHandlersAreForAll()
    {
        allCall<TSTATADataImport>();
        allCall<TSPSSDataImport>();
    }

    void variablesAndLabelsAreForHeirs()
    {
        onlyHeirsSee<TSTATADataImport>();
        onlyHeirsSee<TSPSSDataImport>();
    }

#ifdef SUPPORT_HAS_VIRTUALSLOT
    void operationsStandInTheSlotsOfTheBase()
    {
        slotsAreThoseOfTheBase<TSTATADataImport>();
        slotsAreThoseOfTheBase<TSPSSDataImport>();
    }
#endif

private:
    template <typename Importer> static void copiesShare(Importer importer)
    {
        openedNames(importer);
        Importer copy(importer);
        Importer assigned;
        assigned = importer;
        Importer &same = assigned;
        assigned = same; // assignment to itself changes nothing
        for (Importer *other : { &copy, &assigned }) {
            QCOMPARE(TestAccess::id(*other), TestAccess::id(importer));
            QVERIFY(TestAccess::variables(*other) == TestAccess::variables(importer));
            QVERIFY(TestAccess::byName(*other) == TestAccess::byName(importer));
            QVERIFY(TestAccess::labelSets(*other) == TestAccess::labelSets(importer));
            QVERIFY(!TestAccess::labelSets(*other).empty());
            QCOMPARE(TestAccess::fields(*other), TestAccess::fields(importer));
        }
        // The labels outlive the importer that read them.
        const auto *set = TestAccess::labelSets(importer).begin()->second;
        importer.setSourceName(QStringLiteral("/nowhere"));
        const DebugCapture quiet;
        const StandardStream out(stdout);
        openedNames(importer);
        QVERIFY(TestAccess::labelSets(copy).begin()->second == set);
        QVERIFY(set->front()->label != nullptr);
    }

    template <typename Importer> static void moveLeaves(Importer importer)
    {
        openedNames(importer);
        const Importer moved(std::move(importer));
        QCOMPARE(moved.getSourceName(), QString());
        QVERIFY(TestAccess::hasList(moved)); // as from the default constructor
        QVERIFY(TestAccess::fields(moved).isEmpty());
        QVERIFY(TestAccess::variables(moved).empty());
        QVERIFY(TestAccess::labelSets(moved).empty());
        QVERIFY(!importer.getSourceName().isEmpty()); // NOLINT(bugprone-use-after-move): it keeps all
        QVERIFY(!TestAccess::fields(importer).isEmpty());
    }

    template <typename Importer> static void onlyTheBaseCalls()
    {
        QVERIFY(!CallsId<Importer>::value);
        QVERIFY(!CallsType<Importer>::value);
        QVERIFY(!CallsOpening<Importer>::value);
        QVERIFY(!CallsReading<Importer>::value);
        QVERIFY(CallsOpening<TDataImport>::value);
        QVERIFY(CallsSelection<TDataImport>::value);
        QVERIFY(CallsSelection<Importer>::value);
        QVERIFY((std::is_base_of<TDataImport, Importer>::value));
    }

    template <typename Importer> static void allCall()
    {
        QVERIFY(CallsSelection<Importer>::value);
        QVERIFY(CallsLabelHandler<Importer>::value);
        QVERIFY(CallsVariableHandler<Importer>::value);
    }

    template <typename Importer> static void onlyHeirsSee()
    {
        using Own = Heir<Importer>;
        QVERIFY(!SeesVariables<Importer>::value);
        QVERIFY(!SeesAddresses<Importer>::value);
        QVERIFY(!SeesLabelSets<Importer>::value);
        QVERIFY(Own::template SeesVariables<Own>::value);
        QVERIFY(Own::template SeesAddresses<Own>::value);
        QVERIFY(Own::template SeesLabelSets<Own>::value);
        QVERIFY(Own::template CallsOpening<Own>::value);
        QVERIFY(!Own::template CallsReading<Own>::value);
    }

    // A copy of \a original under a name in the encoding of the locale reads as the original does.
    template <typename Importer>
    static void pathIsInLocale(const QTemporaryDir &directory, const QString &original, const QByteArray &name)
    {
        const QString copy = directory.filePath(QStringLiteral("copy"));
        QVERIFY(QFile::copy(original, copy));
        const QByteArray path = QFile::encodeName(directory.path()) + '/' + name;
        QCOMPARE(std::rename(QFile::encodeName(copy).constData(), path.constData()), 0);
        const QStringList fields = read<Importer>(original);
        QVERIFY(!fields.isEmpty());
        for (const bool isBuffered : { false, true }) {
            Importer importer(directory.filePath(QString(QChar(0xE9)) + QLatin1String(name.right(4))));
            importer.setReadingBuffered(isBuffered);
            openedNames(importer);
            QCOMPARE(describe(importer), fields);
        }
    }

#ifdef SUPPORT_HAS_VIRTUALSLOT
    template <typename Importer> static void slotsAreThoseOfTheBase()
    {
        QCOMPARE(int(TestAccess::slotOfId<Importer>()), 2);
        QCOMPARE(int(TestAccess::slotOfType<Importer>()), 3);
        QCOMPARE(int(TestAccess::slotOfOpening<Importer>()), 4);
        QCOMPARE(int(TestAccess::slotOfSelection<Importer>()), 6);
    }
#endif
};

QTEST_APPLESS_MAIN(StatisticalImportTest)
#include "StatisticalImportTest.moc"
