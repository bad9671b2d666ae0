#include "cspro/CSProDataImport.h"
#include "cspro/CSProModel_p.h"

#include <QtTest>

struct TestAccess {
    static QString asString(TGenericField &field) { return field.getAsString(); }
    static double asFloat(TGenericField &field) { return field.getAsFloat(); }
    static int asInteger(TGenericField &field) { return field.getAsInteger(); }
};

namespace
{

// A field of a type and length, and its item.
struct Subject {
    explicit Subject(eVanVarType type = vtString, int length = 10)
        : field(nullptr, &item)
    {
        field.type = type;
        field.length = length;
    }

    TCSProItem item;
    TCSProVariable field;
};

} // namespace

class CSProVariableTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newFieldHasItsItemItsOwnerAndNoGroup()
    {
        TCSProDataImport importer;
        TCSProItem item;
        TCSProVariable field(&importer, &item);
        QCOMPARE(field.item, &item);
        QCOMPARE(field.owner, static_cast<TDataImport *>(&importer));
        QCOMPARE(field.group, QString());
        QCOMPARE(field.getGroup(), QString());
        QVERIFY(!field.optional);
        QVERIFY(field.hasDecimalChar);
    }

    void groupIsReturnedUnchanged()
    {
        Subject subject;
        subject.field.group = QStringLiteral("Common");
        TGenericField &field = subject.field;
        QCOMPARE(field.getGroup(), QStringLiteral("Common"));
    }

    void valueEqualToTheItemsCodeIsMissing_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("expected");

        // clang-format off
        QTest::newRow("equal")                      << "99"  << "99"  << true;
        QTest::newRow("different")                  << "99"  << "98"  << false;
        QTest::newRow("a part of the code")         << "99"  << "9"   << false;
        QTest::newRow("more than the code")         << "99"  << "999" << false;
        QTest::newRow("case counts")                << "na"  << "NA"  << false;
        QTest::newRow("blanks are not trimmed")     << "9"   << " 9"  << false;
        QTest::newRow("blanks of the code count")   << " 9"  << " 9"  << true;
        QTest::newRow("zeros at the beginning count") << "9"   << "09"  << false;
        QTest::newRow("no code")                    << ""    << "9"   << false;
        QTest::newRow("no code and no value")       << ""    << ""    << false;
        QTest::newRow("code and no value")          << "9"   << ""    << false;
        QTest::newRow("a pair of surrogates")       << QString::fromUtf8("𐐀") << QString::fromUtf8("𐐀") << true;
        // clang-format on
    }
    void valueEqualToTheItemsCodeIsMissing()
    {
        QFETCH(QString, code);
        QFETCH(QString, value);
        QFETCH(bool, expected);

        Subject missing;
        missing.item.missingValue = code;
        missing.field.setAsString(value);
        QCOMPARE(missing.field.isMissing(), expected);
        QVERIFY(!missing.field.isNotApplicable());

        Subject notApplicable;
        notApplicable.item.notApplicable = code;
        notApplicable.field.setAsString(value);
        QCOMPARE(notApplicable.field.isNotApplicable(), expected);
        QVERIFY(!notApplicable.field.isMissing());
    }

    void codesOfTheFieldItselfDoNotCount()
    {
        Subject subject;
        subject.field.missingValue = QStringLiteral("9");
        subject.field.notApplicable = QStringLiteral("9");
        subject.field.setAsString(QStringLiteral("9"));
        QVERIFY(!subject.field.isMissing());
        QVERIFY(!subject.field.isNotApplicable());
    }

    void unsetFieldIsMissingWhateverItsCode()
    {
        Subject subject;
        subject.field.isUnset = true;
        QVERIFY(subject.field.isMissing());
        subject.item.missingValue = QStringLiteral("9");
        QVERIFY(subject.field.isMissing());
    }

    void unsetFieldIsNotApplicableOnlyByItsText()
    {
        Subject subject;
        subject.item.notApplicable = QStringLiteral("8");
        subject.field.isUnset = true;
        QVERIFY(!subject.field.isNotApplicable());
        subject.field.setAsString(QStringLiteral("8"));
        subject.field.isUnset = true;
        QVERIFY(subject.field.isNotApplicable());
    }

    void fieldWithoutItemHasNoCodes()
    {
        TCSProVariable field(nullptr, nullptr);
        field.length = 2;
        field.setAsString(QStringLiteral("9"));
        QVERIFY(!field.isMissing());
        QVERIFY(!field.isNotApplicable());
        QVERIFY(!field.isBlank());
        field.isUnset = true;
        QVERIFY(field.isMissing());
    }

    void textOfOnlyWhiteSpaceIsBlank_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("expected");

        // clang-format off
        QTest::newRow("nothing")            << ""          << true;
        QTest::newRow("blanks")             << "   "       << true;
        QTest::newRow("tab and line feed")  << "\t\n"      << true;
        QTest::newRow("hard blank")         << QString(QChar(0x00A0)) << true;
        QTest::newRow("zero")               << "0"         << false;
        QTest::newRow("blanks around")      << "  x "      << false;
        // clang-format on
    }
    void textOfOnlyWhiteSpaceIsBlank()
    {
        QFETCH(QString, value);
        QFETCH(bool, expected);
        Subject subject;
        subject.field.setAsString(value);
        QCOMPARE(subject.field.isBlank(), expected);
    }

    void newFieldIsBlankAndNothingElse()
    {
        Subject subject;
        QVERIFY(subject.field.isBlank());
        QVERIFY(!subject.field.isMissing());
        QVERIFY(!subject.field.isNotApplicable());
    }

    void comparedTextEndsAtTheLengthOfTheField()
    {
        Subject subject(vtString, 2);
        subject.item.missingValue = QStringLiteral("99");
        subject.field.setAsString(QStringLiteral("9987"));
        QVERIFY(subject.field.isMissing());
    }

    void comparedTextHas255UnitsAtMost_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("codeLength");
        QTest::addColumn<bool>("expected");

        // clang-format off
        QTest::newRow("254 in a field of 254")  << 254 << 254 << true;
        QTest::newRow("255 in a field of 255")  << 255 << 255 << true;
        QTest::newRow("255 in a field of 300")  << 300 << 255 << true;
        QTest::newRow("256 in a field of 300")  << 300 << 256 << false;
        QTest::newRow("300 in a field of 300")  << 300 << 300 << false;
        // clang-format on
    }
    void comparedTextHas255UnitsAtMost()
    {
        QFETCH(int, length);
        QFETCH(int, codeLength);
        QFETCH(bool, expected);
        Subject subject(vtString, length);
        subject.item.missingValue = QString(codeLength, QLatin1Char('x'));
        subject.item.notApplicable = subject.item.missingValue;
        subject.field.setAsString(QString(400, QLatin1Char('x')));
        QCOMPARE(subject.field.isMissing(), expected);
        QCOMPARE(subject.field.isNotApplicable(), expected);
    }

    void unitsAfterThe254thStillMakeATextNotBlank()
    {
        Subject subject(vtString, 255);
        subject.field.setAsString(QString(254, QLatin1Char(' ')) + QLatin1Char('x'));
        QVERIFY(!subject.field.isBlank());
        subject.field.setAsString(QString(255, QLatin1Char(' ')));
        QVERIFY(subject.field.isBlank());
    }

    void codeOrBlankStopsTheConversion_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("converted");

        // clang-format off
        QTest::newRow("integer, plain")          << int(vtInteger) << "7"  << true;
        QTest::newRow("integer, missing")        << int(vtInteger) << "99" << false;
        QTest::newRow("integer, not applicable") << int(vtInteger) << "98" << false;
        QTest::newRow("integer, blank")          << int(vtInteger) << "  " << false;
        QTest::newRow("real, plain")             << int(vtReal)    << "7"  << true;
        QTest::newRow("real, missing")           << int(vtReal)    << "99" << false;
        QTest::newRow("real, not applicable")    << int(vtReal)    << "98" << false;
        QTest::newRow("real, blank")             << int(vtReal)    << "  " << false;
        // clang-format on
    }
    void codeOrBlankStopsTheConversion()
    {
        QFETCH(int, type);
        QFETCH(QString, value);
        QFETCH(bool, converted);
        const bool isWide[] = { false, true };
        for (const bool wide : isWide) {
            Subject subject(eVanVarType(type), 2);
            subject.item.missingValue = QStringLiteral("99");
            subject.item.notApplicable = QStringLiteral("98");
            subject.field.intValue = 5;
            subject.field.realValue = 5;
            subject.field.isUnset = true;
            if (wide)
                subject.field.setAsStringChar(value.toStdWString().c_str());
            else
                subject.field.setAsString(value);
            QVERIFY(!subject.field.isUnset);
            QCOMPARE(subject.field.currentText(), value);
            QCOMPARE(subject.field.realValue, converted ? 7.0 : 5.0);
            QCOMPARE(subject.field.intValue, converted && type == vtInteger ? 7.0 : 5.0);
        }
    }

    void valueOfAFieldOfNoTypeIsSpoiledUnlessItIsMissing()
    {
        Subject subject(vtNone, 6);
        subject.item.missingValue = QStringLiteral("999999");
        subject.field.setAsString(QStringLiteral("999999"));
        QCOMPARE(subject.field.currentText(), QStringLiteral("999999"));
        subject.field.setAsString(QStringLiteral("123456"));
        QCOMPARE(subject.field.currentText(), QString(4, QChar(0x1515)) + QStringLiteral("56"));
    }

    void missingFieldReadsAsTheCodeOfTheFieldNotOfTheItem()
    {
        Subject subject(vtInteger, 2);
        subject.item.missingValue = QStringLiteral("99");
        subject.field.missingValue = QStringLiteral("12");
        subject.field.intValue = 5;
        subject.field.setAsString(QStringLiteral("99"));
        QCOMPARE(TestAccess::asString(subject.field), QStringLiteral("12"));
        QCOMPARE(TestAccess::asFloat(subject.field), 12.0);
        QCOMPARE(TestAccess::asInteger(subject.field), 12);
    }

    void notApplicableFieldKeepsItsFormerNumber()
    {
        Subject subject(vtInteger, 2);
        subject.item.notApplicable = QStringLiteral("98");
        subject.field.notApplicable = QStringLiteral("98");
        subject.field.intValue = 5;
        subject.field.setAsString(QStringLiteral("98"));
        QCOMPARE(TestAccess::asString(subject.field), QStringLiteral("98"));
        QCOMPARE(TestAccess::asFloat(subject.field), 5.0);
        QCOMPARE(TestAccess::asInteger(subject.field), 5);
    }

    void changedItemCountsAtOnce()
    {
        Subject subject;
        subject.field.setAsString(QStringLiteral("9"));
        QVERIFY(!subject.field.isMissing());
        subject.item.missingValue = QStringLiteral("9");
        QVERIFY(subject.field.isMissing());
    }

    void addingAValueLabelDoesNothing()
    {
        Subject subject;
        subject.field.valueLabels = QStringLiteral("1 One\t");
        TGenericField &field = subject.field;
        field.addValueLabel(QStringLiteral("2"), QStringLiteral("Two"));
        QCOMPARE(field.valueLabels, QStringLiteral("1 One\t"));
    }

    void copySharesTheItem()
    {
        Subject subject;
        subject.field.group = QStringLiteral("HOUSE");
        subject.item.missingValue = QStringLiteral("9");
        subject.field.setAsString(QStringLiteral("9"));
        TCSProVariable copy(subject.field);
        QCOMPARE(copy.item, &subject.item);
        QCOMPARE(copy.getGroup(), QStringLiteral("HOUSE"));
        QVERIFY(copy.isMissing());
    }
};

QTEST_GUILESS_MAIN(CSProVariableTest)
#include "CSProVariableTest.moc"
