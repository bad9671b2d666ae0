#include "StatFile.h"
#include "import/ReadReport.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "statistical/StatisticalImport_p.h"
#include "support/DebugCapture.h"
#include "support/StandardStream.h"
#include "support/OrdinaryUser.h"
#include "support/ScarceMemory.h"
#include "support/Throws.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <map>
#include <memory>

struct TestAccess {
    static bool open(TDataImport &importer) { return importer.openFile(); }
    static const QList<TGenericField *> &fields(const TDataImport &importer) { return *importer.fields; }
    template <typename Importer> static auto &labelSets(Importer &importer) { return importer.labelSets; }
};

namespace
{

// Each bit of the bytes up to here matters.
constexpr int headSize = 400;

const QString made = QStringLiteral(VAN_MADE_DATA "/");

bool isStata(const QString &path)
{
    return path.endsWith(QLatin1String(".dta"));
}

/// The results of an importer for a file: its fields, and the line that it writes.
struct Outcome {
    bool isOpen = false;
    QStringList fields;
    QByteArray line;
    size_t labelSets = 0;

    bool operator==(const Outcome &other) const
    {
        return isOpen == other.isOpen && fields == other.fields && line == other.line && labelSets == other.labelSets;
    }
};

// Frees the objects that the importer has made, since thousands are opened here.
template <typename Importer> void freeAll(Importer &importer)
{
    qDeleteAll(TestAccess::fields(importer));
    delete &TestAccess::fields(importer);
    for (const auto &set : TestAccess::labelSets(importer)) {
        for (TStatValueLabel *label : *set.second) {
            delete[] label->label;
            delete[] label->stringValue;
            delete label;
        }
        delete set.second;
    }
}

template <typename Importer> Outcome openWith(Importer &importer)
{
    Outcome outcome;
    outcome.isOpen = TestAccess::open(importer);
    outcome.labelSets = TestAccess::labelSets(importer).size();
    for (const TGenericField *field : TestAccess::fields(importer)) {
        outcome.fields.append(QStringLiteral("%1|%2|%3|%4|%5|%6|%7")
                                  .arg(field->name, field->label)
                                  .arg(int(field->type))
                                  .arg(field->length)
                                  .arg(field->minimum, field->maximum, field->valueLabels));
    }
    freeAll(importer);
    return outcome;
}

Outcome outcomeOf(const QString &path, bool isBuffered)
{
    if (isStata(path)) {
        std::FILE *stream = std::tmpfile();
        TSTATADataImport importer(path);
        importer.setReadingBuffered(isBuffered);
        importer.setErrorStream(stream);
        Outcome outcome = openWith(importer);
        std::rewind(stream);
        char line[4096] = {};
        if (std::fgets(line, sizeof(line), stream))
            outcome.line = line;
        std::fclose(stream);
        return outcome;
    }
    TSPSSDataImport importer(path);
    importer.setReadingBuffered(isBuffered);
    return openWith(importer);
}

// Verifies that both ways of reading have the same result, and returns it.
Outcome outcomeOf(const QString &path)
{
    const Outcome plain = outcomeOf(path, false);
    const Outcome buffered = outcomeOf(path, true);
    if (!(plain == buffered))
        qWarning("%s: %s / %s, %d / %d fields", qPrintable(path), plain.line.constData(), buffered.line.constData(),
                 int(plain.fields.size()), int(buffered.fields.size()));
    return plain == buffered ? plain : Outcome();
}

// Does the same for a Stata file, with the line that a new importer writes to standard output.
Outcome outcomeOnStandardOutput(const QString &path, bool isBuffered)
{
    const DebugCapture quiet;
    const StandardStream out(stdout);
    TSTATADataImport importer(path);
    importer.setReadingBuffered(isBuffered);
    Outcome outcome = openWith(importer);
    outcome.line = out.taken();
    return outcome;
}

/// The calls that a plain program receives from ReadStat in two passes over a Stata file.
struct Passes {
    readstat_error_t ofLabels = READSTAT_OK;
    readstat_error_t ofVariables = READSTAT_OK;
    int labels = 0;
    int variables = 0;
};

Passes passesOver(const QString &path)
{
    const auto parse = [&](readstat_parser_t *parser, int *count) {
        const readstat_error_t result = readstat_parse_dta(parser, path.toLocal8Bit().constData(), count);
        readstat_parser_free(parser);
        return result;
    };
    Passes passes;
    readstat_parser_t *parser = readstat_parser_init();
    readstat_set_value_label_handler(parser, [](const char *, readstat_value_t, const char *, void *count) -> int {
        ++*static_cast<int *>(count);
        return READSTAT_HANDLER_OK;
    });
    passes.ofLabels = parse(parser, &passes.labels);
    parser = readstat_parser_init();
    readstat_set_variable_handler(parser, [](int, readstat_variable_t *, const char *, void *count) -> int {
        ++*static_cast<int *>(count);
        return READSTAT_HANDLER_OK;
    });
    passes.ofVariables = parse(parser, &passes.variables);
    return passes;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void addMadeFiles()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : QDir(made).entryList({ "types*" }))
        QTest::newRow(qPrintable(name)) << name;
}

} // namespace

