#include "import/GenericField.h"
#include "support/Callable.h"
#include "support/FakeImporter.h"
#include "support/VirtualSlot.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

struct TestAccess {
    static QString getAsString(TGenericField &field) { return field.getAsString(); }
    static double getAsFloat(TGenericField &field) { return field.getAsFloat(); }
    static int getAsInteger(TGenericField &field) { return field.getAsInteger(); }
    static void setAsFloat(TGenericField &field, double value) { field.setAsFloat(value); }
    static void setAsInteger(TGenericField &field, int value) { field.setAsInteger(value); }
    static bool isString(const TGenericField &field) { return field.isString(); }
};

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr int lowestInt = std::numeric_limits<int>::min();
constexpr int highestInt = std::numeric_limits<int>::max();

// Overrides every operation that a format may supply: an operation that is not virtual would not compile.
class FullField : public TGenericField
{
public:
    using TGenericField::TGenericField;
    FullField(const FullField &) = default;
    FullField &operator=(const FullField &) = default;
    FullField(FullField &&) = default;
    ~FullField() override = default;
    bool isMissing() override { return false; }
    bool isNotApplicable() override { return false; }
    bool isBlank() override { return false; }
    void addValueLabel(QString code, QString text) override { valueLabels += code + ' ' + text + '\t'; }
    QString getGroup() override { return QStringLiteral("group"); }
};

CALLABLE(CallsGetAsString, getAsString());
CALLABLE(CallsGetAsFloat, getAsFloat());
CALLABLE(CallsGetAsInteger, getAsInteger());
CALLABLE(CallsSetAsFloat, setAsFloat(1.0));
CALLABLE(CallsSetAsInteger, setAsInteger(1));
CALLABLE(CallsIsString, isString());
CALLABLE(CallsSetAsString, setAsString(QString()));
CALLABLE(CallsSetAsStringChar, setAsStringChar(L""));
CALLABLE(CallsGetValueLabel, getValueLabel(QString()));

// Tests inside a subclass which operations it may call.
class Insider : public FullField
{
public:
    using FullField::FullField;
    template <typename T> static auto reachesIsString(T *field) -> decltype(field->isString(), true) { return true; }
    static bool reachesIsString(...) { return false; }
    template <typename T> static auto reachesGetAsString(T *field) -> decltype(field->getAsString(), true)
    {
        return true;
    }
    static bool reachesGetAsString(...) { return false; }
};

quint64 bitsOf(double value)
{
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
}

// Returns whether two numbers are equal. Two NaNs count as equal.
bool isSame(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

QString units(const TGenericField &field, int count)
{
    return QString::fromRawData(reinterpret_cast<const QChar *>(field.textValue), count);
}

void fillText(TGenericField &field, char16_t unit)
{
    std::fill(std::begin(field.textValue), std::end(field.textValue), unit);
}

// A field that holds these values. (Built in place: moving a field would lose them.)
struct ValuedField : FakeField {
    ValuedField(int fieldType, const QString &text, double integer, double real)
        : FakeField(nullptr, QStringLiteral("A"), eVanVarType(fieldType))
    {
        std::copy_n(text.utf16(), text.size(), textValue);
        intValue = integer;
        realValue = real;
    }
};

void describe(TGenericField &field, TDataImport *owner)
{
    field.optional = true;
    field.name = QStringLiteral("SEX");
    field.label = QStringLiteral("Sex of the person");
    field.type = vtReal;
    field.length = 7;
    field.start = 12;
    field.valueLabels = QStringLiteral("1 Male\t2 Female\t");
    field.missingValue = QStringLiteral("99");
    field.notApplicable = QStringLiteral("98");
    field.minimum = QStringLiteral("1");
    field.maximum = QStringLiteral("2");
    field.decimals = QStringLiteral("3");
    field.hasDecimalChar = false;
    field.isUnset = true;
    fillText(field, u'x');
    field.realValue = 1.5;
    field.intValue = 4;
    field.owner = owner;
}

void compareDescribed(const TGenericField &field, TDataImport *owner)
{
    QCOMPARE(field.optional, true);
    QCOMPARE(field.name, QString("SEX"));
    QCOMPARE(field.label, QString("Sex of the person"));
    QCOMPARE(field.type, vtReal);
    QCOMPARE(field.length, 7);
    QCOMPARE(field.start, 12);
    QCOMPARE(field.valueLabels, QString("1 Male\t2 Female\t"));
    QCOMPARE(field.missingValue, QString("99"));
    QCOMPARE(field.notApplicable, QString("98"));
    QCOMPARE(field.minimum, QString("1"));
    QCOMPARE(field.maximum, QString("2"));
    QCOMPARE(field.decimals, QString("3"));
    QCOMPARE(field.hasDecimalChar, false);
    QCOMPARE(field.isUnset, true);
    QCOMPARE(units(field, 255), QString(255, 'x'));
    QCOMPARE(field.realValue, 1.5);
    QCOMPARE(field.intValue, 4.0);
    QCOMPARE(field.owner, owner);
}

} // namespace

class GenericFieldTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newFieldHasTheseDefaults()
    {
        FakeImporter importer;
        const FullField field(&importer);
        QCOMPARE(field.optional, false);
        QCOMPARE(field.name, QString());
        QCOMPARE(field.label, QString());
        QCOMPARE(field.type, vtNone);
        QCOMPARE(field.length, 0);
        QCOMPARE(field.start, 0);
        QCOMPARE(field.valueLabels, QString());
        QCOMPARE(field.missingValue, QString());
        QCOMPARE(field.notApplicable, QString());
        QCOMPARE(field.minimum, QString());
        QCOMPARE(field.maximum, QString());
        QCOMPARE(field.decimals, QString());
        QCOMPARE(field.hasDecimalChar, true);
        QCOMPARE(field.isUnset, false);
        QCOMPARE(units(field, 255), QString(255, QChar(0)));
        QCOMPARE(field.intValue, 0.0);
        QCOMPARE(field.owner, static_cast<TDataImport *>(&importer));
    }

    void realValueStartsJustBelowTheSmallestNormalDouble()
    {
        const FullField field(nullptr);
        QCOMPARE(bitsOf(field.realValue), Q_UINT64_C(0x000FFFFE2E8159D0));
        QCOMPARE(std::fpclassify(field.realValue), FP_SUBNORMAL);
    }

    void textValueHolds255UnitsOf16Bits()
    {
        QCOMPARE(int(std::extent_v<decltype(TGenericField::textValue)>), 255);
        QCOMPARE(int(sizeof(TGenericField::textValue)), 510);
    }

    void copyTakesEveryMember()
    {
        FakeImporter importer;
        FullField field(nullptr);
        describe(field, &importer);
        const FullField copy(field);
        compareDescribed(copy, &importer);
        compareDescribed(field, &importer);
    }

    void assignmentTakesEveryMember()
    {
        FakeImporter importer;
        FakeImporter other;
        FullField field(nullptr);
        describe(field, &importer);
        FullField target(&other);
        target = field;
        compareDescribed(target, &importer);
    }

    void copyIsIndependentOfItsSource()
    {
        FullField field(nullptr);
        describe(field, nullptr);
        FullField copy(field);
        copy.setAsString("1");
        copy.name = "AGE";
        QCOMPARE(field.name, QString("SEX"));
        QCOMPARE(units(field, 7), QString("xxxxxxx"));
    }

    void moveTakesNothingFromItsArgument()
    {
        FakeImporter importer;
        FullField field(nullptr);
        describe(field, &importer);
        const FullField moved(std::move(field));
        compareDescribed(field, &importer);
        for (const QString &text : { moved.name, moved.label, moved.valueLabels, moved.missingValue,
                                     moved.notApplicable, moved.minimum, moved.maximum, moved.decimals })
            QCOMPARE(text, QString());
        QCOMPARE(moved.optional, false);
        QCOMPARE(moved.type, vtNone);
        QCOMPARE(moved.length, 0);
        QCOMPARE(moved.start, 0);
        QCOMPARE(moved.hasDecimalChar, false);
        QCOMPARE(moved.isUnset, false);
        QCOMPARE(units(moved, 255), QString(255, QChar(0)));
        QCOMPARE(moved.realValue, 0.0);
        QCOMPARE(moved.intValue, 0.0);
        QCOMPARE(moved.owner, nullptr);
    }

    void threeAnswersArePureAndTheRestHasABase()
    {
        QVERIFY(std::is_abstract_v<TGenericField>);
        QVERIFY(std::has_virtual_destructor_v<TGenericField>);
        FakeField field;
        field.valueLabels = "1 Male\t";
        field.TGenericField::addValueLabel("2", "Female");
        QCOMPARE(field.valueLabels, QString("1 Male\t"));
        field.group = "PERSON";
        QCOMPARE(field.TGenericField::getGroup(), QString());
    }

    void subclassOverridesEveryVirtualOperation()
    {
        FullField field(nullptr);
        TGenericField &base = field;
        base.addValueLabel("1", "Male");
        QCOMPARE(field.valueLabels, QString("1 Male\t"));
        QCOMPARE(base.getGroup(), QString("group"));
    }

