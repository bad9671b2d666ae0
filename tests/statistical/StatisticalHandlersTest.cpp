#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "statistical/StatisticalImport_p.h"

#include <QProcess>
#include <QtTest>

#include <clocale>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>

// The handlers are called as ReadStat calls them.
struct TestAccess {
    template <typename Importer>
    static int label(Importer &importer, const char *set, const readstat_value_t &value, const char *text)
    {
        return Importer::handleValueLabel(set, value, text, &importer);
    }
    template <typename Importer> static int labelOfNobody(const readstat_value_t &value)
    {
        return Importer::handleValueLabel("set", value, "L", nullptr);
    }
    template <typename Importer> static int variable(Importer *importer, readstat_variable_t *variable, const char *set)
    {
        return Importer::handleVariable(0, variable, set, importer);
    }
    template <typename Importer> static bool open(Importer &importer) { return importer.openFile(); }
    template <typename Importer> static auto &labelSets(Importer &importer) { return importer.labelSets; }
    template <typename Importer> static auto &variables(Importer &importer) { return importer.variables; }
    template <typename Importer> static auto &byName(Importer &importer) { return importer.variablesByName; }
};

namespace
{

readstat_value_t textValue(const char *text)
{
    readstat_value_t value = {};
    value.type = READSTAT_TYPE_STRING;
    value.v.string_value = text;
    return value;
}

readstat_value_t intValue(int number)
{
    readstat_value_t value = {};
    value.type = READSTAT_TYPE_INT32;
    value.v.i32_value = number;
    return value;
}

readstat_value_t doubleValue(double number)
{
    readstat_value_t value = {};
    value.type = READSTAT_TYPE_DOUBLE;
    value.v.double_value = number;
    return value;
}

// No value of the enumeration has this number.
readstat_value_t valueOfNoType()
{
    readstat_value_t value = {};
    constexpr int noType = 99;
    std::memcpy(&value.type, &noType, sizeof(value.type));
    return value;
}

/// An importer of either format, with the fields that its handlers made.
class Twin
{
public:
    explicit Twin(bool takesSpss)
        : isSpss(takesSpss)
    {
    }
    ~Twin()
    {
        qDeleteAll(TestAccess::variables(spss));
        qDeleteAll(TestAccess::variables(stata));
        const auto &sets = isSpss ? TestAccess::labelSets(spss) : TestAccess::labelSets(stata);
        for (const auto &set : sets) {
            for (TStatValueLabel *label : *set.second) {
                delete[] label->label;
                delete[] label->stringValue;
                delete label;
            }
            delete set.second;
        }
    }
    Twin(const Twin &) = delete;
    Twin &operator=(const Twin &) = delete;

    int label(const readstat_value_t &value, const char *text, const char *set = "set")
    {
        return isSpss ? TestAccess::label(spss, set, value, text) : TestAccess::label(stata, set, value, text);
    }
    statistical::LabelSets &sets() { return isSpss ? TestAccess::labelSets(spss) : TestAccess::labelSets(stata); }
    const TStatValueLabel &first() { return *sets().at("set")->front(); }

    /// The field of a variable of this type and format.
    const TGenericField &field(readstat_type_t type, const char *format = "", const char *set = nullptr,
                               const std::function<void(readstat_variable_t &)> &prepare = {})
    {
        readstat_variable_t variable = {};
        variable.type = type;
        qstrncpy(variable.name, "V", sizeof(variable.name));
        qstrncpy(variable.format, format, sizeof(variable.format));
        if (prepare)
            prepare(variable);
        if (isSpss) {
            TestAccess::variable(&spss, &variable, set);
            return *TestAccess::variables(spss).back();
        }
        TestAccess::variable(&stata, &variable, set);
        return *TestAccess::variables(stata).back();
    }

    bool isSpss;
    TSTATADataImport stata;
    TSPSSDataImport spss;
};

// Adds a row for each of the two formats.
void addTwins()
{
    QTest::addColumn<bool>("isSpss");
    QTest::newRow("stata") << false;
    QTest::newRow("spss") << true;
}

const char *nameOf(bool isSpss)
{
    return isSpss ? "spss" : "stata";
}

QString nines(int count)
{
    return QString(count, QLatin1Char('9'));
}

} // namespace

