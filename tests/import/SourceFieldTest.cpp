#include "import/SourceField.h"
#include "support/Callable.h"
#include "support/NamedNumber.h"

#include <QtTest>

#include <memory>
#include <type_traits>

struct TestAccess {
    static eVanVarType fieldTypeIndex(const TVpSourceField &field) { return field.getFieldTypeIndex(); }
    static eDataProviderType dataProviderTypeIndex(const TVpSourceField &field)
    {
        return field.getDataProviderTypeIndex();
    }
    static bool isString(const TVpSourceField &field) { return field.isString(); }
};

namespace
{

CALLABLE(CallsGetFieldTypeIndex, getFieldTypeIndex());
CALLABLE(CallsGetDataProviderTypeIndex, getDataProviderTypeIndex());
CALLABLE(CallsIsString, isString());
CALLABLE(CallsGetFieldType, getFieldType());
CALLABLE(CallsSetFieldType, setFieldType(QString()));
CALLABLE(CallsGetDataProviderType, getDataProviderType());
CALLABLE(CallsSetDataProviderType, setDataProviderType(QString()));
CALLABLE(CallsGetStringValue, getStringValue(QString()));

class Insider : public TVpSourceField
{
public:
    template <typename T> static auto reachesIsString(T *field) -> decltype(field->isString(), true) { return true; }
    static bool reachesIsString(...) { return false; }
};

QStringList textsOf(const TVpSourceField &field)
{
    return { field.fieldName,     field.label,        field.valueLabels,     field.minimum,    field.maximum,
             field.notApplicable, field.missingValue, field.text1,           field.text2,      field.text3,
             field.providerId,    field.group,        field.text4,           field.blankValue, field.text5,
             field.text6,         field.FieldType,    field.DataProviderType };
}

QStringList numbersOf(const TVpSourceField &field)
{
    return { named("decimals", field.decimals),
             named("length", field.length),
             named("start", field.start),
             named("number1", field.number1),
             named("isBlankValue", field.isBlankValue),
             named("flag1", field.flag1),
             named("flag2", field.flag2),
             named("number2", field.number2),
             named("flag3", field.flag3),
             named("number3", field.number3),
             named("number4", field.number4),
             named("fieldTypeIndex", field.fieldTypeIndex),
             named("dataProviderTypeIndex", field.dataProviderTypeIndex) };
}

const QStringList filledTexts = { "t1",  "t2",  "t3",  "t4",  "t5",  "t6",  "t7",  "t8",  "t9",
                                  "t10", "t11", "t12", "t13", "t14", "t15", "t16", "t17", "t18" };
const QStringList filledNumbers = { "decimals=1",
                                    "length=2",
                                    "start=3",
                                    "number1=4",
                                    "isBlankValue=1",
                                    "flag1=0",
                                    "flag2=1",
                                    "number2=5",
                                    "flag3=1",
                                    "number3=6",
                                    "number4=7",
                                    named("fieldTypeIndex", vtReal),
                                    named("dataProviderTypeIndex", dpStata) };

void fill(TVpSourceField &field)
{
    field.fieldName = "t1";
    field.label = "t2";
    field.valueLabels = "t3";
    field.minimum = "t4";
    field.maximum = "t5";
    field.notApplicable = "t6";
    field.missingValue = "t7";
    field.text1 = "t8";
    field.text2 = "t9";
    field.text3 = "t10";
    field.providerId = "t11";
    field.group = "t12";
    field.text4 = "t13";
    field.blankValue = "t14";
    field.text5 = "t15";
    field.text6 = "t16";
    field.FieldType = "t17";
    field.DataProviderType = "t18";
    field.decimals = 1;
    field.length = 2;
    field.start = 3;
    field.number1 = 4;
    field.isBlankValue = true;
    field.flag1 = false;
    field.flag2 = true;
    field.number2 = 5;
    field.flag3 = true;
    field.number3 = 6;
    field.number4 = 7;
    field.fieldTypeIndex = vtReal;
    field.dataProviderTypeIndex = dpStata;
}

} // namespace

class SourceFieldTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newFieldHasTheseDefaults()
    {
        const TVpSourceField field;
        for (const QString &text : textsOf(field))
            QCOMPARE(text, QString());
        QCOMPARE(nonZero(numbersOf(field)), QStringList("flag1=1"));
    }

    void typeTextsAreFiveInThisOrder()
    {
        const TVpSourceField field;
        QCOMPARE(*field.typeNames, QStringList({ "NONE", "CSPRO", "CSV", "SSPS", "STATA" }));
    }

    void everyFieldHasAListOfTypeTextsOfItsOwn()
    {
        TVpSourceField changed;
        const TVpSourceField other;
        QVERIFY(changed.typeNames != other.typeNames);
        changed.typeNames->append("SPSS");
        QCOMPARE(other.typeNames->size(), 5);
        QCOMPARE(TVpSourceField().typeNames->size(), 5);
    }

    void copyTakesEveryFieldAndSharesTheTypeTexts()
    {
        TVpSourceField field;
        fill(field);
        const TVpSourceField copy(field);
        QCOMPARE(textsOf(copy), filledTexts);
        QCOMPARE(numbersOf(copy), filledNumbers);
        QCOMPARE(copy.typeNames, field.typeNames);
    }

    void assignmentTakesEveryFieldAndSharesTheTypeTexts()
    {
        TVpSourceField field;
        fill(field);
        TVpSourceField target;
        target = field;
        QCOMPARE(textsOf(target), filledTexts);
        QCOMPARE(numbersOf(target), filledNumbers);
        QCOMPARE(target.typeNames, field.typeNames);
    }

    void moveTakesNothingFromItsArgument()
    {
        TVpSourceField field;
        fill(field);
        const TVpSourceField moved(std::move(field));
        for (const QString &text : textsOf(moved))
            QCOMPARE(text, QString());
        QCOMPARE(nonZero(numbersOf(moved)), QStringList());
        QCOMPARE(moved.typeNames, nullptr);
        QCOMPARE(textsOf(field), filledTexts);
        QCOMPARE(numbersOf(field), filledNumbers);
        QVERIFY(field.typeNames);
    }

    void movedFieldHasNoTypeTextsToFind()
    {
        TVpSourceField field;
        TVpSourceField moved(std::move(field));
        moved.setDataProviderType("CSPRO");
        QCOMPARE(moved.getDataProviderType(), QString());
        QCOMPARE(moved.getStringValue("abc"), QString());
    }

    void typeTextsOutliveTheirField()
    {
        auto field = std::make_unique<TVpSourceField>();
        const QStringList *typeNames = field->typeNames;
        field.reset();
        QCOMPARE(typeNames->size(), 5);
    }

    void destructorIsVirtual()
    {
        struct Derived : TVpSourceField {
            ~Derived() override = default;
        };
        QVERIFY(std::has_virtual_destructor_v<TVpSourceField>);
        QVERIFY((std::is_base_of_v<TVpSourceField, Derived>));
    }

    void indexesAndIsStringArePrivate()
    {
        QVERIFY(!CallsGetFieldTypeIndex<TVpSourceField>::value);
        QVERIFY(!CallsGetDataProviderTypeIndex<TVpSourceField>::value);
        QVERIFY(!CallsIsString<TVpSourceField>::value);
        QVERIFY(!Insider::reachesIsString(static_cast<Insider *>(nullptr)));
    }

    void otherOperationsArePublic()
    {
        QVERIFY(CallsGetFieldType<TVpSourceField>::value);
        QVERIFY(CallsSetFieldType<TVpSourceField>::value);
        QVERIFY(CallsGetDataProviderType<TVpSourceField>::value);
        QVERIFY(CallsSetDataProviderType<TVpSourceField>::value);
        QVERIFY(CallsGetStringValue<TVpSourceField>::value);
    }

    void settingTheFieldTypeSetsOnlyTheText_data()
    {
        QTest::addColumn<QString>("type");
        for (const char *type : { "INTEGER", "REAL", "STRING", "", "anything" })
            QTest::newRow(*type ? type : "empty") << QString(type);
    }
    void settingTheFieldTypeSetsOnlyTheText()
    {
        QFETCH(QString, type);
        TVpSourceField field;
        field.setFieldType("before");
        field.setFieldType(type);
        QCOMPARE(field.getFieldType(), type);
        QCOMPARE(field.FieldType, type);
        QCOMPARE(TestAccess::fieldTypeIndex(field), vtNone);
        QVERIFY(!TestAccess::isString(field));
    }

    void isStringAsksTheIndexWhichNobodyWrites()
    {
        TVpSourceField field;
        field.setFieldType("STRING");
        QVERIFY(!TestAccess::isString(field));
        field.fieldTypeIndex = vtString;
        QVERIFY(TestAccess::isString(field));
        QCOMPARE(TestAccess::fieldTypeIndex(field), vtString);
    }

    void providerTypeIsTakenOverByItsPosition_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        // clang-format off
        QTest::newRow("CSPRO")                  << "CSPRO"  << "CSPRO" << 1;
        QTest::newRow("CSV")                    << "CSV"    << "CSV"   << 2;
        QTest::newRow("SSPS")                   << "SSPS"   << "SSPS"  << 3;
        QTest::newRow("STATA")                  << "STATA"  << "STATA" << 4;
        QTest::newRow("SPSS is not SSPS")       << "SPSS"   << ""      << 0;
        QTest::newRow("CSPRO8 is unknown")      << "CSPRO8" << ""      << 0;
        QTest::newRow("NONE changes nothing")   << "NONE"   << ""      << 0;
        QTest::newRow("empty")                  << ""       << ""      << 0;
        QTest::newRow("case counts")            << "cspro"  << ""      << 0;
        QTest::newRow("blanks count")           << " CSV"   << ""      << 0;
        // clang-format on
    }
    void providerTypeIsTakenOverByItsPosition()
    {
        QFETCH(QString, type);
        QFETCH(QString, text);
        QFETCH(int, value);
        TVpSourceField field;
        field.setDataProviderType(type);
        QCOMPARE(field.getDataProviderType(), text);
        QCOMPARE(field.DataProviderType, text);
        QCOMPARE(int(TestAccess::dataProviderTypeIndex(field)), value);
    }

    void unknownProviderTypeLeavesTheFormerOne_data()
    {
        QTest::addColumn<QString>("type");
        for (const char *type : { "NONE", "SPSS", "CSPRO8", "stata", "" })
            QTest::newRow(*type ? type : "empty") << QString(type);
    }
    void unknownProviderTypeLeavesTheFormerOne()
    {
        QFETCH(QString, type);
        TVpSourceField field;
        field.setDataProviderType("STATA");
        field.setDataProviderType(type);
        QCOMPARE(field.getDataProviderType(), QString("STATA"));
        QCOMPARE(TestAccess::dataProviderTypeIndex(field), dpStata);
    }

    void longerListOfTypeTextsReachesTheFurtherValues_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("value");
        QTest::newRow("5") << 5 << 5;
        QTest::newRow("6") << 6 << 6;
        QTest::newRow("7 changes nothing") << 7 << 0;
        QTest::newRow("8") << 8 << 8;
        QTest::newRow("9") << 9 << 9;
        QTest::newRow("10 changes nothing") << 10 << 0;
    }
    void longerListOfTypeTextsReachesTheFurtherValues()
    {
        QFETCH(int, position);
        QFETCH(int, value);
        TVpSourceField field;
        for (int added = field.typeNames->size(); added <= 10; ++added)
            field.typeNames->append(QString("TYPE%1").arg(added));
        const QString type = QString("TYPE%1").arg(position);
        field.setDataProviderType(type);
        QCOMPARE(int(TestAccess::dataProviderTypeIndex(field)), value);
        QCOMPARE(field.getDataProviderType(), value ? type : QString());
    }

    void valueIsCutFromTheLine_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("inside the line")                     << 2 << 3  << "abcdefgh" << "cde";
        QTest::newRow("start 0 is the first character")      << 0 << 2  << "abcdefgh" << "ab";
        QTest::newRow("start 1 is the second character")     << 1 << 2  << "abcdefgh" << "bc";
        QTest::newRow("up to the end")                       << 5 << 3  << "abcdefgh" << "fgh";
        QTest::newRow("one past the end passes the test of the length") << 3 << 6 << "abcdefgh" << "defgh";
        QTest::newRow("line ends inside the field")          << 5 << 10 << "abcdefgh" << "fgh";
        QTest::newRow("last character only")                 << 7 << 5  << "abcdefgh" << "h";
        QTest::newRow("start at the end")                    << 8 << 5  << "abcdefgh" << "";
        QTest::newRow("start at the end, length 1")          << 8 << 1  << "abcdefgh" << "";
        QTest::newRow("start beyond the end")                << 9 << 5  << "abcdefgh" << "";
        QTest::newRow("start far beyond, length 0")          << 20 << 0 << "abcdefgh" << "";
        QTest::newRow("length 0")                            << 2 << 0  << "abcdefgh" << "";
        QTest::newRow("empty line")                          << 0 << 3  << ""         << "";
        QTest::newRow("blanks are kept")                     << 1 << 3  << "a   b"    << "   ";
        QTest::newRow("largest start and length")            << INT_MAX << INT_MAX << "abc" << "";
        QTest::newRow("largest length")                      << 1 << INT_MAX << "abc" << "bc";
        QTest::newRow("negative start counts against the length") << -2 << 5 << "abcdefgh" << "abc";
        QTest::newRow("negative start, up to the end")       << -2 << 10 << "abcdefgh" << "abcdefgh";
        QTest::newRow("negative length is the whole line")   << 0 << -1 << "abcdefgh" << "abcdefgh";
        QTest::newRow("negative length is the rest of the line") << 3 << -1 << "abcdefgh" << "defgh";
        // clang-format on
    }
    void valueIsCutFromTheLine()
    {
        QFETCH(int, start);
        QFETCH(int, length);
        QFETCH(QString, line);
        QFETCH(QString, expected);
        TVpSourceField field;
        field.start = start;
        field.length = length;
        QCOMPARE(field.getStringValue(line), expected);
    }

    void valueIsNullWhereTheLineDoesNotReach_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("line");
        QTest::newRow("start beyond the end") << 9 << 5 << "abcdefgh";
        QTest::newRow("start at the end") << 8 << 5 << "abcdefgh";
        QTest::newRow("field ends before the line begins") << -2 << 1 << "abcdefgh";
        QTest::newRow("empty line") << 0 << 5 << "";
        QTest::newRow("null line") << 0 << 5 << QString();
    }
    void valueIsNullWhereTheLineDoesNotReach()
    {
        QFETCH(int, start);
        QFETCH(int, length);
        QFETCH(QString, line);
        TVpSourceField field;
        field.start = start;
        field.length = length;
        QVERIFY(field.getStringValue(line).isNull());
        QCOMPARE(field.isBlankValue, true); // a null text equals the empty blank value
        field.blankValue = "9";
        QVERIFY(field.getStringValue(line).isNull());
        QCOMPARE(field.isBlankValue, false);
    }

    void valueIsEmptyButNotNullWhereTheTestOfTheLengthLetsTheEndPass()
    {
        TVpSourceField field;
        field.start = 8;
        field.length = 1;
        const QString value = field.getStringValue("abcdefgh");
        QVERIFY(value.isEmpty());
        QVERIFY(!value.isNull());
    }

    void valueIsComparedWithTheBlankValue_data()
    {
        QTest::addColumn<QString>("blankValue");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("expected");
        // clang-format off
        QTest::newRow("equal")                   << "99" << "x99"  << true;
        QTest::newRow("different")               << "99" << "x98"  << false;
        QTest::newRow("case counts")             << "na" << "xNA"  << false;
        QTest::newRow("blanks count")            << "9"  << "x9 "  << false;
        QTest::newRow("blanks are not empty")    << ""   << "x  "  << false;
        QTest::newRow("equal blanks")            << "  " << "x  "  << true;
        QTest::newRow("empty line, empty value") << ""   << ""     << true;
        QTest::newRow("empty line, other value") << "9"  << ""     << false;
        // clang-format on
    }
    void valueIsComparedWithTheBlankValue()
    {
        QFETCH(QString, blankValue);
        QFETCH(QString, line);
        QFETCH(bool, expected);
        TVpSourceField field;
        field.start = 1;
        field.length = 2;
        field.blankValue = blankValue;
        field.isBlankValue = !expected;
        field.getStringValue(line);
        QCOMPARE(field.isBlankValue, expected);
    }
};

QTEST_GUILESS_MAIN(SourceFieldTest)
#include "SourceFieldTest.moc"