#ifdef SUPPORT_HAS_VIRTUALSLOT
    void virtualOperationsAreInThisOrder()
    {
        QCOMPARE(int(virtualSlot(&TGenericField::isMissing)), 2);
        QCOMPARE(int(virtualSlot(&TGenericField::isNotApplicable)), 3);
        QCOMPARE(int(virtualSlot(&TGenericField::isBlank)), 4);
        QCOMPARE(int(virtualSlot(&TGenericField::addValueLabel)), 5);
        QCOMPARE(int(virtualSlot(&TGenericField::getGroup)), 6);
    }
#endif

    void gettersAndNumberSettersAreOnlyForSubclasses()
    {
        QVERIFY(!CallsGetAsString<FullField>::value);
        QVERIFY(!CallsGetAsFloat<FullField>::value);
        QVERIFY(!CallsGetAsInteger<FullField>::value);
        QVERIFY(!CallsSetAsFloat<FullField>::value);
        QVERIFY(!CallsSetAsInteger<FullField>::value);
        QVERIFY(Insider::reachesGetAsString(static_cast<Insider *>(nullptr)));
    }

    void isStringIsPrivate()
    {
        QVERIFY(!CallsIsString<FullField>::value);
        QVERIFY(!Insider::reachesIsString(static_cast<Insider *>(nullptr)));
    }

    void stringSettersAndValueLabelArePublic()
    {
        QVERIFY(CallsSetAsString<FullField>::value);
        QVERIFY(CallsSetAsStringChar<FullField>::value);
        QVERIFY(CallsGetValueLabel<FullField>::value);
    }

    void isStringMeansTypeThree_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("expected");
        QTest::newRow("none") << 0 << false;
        QTest::newRow("integer") << 1 << false;
        QTest::newRow("real") << 2 << false;
        QTest::newRow("string") << 3 << true;
        QTest::newRow("unknown") << 4 << false;
    }
    void isStringMeansTypeThree()
    {
        QFETCH(int, type);
        QFETCH(bool, expected);
        QCOMPARE(TestAccess::isString(FakeField(nullptr, "A", eVanVarType(type))), expected);
    }

    void getAsStringDependsOnTheStateAndThenOnTheType_data()
    {
        QTest::addColumn<QString>("states");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QStringList>("questions");
        const QStringList all = { "missing", "notApplicable", "blank" };
        // clang-format off
        QTest::newRow("missing")              << "m"   << 1 << "MV" << QStringList({"missing"});
        QTest::newRow("missing comes first")  << "mnb" << 1 << "MV" << QStringList({"missing"});
        QTest::newRow("not applicable")       << "n"   << 1 << "NA" << QStringList({"missing", "notApplicable"});
        QTest::newRow("not applicable before blank") << "nb" << 3 << "NA" << QStringList({"missing", "notApplicable"});
        QTest::newRow("blank")                << "b"   << 3 << ""   << all;
        QTest::newRow("integer")              << ""    << 1 << "17" << all;
        QTest::newRow("real")                 << ""    << 2 << "2.5" << all;
        QTest::newRow("string")               << ""    << 3 << "text" << all;
        QTest::newRow("no type")              << ""    << 0 << ""   << all;
        QTest::newRow("unknown type")         << ""    << 4 << ""   << all;
        // clang-format on
    }
    void getAsStringDependsOnTheStateAndThenOnTheType()
    {
        QFETCH(QString, states);
        QFETCH(int, type);
        QFETCH(QString, expected);
        QFETCH(QStringList, questions);
        ValuedField field(type, "text", 17, 2.5);
        field.missingValue = "MV";
        field.notApplicable = "NA";
        setStates(field, states);
        QCOMPARE(TestAccess::getAsString(field), expected);
        QCOMPARE(field.questions, questions);
    }

    void numberReadsInFormatGWithPrecisionSix_data()
    {
        QTest::addColumn<double>("number");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("whole")              << 42.0 << "42";
        QTest::newRow("negative")           << -42.0 << "-42";
        QTest::newRow("zero")               << 0.0 << "0";
        QTest::newRow("minus zero has no sign") << -0.0 << "0";
        QTest::newRow("fraction")           << 0.125 << "0.125";
        QTest::newRow("six digits")         << 123456.0 << "123456";
        QTest::newRow("seven digits")       << 1234567.0 << "1.23457e+06";
        QTest::newRow("below a million")    << 999999.0 << "999999";
        QTest::newRow("a million")          << 1000000.0 << "1e+06";
        QTest::newRow("rounded to six digits") << 3.14159265 << "3.14159";
        QTest::newRow("small")              << 0.00001 << "1e-05";
        QTest::newRow("not a number")       << notANumber << "nan";
        QTest::newRow("infinite")           << infinity << "inf";
        // clang-format on
    }
    void numberReadsInFormatGWithPrecisionSix()
    {
        QFETCH(double, number);
        QFETCH(QString, expected);
        ValuedField integer(vtInteger, "", number, 7);
        QCOMPARE(TestAccess::getAsString(integer), expected);
        ValuedField real(vtReal, "", 7, number);
        QCOMPARE(TestAccess::getAsString(real), expected);
    }

    void newRealFieldReadsAsItsStartValue()
    {
        FakeField field(nullptr, "A", vtReal);
        QCOMPARE(TestAccess::getAsString(field), QString("2.22507e-308"));
    }

    void textWithoutAnEndMarkReadsWhole()
    {
        FakeField field(nullptr, "A", vtString);
        fillText(field, u'y');
        QCOMPARE(TestAccess::getAsString(field), QString(255, 'y'));
        QCOMPARE(field.currentText(), QString(255, 'y'));
    }

    void textReadsUpToItsFirstZero()
    {
        ValuedField field(vtString, "ab", 0, 0);
        field.textValue[3] = u'c';
        QCOMPARE(TestAccess::getAsString(field), QString("ab"));
        QCOMPARE(field.currentText(), QString("ab"));
    }

    void textKeepsItsBlanks()
    {
        ValuedField field(vtString, "  a ", 0, 0);
        QCOMPARE(TestAccess::getAsString(field), QString("  a "));
    }

    void getAsFloatDependsOnTheType_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        // clang-format off
        QTest::newRow("integer")                 << 1 << "5"     << 17.25;
        QTest::newRow("real")                    << 2 << "5"     << 2.5;
        QTest::newRow("string")                  << 3 << "5.75"  << 5.75;
        QTest::newRow("string is trimmed")       << 3 << " \t5.75 " << 5.75;
        QTest::newRow("string with an exponent") << 3 << "1e3"   << 1000.0;
        QTest::newRow("string without a number") << 3 << "abc"   << 0.0;
        QTest::newRow("string that overflows")   << 3 << "1e999" << 0.0;
        QTest::newRow("empty string")            << 3 << ""      << 0.0;
        QTest::newRow("no type")                 << 0 << "5"     << 0.0;
        QTest::newRow("unknown type")            << 9 << "5"     << 0.0;
        // clang-format on
    }
    void getAsFloatDependsOnTheType()
    {
        QFETCH(int, type);
        QFETCH(QString, text);
        QFETCH(double, expected);
        ValuedField field(type, text, 17.25, 2.5);
        QCOMPARE(TestAccess::getAsFloat(field), expected);
    }

    void getAsFloatOfAMissingValueIsItsCode_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<double>("expected");
        QTest::newRow("whole") << "99" << 99.0;
        QTest::newRow("fraction") << "9.5" << 9.5;
        QTest::newRow("no number") << "NOTAPPL" << 0.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("overflow") << "1e999" << 0.0;
    }
    void getAsFloatOfAMissingValueIsItsCode()
    {
        QFETCH(QString, code);
        QFETCH(double, expected);
        for (const int type : { 0, 1, 2, 3 }) {
            ValuedField field(type, "5", 17, 2.5);
            field.missingValue = code;
            field.saysMissing = true;
            QCOMPARE(TestAccess::getAsFloat(field), expected);
        }
    }

    void numberGettersOnlyTestForMissing()
    {
        ValuedField field(vtInteger, "5", 17, 2.5);
        field.notApplicable = "98";
        field.saysNotApplicable = true;
        field.saysBlank = true;
        QCOMPARE(TestAccess::getAsFloat(field), 17.0);
        QCOMPARE(TestAccess::getAsInteger(field), 17);
        QCOMPARE(field.questions, QStringList({ "missing", "missing" }));
    }

    void getAsIntegerDependsOnTheType_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("number");
        QTest::addColumn<int>("expected");
        // clang-format off
        QTest::newRow("integer")                       << 1 << ""      << 17.0   << 17;
        QTest::newRow("integer cut toward zero")       << 1 << ""      << 17.9   << 17;
        QTest::newRow("negative integer cut toward zero") << 1 << ""   << -17.9  << -17;
        QTest::newRow("real cut toward zero")          << 2 << ""      << 2.99   << 2;
        QTest::newRow("negative real cut toward zero") << 2 << ""      << -2.99  << -2;
        QTest::newRow("largest")                       << 1 << ""      << 2147483647.5 << highestInt;
        QTest::newRow("integer above int32")           << 1 << ""      << 2147483648.0 << lowestInt;
        QTest::newRow("real below int32")              << 2 << ""      << -1e10  << lowestInt;
        QTest::newRow("not a number")                  << 2 << ""      << notANumber    << lowestInt;
        QTest::newRow("string")                        << 3 << "12"    << 1.0    << 12;
        QTest::newRow("string is trimmed")             << 3 << "  12 " << 1.0    << 12;
        QTest::newRow("string in base 10")             << 3 << "010"   << 1.0    << 10;
        QTest::newRow("string with a base prefix")     << 3 << "0x10"  << 1.0    << 0;
        QTest::newRow("string with a fraction")        << 3 << "12.5"  << 1.0    << 0;
        QTest::newRow("string with an exponent")       << 3 << "1e3"   << 1.0    << 0;
        QTest::newRow("string that overflows")         << 3 << "2147483648" << 1.0 << 0;
        QTest::newRow("string without a number")       << 3 << "abc"   << 1.0    << 0;
        QTest::newRow("no type")                       << 0 << "12"    << 1.0    << 0;
        QTest::newRow("unknown type")                  << 7 << "12"    << 1.0    << 0;
        // clang-format on
    }
    void getAsIntegerDependsOnTheType()
    {
        QFETCH(int, type);
        QFETCH(QString, text);
        QFETCH(double, number);
        QFETCH(int, expected);
        ValuedField field(type, text, type == vtReal ? 1000 : number, type == vtReal ? number : 1000);
        QCOMPARE(TestAccess::getAsInteger(field), expected);
    }

    void getAsIntegerOfAMissingValueIsItsCode_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("expected");
        QTest::newRow("whole") << "99" << 99;
        QTest::newRow("negative") << "-9" << -9;
        QTest::newRow("base 10") << "077" << 77;
        QTest::newRow("fraction does not convert") << "9.5" << 0;
        QTest::newRow("no number") << "NOTAPPL" << 0;
        QTest::newRow("empty") << "" << 0;
    }
    void getAsIntegerOfAMissingValueIsItsCode()
    {
        QFETCH(QString, code);
        QFETCH(int, expected);
        for (const int type : { 0, 1, 2, 3 }) {
            ValuedField field(type, "5", 17, 2.5);
            field.missingValue = code;
            field.saysMissing = true;
            QCOMPARE(TestAccess::getAsInteger(field), expected);
        }
    }

    void numberSettersSetOneNumberEach()
    {
        FakeField field(nullptr, "A", vtInteger);
        field.isUnset = true;
        TestAccess::setAsFloat(field, 2.75);
        QCOMPARE(field.realValue, 2.75);
        QCOMPARE(field.intValue, 0.0);
        TestAccess::setAsInteger(field, -12);
        QCOMPARE(field.intValue, -12.0);
        QCOMPARE(field.realValue, 2.75);
        QCOMPARE(field.isUnset, true);
        QCOMPARE(field.questions, QStringList());
    }

    void stringSetterCopiesAtMostLengthUnits_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("expected");
        const QString filler(255, 'z');
        // clang-format off
        QTest::newRow("shorter is padded with zeros")   << "ab" << 4 << QString("ab") + QChar(0) + QChar(0) + "zz";
        QTest::newRow("as long has no end mark")        << "abcd" << 4 << "abcdzz";
        QTest::newRow("longer is cut without end mark") << "abcdef" << 4 << "abcdzz";
        QTest::newRow("empty clears length units")      << "" << 2 << QString(2, QChar(0)) + "zz";
        QTest::newRow("length 0 copies nothing")        << "abcd" << 0 << "zzzz";
        QTest::newRow("negative length copies nothing") << "abcd" << -1 << "zzzz";
        QTest::newRow("a zero ends the text")           << QString("ab") + QChar(0) + "cd" << 5 << QString("ab") + QString(3, QChar(0)) + "zz";
        QTest::newRow("any script")                     << QString::fromUtf8("Íč€") << 3 << QString::fromUtf8("Íč€z");
        QTest::newRow("a pair of units may be cut")     << QString::fromUtf8("a😀") << 2 << QString("a") + QChar(0xD83D) + "zz";
        QTest::newRow("254 units")                      << QString(300, 'a') << 254 << QString(254, 'a') + "z";
        QTest::newRow("255 units")                      << QString(300, 'a') << 255 << QString(255, 'a');
        QTest::newRow("length above 255 stops at 255")  << QString(300, 'a') << 300 << QString(255, 'a');
        QTest::newRow("padding stops at 255 too")       << "a" << 1000000 << QString("a") + QString(254, QChar(0));
        // clang-format on
    }
    void stringSetterCopiesAtMostLengthUnits()
    {
        QFETCH(QString, value);
        QFETCH(int, length);
        QFETCH(QString, expected);
        FakeField field(nullptr, "A", vtString);
        fillText(field, u'z');
        field.length = length;
        field.setAsString(value);
        QCOMPARE(units(field, expected.size()), expected);

        FakeField wide(nullptr, "A", vtString);
        fillText(wide, u'z');
        wide.length = length;
        wide.setAsStringChar(value.toStdWString().c_str());
        QCOMPARE(units(wide, expected.size()), expected);
    }

    void stringOfTypeThreeLeavesTheNumbers()
    {
        ValuedField field(vtString, "", 17, 2.5);
        field.length = 4;
        field.setAsString("12");
        QCOMPARE(field.intValue, 17.0);
        QCOMPARE(field.realValue, 2.5);
        QCOMPARE(field.currentText(), QString("12"));
    }

    void integerTextGoesIntoBothNumbers_data()
    {
        numberRows();
    }
    void integerTextGoesIntoBothNumbers()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        for (const bool wide : { false, true }) {
            ValuedField field(vtInteger, "", 17, 2.5);
            field.length = 8;
            field.hasDecimalChar = false; // has no effect on an integer
            field.decimals = "2";
            setText(field, text, wide);
            QVERIFY(isSame(field.intValue, expected));
            QVERIFY(isSame(field.realValue, expected));
        }
    }

    void realTextSetsOnlyTheRealNumber_data()
    {
        numberRows();
    }
    void realTextSetsOnlyTheRealNumber()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        for (const bool wide : { false, true }) {
            ValuedField field(vtReal, "", 17, 2.5);
            field.length = 8;
            field.decimals = "2";
            setText(field, text, wide);
            QCOMPARE(field.intValue, 17.0);
            QVERIFY(isSame(field.realValue, expected));
        }
    }

    void wholeTextConvertsThoughItsCopyIsCut()
    {
        FakeField field(nullptr, "A", vtInteger);
        field.length = 2;
        field.setAsString("12345");
        QCOMPARE(field.currentText(), QString("12"));
        QCOMPARE(field.intValue, 12345.0);
    }

    void realWithImpliedDecimalsIsDivided_data()
    {
        QTest::addColumn<bool>("hasDecimalChar");
        QTest::addColumn<QString>("decimals");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        // clang-format off
        QTest::newRow("two decimals")            << false << "2"  << "12345"  << 123.45;
        QTest::newRow("none")                    << false << "0"  << "12345"  << 12345.0;
        QTest::newRow("with a decimal character") << true << "2"  << "12345"  << 12345.0;
        QTest::newRow("empty decimals")          << false << ""   << "12345"  << 12345.0;
        QTest::newRow("decimals no number")      << false << "x"  << "12345"  << 12345.0;
        QTest::newRow("negative decimals")       << false << "-1" << "12345"  << 123450.0;
        QTest::newRow("text with a point too")   << false << "1"  << "12.5"   << 1.25;
        QTest::newRow("text that does not convert") << false << "2" << "abc"  << 0.0;
        // clang-format on
    }
    void realWithImpliedDecimalsIsDivided()
    {
        QFETCH(bool, hasDecimalChar);
        QFETCH(QString, decimals);
        QFETCH(QString, text);
        QFETCH(double, expected);
        for (const bool wide : { false, true }) {
            FakeField field(nullptr, "A", vtReal);
            field.length = 8;
            field.hasDecimalChar = hasDecimalChar;
            field.decimals = decimals;
            setText(field, text, wide);
            QVERIFY(field.realValue == expected);
        }
    }

    void setterStopsAtAValueOfASpecialState_data()
    {
        QTest::addColumn<QString>("states");
        QTest::addColumn<QStringList>("questions");
        QTest::newRow("missing") << "m" << QStringList({ "missing" });
        QTest::newRow("not applicable") << "n" << QStringList({ "missing", "notApplicable" });
        QTest::newRow("blank") << "b" << QStringList({ "missing", "notApplicable", "blank" });
    }
    void setterStopsAtAValueOfASpecialState()
    {
        QFETCH(QString, states);
        QFETCH(QStringList, questions);
        for (const int type : { 0, 1, 2, 3 }) {
            for (const bool wide : { false, true }) {
                ValuedField field(type, "", 17, 2.5);
                field.length = 5;
                field.isUnset = true;
                setStates(field, states);
                setText(field, "12345", wide);
                QCOMPARE(field.currentText(), QString("12345"));
                QCOMPARE(field.isUnset, false);
                QCOMPARE(field.intValue, 17.0);
                QCOMPARE(field.realValue, 2.5);
                QCOMPARE(field.questions, questions);
            }
        }
    }

    void setterClearsIsUnsetBeforeItAsks()
    {
        struct UnsetIsMissing : FakeField {
            using FakeField::FakeField;
            bool isMissing() override { return isUnset; }
        };
        for (const bool wide : { false, true }) {
            UnsetIsMissing field(nullptr, "A", vtInteger);
            field.length = 3;
            field.isUnset = true;
            setText(field, "123", wide);
            QCOMPARE(field.isUnset, false);
            QCOMPARE(field.intValue, 123.0);
        }
    }

    void setterOfAFieldOfNoTypeLeavesFourCharactersU1515_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("expected");
        const QString marks(4, QChar(0x1515));
        QTest::newRow("type 0") << 0 << 6 << marks + "efz";
        QTest::newRow("type 4") << 4 << 6 << marks + "efz";
        QTest::newRow("type -1") << -1 << 6 << marks + "efz";
        QTest::newRow("length 2") << 0 << 2 << marks + "zzz";
        QTest::newRow("length 0") << 0 << 0 << marks + "zzz";
    }
    void setterOfAFieldOfNoTypeLeavesFourCharactersU1515()
    {
        QFETCH(int, type);
        QFETCH(int, length);
        QFETCH(QString, expected);
        for (const bool wide : { false, true }) {
            ValuedField field(type, "", 17, 2.5);
            fillText(field, u'z');
            field.length = length;
            setText(field, "abcdef", wide);
            QCOMPARE(units(field, 7), expected);
            QCOMPARE(field.intValue, 17.0);
            QCOMPARE(field.realValue, 2.5);
        }
    }

    void nullWideTextCountsAsEmpty()
    {
        ValuedField field(vtInteger, "", 17, 2.5);
        field.length = 2;
        field.textValue[0] = u'a';
        field.setAsStringChar(nullptr);
        QCOMPARE(field.currentText(), QString());
        QCOMPARE(field.intValue, 0.0);
    }

    void valueLabelIsFoundInTheFirstEntryFromItsSecondCharacter_data()
    {
        QTest::addColumn<QString>("valueLabels");
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("first character is skipped and kept") << "11 Male"         << "1"   << true  << "1Male";
        QTest::newRow("the code as written is not found")    << "11 Male"         << "11"  << false << "";
        QTest::newRow("all that follows is the result")      << "01 Male\t02 Female\t" << "1" << true << "0Male\t02 Female";
        QTest::newRow("a later entry is not found")          << "01 Male\t02 Female\t" << "2" << false << "";
        QTest::newRow("one-character code is empty there")   << "1 Male"          << ""    << true  << "1Male";
        QTest::newRow("candidate is trimmed")                << "x\t1\t Male"     << "1"   << true  << "xMale";
        QTest::newRow("searched code is not trimmed")        << "x1 Male"         << " 1"  << false << "";
        QTest::newRow("result is trimmed")                   << "\t1 Male\t"      << "1"   << true  << "Male";
        QTest::newRow("only the first blank counts")         << "x1  Male of age" << "1"   << true  << "x Male of age";
        QTest::newRow("case counts")                         << "xa Male"         << "A"   << false << "";
        QTest::newRow("line feed becomes a tab")             << "x1\nMale end"    << "1\tMale" << true << "xend";
        QTest::newRow("no entries, some code")               << ""                << "1"   << false << "";
        QTest::newRow("no blank: the code is the rest of the text") << "123"      << "23"  << true  << "123";
        QTest::newRow("no blank: nothing is removed but white space") << "123\t"  << "23"  << true  << "123";
        QTest::newRow("no blank: the whole text is not the code")  << "123"       << "123" << false << "";
        QTest::newRow("no blank: nor is a part of the rest")       << "123"       << "2"   << false << "";
        QTest::newRow("blank first: the code is the rest of the text") << " 1 Male"  << "1 Male" << true << "1 Male";
        QTest::newRow("blank first: the first entry is not found")  << " 1 Male"  << "1"   << false << "";
        QTest::newRow("blank first: nor is the empty code")         << " 1 Male"  << ""    << false << "";
        // clang-format on
    }
    void valueLabelIsFoundInTheFirstEntryFromItsSecondCharacter()
    {
        QFETCH(QString, valueLabels);
        QFETCH(QString, code);
        QFETCH(bool, found);
        QFETCH(QString, expected);
        FakeField field;
        field.valueLabels = valueLabels;
        const QString label = field.getValueLabel(code);
        QCOMPARE(!label.isNull(), found);
        QCOMPARE(label, expected);
    }

    void valueLabelLookUpTurnsLineFeedsIntoTabsInTheField()
    {
        for (const QString code : { "1", "no such code" }) {
            FakeField field;
            field.valueLabels = "01 Male\n02 Female\n\n03 Other";
            field.getValueLabel(code);
            QCOMPARE(field.valueLabels, QString("01 Male\t02 Female\t\t03 Other"));
        }
    }

