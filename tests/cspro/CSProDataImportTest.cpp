#include "cspro/CSProDataImport.h"
#include "cspro/CSPro_p.h"
#include "cspro/DecimalQuestion_p.h"
#include "import/DataProvider.h"
#include "import/SourceField.h"
#include "support/DictionaryFile.h"
#include "support/Thrown.h"

#include <QtTest>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>

Q_DECLARE_METATYPE(DecimalAnswerFunction)

struct TestAccess {
    using Importer = TCSProDataImport;

    static TCSPro *dictionary(const Importer &importer) { return importer.dictionary; }
    static QList<TGenericField *> *fields(const Importer &importer) { return importer.fields; }
    static int currentIndex(const Importer &importer) { return importer.getRecordTypeIndex(); }
    static QString &currentRecordType(Importer &importer) { return importer.currentRecordType; }
};

namespace
{

// An importer that has opened a dictionary of this text.
struct OpenDictionary {
    explicit OpenDictionary(const QString &text)
        : file(text)
        , importer(file.path())
    {
        base().openFile();
    }

    TDataImport &base() { return importer; }
    int fieldCount() const { return TestAccess::fields(importer)->size(); }
    TCSProVariable *field(int index) const
    {
        return static_cast<TCSProVariable *>(TestAccess::fields(importer)->at(index));
    }

    DictionaryFile file;
    TCSProDataImport importer;
};

QString item(const QString &name, const QString &lines = QString())
{
    return QStringLiteral("[Item]\nName=%1\n%2\n").arg(name, lines);
}

QString record(const QString &name, const QString &type)
{
    return QStringLiteral("[Record]\nName=%1\nRecordTypeValue='%2'\n").arg(name, type);
}

// A section of value lines.
QString valueSet(const QString &lines)
{
    return QStringLiteral("[ValueSet]\nName=SET\n") + lines + QLatin1Char('\n');
}

// An item whose value set raises the question on decimal codes.
QString decimalSet()
{
    return item(QStringLiteral("SHARE"), QStringLiteral("Len=4\nDecimal=1"))
        + valueSet(QStringLiteral("Value=2.5;Some\nValue=7;Seven"));
}

QString sample()
{
    return QStringLiteral("[Dictionary]\nRecordTypeStart=3\nRecordTypeLen=2\n[IdItems]\n")
        + item(QStringLiteral("AREA"), QStringLiteral("Start=5\nLen=3"))
        + record(QStringLiteral("HOUSE"), QStringLiteral("H"))
        + item(QStringLiteral("ROOMS"), QStringLiteral("Label=Rooms\nStart=8\nLen=2"))
        + record(QStringLiteral("PERSON"), QStringLiteral("P"))
        + item(QStringLiteral("AGE"), QStringLiteral("Label=Age\nStart=8\nLen=3"));
}

QStringList groupsOf(TDataImport &importer)
{
    QStringList groups;
    for (int i = 0; i < importer.getGroupCount(); ++i)
        groups.append(importer.getGroupName(i));
    return groups;
}

QStringList fieldNames(const OpenDictionary &open)
{
    QStringList names;
    for (const TGenericField *field : *TestAccess::fields(open.importer))
        names.append(field->name);
    return names;
}

// The only field of a dictionary whose only item has these lines.
TCSProVariable *fieldOf(const QString &itemLines, const QString &setLines = QString())
{
    QString text = item(QStringLiteral("ITEM"), itemLines);
    if (!setLines.isNull())
        text += valueSet(setLines);
    const OpenDictionary open(text);
    return open.fieldCount() == 1 ? open.field(0) : nullptr;
}

} // namespace

class CSProDataImportTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { setDecimalAnswer({}); }

    // answers

    void dictionaryIsMultipleWhereTheRecordTypeHasAWidth_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("expected");

        // clang-format off
        QTest::newRow("empty dictionary")   << ""                                 << 1  << true;
        QTest::newRow("no width given")     << "[Dictionary]\n"                   << 1  << true;
        QTest::newRow("a width of two")     << "[Dictionary]\nRecordTypeLen=2\n"  << 2  << true;
        QTest::newRow("no width")           << "[Dictionary]\nRecordTypeLen=0\n"  << 0  << false;
        QTest::newRow("a negative width")   << "[Dictionary]\nRecordTypeLen=-1\n" << -1 << false;
        // clang-format on
    }
    void dictionaryIsMultipleWhereTheRecordTypeHasAWidth()
    {
        QFETCH(QString, text);
        QFETCH(int, size);
        QFETCH(bool, expected);
        OpenDictionary open(text);
        QCOMPARE(open.base().getRecordTypeSize(), size);
        QCOMPARE(open.base().isMultiple(), expected);
    } // record types

    void typeIndexIsByTheExactTypeWithoutQuotes_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("expected");

        // clang-format off
        QTest::newRow("without quotes")   << "HH"       << 0;
        QTest::newRow("with quotes")      << "'HH'"     << -1;
        QTest::newRow("a part")           << "H"        << -1;
        QTest::newRow("another case")     << "hh"       << -1;
        QTest::newRow("unknown")          << "X"        << -1;
        QTest::newRow("the whole group")  << "HOUSE=HH" << -1;
        QTest::newRow("a name")           << "HOUSE"    << -1;
        QTest::newRow("common record")    << "_COMMON_" << -1;
        QTest::newRow("empty type")       << ""         << 1;
        // clang-format on
    }
    void typeIndexIsByTheExactTypeWithoutQuotes()
    {
        QFETCH(QString, type);
        QFETCH(int, expected);
        OpenDictionary open(item(QStringLiteral("ID")) + record(QStringLiteral("HOUSE"), QStringLiteral("HH"))
                            + record(QStringLiteral("NOTHING"), QString()));
        QCOMPARE(open.base().getRecordTypeIndex(type), expected);
        TestAccess::currentRecordType(open.importer) = type;
        QCOMPARE(TestAccess::currentIndex(open.importer), expected);
    }

    void emptyDictionaryOpensWithoutGroupsAndFields()
    {
        const DictionaryFile file{ QString() };
        TCSProDataImport importer(file.path());
        TDataImport &base = importer;
        QVERIFY(base.openFile());
        QCOMPARE(base.getGroupCount(), 0);
        QVERIFY(TestAccess::fields(importer)->isEmpty());
        QVERIFY(base.isMultiple());
    }

    void failureOfTheReaderPassesThroughOpening_data()
    {
        QTest::addColumn<bool>("selects");
        QTest::newRow("openFile") << false;
        QTest::newRow("selectLayoutSource") << true;
    }
    void failureOfTheReaderPassesThroughOpening()
    {
        QFETCH(bool, selects);
        OpenDictionary open(sample());
        // The lines of the set end at index 8, before the last header.
        open.file.write(QStringLiteral("[Item]\nName=HOURS\nLen=2\n\n[ValueSet]\nName=SET\nValue=1:5 7:9;Two ranges\n"
                                       "Value=3;Three\n\n[Item]\nName=AFTER\n"));
        const auto error = thrownBy([&] {
            if (selects)
                delete open.base().selectLayoutSource();
            else
                open.base().openFile();
        });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 242);
        QCOMPARE(error->getClassName(), QStringLiteral("CSPro"));
        QCOMPARE(error->getText(), QString(QChar(8)));

        QCOMPARE(open.fieldCount(), 0);
        QCOMPARE(TestAccess::dictionary(open.importer)->getItemsCount(), 1);
        QCOMPARE(groupsOf(open.base()), (QStringList{ QStringLiteral("HOUSE=H"), QStringLiteral("PERSON=P") }));
    }

    void decimalQuestionComesUpWhileOpening()
    {
        int questions = 0;
        setDecimalAnswer([&questions](const DecimalQuestion &question) {
            ++questions;
            return question.title == QLatin1String("Caution") ? DecimalAnswer::yes : DecimalAnswer::no;
        });
        const DictionaryFile file(decimalSet());
        TCSProDataImport importer(file.path());
        QCOMPARE(questions, 0);
        const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(importer).selectLayoutSource());
        QCOMPARE(questions, 1);
        const TGenericField *field = importer.fieldByName(QStringLiteral("SHARE"));
        QCOMPARE(field->valueLabels, QStringLiteral("0 Some\t7 Seven\t"));
        QCOMPARE(field->maximum, QStringLiteral("7"));
    }

    void ownAnswerOfAnImporterReplacesThatOfTheProcess_data()
    {
        QTest::addColumn<DecimalAnswerFunction>("ofProcess");
        QTest::addColumn<DecimalAnswerFunction>("own");
        QTest::addColumn<QString>("labels");
        const DecimalAnswerFunction yes = [](const DecimalQuestion &) { return DecimalAnswer::yes; };
        const DecimalAnswerFunction no = [](const DecimalQuestion &) { return DecimalAnswer::no; };
        const DecimalAnswerFunction none;
        QTest::newRow("own yes, process no") << no << yes << "0 Some\t7 Seven\t";
        QTest::newRow("own no, process yes") << yes << no << "";
        QTest::newRow("own yes, no function of the process") << none << yes << "0 Some\t7 Seven\t";
        QTest::newRow("no own function, process yes") << yes << none << "0 Some\t7 Seven\t";
        QTest::newRow("no own function, process no") << no << none << "";
        QTest::newRow("no function at all, and no dialog") << none << none << "";
    }
    void ownAnswerOfAnImporterReplacesThatOfTheProcess()
    {
        QFETCH(DecimalAnswerFunction, ofProcess);
        QFETCH(DecimalAnswerFunction, own);
        QFETCH(QString, labels);
        const DictionaryFile file(decimalSet());
        setDecimalAnswer(ofProcess);
        TCSProDataImport importer(file.path());
        importer.setDecimalAnswer(own);
        static_cast<TDataImport &>(importer).openFile();
        QCOMPARE(importer.fieldByName(QStringLiteral("SHARE"))->valueLabels, labels);
    }

    void ownAnswerIsThatOfOneImporterAndOfItsCopies()
    {
        const DictionaryFile file(decimalSet());
        setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::no; });
        TCSProDataImport importer(file.path());
        importer.setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::yes; });
        TCSProDataImport copy(importer);
        TCSProDataImport assigned;
        assigned = importer;
        TCSProDataImport moved(std::move(importer));
        moved.setSourceName(file.path());
        TCSProDataImport other(file.path());
        const auto labelsOf = [](TCSProDataImport &subject) {
            static_cast<TDataImport &>(subject).openFile();
            return subject.fieldByName(QStringLiteral("SHARE"))->valueLabels;
        };
        QCOMPARE(labelsOf(copy), QStringLiteral("0 Some\t7 Seven\t"));
        QCOMPARE(labelsOf(assigned), QStringLiteral("0 Some\t7 Seven\t"));
        QCOMPARE(labelsOf(moved), QString());
        QCOMPARE(labelsOf(other), QString());
        copy.setDecimalAnswer({});
        QCOMPARE(labelsOf(copy), QString());
    }

    // The dictionary lives on with its fields.
    void ownAnswerIsNotKeptBeyondTheImporter_data()
    {
        QTest::addColumn<bool>("isThrowing");
        QTest::newRow("the reading ends") << false;
        QTest::newRow("the reading fails") << true;
    }
    void ownAnswerIsNotKeptBeyondTheImporter()
    {
        QFETCH(bool, isThrowing);
        const DictionaryFile file(decimalSet());
        std::weak_ptr<int> held;
        {
            const auto count = std::make_shared<int>(0);
            held = count;
            TCSProDataImport importer(file.path());
            importer.setDecimalAnswer([count, isThrowing](const DecimalQuestion &) {
                if (isThrowing)
                    throw std::runtime_error("no answer");
                return DecimalAnswer::yes;
            });
            const auto error = thrownBy([&] { static_cast<TDataImport &>(importer).openFile(); });
            QCOMPARE(error != nullptr, isThrowing);
            QVERIFY(!held.expired());
        }
        QVERIFY(held.expired());
    }

    // Each function has a text of its own, which is freed with it: once it answers after that, or is freed twice, the
    // program ends.
    void answerOfTheProcessMayBeSetOnOtherThreads()
    {
        constexpr int setFunctions = 200000;
        std::atomic<int> functions{ 0 };
        const auto setOne = [] {
            setDecimalAnswer([text = QStringLiteral("Caution").toUpper()](const DecimalQuestion &question) {
                return question.title == text ? DecimalAnswer::yes : DecimalAnswer::no;
            });
        };
        const auto setMany = [&] {
            while (functions++ < setFunctions)
                setOne();
        };
        setOne();
        std::thread one(setMany);
        std::thread other(setMany);
        DecimalQuestion question;
        question.title = QStringLiteral("CAUTION");
        std::unique_ptr<QMessageBox> box;
        int answers = 0;
        int yes = 0;
        do {
            yes += int(cspro::answerDecimalQuestion(question, {}, box) == DecimalAnswer::yes);
            ++answers;
        } while (functions < setFunctions);
        one.join();
        other.join();
        QCOMPARE(yes, answers);
        setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::yes; });
        const DictionaryFile file(decimalSet());
        TCSProDataImport importer(file.path());
        static_cast<TDataImport &>(importer).openFile();
        QCOMPARE(importer.fieldByName(QStringLiteral("SHARE"))->valueLabels, QStringLiteral("0 Some\t7 Seven\t"));
    }

    // items to fields

    void descriptionIsCopiedFromTheItem()
    {
        const TCSProVariable *field
            = fieldOf(QStringLiteral("Label= Rooms; all \nStart=17\nLen=3\nDecimalChar=Yes"),
                      QStringLiteral("Value=1;One\nValue=98;No room\nName=NOTAPPL ,Special\nValue=99;Not stated\n"
                                     "Name=MISSING ,Special"));
        QVERIFY(field);
        QCOMPARE(field->name, QStringLiteral("ITEM"));
        QCOMPARE(field->label, QStringLiteral(" Rooms; all"));
        QCOMPARE(field->start, 17);
        QCOMPARE(field->length, 3);
        QCOMPARE(field->missingValue, QStringLiteral("99"));
        QCOMPARE(field->notApplicable, QStringLiteral("98"));
    }

    void decimalCharacterOfTheItemIsNotCopied_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::newRow("none given") << "Len=5\nDecimal=2";
        QTest::newRow("yes") << "Len=5\nDecimal=2\nDecimalChar=Yes";
        QTest::newRow("no") << "Len=5\nDecimal=2\nDecimalChar=No";
    }
    void decimalCharacterOfTheItemIsNotCopied()
    {
        QFETCH(QString, lines);
        TCSProVariable *field = fieldOf(lines);
        QVERIFY(field->hasDecimalChar);
        field->setAsString(QStringLiteral("12345"));
        QCOMPARE(field->realValue, 12345.0);
    }

    void itemChoosesTypeAndDecimals_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("decimals");

        // clang-format off
        QTest::newRow("text")                              << "Len=4\nDataType=Alpha"            << 3 << "";
        QTest::newRow("text of length 20")                 << "Len=20\nDataType=Alpha"           << 3 << "";
        QTest::newRow("text with decimals")                << "Len=4\nDataType=Alpha\nDecimal=2" << 3 << "";
        QTest::newRow("number of length 1")                << "Len=1"                            << 1 << "0";
        QTest::newRow("number of length 9")                << "Len=9"                            << 1 << "0";
        QTest::newRow("number of length 10")               << "Len=10"                           << 2 << "0";
        QTest::newRow("number of length 18")               << "Len=18"                           << 2 << "0";
        QTest::newRow("number of no length")               << "Len=0"                            << 1 << "0";
        QTest::newRow("number of a negative length")       << "Len=-1"                           << 1 << "0";
        QTest::newRow("number with a decimal character")   << "Len=9\nDecimalChar=Yes"           << 1 << "0";
        QTest::newRow("number with one decimal")           << "Len=3\nDecimal=1"                 << 2 << QString(QChar(1));
        QTest::newRow("long number with two decimals")     << "Len=12\nDecimal=2"                << 2 << QString(QChar(2));
        QTest::newRow("number with negative decimals")     << "Len=3\nDecimal=-1"                << 2 << QString(QChar(0xFFFF));
        QTest::newRow("decimals 48 are the character 0")   << "Len=60\nDecimal=48"               << 2 << "0";
        QTest::newRow("decimals 50 are the character 2")   << "Len=60\nDecimal=50"               << 2 << "2";
        // clang-format on
    }
    void itemChoosesTypeAndDecimals()
    {
        QFETCH(QString, lines);
        QFETCH(int, type);
        QFETCH(QString, decimals);
        const TCSProVariable *field = fieldOf(lines);
        QVERIFY(field);
        QCOMPARE(int(field->type), type);
        QCOMPARE(field->decimals, decimals);
    }

    void boundsWithoutValueSetAreZeroAndNines_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");

        // clang-format off
        QTest::newRow("text")                                 << "Len=4\nDataType=Alpha"             << ""  << "";
        QTest::newRow("text with decimals")                   << "Len=4\nDataType=Alpha\nDecimal=2"  << ""  << "";
        QTest::newRow("length 1")                             << "Len=1"                             << "0" << "9";
        QTest::newRow("length 9")                             << "Len=9"                             << "0" << "999999999";
        QTest::newRow("length 10")                            << "Len=10"                            << "0" << "9999999999";
        QTest::newRow("no length")                            << "Len=0"                             << "0" << "";
        QTest::newRow("negative length")                      << "Len=-3"                            << "0" << "";
        QTest::newRow("decimal character, no decimals")       << "Len=4\nDecimalChar=Yes"            << "0" << "9999";
        QTest::newRow("two decimals")                         << "Len=5\nDecimal=2"                  << "0" << "999";
        QTest::newRow("two decimals and the character")       << "Len=5\nDecimal=2\nDecimalChar=Yes" << "0" << "9999";
        QTest::newRow("four decimals and the character")      << "Len=5\nDecimal=4\nDecimalChar=Yes" << "0" << "9999";
        QTest::newRow("nothing but decimals")                 << "Len=3\nDecimal=3"                  << "0" << "9";
        QTest::newRow("nothing but decimals, the character")  << "Len=3\nDecimal=3\nDecimalChar=Yes" << "0" << "99";
        QTest::newRow("more decimals than length")            << "Len=2\nDecimal=5"                  << "0" << "";
        QTest::newRow("length 1 and the character")           << "Len=1\nDecimal=1\nDecimalChar=Yes" << "0" << "";
        QTest::newRow("no length and the character")          << "Len=0\nDecimal=1\nDecimalChar=Yes" << "0" << "";
        QTest::newRow("negative decimals")                    << "Len=4\nDecimal=-1"                 << "0" << "9999";
        // clang-format on
    }
    void boundsWithoutValueSetAreZeroAndNines()
    {
        QFETCH(QString, lines);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        const TCSProVariable *field = fieldOf(lines);
        QVERIFY(field);
        QCOMPARE(field->minimum, minimum);
        QCOMPARE(field->maximum, maximum);
        QCOMPARE(field->valueLabels, QString());
    }

    void valueSetGivesBoundsAndLabels_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<QString>("values");
        QTest::addColumn<QString>("minimum");
        QTest::addColumn<QString>("maximum");
        QTest::addColumn<QString>("valueLabels");

        // clang-format off
        QTest::newRow("two ranges: four entries") << "Len=1" << "Value=7:9;High\nValue=1:5;Low"
            << "1" << "9" << "1 Low\t5 Low\t7 High\t9 High\t";
        QTest::newRow("one value") << "Len=2" << "Value=12;Twelve"
            << "12" << "12" << "12 Twelve\t";
        QTest::newRow("no label leaves the blank") << "Len=2" << "Value=12"
            << "12" << "12" << "12 \t";
        QTest::newRow("integer 05 reads 5") << "Len=2" << "Value=05;Five\nValue= 7 ;Seven"
            << "5" << "7" << "5 Five\t7 Seven\t";
        QTest::newRow("real 05 keeps its text") << "Len=10" << "Value=05;Five\nValue= 7 ;Seven"
            << "5" << "7" << "05 Five\t 7  Seven\t";
        QTest::newRow("text 05 keeps its text") << "Len=2\nDataType=Alpha" << "Value=05;Five\nValue= 7 ;Seven"
            << "0" << "" << " 7  Seven\t05 Five\t";
        QTest::newRow("text has the minimum 0") << "Len=1\nDataType=Alpha" << "Value=B;Bad\nValue=A;Good"
            << "0" << "" << "A Good\tB Bad\t";
        QTest::newRow("text with an empty set") << "Len=1\nDataType=Alpha" << ""
            << "0" << "" << "";
        QTest::newRow("negative codes") << "Len=2" << "Value=-5;Five below\nValue=-1;One below"
            << "-5" << "-1" << "-5 Five below\t-1 One below\t";
        QTest::newRow("six digits are kept") << "Len=6" << "Value=999999;Most"
            << "999999" << "999999" << "999999 Most\t";
        QTest::newRow("a million reads 1e+06") << "Len=7" << "Value=1000000;Million"
            << "1e+06" << "1e+06" << "1e+06 Million\t";
        QTest::newRow("seven digits lose one") << "Len=7" << "Value=1234567;Many"
            << "1.23457e+06" << "1.23457e+06" << "1.23457e+06 Many\t";
        QTest::newRow("seven digits of a real keep their text") << "Len=10" << "Value=1234567;Many"
            << "1.23457e+06" << "1.23457e+06" << "1234567 Many\t";
        QTest::newRow("bounds of a real with decimals are those of the set") << "Len=5\nDecimal=2" << "Value=3:8;Range"
            << "3" << "8" << "3 Range\t8 Range\t";
        QTest::newRow("empty set keeps the nines") << "Len=3" << ""
            << "0" << "999" << "";
        QTest::newRow("empty set keeps the nines of the whole length") << "Len=5\nDecimal=2" << ""
            << "0" << "99999" << "";
        QTest::newRow("empty set, with the character") << "Len=5\nDecimal=2\nDecimalChar=Yes" << ""
            << "0" << "99999" << "";
        QTest::newRow("lost set") << "Len=5\nDecimal=2" << "Value=1;One\nValue=3:8"
            << "0" << "999" << "";
        QTest::newRow("repeated code") << "Len=1" << "Value=1;One\nValue=1;Again"
            << "1" << "1" << "1 One\t1 Again\t";
        QTest::newRow("a mark stays out") << "Len=2" << "Value=1:5;Some\nValue=99;Not stated\nName=MISSING ,Special"
            << "1" << "5" << "1 Some\t5 Some\t";
        QTest::newRow("nothing but a mark") << "Len=2" << "Value=7;Not stated\nName=MISSING ,Special"
            << "0" << "99" << "";
        // clang-format on
    }
    void valueSetGivesBoundsAndLabels()
    {
        QFETCH(QString, lines);
        QFETCH(QString, values);
        QFETCH(QString, minimum);
        QFETCH(QString, maximum);
        QFETCH(QString, valueLabels);
        const TCSProVariable *field = fieldOf(lines, values);
        QVERIFY(field);
        QCOMPARE(field->minimum, minimum);
        QCOMPARE(field->maximum, maximum);
        QCOMPARE(field->valueLabels, valueLabels);
    }

    void missingMarkIsFoundAgainOnTheField()
    {
        TCSProVariable *field = fieldOf(QStringLiteral("Len=2"),
                                        QStringLiteral("Value=1:5;Some\nValue=98;Not asked\nName=NOTAPPL ,Special\n"
                                                       "Value=99;Not stated\nName=MISSING ,Special"));
        QVERIFY(field);
        field->setAsString(QStringLiteral("99"));
        QVERIFY(field->isMissing());
        QVERIFY(!field->isNotApplicable());
        field->setAsString(QStringLiteral("98"));
        QVERIFY(field->isNotApplicable());
        field->setAsString(QStringLiteral("5"));
        QVERIFY(!field->isMissing());
        QCOMPARE(field->intValue, 5.0);
    }

    void subitemIsASeparateField()
    {
        OpenDictionary open(item(QStringLiteral("DATE"), QStringLiteral("Start=4\nLen=8"))
                            + item(QStringLiteral("YEAR"), QStringLiteral("Start=4\nLen=4\nItemType=SubItem"))
                            + item(QStringLiteral("MONTH"), QStringLiteral("Start=8\nLen=2\nItemType=SubItem")));
        QCOMPARE(fieldNames(open),
                 (QStringList{ QStringLiteral("DATE"), QStringLiteral("YEAR"), QStringLiteral("MONTH") }));
        QCOMPARE(open.field(0)->length, 8);
        QCOMPARE(open.field(1)->start, 4);
        QCOMPARE(open.field(2)->start, 8);
        QCOMPARE(open.field(2)->maximum, QStringLiteral("99"));
    }

    void occurrencesAreFieldsWithTheirOwnPlaces()
    {
        OpenDictionary open(item(QStringLiteral("ID"), QStringLiteral("Len=1"))
                            + item(QStringLiteral("X"), QStringLiteral("Start=10\nLen=2\nOccurrences=3"))
                            + valueSet(QStringLiteral("Value=0:50;Sacks\nValue=99;Not stated\nName=MISSING ,Special")));
        QCOMPARE(open.fieldCount(), 4);
        for (int i = 1; i <= 3; ++i) {
            const TCSProVariable *field = open.field(i);
            QCOMPARE(field->name, QStringLiteral("X_") + QChar(i));
            QCOMPARE(field->start, 8 + 2 * i);
            QCOMPARE(field->minimum, QStringLiteral("0"));
            QCOMPARE(field->maximum, QStringLiteral("50"));
            QCOMPARE(field->valueLabels, QStringLiteral("0 Sacks\t50 Sacks\t"));
            QCOMPARE(field->missingValue, i == 3 ? QStringLiteral("99") : QString());
        }
    }

    // from the file to the provider

    void providerTakesOverTheWholeLayout()
    {
        const DictionaryFile file(
            sample() + item(QStringLiteral("RENT"), QStringLiteral("Label=Rent\nStart=11\nLen=7\nDecimal=2"))
            + item(QStringLiteral("SEX"), QStringLiteral("Label=Sex\nStart=18\nLen=1\nDataType=Alpha"))
            + valueSet(QStringLiteral("Value=M;Male\nValue=F;Female\nValue=X;Not asked\n"
                                      "Name=NOTAPPL ,Special\nValue=U;Not stated\n"
                                      "Name=MISSING ,Special")));
        TCSProDataImport importer(file.path());
        const std::unique_ptr<QStringList> names(static_cast<TDataImport &>(importer).selectLayoutSource());
        QCOMPARE(names->size(), 5);

        TVpDataProvider provider;
        QVERIFY(provider.genericGetFieldsFrom(&importer));
        QCOMPARE(provider.getDataProviderId(), QStringLiteral("CSPRO_") + file.path());
        QCOMPARE(provider.getDataProviderType(), QStringLiteral("CSPRO"));
        QCOMPARE(provider.getLayoutFileName(), file.path());
        QCOMPARE(provider.getDataFileName(), QString());
        QCOMPARE(provider.getRecordTypeStart(), 3);
        QCOMPARE(provider.getRecordTypeSize(), 2);
        QCOMPARE(provider.getImportData(), static_cast<TDataImport *>(&importer));
        QCOMPARE(provider.getFields()->size(), 5);
        for (const TVpSourceField *field : *provider.getFields()) {
            QCOMPARE(field->DataProviderType, QStringLiteral("CSPRO"));
            QCOMPARE(field->dataProviderTypeIndex, dpCSPro);
            QCOMPARE(field->providerId, QStringLiteral("CSPRO_") + file.path());
        }

        const TVpSourceField *rooms = provider.getField(QStringLiteral("ROOMS"));
        QVERIFY(rooms);
        QCOMPARE(rooms->FieldType, QStringLiteral("INTEGER"));
        QCOMPARE(rooms->label, QStringLiteral("Rooms"));
        QCOMPARE(rooms->start, 8);
        QCOMPARE(rooms->length, 2);
        QCOMPARE(rooms->minimum, QStringLiteral("0"));
        QCOMPARE(rooms->maximum, QStringLiteral("99"));
        QCOMPARE(rooms->group, QStringLiteral("HOUSE"));

        // The character with code 2 is not a number.
        const TVpSourceField *rent = provider.getField(QStringLiteral("RENT"));
        QVERIFY(rent);
        QCOMPARE(rent->FieldType, QStringLiteral("REAL"));
        QCOMPARE(rent->decimals, 0);
        QCOMPARE(rent->maximum, QStringLiteral("99999"));

        const TVpSourceField *sex = provider.getField(QStringLiteral("SEX"));
        QVERIFY(sex);
        QCOMPARE(sex->FieldType, QStringLiteral("STRING"));
        QCOMPARE(sex->valueLabels, QStringLiteral("F Female\tM Male\t"));
        QCOMPARE(sex->notApplicable, QStringLiteral("X"));
        QCOMPARE(sex->missingValue, QStringLiteral("U"));
        QCOMPARE(sex->minimum, QStringLiteral("0"));
        QCOMPARE(sex->maximum, QString());
    }

    void sourceFieldOfARealItemShowsNoDecimals_data()
    {
        QTest::addColumn<QString>("lines");
        QTest::addColumn<int>("expected");

        // clang-format off
        QTest::newRow("integer")                            << "Len=5"              << 0;
        QTest::newRow("long number")                        << "Len=12"             << 0;
        QTest::newRow("one decimal")                        << "Len=5\nDecimal=1"   << 0;
        QTest::newRow("two decimals")                       << "Len=5\nDecimal=2"   << 0;
        QTest::newRow("nine decimals")                      << "Len=12\nDecimal=9"  << 0;
        QTest::newRow("negative decimals")                  << "Len=5\nDecimal=-2"  << 0;
        QTest::newRow("50 decimals, the character 2")       << "Len=60\nDecimal=50" << 2;
        // clang-format on
    }
    void sourceFieldOfARealItemShowsNoDecimals()
    {
        QFETCH(QString, lines);
        QFETCH(int, expected);
        OpenDictionary open(item(QStringLiteral("ITEM"), lines));
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&open.importer);
        QCOMPARE(provider.getField(QStringLiteral("ITEM"))->decimals, expected);
    }
};

QTEST_GUILESS_MAIN(CSProDataImportTest)
#include "CSProDataImportTest.moc"