/// Tests damaged and foreign files: each one opens with the parts that could be read, in both ways of reading.
class StatisticalBadInputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(directory.isValid());
        QVERIFY(!QDir(made).entryList({ "types*" }).isEmpty());
    }

    void truncatedFileGivesWhatWasRead_data() { addMadeFiles(); }
    void truncatedFileGivesWhatWasRead()
    {
        QFETCH(QString, name);
        const QByteArray bytes = bytesOf(made + name);
        const QStringList whole = outcomeOf(made + name).fields;
        QVERIFY(!whole.isEmpty());
        int most = 0;
        for (int size = 0; size < bytes.size(); ++size) {
            const Outcome outcome = outcomeOf(write(name, bytes.left(size)));
            QVERIFY2(outcome.isOpen, qPrintable(QString::number(size)));
            // A failure is reported for Stata and never for SPSS.
            QVERIFY(outcome.line.isEmpty() || isStata(name));
            if (outcome.fields.isEmpty() && isStata(name))
                QVERIFY2(outcome.line.startsWith("Error processing "), qPrintable(QString::number(size)));
            most = std::max(most, int(outcome.fields.size()));
        }
        QCOMPARE(most, int(whole.size()));
    }

    void failureOfTheFirstPassIsNotReported()
    {
        const QString path = cutWhere([](const Passes &passes) {
            return passes.ofLabels != READSTAT_OK && passes.labels == 0 && passes.ofVariables == READSTAT_OK;
        });
        verifyInBothWays(path, 0, { { 1, "small|An int|1|2|0|99|" } }, QByteArray());
    }

    void labelsOfAFailedFirstPassStayAsFarAsTheyGot()
    {
        // The first set is read whole, the second not at all.
        const QString path = cutWhere([](const Passes &passes) {
            return passes.ofLabels != READSTAT_OK && passes.labels == 2 && passes.ofVariables == READSTAT_OK;
        });
        verifyInBothWays(path, 1, { { 1, "small|An int|1|2|1|2|1 Yes\t2 No\t" }, { 3, "odd|Odd labels|1|4|0|9999|" } },
                         QByteArray());
    }

    void variablesOfAFailedSecondPassAreKeptAndAdded()
    {
        const QString path = cutWhere(
            [](const Passes &passes) { return passes.ofVariables == READSTAT_ERROR_READ && passes.variables == 9; });
        verifyInBothWays(path, 0, { { 1, "small|An int|1|2|0|99|" } },
                         "Error processing " + path.toLocal8Bit() + ": 2\n");
    }

    void flippedBytesDoNoHarm_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             { "types-105.dta", "types-114.dta", "types-117.dta", "types-118.dta", "types.sav", "types.zsav" })
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void flippedBytesDoNoHarm()
    {
        QFETCH(QString, name);
        const QByteArray bytes = bytesOf(made + name);
        for (int place = 0; place < bytes.size(); ++place) {
            for (const int bits : { 0xFF, 0x01, 0x80 }) {
                if (place > headSize && bits != 0xFF)
                    break;
                QByteArray flipped = bytes;
                flipped[place] = char(flipped.at(place) ^ bits);
                QVERIFY2(outcomeOf(write(name, flipped)).isOpen, qPrintable(QString::number(place)));
            }
        }
    }

    void otherContentGivesNoField_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("[Dictionary]\nVersion=CSPro 7.7\nName=D\n");
        QTest::newRow("head of SPSS only") << QByteArray("$FL2");
        QTest::newRow("tag of Stata only") << QByteArray("<stata_dta>");
        QTest::newRow("zeros") << QByteArray(5000, '\0');
        QTest::newRow("ones") << QByteArray(5000, '\xFF');
    }
    void otherContentGivesNoField()
    {
        QFETCH(QByteArray, bytes);
        for (const char *name : { "other.sav", "other.dta" }) {
            const QString path = write(QLatin1String(name), bytes);
            const Outcome outcome = outcomeOf(path);
            QVERIFY(outcome.isOpen);
            QVERIFY(outcome.fields.isEmpty());
            QCOMPARE(outcome.line.startsWith("Error processing " + path.toLocal8Bit() + ": "), isStata(path));
        }
    }

    void pathThatIsNoFileGivesNoField_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("number");
        QTest::newRow("directory, spss") << QString() << 0;
        QTest::newRow("directory, stata") << QStringLiteral("directory.dta") << int(READSTAT_ERROR_READ);
        QTest::newRow("absent, spss") << QStringLiteral("absent.sav") << 0;
        QTest::newRow("absent, stata") << QStringLiteral("absent.dta") << int(READSTAT_ERROR_OPEN);
        QTest::newRow("NUL in the path") << QStringLiteral("a") + QChar(0) + QStringLiteral(".dta")
                                         << int(READSTAT_ERROR_OPEN);
    }
    void pathThatIsNoFileGivesNoField()
    {
        QFETCH(QString, path);
        QFETCH(int, number);
        QDir(directory.path()).mkdir(QStringLiteral("directory.dta"));
        const Outcome outcome = outcomeOf(directory.filePath(path));
        QVERIFY(outcome.isOpen);
        QVERIFY(outcome.fields.isEmpty());
        QCOMPARE(outcome.line.isEmpty(), number == 0);
        QVERIFY(number == 0 || outcome.line.endsWith(": " + QByteArray::number(number) + '\n'));
    }

    void emptyPathGivesNoField()
    {
        TSTATADataImport stata;
        stata.setErrorStream(nullptr);
        QVERIFY(TestAccess::open(stata));
        QVERIFY(TestAccess::fields(stata).isEmpty());
        TSPSSDataImport spss;
        QVERIFY(TestAccess::open(spss));
        QVERIFY(TestAccess::fields(spss).isEmpty());
    }

    void fileWithoutPermissionGivesNoField()
    {
        const QString path = write(QStringLiteral("closed.dta"), bytesOf(made + QStringLiteral("types-118.dta")));
        QFile::setPermissions(path, QFileDevice::WriteOwner);
        Outcome outcome;
        asOrdinaryUser([&] { outcome = outcomeOf(path); });
        QVERIFY(outcome.isOpen);
        QVERIFY(outcome.fields.isEmpty());
        QVERIFY(outcome.line.endsWith(": 1\n"));
    }

    void pathWithLettersBeyondAsciiIsRead_data() { addMadeFiles(); }
    void pathWithLettersBeyondAsciiIsRead()
    {
        QFETCH(QString, name);
        const QString path = write(QString::fromUtf8("\xC3\xA9tat-\xE6\x97\xA5-") + name, bytesOf(made + name));
        QCOMPARE(outcomeOf(path).fields, outcomeOf(made + name).fields);
    }

    void nameOfASetNeedsNoEndMarkWhereItsFieldIsFull_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<int>("size");
        QTest::newRow("105") << 105 << 9;
        QTest::newRow("108") << 108 << 9;
        QTest::newRow("110") << 110 << 33;
        QTest::newRow("115") << 115 << 33;
        QTest::newRow("117") << 117 << 33;
        QTest::newRow("118") << 118 << 129;
        QTest::newRow("119") << 119 << 129;
    }
    void nameOfASetNeedsNoEndMarkWhereItsFieldIsFull()
    {
        QFETCH(int, version);
        QFETCH(int, size);
        StatFile file(StatFile::dta, version);
        const std::string name(size_t(size), 'n');
        const auto *set = file.intLabels(name.c_str(), { { 1, "Yes" }, { 2, "No" } });
        file.variable("v", READSTAT_TYPE_INT16, "V", "%8.0g", set);
        const std::string bytes = file.bytes();
        const QString path = write(QStringLiteral("full.dta"), QByteArray(bytes.data(), int(bytes.size())));
        const QStringList expected(QStringLiteral("v|V|1|2|1|2|1 Yes\t2 No\t"));
        QCOMPARE(outcomeOf(path).fields, expected);

        // The bytes after the field that names the set of the variable are not part of the name.
        const int place = int(bytes.find(name));
        QByteArray followed(bytes.data(), int(bytes.size()));
        followed[place + size] = 'x';
        const Outcome outcome = outcomeOf(write(QStringLiteral("followed.dta"), followed));
        QVERIFY(outcome.isOpen);
    }

    // Each of 8,000 labels begins at the same long text of their set.
    void labelsThatShareTheirTextsAreBounded()
    {
        constexpr int labels = 8000;
        constexpr int textSize = 31999;
        StatFile file(StatFile::dta, 118);
        auto *set = file.intLabels("shared", {});
        for (int i = 0; i < labels; ++i)
            readstat_label_int32_value(set, i, i == 0 ? std::string(textSize, 't').c_str() : "x");
        file.variable("v", READSTAT_TYPE_INT16, "V", "%8.0g", set);
        std::string bytes = file.bytes();
        constexpr int nameField = 129;
        constexpr int padding = 3;
        const size_t table = bytes.find("shared", bytes.find("<lbl>")) + nameField + padding;
        bytes.replace(table + 8, size_t(labels) * 4, size_t(labels) * 4, '\0'); // where each text begins
        const QString path = write(QStringLiteral("shared.dta"), QByteArray(bytes.data(), int(bytes.size())));

        TSTATADataImport importer(path);
        importer.setReadingBuffered(true);
        ReadReport report;
        importer.setReadReport(&report);
        QVERIFY(TestAccess::open(importer));
        QCOMPARE(TestAccess::fields(importer).size(), 1);
        QCOMPARE(qint64(TestAccess::labelSets(importer).at("shared")->size()), statistical::maxLabelBytes / textSize);
        QCOMPARE(report.count(NoteKind::readingEnded), 1);
        QCOMPARE(report.notes().back().text,
                 QStringLiteral("has more than 250000000 bytes of value labels, which is the limit"));
        importer.releaseContents();
    }

    void labelIsReleasedWhereMemoryRunsOut()
    {
        readstat_value_t value = {};
        value.type = READSTAT_TYPE_STRING;
        value.v.string_value = "code";
        const auto addOnce = [&] {
            statistical::LabelSets sets;
            KeptObjects kept;
            const auto atEnd = qScopeGuard([&] {
                scarce::blocksLeft = scarce::unlimited;
                kept.freeAll();
            });
            statistical::Reading reading(statistical::spss);
            statistical::addValueLabel(sets, "set", value, "label", reading, kept);
        };
        addOnce(); // objects that are made once stay
        const long before = scarce::blocksHeld;
        const int failures = scarce::runShort(addOnce);
        const long after = scarce::blocksHeld;
        QVERIFY(failures > 3);
        QCOMPARE(after, before);
    }

    void exceptionOutOfAHandlerIsRaisedOnceThePassHasEnded()
    {
        statistical::Reading reading(statistical::spss, made + QStringLiteral("types.sav"), statistical::Buffering::on);
        const auto onVariable = [](int, readstat_variable_t *, const char *, void *context) {
            return static_cast<statistical::Reading *>(context)->run([] { throw std::bad_alloc(); });
        };
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, reading.pass(nullptr, onVariable, &reading));
        // The next pass is not concerned.
        const auto nothing
            = [](int, readstat_variable_t *, const char *, void *) -> int { return READSTAT_HANDLER_OK; };
        QCOMPARE(int(reading.pass(nullptr, nothing, &reading)), int(READSTAT_OK));
    }