private:
    static void setStates(FakeField &field, const QString &states)
    {
        field.saysMissing = states.contains('m');
        field.saysNotApplicable = states.contains('n');
        field.saysBlank = states.contains('b');
    }

    static void setText(TGenericField &field, const QString &text, bool wide)
    {
        if (wide)
            field.setAsStringChar(text.toStdWString().c_str());
        else
            field.setAsString(text);
    }

    static void numberRows()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        // clang-format off
        QTest::newRow("whole")             << "123"   << 123.0;
        QTest::newRow("leading zeros")     << "00012" << 12.0;
        QTest::newRow("negative")          << "-5"    << -5.0;
        QTest::newRow("fraction")          << "12.5"  << 12.5;
        QTest::newRow("exponent")          << "1e3"   << 1000.0;
        QTest::newRow("blanks around")     << " 12 "  << 12.0;
        QTest::newRow("tab before")        << "\t12"  << 12.0;
        QTest::newRow("blank inside")      << "1 2"   << 0.0;
        QTest::newRow("no number")         << "abc"   << 0.0;
        QTest::newRow("empty")             << ""      << 0.0;
        QTest::newRow("blanks only")       << "   "   << 0.0;
        QTest::newRow("comma")             << "12,5"  << 0.0;
        QTest::newRow("overflow")          << "1e999" << 0.0;
        QTest::newRow("not a number")      << "nan"   << notANumber;
        // clang-format on
    }
};

QTEST_GUILESS_MAIN(GenericFieldTest)
#include "GenericFieldTest.moc"