/// Tests the results of the handlers for the labels and variables that ReadStat reports.
class StatisticalHandlersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueGoesToTheMemberOfItsType_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<int>("type");
        QTest::addColumn<qint64>("bits");
        QTest::addColumn<double>("doubleHeld");
        QTest::addColumn<int>("intHeld");
        for (const bool isSpss : { false, true }) {
            const char *name = nameOf(isSpss);
            const auto bitsOf = [](double number) {
                qint64 bits = 0;
                std::memcpy(&bits, &number, sizeof(bits));
                return bits;
            };
            QTest::addRow("%s: double", name) << isSpss << int(READSTAT_TYPE_DOUBLE) << bitsOf(2.5) << 2.5 << -1;
            QTest::addRow("%s: float, its eight bytes unconverted", name)
                << isSpss << int(READSTAT_TYPE_FLOAT) << bitsOf(2.5) << 2.5 << -1;
            QTest::addRow("%s: int8, sign extended", name)
                << isSpss << int(READSTAT_TYPE_INT8) << qint64(0x12345680) << -1.0 << -128;
            QTest::addRow("%s: int16, sign extended", name)
                << isSpss << int(READSTAT_TYPE_INT16) << qint64(0x12348000) << -1.0 << -32768;
            QTest::addRow("%s: int32", name)
                << isSpss << int(READSTAT_TYPE_INT32) << qint64(0x7FFFFFFF) << -1.0 << 0x7FFFFFFF;
            QTest::addRow("%s: string reference is -88", name)
                << isSpss << int(READSTAT_TYPE_STRING_REF) << qint64(5) << -1.0 << -88;
        }
    }
    void valueGoesToTheMemberOfItsType()
    {
        QFETCH(bool, isSpss);
        QFETCH(int, type);
        QFETCH(qint64, bits);
        Twin twin(isSpss);
        readstat_value_t value = {};
        std::memcpy(&value.v, &bits, sizeof(bits));
        value.type = readstat_type_t(type);
        QCOMPARE(twin.label(value, "Yes"), int(READSTAT_HANDLER_OK));
        const TStatValueLabel &label = twin.first();
        QTEST(label.doubleValue, "doubleHeld");
        QTEST(label.intValue, "intHeld");
        QVERIFY(!label.stringValue);
        QCOMPARE(label.stringLength, size_t(0));
        QCOMPARE(QByteArray(label.label), QByteArray("Yes"));
        QCOMPARE(label.labelLength, size_t(3));
    }

    void newLabelHoldsNoValue()
    {
        const TStatValueLabel label;
        QCOMPARE(label.doubleValue, -1.0);
        QCOMPARE(label.intValue, -1);
        QVERIFY(!label.stringValue);
        QCOMPARE(label.stringLength, size_t(0));
        QVERIFY(!label.label);
        QCOMPARE(label.labelLength, size_t(0));
    }

    void textsAreCopied_data() { addTwins(); }
    void textsAreCopied()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        char value[] = "M";
        char text[] = "Male";
        QCOMPARE(twin.label(textValue(value), text), int(READSTAT_HANDLER_OK));
        value[0] = text[0] = 'x';
        const TStatValueLabel &label = twin.first();
        QCOMPARE(QByteArray(label.stringValue), QByteArray("M"));
        QCOMPARE(label.stringLength, size_t(1));
        QCOMPARE(QByteArray(label.label), QByteArray("Male"));
        QCOMPARE(label.doubleValue, -1.0);
        QCOMPARE(label.intValue, -1);
    }

    void labelWithoutTextIsDroppedAndItsSetIsMade_data() { addTwins(); }
    void labelWithoutTextIsDroppedAndItsSetIsMade()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        QCOMPARE(twin.label(intValue(1), nullptr), int(READSTAT_HANDLER_OK));
        QCOMPARE(twin.sets().size(), size_t(1));
        QVERIFY(twin.sets().at("set")->empty());
    }

    void labelsOfASetAreInTheirOrder_data() { addTwins(); }
    void labelsOfASetAreInTheirOrder()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(intValue(3), "Three", "a");
        twin.label(intValue(7), "Seven", "b");
        twin.label(intValue(1), "One", "a");
        QCOMPARE(twin.sets().size(), size_t(2));
        QCOMPARE(twin.sets().at("a")->size(), size_t(2));
        QCOMPARE(twin.sets().at("a")->at(0)->intValue, 3);
        QCOMPARE(twin.sets().at("a")->at(1)->intValue, 1);
        QCOMPARE(twin.sets().at("b")->at(0)->intValue, 7);
    }

    void setsAreKeptApartByTheirWholeNames_data() { addTwins(); }
    void setsAreKeptApartByTheirWholeNames()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        const QByteArray common(5000, 'n');
        const QByteArray first = common + '1';
        const QByteArray second = common + '2';
        twin.label(doubleValue(1), "One", first.constData());
        twin.label(doubleValue(2), "Two", second.constData());
        QCOMPARE(twin.sets().size(), size_t(2));
        QCOMPARE(twin.sets().count(first.toStdString()), size_t(1));
        QCOMPARE(twin.field(READSTAT_TYPE_DOUBLE, "F8.2", second.constData()).valueLabels,
                 QStringLiteral("2.000000 Two\t"));
    }

    void flagsOfAValueAreNotLookedAt_data() { addTwins(); }
    void flagsOfAValueAreNotLookedAt()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        readstat_value_t value = intValue(5);
        value.is_system_missing = 1;
        value.is_tagged_missing = 1;
        value.tag = 'a';
        twin.label(value, "Missing");
        QCOMPARE(twin.first().intValue, 5);
    }

    void unknownValueTypeEndsTheProcess_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<QString>("text");
        for (const bool isSpss : { false, true }) {
            QTest::addRow("%s", nameOf(isSpss)) << isSpss << "L";
            QTest::addRow("%s, a label without text", nameOf(isSpss)) << isSpss << "-without-text";
        }
    }
    void unknownValueTypeEndsTheProcess()
    {
        QFETCH(bool, isSpss);
        QFETCH(QString, text);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    { QStringLiteral("-unknown-type"), QLatin1String(nameOf(isSpss)), text });
        QVERIFY(child.waitForFinished());
        QCOMPARE(int(child.exitStatus()), int(QProcess::NormalExit));
        QCOMPARE(child.exitCode(), 1);
        const QRegularExpression line(isSpss ? QStringLiteral("^SPSSDataImport:[0-9]+ unsupported type!\n")
                                             : QStringLiteral("^STATADataImport:[0-9]+ unsupported type!\n"));
        const QString problem = QString::fromUtf8(child.readAllStandardError());
        QVERIFY2(line.match(problem).hasMatch(), qPrintable(problem));
        QVERIFY(child.readAllStandardOutput().isEmpty());
    }

    void fieldTypeGoesByTheVariable_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<int>("fieldType");
        const auto both = [](const char *name, int type, const char *format, int stataType, int spssType) {
            QTest::addRow("stata: %s", name) << false << type << QByteArray(format) << stataType;
            QTest::addRow("spss: %s", name) << true << type << QByteArray(format) << spssType;
        };
        both("text", READSTAT_TYPE_STRING, "A8", vtString, vtString);
        both("int8", READSTAT_TYPE_INT8, "F8.2", vtInteger, vtInteger);
        both("int16", READSTAT_TYPE_INT16, "", vtInteger, vtInteger);
        both("int32", READSTAT_TYPE_INT32, "", vtInteger, vtInteger);
        both("float without decimals", READSTAT_TYPE_FLOAT, "F8.0", vtReal, vtInteger);
        both("float with decimals", READSTAT_TYPE_FLOAT, "F8.2", vtReal, vtReal);
        both("double without decimals", READSTAT_TYPE_DOUBLE, "F8.0", vtReal, vtInteger);
        both("double with decimals", READSTAT_TYPE_DOUBLE, "F8.2", vtReal, vtReal);
        both("double without a format", READSTAT_TYPE_DOUBLE, "", vtReal, vtInteger);
        both("nothing after the point", READSTAT_TYPE_DOUBLE, "F8.", vtReal, vtInteger);
        both("zeros after the point", READSTAT_TYPE_DOUBLE, "F8.00", vtReal, vtInteger);
        both("ten after the point", READSTAT_TYPE_DOUBLE, "F18.10", vtReal, vtReal);
        both("zero and a digit", READSTAT_TYPE_DOUBLE, "F8.05", vtReal, vtReal);
        both("a letter after the point", READSTAT_TYPE_DOUBLE, "F8.x2", vtReal, vtInteger);
        both("exponent", READSTAT_TYPE_DOUBLE, "E12.5", vtReal, vtReal);
        both("time with decimals", READSTAT_TYPE_DOUBLE, "DATETIME23.2", vtReal, vtReal);
        both("string reference has no type", READSTAT_TYPE_STRING_REF, "", vtNone, vtNone);
    }
    void fieldTypeGoesByTheVariable()
    {
        QFETCH(bool, isSpss);
        QFETCH(int, type);
        QFETCH(QByteArray, format);
        Twin twin(isSpss);
        QTEST(int(twin.field(readstat_type_t(type), format.constData()).type), "fieldType");
    }

    void decimalsOfTheVariableHoldOverItsFormat()
    {
        Twin twin(true);
        const auto withDecimals = [](readstat_variable_t &variable) { variable.decimals = 2; };
        QCOMPARE(int(twin.field(READSTAT_TYPE_DOUBLE, "F8.0", nullptr, withDecimals).type), int(vtReal));
    }

    void variableOfNoTypeHasNoType_data() { addTwins(); }
    void variableOfNoTypeHasNoType()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(intValue(3), "Three");
        const auto prepare = [](readstat_variable_t &variable) {
            constexpr int noType = 42;
            std::memcpy(&variable.type, &noType, sizeof(variable.type));
            variable.storage_width = 2;
        };
        const TGenericField &field = twin.field(READSTAT_TYPE_STRING, "F2", "set", prepare);
        QCOMPARE(int(field.type), int(vtNone));
        // It does not count as a number: its labels do not become its range.
        QCOMPARE(field.valueLabels, QStringLiteral("3 Three\t"));
        QCOMPARE(field.maximum, QStringLiteral("99"));
    }

    void fieldIsMarkedAsOptionalAndBelongsToTheImporter_data() { addTwins(); }
    void fieldIsMarkedAsOptionalAndBelongsToTheImporter()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        const TGenericField &field = twin.field(READSTAT_TYPE_STRING);
        QVERIFY(field.optional);
        QVERIFY(field.owner == (isSpss ? static_cast<TDataImport *>(&twin.spss) : &twin.stata));
        QCOMPARE(field.notApplicable, QString());
        QCOMPARE(field.missingValue, QString());
        QCOMPARE(field.decimals, QString());
        QCOMPARE(field.start, 0);
    }

    void nameIsUtf8AndTheLabelGoesByTheFormat_data() { addTwins(); }
    void nameIsUtf8AndTheLabelGoesByTheFormat()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        const auto prepare = [](readstat_variable_t &variable) {
            qstrncpy(variable.name, "\xC3\x89tat", sizeof(variable.name));
            qstrncpy(variable.label, "Caf\xC3\xA9", sizeof(variable.label));
        };
        const TGenericField &field = twin.field(READSTAT_TYPE_STRING, "", nullptr, prepare);
        QCOMPARE(field.name, QString::fromUtf8("\xC3\x89tat"));
        // Stata's labels are read byte by byte, although ReadStat delivers UTF-8.
        QCOMPARE(field.label, isSpss ? QString::fromUtf8("Caf\xC3\xA9") : QString::fromLatin1("Caf\xC3\xA9"));
    }

    void fieldsThatAreFullNeedNoEndMark_data() { addTwins(); }
    void fieldsThatAreFullNeedNoEndMark()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        const auto prepare = [](readstat_variable_t &variable) {
            std::memset(variable.name, 'n', sizeof(variable.name));
            std::memset(variable.label, 'l', sizeof(variable.label));
            std::memset(variable.format, '3', sizeof(variable.format));
        };
        const TGenericField &field = twin.field(READSTAT_TYPE_DOUBLE, "", nullptr, prepare);
        QCOMPARE(field.name, QString(int(sizeof(readstat_variable_t::name)), QLatin1Char('n')));
        QCOMPARE(field.label, QString(int(sizeof(readstat_variable_t::label)), QLatin1Char('l')));
    }

    void widthOfSpssIsOneDigitOfTheFormat_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<int>("width");
        QTest::newRow("F8.2") << QByteArray("F8.2") << 8;
        QTest::newRow("A8") << QByteArray("A8") << 8;
        QTest::newRow("F10.2: first digit only") << QByteArray("F10.2") << 1;
        QTest::newRow("A20: first digit only") << QByteArray("A20") << 2;
        QTest::newRow("DATE11: no digit there") << QByteArray("DATE11") << 0;
        QTest::newRow("sign") << QByteArray("F+8") << 0;
        QTest::newRow("blank") << QByteArray("F 8") << 0;
        QTest::newRow("not ASCII") << QByteArray("F\xB2") << 0;
        QTest::newRow("one character") << QByteArray("F") << 0;
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("digit first") << QByteArray("99") << 9;
    }
    void widthOfSpssIsOneDigitOfTheFormat()
    {
        QFETCH(QByteArray, format);
        QFETCH(int, width);
        Twin twin(true);
        const auto prepare = [](readstat_variable_t &variable) { variable.storage_width = 77; };
        const TGenericField &number = twin.field(READSTAT_TYPE_DOUBLE, format.constData(), nullptr, prepare);
        QCOMPARE(number.length, width);
        QCOMPARE(number.minimum, QStringLiteral("0"));
        QCOMPARE(number.maximum, nines(width));
        const TGenericField &text = twin.field(READSTAT_TYPE_STRING, format.constData(), nullptr, prepare);
        QCOMPARE(text.length, width);
        QCOMPARE(text.minimum, QString());
        QCOMPARE(text.maximum, QString());
    }

    void widthOfStataIsItsStorage_data()
    {
        QTest::addColumn<quint64>("storage");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("count");
        QTest::newRow("byte") << quint64(1) << 1 << 1;
        QTest::newRow("double") << quint64(8) << 8 << 8;
        QTest::newRow("text of 5") << quint64(5) << 5 << 5;
        QTest::newRow("nothing") << quint64(0) << 0 << 0;
        QTest::newRow("cut to 32 bits") << quint64(0x100000003) << 3 << 3;
        QTest::newRow("negative in 32 bits") << quint64(0xFFFFFFFF) << -1 << 0;
        QTest::newRow("more nines than any number has") << quint64(0x7FFFFFFF) << 0x7FFFFFFF << Nines::maxWidth;
    }
    void widthOfStataIsItsStorage()
    {
        QFETCH(quint64, storage);
        Twin twin(false);
        for (const readstat_type_t type : { READSTAT_TYPE_STRING, READSTAT_TYPE_INT8, READSTAT_TYPE_DOUBLE }) {
            const TGenericField &field = twin.field(
                type, "%8.0g", nullptr, [&](readstat_variable_t &variable) { variable.storage_width = storage; });
            QTEST(field.length, "width");
            // Texts have a range nevertheless.
            QCOMPARE(field.minimum, QStringLiteral("0"));
            QTEST(int(field.maximum.size()), "count");
            QCOMPARE(field.maximum.count(QLatin1Char('9')), field.maximum.size());
        }
    }

    void valueIsWrittenByTheFirstRuleThatFits_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<double>("doubleHeld");
        QTest::addColumn<int>("intHeld");
        QTest::addColumn<QByteArray>("textHeld");
        QTest::addColumn<QString>("labels");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QByteArray large(600, '\0');
        large.resize(std::snprintf(large.data(), size_t(large.size()), "%f", 1e300));
        for (const bool isSpss : { false, true }) {
            const char *name = nameOf(isSpss);
            const auto row
                = [&](const char *what) -> QTestData & { return QTest::addRow("%s: %s", name, what) << isSpss; };
            row("integer") << -1.0 << 12 << QByteArray() << QStringLiteral("12 L\t");
            row("integer before double") << 3.5 << 12 << QByteArray() << QStringLiteral("12 L\t");
            row("integer before text") << -1.0 << 12 << QByteArray("t") << QStringLiteral("12 L\t");
            row("double") << 2.5 << -1 << QByteArray() << QStringLiteral("2.500000 L\t");
            row("double before text") << 2.5 << -1 << QByteArray("t") << QStringLiteral("2.500000 L\t");
            row("double with more digits") << 0.1234567 << -1 << QByteArray() << QStringLiteral("0.123457 L\t");
            row("large double") << 1e300 << -1 << QByteArray() << (QString::fromLatin1(large) + QLatin1String(" L\t"));
            row("negative zero") << -0.0 << -1 << QByteArray() << QStringLiteral("-0.000000 L\t");
            row("no number is not -1") << nan << -1 << QByteArray() << QStringLiteral("nan L\t");
            row("infinity") << HUGE_VAL << -1 << QByteArray() << QStringLiteral("inf L\t");
            row("text") << -1.0 << -1 << QByteArray("t") << QStringLiteral("t L\t");
            row("empty text") << -1.0 << -1 << QByteArray("") << QStringLiteral(" L\t");
            row("longer than 512 bytes, whole")
                << -1.0 << -1 << QByteArray(700, 'x') << (QString(700, QLatin1Char('x')) + QLatin1String(" L\t"));
        }
    }
    void valueIsWrittenByTheFirstRuleThatFits()
    {
        QFETCH(bool, isSpss);
        QFETCH(double, doubleHeld);
        QFETCH(int, intHeld);
        QFETCH(QByteArray, textHeld);
        Twin twin(isSpss);
        twin.label(textHeld.isNull() ? intValue(0) : textValue(textHeld.constData()), "L");
        TStatValueLabel *label = twin.sets().at("set")->front();
        label->doubleValue = doubleHeld;
        label->intValue = intHeld;
        QTEST(twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set").valueLabels, "labels");
    }

    void labelOfMinusOneIsLost_data() { addTwins(); }
    void labelOfMinusOneIsLost()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(intValue(-1), "Lost");
        twin.label(intValue(3), "Three");
        twin.label(doubleValue(-1.0), "Lost too");
        const TGenericField &field = twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set");
        QCOMPARE(field.valueLabels, QStringLiteral("3 Three\t"));
        QCOMPARE(field.minimum, QStringLiteral("3"));
        QCOMPARE(field.maximum, QStringLiteral("3"));
    }

    void labelTextGoesByTheFormat_data() { addTwins(); }
    void labelTextGoesByTheFormat()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(textValue("\xC3\xA9"), "Caf\xC3\xA9");
        twin.label(textValue("x"), "");
        const char expected[] = "\xC3\xA9 Caf\xC3\xA9\tx \t";
        QCOMPARE(twin.field(READSTAT_TYPE_STRING, "A8", "set").valueLabels,
                 isSpss ? QString::fromUtf8(expected) : QString::fromLatin1(expected));
    }

    void labelsGiveTheRangeOfANumber_data()
    {
        QTest::addColumn<QVector<double>>("values");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");
        using Values = QVector<double>;
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("span") << Values{ 5, 2, 9 } << "2"
                              << "9";
        QTest::newRow("one value sets both") << Values{ 4 } << "4"
                                             << "4";
        QTest::newRow("six digits") << Values{ 1234567 } << "1.23457e+06"
                                    << "1.23457e+06";
        QTest::newRow("negative and fractions") << Values{ -2.5, 0.25 } << "-2.5"
                                                << "0.25";
        QTest::newRow("none lies below where the search begins") << Values{ 1e9 } << "0"
                                                                 << "1e+09";
        QTest::newRow("the start itself is not below") << Values{ 999999999 } << "0"
                                                       << "1e+09";
        QTest::newRow("none lies above where the search begins") << Values{ -1e9 } << "-1e+09"
                                                                 << "9999";
        QTest::newRow("the start itself is not above") << Values{ -999999999 } << "-1e+09"
                                                       << "9999";
        QTest::newRow("what is no number moves nothing") << Values{ nan } << "0"
                                                         << "9999";
        QTest::newRow("infinite") << Values{ HUGE_VAL, -HUGE_VAL } << "-inf"
                                  << "inf";
        QTest::newRow("no label") << Values{} << "0"
                                  << "9999";
    }
    void labelsGiveTheRangeOfANumber()
    {
        QFETCH(QVector<double>, values);
        for (const bool isSpss : { false, true }) {
            Twin twin(isSpss);
            twin.sets()["set"] = new statistical::LabelSet;
            for (const double value : qAsConst(values))
                twin.label(doubleValue(value), "L");
            const TGenericField &field = twin.field(READSTAT_TYPE_DOUBLE, "F4.2", "set",
                                                    [](readstat_variable_t &variable) { variable.storage_width = 4; });
            QTEST(field.minimum, "minimum");
            QTEST(field.maximum, "maximum");
        }
    }

    void textsWithLabelsKeepTheirRange_data() { addTwins(); }
    void textsWithLabelsKeepTheirRange()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(intValue(3), "Three");
        const TGenericField &field = twin.field(READSTAT_TYPE_STRING, "A5", "set",
                                                [](readstat_variable_t &variable) { variable.storage_width = 5; });
        QCOMPARE(field.valueLabels, QStringLiteral("3 Three\t"));
        QCOMPARE(field.minimum, isSpss ? QString() : QStringLiteral("0"));
        QCOMPARE(field.maximum, isSpss ? QString() : nines(5));
    }

    void unknownLabelSetIsNone_data() { addTwins(); }
    void unknownLabelSetIsNone()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(intValue(3), "Three", "other");
        const TGenericField &field = twin.field(READSTAT_TYPE_INT8, "F1.0", "set",
                                                [](readstat_variable_t &variable) { variable.storage_width = 1; });
        QCOMPARE(field.valueLabels, QString());
        QCOMPARE(field.minimum, QStringLiteral("0"));
        QCOMPARE(field.maximum, QStringLiteral("9"));
        QCOMPARE(twin.sets().size(), size_t(1)); // a search makes none
    }

    void nullLabelIsPassedOver_data() { addTwins(); }
    void nullLabelIsPassedOver()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(doubleValue(2), "Two");
        statistical::LabelSet &set = *twin.sets().at("set");
        set.push_back(nullptr);
        twin.label(doubleValue(7), "Seven");
        const TGenericField &real = twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set");
        QCOMPARE(real.valueLabels, QStringLiteral("2.000000 Two\t7.000000 Seven\t"));
        QCOMPARE(real.minimum, QStringLiteral("2"));
        QCOMPARE(real.maximum, QStringLiteral("7"));
        const TGenericField &whole = twin.field(READSTAT_TYPE_DOUBLE, "F8.0", "set");
        QCOMPARE(whole.valueLabels, isSpss ? QStringLiteral("2 Two\t7 Seven\t") : real.valueLabels);
        set.erase(set.begin() + 1);
    }

    void labelWithoutItsTextIsOnlyItsValue_data() { addTwins(); }
    void labelWithoutItsTextIsOnlyItsValue()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.label(intValue(3), "Three");
        auto label = std::make_unique<TStatValueLabel>();
        label->intValue = 4;
        twin.sets().at("set")->push_back(label.release());
        QCOMPARE(twin.field(READSTAT_TYPE_INT8, "F1.0", "set").valueLabels, QStringLiteral("3 Three\t4 \t"));
    }

    void nullLabelSetIsNone_data() { addTwins(); }
    void nullLabelSetIsNone()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        twin.sets()["set"] = nullptr;
        const TGenericField &field = twin.field(READSTAT_TYPE_INT8, "F1.0", "set",
                                                [](readstat_variable_t &variable) { variable.storage_width = 1; });
        QCOMPARE(field.valueLabels, QString());
        QCOMPARE(field.minimum, QStringLiteral("0"));
        QCOMPARE(field.maximum, QStringLiteral("9"));
        twin.sets().clear();
    }

    void spssVariableWithoutDecimalsTurnsTheSetToIntegers()
    {
        Twin twin(true);
        for (const double value : { 1.0, 2.5, -1.5, 1e10, -1e10, 7.9 })
            twin.label(doubleValue(value), "L");
        twin.label(doubleValue(std::numeric_limits<double>::quiet_NaN()), "N");
        const TGenericField &before = twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set");
        QVERIFY(before.valueLabels.startsWith(QStringLiteral("1.000000 L\t2.500000 L\t-1.500000 L\t")));
        QCOMPARE(before.minimum, QStringLiteral("-1e+10"));
        // -1.5 becomes -1 and is lost; a number that an int32 cannot hold becomes the smallest int32.
        const QString turned = QStringLiteral("1 L\t2 L\t-2147483648 L\t-2147483648 L\t7 L\t-2147483648 N\t");
        QCOMPARE(twin.field(READSTAT_TYPE_DOUBLE, "F8.0", "set").valueLabels, turned);
        QCOMPARE(twin.first().intValue, 1);
        QCOMPARE(twin.first().doubleValue, -1.0);
        const TGenericField &after = twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set");
        QCOMPARE(after.valueLabels, turned);
        QCOMPARE(int(after.type), int(vtReal));
        QCOMPARE(after.minimum, QStringLiteral("-2.14748e+09"));
        QCOMPARE(after.maximum, QStringLiteral("7"));
    }

    void spssTextsWithoutDecimalsTurnTheSetTooAndLeaveTexts()
    {
        Twin twin(true);
        twin.label(doubleValue(2.5), "L");
        twin.label(textValue("x"), "T");
        QCOMPARE(twin.field(READSTAT_TYPE_STRING, "A8", "set").valueLabels, QStringLiteral("2 L\tx T\t"));
    }

    void spssVariableOfEachTypeWithoutDecimalsTurnsTheSet_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("int8") << int(READSTAT_TYPE_INT8);
        QTest::newRow("int16") << int(READSTAT_TYPE_INT16);
        QTest::newRow("int32") << int(READSTAT_TYPE_INT32);
        QTest::newRow("float") << int(READSTAT_TYPE_FLOAT);
        QTest::newRow("double") << int(READSTAT_TYPE_DOUBLE);
        QTest::newRow("text") << int(READSTAT_TYPE_STRING);
        QTest::newRow("string reference") << int(READSTAT_TYPE_STRING_REF);
    }
    void spssVariableOfEachTypeWithoutDecimalsTurnsTheSet()
    {
        QFETCH(int, type);
        Twin twin(true);
        twin.label(doubleValue(2.5), "L");
        QCOMPARE(twin.field(readstat_type_t(type), "F8.0", "set").valueLabels, QStringLiteral("2 L\t"));
        QCOMPARE(twin.first().intValue, 2);
        QCOMPARE(twin.first().doubleValue, -1.0);
        // A variable with decimals that comes later sees it.
        QCOMPARE(twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set").valueLabels, QStringLiteral("2 L\t"));
    }

    void stataLeavesDoublesInTheSet()
    {
        Twin twin(false);
        twin.label(doubleValue(2), "L");
        QCOMPARE(twin.field(READSTAT_TYPE_DOUBLE, "%8.0g", "set").valueLabels, QStringLiteral("2.000000 L\t"));
        QCOMPARE(twin.first().doubleValue, 2.0);
    }

    void variablesAreKeptInOrderAndByTheAddressOfTheName_data() { addTwins(); }
    void variablesAreKeptInOrderAndByTheAddressOfTheName()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        readstat_variable_t variables[2] = {};
        for (readstat_variable_t &variable : variables) {
            qstrncpy(variable.name, "same", sizeof(variable.name));
            const int result = isSpss ? TestAccess::variable(&twin.spss, &variable, nullptr)
                                      : TestAccess::variable(&twin.stata, &variable, nullptr);
            QCOMPARE(result, int(READSTAT_HANDLER_OK));
        }
        const auto verify = [&](const auto &list, const auto &byName) {
            QCOMPARE(list.size(), size_t(2));
            QCOMPARE(byName.size(), size_t(2)); // by address: the texts are the same
            QVERIFY(byName.at(variables[0].name) == list[0]);
            QVERIFY(byName.at(variables[1].name) == list[1]);
        };
        if (isSpss)
            verify(TestAccess::variables(twin.spss), TestAccess::byName(twin.spss));
        else
            verify(TestAccess::variables(twin.stata), TestAccess::byName(twin.stata));
    }

    void nothingToWorkOnDoesNoHarm_data() { addTwins(); }
    void nothingToWorkOnDoesNoHarm()
    {
        QFETCH(bool, isSpss);
        Twin twin(isSpss);
        readstat_variable_t variable = {};
        QCOMPARE(twin.label(intValue(1), "L", nullptr), int(READSTAT_HANDLER_OK));
        QVERIFY(twin.sets().empty());
        QCOMPARE(twin.label(textValue(nullptr), "L"), int(READSTAT_HANDLER_OK));
        QVERIFY(!twin.first().stringValue);
        QCOMPARE(twin.field(READSTAT_TYPE_STRING, "A8", "set").valueLabels, QString());
        if (isSpss) {
            QCOMPARE(TestAccess::labelOfNobody<TSPSSDataImport>(intValue(1)), int(READSTAT_HANDLER_OK));
            QCOMPARE(TestAccess::variable<TSPSSDataImport>(nullptr, &variable, nullptr), int(READSTAT_HANDLER_OK));
            QCOMPARE(TestAccess::variable(&twin.spss, nullptr, nullptr), int(READSTAT_HANDLER_OK));
        } else {
            QCOMPARE(TestAccess::labelOfNobody<TSTATADataImport>(intValue(1)), int(READSTAT_HANDLER_OK));
            QCOMPARE(TestAccess::variable<TSTATADataImport>(nullptr, &variable, nullptr), int(READSTAT_HANDLER_OK));
            QCOMPARE(TestAccess::variable(&twin.stata, nullptr, nullptr), int(READSTAT_HANDLER_OK));
        }
    }

    // A reading keeps the text of a label set once a variable has it. A call outside of a parse has a new reading.
    void callOutsideAParseKeepsNothingForTheNextOne_data()
    {
        QTest::addColumn<bool>("isSpss");
        QTest::addColumn<bool>("afterOpening");
        for (const bool isSpss : { false, true }) {
            QTest::addRow("%s", nameOf(isSpss)) << isSpss << false;
            QTest::addRow("%s, after an opening", nameOf(isSpss)) << isSpss << true;
        }
    }
    void callOutsideAParseKeepsNothingForTheNextOne()
    {
        QFETCH(bool, isSpss);
        QFETCH(bool, afterOpening);
        Twin twin(isSpss);
        twin.stata.setErrorStream(nullptr);
        if (afterOpening)
            QVERIFY(isSpss ? TestAccess::open(twin.spss) : TestAccess::open(twin.stata));
        twin.label(intValue(1), "One");
        QCOMPARE(twin.field(READSTAT_TYPE_INT32, "F8", "set").valueLabels, QStringLiteral("1 One\t"));
        twin.label(intValue(2), "Two");
        QCOMPARE(twin.field(READSTAT_TYPE_INT32, "F8", "set").valueLabels, QStringLiteral("1 One\t2 Two\t"));
    }

    void valueIsTheSameInALocaleWithADecimalComma()
    {
        qputenv("LOCPATH", VAN_LOCALES); // made for this test
        QVERIFY2(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"),
                 "needs localedef and its sources: Debian's package locales");
        QCOMPARE(std::localeconv()->decimal_point, ",");
        Twin twin(true);
        twin.label(doubleValue(2.5), "L");
        const QString labels = twin.field(READSTAT_TYPE_DOUBLE, "F8.2", "set").valueLabels;
        std::setlocale(LC_NUMERIC, "C");
        QCOMPARE(labels, QStringLiteral("2.500000 L\t"));
    }
};

// The program runs itself as a child process, which passes a value of an unknown type.
int main(int argc, char **argv)
{
    if (argc == 4 && std::strcmp(argv[1], "-unknown-type") == 0) {
        Twin twin(std::strcmp(argv[2], "spss") == 0);
        twin.label(valueOfNoType(), std::strcmp(argv[3], "-without-text") == 0 ? nullptr : argv[3]);
        return 0;
    }
    const QCoreApplication application(argc, argv);
    StatisticalHandlersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "StatisticalHandlersTest.moc"