private:
    // Verifies that both ways of reading find nine fields, of which those at the given indexes are compared completely,
    // and write this line to standard output.
    static void verifyInBothWays(const QString &path, size_t labelSets, const std::map<int, const char *> &fields,
                                 const QByteArray &line)
    {
        QVERIFY(!path.isEmpty());
        for (const bool isBuffered : { false, true }) {
            const Outcome outcome = outcomeOnStandardOutput(path, isBuffered);
            QVERIFY(outcome.isOpen);
            QCOMPARE(outcome.labelSets, labelSets);
            QCOMPARE(outcome.fields.size(), 9);
            for (const auto &[place, field] : fields)
                QCOMPARE(outcome.fields.at(place), QString(field));
            QCOMPARE(outcome.line, line);
        }
    }

    QString write(const QString &name, const QByteArray &bytes)
    {
        const QString path = directory.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s cannot be written", qPrintable(path));
        return path;
    }

    // The longest beginning of a Stata file for which ReadStat's passes end with the wanted results; "" if there is
    // none.
    template <typename Wanted> QString cutWhere(Wanted isWanted)
    {
        const QString path = write(QStringLiteral("cut.dta"), bytesOf(made + QStringLiteral("types-118.dta")));
        for (qint64 size = QFileInfo(path).size() - 1; size > 0; --size) {
            if (QFile::resize(path, size) && isWanted(passesOver(path)))
                return path;
        }
        return QString();
    }

    QTemporaryDir directory;
};

QTEST_APPLESS_MAIN(StatisticalBadInputTest)
#include "StatisticalBadInputTest.moc"
