#include "Export.h"
#include "import/SourceField.h"
#include "support/Corpus.h"
#include "support/ReadPipe.h"
#include "support/ToolRun.h"
#include "tool/JsonSchema.h"

#include <QtTest>

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace
{

// One element of an XML document, without the blanks between elements.
struct Element {
    QString name;
    QXmlStreamAttributes attributes;
    QString text;
    QVector<Element> children;

    QVector<Element> all(const QString &wanted) const
    {
        QVector<Element> found;
        for (const Element &child : children) {
            if (child.name == wanted)
                found.append(child);
        }
        return found;
    }
    Element one(const QString &path) const
    {
        Element found = *this;
        for (const QString &step : path.split('/'))
            found = found.all(step).value(0);
        return found;
    }
    QString operator[](const QString &attribute) const { return attributes.value(attribute).toString(); }
};

Element readElement(QXmlStreamReader &xml)
{
    Element element{ xml.name().toString(), xml.attributes(), QString(), {} };
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement:
            element.children.append(readElement(xml));
            break;
        case QXmlStreamReader::Characters:
            element.text += xml.text();
            break;
        case QXmlStreamReader::EndElement:
            return element;
        default:
            break;
        }
    }
    return element;
}

// A dictionary in the text form of these items, all in one record.
QByteArray dictionary(const QByteArray &items)
{
    return "[Dictionary]\nVersion=CSPro 7.7\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n\n"
           "[Record]\nName=R\nRecordTypeValue=\n\n"
        + items;
}

QByteArray item(const QByteArray &name, const QByteArray &label, const QByteArray &rest = "Start=1\nLen=2\n")
{
    return "[Item]\nLabel=" + label + "\nName=" + name + '\n' + rest + '\n';
}

QByteArray valueSet(const QByteArray &values)
{
    return "[ValueSet]\nLabel=Values\nName=VS1\n" + values + '\n';
}

} // namespace

/// `vanlayout export`, run as a user runs it.
class VanlayoutExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ddiIsValid_data()
    {
        addFiles();
        QTest::newRow("marks") << QStringLiteral(VAN_EXAMPLES "/marks.dcf");
        addCorpus();
    }
    void ddiIsValid()
    {
        QFETCH(QString, file);
        if (!QFile::exists(file))
            QSKIP("the corpus is not here");
        const Run run = exported("ddi", file);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        verifyDdi(run.out);
    }

    void ddiOfOddTextsIsValid()
    {
        write(oddDictionary());
        verifyDdi(exported("ddi", "survey.dcf").out);
    }

    void ddiSaysWhatTheLayoutHolds()
    {
        write(dictionary(item("AGE", "Age in years", "Start=4\nLen=3\n")
                         + valueSet("Value=0:110;Years\nValue=998;No person\nName=NOTAPPL ,Special\n"
                                    "Value=999;Not stated\nName=MISSING ,Special\n")
                         + item("WAGE", "Wage", "Start=7\nLen=8\nDecimal=2\n")
                         + item("REMARK", "", "Start=15\nLen=20\nDataType=Alpha\n")));
        const QVector<Element> variables = ddiVariables("survey.dcf");
        QCOMPARE(variables.size(), 3);

        const Element &age = variables.at(0);
        QCOMPARE(age["ID"], QString("V1"));
        QCOMPARE(age["name"], QString("AGE"));
        QCOMPARE(age["files"], QString("F1"));
        QCOMPARE(age["dcml"], QString("0"));
        QCOMPARE(age["intrvl"], QString("discrete"));
        QCOMPARE(age.one("labl").text, QString("Age in years"));
        QCOMPARE(age.one("location")["StartPos"], QString("4"));
        QCOMPARE(age.one("location")["EndPos"], QString("6"));
        QCOMPARE(age.one("location")["width"], QString("3"));
        QCOMPARE(age.one("location")["fileid"], QString("F1"));
        QVERIFY(!age.one("location").attributes.hasAttribute("RecSegNo"));
        QCOMPARE(age.one("valrng/range")["UNITS"], QString("INT"));
        QCOMPARE(age.one("valrng/range")["min"], QString("0"));
        QCOMPARE(age.one("valrng/range")["max"], QString("110"));
        QCOMPARE(age.one("varFormat")["type"], QString("numeric"));
        QStringList invalid;
        for (const Element &code : age.one("invalrng").children)
            invalid.append(code["VALUE"]);
        QCOMPARE(invalid, (QStringList{ "999", "998" }));
        QStringList categories;
        for (const Element &category : age.all("catgry"))
            categories.append(category.one("catValu").text + category.one("labl").text + category["missing"]);
        QCOMPARE(categories, (QStringList{ "0Years", "110Years", "999MissingY", "998Not applicableY" }));

        const Element &wage = variables.at(1);
        QCOMPARE(wage["intrvl"], QString("contin"));
        QVERIFY(!wage.attributes.hasAttribute("dcml")); // the layout does not tell them
        QVERIFY(wage.all("valrng").isEmpty());          // 999999 is less than 999999.99
        QCOMPARE(wage.one("location")["EndPos"], QString("14"));

        const Element &remark = variables.at(2);
        QVERIFY(remark.all("labl").isEmpty());
        QVERIFY(remark.all("valrng").isEmpty());
        QCOMPARE(remark.one("varFormat")["type"], QString("character"));
        QCOMPARE(remark["intrvl"], QString("discrete"));
        QVERIFY(!remark.attributes.hasAttribute("dcml"));
    }

    void ddiDescribesTheFile_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("type");
        QTest::newRow("dictionary, the data elsewhere") << QStringLiteral(VAN_EXAMPLES "/census.dcf") << "census"
                                                        << "";
        QTest::newRow("SPSS") << QStringLiteral(VAN_MADE_DATA "/types.sav") << "types"
                              << "SPSS file";
        QTest::newRow("Stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta") << "types-118"
                               << "Stata file";
    }
    void ddiDescribesTheFile()
    {
        QFETCH(QString, file);
        const Element codeBook = ddi(file);
        const Element description = codeBook.one("fileDscr");
        QCOMPARE(description["ID"], QString("F1"));
        QTEST(description.one("fileTxt/fileName").text, "name");
        QTEST(description.one("fileTxt/fileType").text, "type");
        QCOMPARE(description.one("fileTxt/dimensns/varQnty").text.toInt(), codeBook.one("dataDscr").children.size());
    }

    void titleIsTheFilesNameWithoutFolderAndSuffix_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("url");
        // clang-format off
        QTest::newRow("suffix")               << "survey.dcf"    << "survey"    << "survey.csv";
        QTest::newRow("several points")       << "survey.v2.dcf" << "survey.v2" << "survey.v2.csv";
        QTest::newRow("blank")                << "a survey.dcf"  << "a survey"  << "a%20survey.csv";
        QTest::newRow("nothing but a suffix") << ".dcf"          << ".dcf"      << ".dcf.csv";
        // clang-format on
    }
    void titleIsTheFilesNameWithoutFolderAndSuffix()
    {
        QFETCH(QString, file);
        write(dictionary(item("X", "A label")), file);
        const QString path = folder.filePath(file);
        for (const char *description : { "docDscr", "stdyDscr" })
            QTEST(ddi(path).one(QString(description) + "/citation/titlStmt/titl").text, "title");
        QTEST(json("csvw", path)["dc:title"].toString(), "title");
        QTEST(json("csvw", path)["url"].toString(), "url");
        QTEST(json("json-schema", path)["title"].toString(), "title");
    }

    void codesAreAsTheLayoutHoldsThem()
    {
        const QString file = QStringLiteral(VAN_MADE_DATA "/types.sav");
        const QJsonArray fields = form(file)["fields"].toArray();
        const QVector<Element> variables = ddiVariables(file);
        const QJsonArray columns = json("csvw", file)["tableSchema"].toObject()["columns"].toArray();
        QStringList codesOfAll;
        for (int i = 0; i < fields.size(); ++i) {
            QStringList codes;
            for (const QJsonValue &label : fields.at(i)["valueLabels"].toArray())
                codes.append(label["code"].toString());
            QStringList categories;
            for (const Element &category : variables.at(i).all("catgry"))
                categories.append(category.one("catValu").text);
            QCOMPARE(categories, codes);
            QStringList notations;
            for (const QJsonValue &concept : columns.at(i)["qb:codeList"]["skos:hasTopConcept"].toArray())
                notations.append(concept["skos:notation"].toString());
            QCOMPARE(notations, codes);
            codesOfAll += codes;
        }
        QVERIFY(codesOfAll.contains("1.000000"));
        const QByteArray schema = exported("json-schema", file).out;
        QVERIFY(schema.contains("\"const\": 0.5,"));
        QVERIFY(!schema.contains("1.000000"));
    }

    void numberThatADoubleWouldRoundIsNotInTheJsonSchema_data()
    {
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<bool>("isExact");
        QTest::newRow("highest") << QByteArray("9007199254740991") << true;
        QTest::newRow("lowest") << QByteArray("-9007199254740991") << true;
        QTest::newRow("above") << QByteArray("9007199254740993") << false;
        QTest::newRow("below") << QByteArray("-9007199254740993") << false;
        QTest::newRow("far above") << QByteArray("99999999999999999999") << false;
    }
    void numberThatADoubleWouldRoundIsNotInTheJsonSchema()
    {
        QFETCH(QByteArray, code);
        write(dictionary(item("WAGE", "Wage", "Start=1\nLen=16\nDecimal=2\n")
                         + valueSet("Value=1;One\nValue=" + code + ";Not stated\nName=MISSING ,Special\n")));
        const Element wage = ddiVariables("survey.dcf").value(0);
        QCOMPARE(wage.one("valrng/range")["UNITS"], QString("REAL")); // the value labels tell its bounds
        QCOMPARE(wage.one("invalrng/item")["UNITS"], QString("REAL"));
        QCOMPARE(wage.one("invalrng/item")["VALUE"], QString(code));
        QCOMPARE(column(0)["null"].toArray().at(1).toString(), QString(code));
        QTEST(exported("json-schema", "survey.dcf").out.contains("\"const\": " + code + ','), "isExact");
        QFETCH(bool, isExact);
        QCOMPARE(properties()["WAGE"].toObject()["anyOf"].toArray().size(), isExact ? 3 : 2);
    }

    void missingCodeWithAValueLabelIsOneCategory()
    {
        write(dictionary(item("X", "A number")
                         + valueSet("Value=9;Refused\nValue=9;Not stated\nName=MISSING ,Special\n")));
        const QVector<Element> categories = ddiVariables("survey.dcf").value(0).all("catgry");
        QCOMPARE(categories.size(), 1);
        QCOMPARE(categories.at(0).one("labl").text, QString("Refused"));
        QCOMPARE(categories.at(0)["missing"], QString("Y"));
        QCOMPARE(column(0)["qb:codeList"].toObject()["skos:hasTopConcept"].toArray().size(), 1);
    }

    void missingCodesOfATextAreCategoriesAlone()
    {
        write(dictionary(item("SEX", "Sex", "Start=1\nLen=1\nDataType=Alpha\n")
                         + valueSet("Value=M;Male\nValue=X;Nobody\nName=NOTAPPL ,Special\n")));
        const Element sex = ddiVariables("survey.dcf").value(0);
        QVERIFY(sex.all("invalrng").isEmpty());
        QVERIFY(sex.all("valrng").isEmpty());
        const QVector<Element> categories = sex.all("catgry");
        QCOMPARE(categories.size(), 2);
        QCOMPARE(categories.at(0)["missing"], QString());
        QCOMPARE(categories.at(1)["missing"], QString("Y"));
        QCOMPARE(categories.at(1).one("labl").text, QString("Not applicable"));
    }

    void variableOfNoType()
    {
        write(dictionary(item("X", "Of no type", "Start=1\nLen=2\nDataType=Alpha\n") + valueSet("Value=M;Male\n")));
        const Layout layout = readLayout(folder.filePath("survey.dcf"), nullptr);
        QCOMPARE(layout.problem, QString());
        TVpSourceField &field = *layout.provider.getFields()->first();
        field.setFieldType(QString()); // as of a first variable that no type is known of
        const Element variable = readDdi(written(layout, writeDdi)).one("dataDscr/var");
        QCOMPARE(variable["name"], QString("X"));
        QVERIFY(variable.all("varFormat").isEmpty());
        QVERIFY(!variable.attributes.hasAttribute("dcml"));
        QCOMPARE(variable["intrvl"], QString("discrete"));
        const QJsonObject table = QJsonDocument::fromJson(written(layout, writeCsvw)).object();
        QCOMPARE(table["tableSchema"]["columns"].toArray().at(0)["datatype"].toObject(),
                 (QJsonObject{ { "base", "string" } }));
        const QJsonObject schema = QJsonDocument::fromJson(written(layout, writeJsonSchema)).object();
        const QJsonObject property = schema["$defs"]["record"]["properties"]["X"].toObject();
        QCOMPARE(property.keys(), (QStringList{ "anyOf", "title" }));
        QCOMPARE(property["anyOf"].toArray().at(0).toObject(), QJsonObject());
        QCOMPARE(property["anyOf"].toArray().at(1)["const"].toString(), QString("M"));
    }

    void ddiTellsTheRecordTypes()
    {
        const Element codeBook = ddi(QStringLiteral(VAN_EXAMPLES "/census.dcf"));
        QCOMPARE(codeBook["version"], QString("2.5"));
        QCOMPARE(codeBook.one("stdyDscr/citation/titlStmt/titl").text, QString("census"));
        const Element structure = codeBook.one("fileDscr/fileTxt/fileStrc");
        QCOMPARE(structure["type"], QString("hierarchical"));
        const QVector<Element> groups = structure.all("recGrp");
        QCOMPARE(groups.size(), 3);
        QCOMPARE(groups.at(1)["ID"], QString("R2"));
        QCOMPARE(groups.at(1)["rectype"], QString("P"));
        QCOMPARE(groups.at(1)["rtypeloc"], QString("1"));
        QCOMPARE(groups.at(1)["rtypewidth"], QString("1"));
        QCOMPARE(groups.at(1)["rtypevtype"], QString("character"));
        QCOMPARE(groups.at(1).one("labl").text, QString("POPULATION"));
        int variablesOfPopulation = 0;
        for (const Element &variable : codeBook.one("dataDscr").children)
            variablesOfPopulation += variable["rectype"] == "P";
        QVERIFY(variablesOfPopulation > 0);
        QCOMPARE(groups.at(1).one("recDimnsn/varQnty").text.toInt(), variablesOfPopulation);
        // What stands on every record belongs to none.
        QVERIFY(!codeBook.one("dataDscr").children.at(0).attributes.hasAttribute("rectype"));
    }

    void valueOfARecordTypeIsANumberOrAnyText()
    {
        write(dictionaryOfRecords({ { "HOUSE", "1" }, { "PERSON", "=" } }));
        const QVector<Element> groups = ddi("survey.dcf").one("fileDscr/fileTxt/fileStrc").all("recGrp");
        QCOMPARE(groups.size(), 2);
        QCOMPARE(groups.at(0)["rectype"], QString("1"));
        QCOMPARE(groups.at(0)["rtypevtype"], QString("numeric"));
        QCOMPARE(groups.at(1)["rectype"], QString("="));
        QCOMPARE(groups.at(1)["rtypevtype"], QString("character"));
        QCOMPARE(groups.at(1).one("labl").text, QString("PERSON"));
        QCOMPARE(ddiVariables("survey.dcf").value(1)["rectype"], QString("="));
    }

    void nameOfARecordCanHoldAnEqualsSign()
    {
        write(dictionaryOfRecords({ { "A=B", "1" }, { "A", "=" } }));
        const Run run = exported("ddi", "survey.dcf");
        const QVector<Element> groups = readDdi(run.out).one("fileDscr/fileTxt/fileStrc").all("recGrp");
        QCOMPARE(groups.size(), 2);
        QCOMPARE(groups.at(0).one("labl").text, QString("A=B"));
        QCOMPARE(groups.at(0)["rectype"], QString("1"));
        QCOMPARE(groups.at(0).one("recDimnsn/varQnty").text, QString("1"));
        QCOMPARE(groups.at(1).one("labl").text, QString("A"));
        QCOMPARE(groups.at(1)["rectype"], QString("="));
        const QVector<Element> variables = ddiVariables("survey.dcf");
        QCOMPARE(variables.value(0)["rectype"], QString("1"));
        QCOMPARE(variables.value(1)["rectype"], QString("="));
        verifyDdi(run.out);
    }

    void recordOfAVariableIsNotToldWhereTwoShareItsName()
    {
        write(dictionaryOfRecords({ { "HOUSE", "1" }, { "PERSON", "2" }, { "PERSON", "3" } }));
        const Run run = exported("ddi", "survey.dcf");
        const QVector<Element> groups = readDdi(run.out).one("fileDscr/fileTxt/fileStrc").all("recGrp");
        QCOMPARE(groups.size(), 3);
        QCOMPARE(groups.at(1)["rectype"], QString("2"));
        QCOMPARE(groups.at(2)["rectype"], QString("3"));
        QCOMPARE(groups.at(0).all("recDimnsn").size(), 1);
        QVERIFY(groups.at(1).all("recDimnsn").isEmpty());
        const QVector<Element> variables = ddiVariables("survey.dcf");
        QCOMPARE(variables.size(), 3);
        QCOMPARE(variables.at(0)["rectype"], QString("1"));
        QVERIFY(!variables.at(1).attributes.hasAttribute("rectype"));
        QVERIFY(!variables.at(2).attributes.hasAttribute("rectype"));
        verifyDdi(run.out);
    }

    void recordsThatAreAllAlikeAreOfNoType()
    {
        write(dictionary(item("X", "A label")));
        const Element codeBook = ddi("survey.dcf");
        QCOMPARE(codeBook.one("fileDscr/fileTxt/fileName").text, QString("survey"));
        QVERIFY(codeBook.one("fileDscr/fileTxt").all("fileStrc").isEmpty());
        QVERIFY(!codeBook.one("dataDscr/var").attributes.hasAttribute("rectype"));
    }

    void xmlHoldsEveryText_data()
    {
        QTest::addColumn<QByteArray>("label");
        QTest::addColumn<QString>("shown");
        QTest::newRow("markup") << QByteArray("<b> & \"c\" ]]>") << QString("<b> & \"c\" ]]>");
        QTest::newRow("control character") << QByteArray("a\x01\x1F z") << QString::fromUtf8("a\u2401\u241F z");
        QTest::newRow("no character") << QByteArray("a\xEF\xBF\xBE") << QString(QLatin1Char('a')) + QChar(0xFFFD);
        QTest::newRow("beyond the first plane") << QByteArray("\xF0\x9F\x98\x80") << QString::fromUtf8("\U0001F600");
        QTest::newRow("right to left") << QByteArray("\xD8\xA7\xD9\x84\xD8\xB9\xD9\x85\xD8\xB1")
                                       << QString::fromUtf8("\u0627\u0644\u0639\u0645\u0631");
        QTest::newRow("control character of the second set") << QByteArray("a\xC2\x85z") << QString("a\u0085z");
    }
    void xmlHoldsEveryText()
    {
        QFETCH(QByteArray, label);
        write(dictionary(item("X", label) + valueSet("Value=1;" + label + '\n')));
        const QVector<Element> variables = ddiVariables("survey.dcf");
        QCOMPARE(variables.size(), 1);
        QTEST(variables.at(0).one("labl").text, "shown");
        QTEST(variables.at(0).one("catgry/labl").text, "shown");
    }

    void namesOfOccurrencesAreVisibleInXml()
    {
        const QVector<Element> variables = ddiVariables(QStringLiteral(VAN_EXAMPLES "/occurrences.dcf"));
        QCOMPARE(variables.at(1)["name"], QString::fromUtf8("BARLEY_\u2401"));
        QCOMPARE(variables.at(4)["name"], QString::fromUtf8("BARLEY_\u2404"));
    }

    // The JSON form of a dictionary can hold every unit.
    void everyUnitBecomesOneThatTheFormHolds_data()
    {
        QTest::addColumn<QByteArray>("escaped");
        QTest::addColumn<QString>("inXml");
        QTest::addColumn<QString>("inJson");
        const QString replaced = QString("a") + QChar(0xFFFD) + "z";
        QTest::newRow("first half") << QByteArray("a\\uD83Dz") << replaced << replaced;
        QTest::newRow("second half") << QByteArray("a\\uDE00z") << replaced << replaced;
        QTest::newRow("halves the wrong way round")
            << QByteArray("\\uDE00\\uD83D") << QString(2, QChar(0xFFFD)) << QString(2, QChar(0xFFFD));
        QTest::newRow("pair") << QByteArray("\\uD83D\\uDE00") << QString::fromUtf8("\U0001F600")
                              << QString::fromUtf8("\U0001F600");
        QTest::newRow("half behind a pair")
            << QByteArray("\\uD83D\\uDE00\\uD83D") << QString::fromUtf8("\U0001F600\uFFFD")
            << QString::fromUtf8("\U0001F600\uFFFD");
        QTest::newRow("no characters") << QByteArray("a\\uFFFE\\uFFFF") << QString::fromUtf8("a\uFFFD\uFFFD")
                                       << QString("a") + QChar(0xFFFE) + QChar(0xFFFF);
        QTest::newRow("carriage return") << QByteArray("a\\u000Dz") << QString::fromUtf8("a\u240Dz") << "a\rz";
        QTest::newRow("tab and line feed") << QByteArray("a\\u0009\\u000Az") << "a\t\nz"
                                           << "a\t\nz";
    }
    void everyUnitBecomesOneThatTheFormHolds()
    {
        QFETCH(QByteArray, escaped);
        write(jsonDictionary({ escaped }));
        const Element variable = ddiVariables("survey.dcf").value(0);
        QTEST(variable["name"], "inXml");
        QTEST(variable.one("labl").text, "inXml");
        QTEST(column(0)["titles"].toString(), "inJson");
        QTEST(column(0)["dc:description"].toString(), "inJson");
        QFETCH(QString, inJson);
        QCOMPARE(properties().keys(), QStringList(inJson));
        QTEST(properties()[inJson].toObject()["title"].toString(), "inJson");
    }

    void halvesInEveryTextOfAVariableAreReplacedInJson()
    {
        write("{ \"levels\": [ { \"name\": \"L\", \"ids\": { \"items\": [ { \"name\": \"X\", \"labels\": [], "
              "\"contentType\": \"alpha\", \"start\": 1, \"length\": 2, \"valueSets\": [ { \"name\": \"VS\", "
              "\"values\": [ { \"labels\": [ { \"text\": \"y\\uD83D\" } ], \"pairs\": [ { \"value\": \"c\\uD83D\" } "
              "] } ] } ] } ] }, \"records\": [] } ] }");
        const QString code = QString("c") + QChar(0xFFFD);
        const QString label = QString("y") + QChar(0xFFFD);
        const QJsonValue concept = column(0)["qb:codeList"].toObject()["skos:hasTopConcept"].toArray().at(0);
        QCOMPARE(concept["skos:notation"].toString(), code);
        QCOMPARE(concept["skos:prefLabel"].toString(), label);
        const QJsonValue alternative = properties()["X"].toObject()["anyOf"].toArray().at(1);
        QCOMPARE(alternative["const"].toString(), code);
        QCOMPARE(alternative["title"].toString(), label);
    }

    void namesThatDifferInHalvesAloneBecomeUnique()
    {
        write(jsonDictionary({ "X\\uD83D", "X\\uD83E" }));
        const QString name = QString("X") + QChar(0xFFFD);
        QCOMPARE(properties().keys(), (QStringList{ name, name + "_2" }));
        QCOMPARE(column(0)["name"].toString(), QString("X%EF%BF%BD"));
        QCOMPARE(column(1)["name"].toString(), QString("X%EF%BF%BD_2"));
    }

    void csvwSaysWhatTheLayoutHolds()
    {
        write(dictionary(item("AGE", "Age in years", "Start=4\nLen=3\n")
                         + valueSet("Value=0:110;Years\nValue=999;Not stated\nName=MISSING ,Special\n")
                         + item("WAGE", "Wage", "Start=7\nLen=8\nDecimal=2\n")
                         + item("REMARK", "", "Start=15\nLen=20\nDataType=Alpha\n")));
        const QJsonObject table = json("csvw", "survey.dcf");
        QCOMPARE(table["@context"].toString(), QString("http://www.w3.org/ns/csvw"));
        QCOMPARE(table["url"].toString(), QString("survey.csv"));
        const QJsonArray columns = table["tableSchema"].toObject()["columns"].toArray();
        QCOMPARE(columns.size(), 3);

        const QJsonObject age = columns.at(0).toObject();
        QCOMPARE(age["name"].toString(), QString("AGE"));
        QCOMPARE(age["titles"].toString(), QString("AGE"));
        QCOMPARE(age["dc:description"].toString(), QString("Age in years"));
        QCOMPARE(age["datatype"].toObject(),
                 (QJsonObject{ { "base", "integer" }, { "minimum", "0" }, { "maximum", "110" } }));
        QCOMPARE(age["null"].toArray(), (QJsonArray{ "", "999" }));
        QCOMPARE(age["qb:codeList"]["@type"].toString(), QString("skos:ConceptScheme"));
        const QJsonArray codes = age["qb:codeList"].toObject()["skos:hasTopConcept"].toArray();
        QCOMPARE(codes.size(), 3);
        QCOMPARE(codes.at(1)["@type"].toString(), QString("skos:Concept"));
        QCOMPARE(codes.at(1)["skos:notation"].toString(), QString("110"));
        QCOMPARE(codes.at(1)["skos:prefLabel"].toString(), QString("Years"));
        QCOMPARE(codes.at(2)["skos:notation"].toString(), QString("999"));

        const QJsonObject wage = columns.at(1).toObject();
        QCOMPARE(wage["datatype"].toObject(), (QJsonObject{ { "base", "decimal" } }));
        QVERIFY(!wage.contains("null"));
        QVERIFY(!wage.contains("qb:codeList"));

        const QJsonObject remark = columns.at(2).toObject();
        QCOMPARE(remark["datatype"].toObject(), (QJsonObject{ { "base", "string" }, { "maxLength", 20 } }));
        QVERIFY(!remark.contains("dc:description"));
    }

    void columnNamesAreVariablesOfUriTemplates_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("encoded");
        QTest::newRow("plain") << QByteArray("H01_Rooms") << "H01_Rooms";
        QTest::newRow("blank") << QByteArray("a b") << "a%20b";
        QTest::newRow("percent") << QByteArray("50%") << "50%25";
        QTest::newRow("reserved marks") << QByteArray("a-b~c@$#") << "a%2Db%7Ec%40%24%23";
        QTest::newRow("letter with an accent") << QByteArray("\xC3\xA9tat") << "%C3%A9tat";
        QTest::newRow("underscore in front") << QByteArray("_row") << "%5Frow";
        QTest::newRow("point between") << QByteArray("a.b") << "a.b";
        QTest::newRow("points in front and behind") << QByteArray(".a.") << "%2Ea%2E";
        QTest::newRow("points side by side") << QByteArray("a...b") << "a%2E%2E%2Eb";
        QTest::newRow("nothing but a point") << QByteArray(".") << "%2E";
        QTest::newRow("no name") << QByteArray("") << "V1";
    }
    void columnNamesAreVariablesOfUriTemplates()
    {
        QFETCH(QByteArray, name);
        write(dictionary(item(name, "A label")));
        QTEST(column(0)["name"].toString(), "encoded");
        QCOMPARE(column(0)["titles"].toString(), QString::fromUtf8(name));
        QVERIFY(isColumnName(column(0)["name"].toString()));
    }

    void recordsAreValidByTheJsonSchema_data()
    {
        QTest::addColumn<QString>("record");
        QTest::addColumn<bool>("isValid");
        QTest::newRow("every variable") << R"({"AGE": 30, "WAGE": 999999.99, "SEX": "M", "REMARK": "fine"})" << true;
        QTest::newRow("none") << "{}" << true;
        QTest::newRow("lowest") << R"({"AGE": 0})" << true;
        QTest::newRow("highest") << R"({"AGE": 110})" << true;
        QTest::newRow("below") << R"({"AGE": -1})" << false;
        QTest::newRow("above") << R"({"AGE": 111})" << false;
        QTest::newRow("missing code") << R"({"AGE": 999})" << true;
        QTest::newRow("not-applicable code") << R"({"AGE": 998})" << true;
        QTest::newRow("fraction of an integer") << R"({"AGE": 30.5})" << false;
        QTest::newRow("text of a number") << R"({"AGE": "30"})" << false;
        QTest::newRow("number of a text") << R"({"REMARK": 1})" << false;
        QTest::newRow("longest text") << R"({"REMARK": "12345"})" << true;
        QTest::newRow("too long a text") << R"({"REMARK": "123456"})" << false;
        QTest::newRow("unknown variable") << R"({"HEIGHT": 170})" << false;
        QTest::newRow("no object") << "[]" << false;
    }
    void recordsAreValidByTheJsonSchema()
    {
        QFETCH(QString, record);
        write(dictionary(item("AGE", "Age in years", "Start=4\nLen=3\n")
                         + valueSet("Value=0:110;Years\nValue=998;No person\nName=NOTAPPL ,Special\n"
                                    "Value=999;Not stated\nName=MISSING ,Special\n")
                         + item("WAGE", "Wage", "Start=7\nLen=8\nDecimal=2\n")
                         + item("SEX", "Sex", "Start=15\nLen=1\nDataType=Alpha\n") + valueSet("Value=M;Male\n")
                         + item("REMARK", "", "Start=16\nLen=5\nDataType=Alpha\n")));
        const QJsonDocument document = QJsonDocument::fromJson(record.toUtf8());
        const QJsonValue value = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
        const QString violation = JsonSchema(json("json-schema", "survey.dcf")).violation(value);
        QFETCH(bool, isValid);
        QVERIFY2(violation.isEmpty() == isValid, qPrintable(violation));
    }

    void jsonSchemaNamesCodesByTheirLabels()
    {
        write(dictionary(item("SEX", "Sex of the person", "Start=1\nLen=1\n")
                         + valueSet("Value=1;Male\nValue=2;Female\nValue=9;Not stated\nName=MISSING ,Special\n")));
        const QJsonObject sex = properties()["SEX"].toObject();
        QCOMPARE(sex["title"].toString(), QString("Sex of the person"));
        QCOMPARE(sex["type"].toString(), QString("integer"));
        const QJsonArray alternatives = sex["anyOf"].toArray();
        QCOMPARE(alternatives.size(), 4);
        QCOMPARE(alternatives.at(0).toObject(),
                 (QJsonObject{ { "type", "integer" }, { "minimum", 1 }, { "maximum", 2 } }));
        QCOMPARE(alternatives.at(1).toObject(), (QJsonObject{ { "const", 1 }, { "title", "Male" } }));
        QCOMPARE(alternatives.at(3)["const"].toInt(), 9);
        QVERIFY(!alternatives.at(3)["description"].toString().isEmpty());
        QCOMPARE(alternatives.at(1)["description"], QJsonValue(QJsonValue::Undefined));
    }

    void propertyWithoutALabelIsTitledByItsName()
    {
        write(dictionary(item("REMARK", "")));
        QCOMPARE(properties()["REMARK"].toObject()["title"].toString(), QString("REMARK"));
    }

    void codeThatIsNoValueOfTheTypeIsNotInTheJsonSchema_data()
    {
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<int>("codes");
        QTest::newRow("number") << QByteArray("9") << 1;
        QTest::newRow("text") << QByteArray("none") << 0;
        QTest::newRow("fraction of an integer") << QByteArray("0.5") << 0;
    }
    void codeThatIsNoValueOfTheTypeIsNotInTheJsonSchema()
    {
        QFETCH(QByteArray, code);
        write(dictionary(item("X", "A number") + valueSet("Value=" + code + ";Not stated\nName=MISSING ,Special\n")));
        const Element category = ddiVariables("survey.dcf").value(0).one("catgry");
        QCOMPARE(category.one("catValu").text, QString(code));
        QCOMPARE(properties()["X"].toObject()["type"].toString(), QString("integer"));
        // The first alternative is any value in the bounds.
        QTEST(properties()["X"].toObject()["anyOf"].toArray().size() - 1, "codes");
    }

    void jsonSchemaIsOfTheLayoutOrOfARecord()
    {
        write(dictionary(item("X", "A label")));
        const QJsonObject schema = json("json-schema", "survey.dcf");
        QCOMPARE(schema["$schema"].toString(), QString("https://json-schema.org/draft/2020-12/schema"));
        QCOMPARE(
            schema["anyOf"].toArray(),
            (QJsonArray{ QJsonObject{ { "$ref", "#/$defs/layout" } }, QJsonObject{ { "$ref", "#/$defs/record" } } }));
        QVERIFY(!schema["$defs"].toObject().contains("failure"));
    }

    void roundedBoundsAndCodesAreNotNumbersOfTheData_data()
    {
        QTest::addColumn<QByteArray>("rest");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("alternatives");
        QTest::newRow("integer") << QByteArray("Start=1\nLen=7\n") << "integer"
                                 << "integer"
                                 << "1.23457e+06" << 2;
        // The layout holds the code as it stands, and rounds the bound.
        QTest::newRow("real") << QByteArray("Start=1\nLen=9\nDecimal=1\n") << "decimal"
                              << "number"
                              << "1234567" << 3;
    }
    void roundedBoundsAndCodesAreNotNumbersOfTheData()
    {
        QFETCH(QByteArray, rest);
        QFETCH(QString, base);
        QFETCH(QString, type);
        write(dictionary(item("BIG", "A large number", rest) + valueSet("Value=5;Five\nValue=1234567;More\n")));
        QCOMPARE(form("survey.dcf")["fields"].toArray().at(0)["maximum"].toString(), QString("1.23457e+06"));
        const QJsonArray alternatives = properties()["BIG"].toObject()["anyOf"].toArray();
        QTEST(alternatives.size(), "alternatives");
        QCOMPARE(alternatives.at(0).toObject(), (QJsonObject{ { "type", type }, { "minimum", 5 } }));
        const Element variable = ddiVariables("survey.dcf").at(0);
        QCOMPARE(variable.one("valrng/range")["min"], QString("5"));
        QVERIFY(!variable.one("valrng/range").attributes.hasAttribute("max"));
        QTEST(variable.all("catgry").at(1).one("catValu").text, "code");
        QCOMPARE(column(0)["datatype"].toObject(), (QJsonObject{ { "base", base }, { "minimum", "5" } }));
        const QJsonArray concepts = column(0)["qb:codeList"].toObject()["skos:hasTopConcept"].toArray();
        QTEST(concepts.at(1)["skos:notation"].toString(), "code");
    }

    void sourcesWithoutColumnsStateNoPositionsAndBounds_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("SPSS") << QStringLiteral(VAN_MADE_DATA "/types.sav");
        QTest::newRow("Stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta");
    }
    void sourcesWithoutColumnsStateNoPositionsAndBounds()
    {
        QFETCH(QString, file);
        const QVector<Element> variables = ddiVariables(file);
        QVERIFY(!variables.isEmpty());
        bool hasCategories = false;
        for (const Element &variable : variables) {
            QVERIFY(variable.all("location").isEmpty());
            QVERIFY(variable.all("valrng").isEmpty());
            hasCategories = hasCategories || !variable.all("catgry").isEmpty();
        }
        QVERIFY(hasCategories);
        const QByteArray schema = QJsonDocument(record(file)).toJson();
        for (const char *keyword : { "\"minimum\"", "\"maximum\"", "\"maxLength\"" })
            QVERIFY2(!schema.contains(keyword), keyword);
        for (const QJsonValue &column : json("csvw", file)["tableSchema"].toObject()["columns"].toArray())
            QCOMPARE(column["datatype"].toObject().keys(), QStringList("base"));
    }

    void realNumberOfASourceWithoutColumnsCanHaveAnExponent_data()
    {
        sourcesWithoutColumnsStateNoPositionsAndBounds_data();
    }
    void realNumberOfASourceWithoutColumnsCanHaveAnExponent()
    {
        QFETCH(QString, file);
        const QJsonArray columns = json("csvw", file)["tableSchema"].toObject()["columns"].toArray();
        const QJsonArray fields = form(file)["fields"].toArray();
        QCOMPARE(columns.size(), fields.size());
        int reals = 0;
        for (int i = 0; i < fields.size(); ++i) {
            const bool isReal = fields.at(i)["type"].toString() == "REAL";
            QCOMPARE(columns.at(i)["datatype"]["base"].toString() == "double", isReal);
            reals += isReal;
        }
        QVERIFY(reals > 0);
    }

    void namesBecomeUnique()
    {
        write("[Dictionary]\nName=D\nRecordTypeStart=1\nRecordTypeLen=1\n\n"
              "[Record]\nName=HOUSE\nRecordTypeValue='1'\n\n"
              + item("AGE", "Age of the house") + item("ROOMS", "Rooms")
              + "[Record]\nName=PERSON\nRecordTypeValue='2'\n\n" + item("AGE", "Age of the person") + item("X", "One")
              + item("X", "Two") + item("PERSON.X_2", "Three"));
        const QStringList unique{ "HOUSE.AGE", "ROOMS", "PERSON.AGE", "PERSON.X", "PERSON.X_3", "PERSON.X_2" };
        QStringList names;
        QStringList titles;
        for (const QJsonValue &column : json("csvw", "survey.dcf")["tableSchema"].toObject()["columns"].toArray()) {
            names.append(column["name"].toString());
            titles.append(column["titles"].toString());
        }
        QCOMPARE(names, unique);
        QCOMPARE(titles, (QStringList{ "AGE", "ROOMS", "AGE", "X", "X", "PERSON.X_2" }));

        const QJsonObject schema = properties();
        QCOMPARE(schema.size(), unique.size());
        for (const QString &name : unique)
            QVERIFY2(schema.contains(name), qPrintable(name));
        QCOMPARE(schema["PERSON.AGE"].toObject()["title"].toString(), QString("AGE: Age of the person"));
        QCOMPARE(schema["ROOMS"].toObject()["title"].toString(), QString("Rooms"));

        QStringList ids;
        QStringList plain;
        for (const Element &variable : ddiVariables("survey.dcf")) {
            ids.append(variable["ID"]);
            plain.append(variable["name"]);
        }
        QCOMPARE(ids, (QStringList{ "V1", "V2", "V3", "V4", "V5", "V6" }));
        QCOMPARE(plain, titles);
    }

    void variableWithoutANameIsNamedByItsPosition()
    {
        write(dictionary(item("X", "One") + item("", "Two")));
        QCOMPARE(column(1)["name"].toString(), QString("V2"));
        QVERIFY(!column(1).contains("titles"));
        QCOMPARE(properties()["V2"].toObject()["title"].toString(), QString("Two"));
        QCOMPARE(ddiVariables("survey.dcf").value(1)["name"], QString());
    }

    void everyVariableIsExportedInItsOrder_data() { addFiles(); }
    void everyVariableIsExportedInItsOrder()
    {
        QFETCH(QString, file);
        const QJsonArray fields = form(file)["fields"].toArray();
        const QVector<Element> variables = ddiVariables(file);
        const QJsonArray columns = json("csvw", file)["tableSchema"].toObject()["columns"].toArray();
        QCOMPARE(variables.size(), fields.size());
        QCOMPARE(columns.size(), fields.size());
        QCOMPARE(record(file)["properties"].toObject().size(), fields.size());
        QSet<QString> names;
        for (int i = 0; i < fields.size(); ++i) {
            QCOMPARE(variables.at(i).one("labl").text, fields.at(i)["label"].toString());
            QCOMPARE(columns.at(i)["dc:description"].toString(), fields.at(i)["label"].toString());
            const QString name = columns.at(i)["name"].toString();
            QVERIFY2(isColumnName(name), qPrintable(name));
            names.insert(name);
        }
        QCOMPARE(names.size(), fields.size());
    }

    void formOfShowIsWhatItsSchemaSays_data()
    {
        addFiles();
        QTest::newRow("error") << folder.filePath("error.dcf");
    }
    void formOfShowIsWhatItsSchemaSays()
    {
        QFETCH(QString, file);
        // Several ranges in one line, and a further line of the set: reading ends in an error.
        write(dictionary(item("X", "Ends") + valueSet("Value=1:2 3:4;A\nValue=5;B\n")), "error.dcf");
        const QByteArray form = folder.run({ "fields", "--format", "json", file }).out;
        QVERIFY(!form.isEmpty());
        const QJsonObject shown = QJsonDocument::fromJson(form).object();
        QCOMPARE(shown.contains("error"), file.endsWith("error.dcf"));
        QFile schemaFile(QStringLiteral(":/export/layout.schema.json"));
        QVERIFY(schemaFile.open(QIODevice::ReadOnly));
        const JsonSchema schema(QJsonDocument::fromJson(schemaFile.readAll()).object());
        QCOMPARE(schema.violation(shown), QString());

        QJsonObject without = shown;
        without.remove(without.keys().constFirst());
        QVERIFY(!schema.violation(without).isEmpty());
        QJsonObject with = shown;
        with["more"] = true;
        QVERIFY(!schema.violation(with).isEmpty());
    }

    void formOfShowIsValidByTheExportedSchema_data()
    {
        addFiles();
        addCorpus();
    }
    void formOfShowIsValidByTheExportedSchema()
    {
        QFETCH(QString, file);
        if (!QFile::exists(file))
            QSKIP("the corpus is not here");
        const QJsonObject shown = form(file);
        QVERIFY(shown.contains("fields"));
        QCOMPARE(JsonSchema(json("json-schema", file)).violation(shown), QString());
    }

    void anotherFormIsNotValidByTheExportedSchema_data()
    {
        QTest::addColumn<QString>("replaced");
        QTest::addColumn<QString>("by");
        QTest::addColumn<bool>("isValid");
        QTest::newRow("the layout itself") << ""
                                           << "" << true;
        QTest::newRow("missing key") << R"("label":"Two",)"
                                     << "" << false;
        QTest::newRow("further key") << R"("label":"Two",)"
                                     << R"("label":"Two","more":1,)" << false;
        QTest::newRow("wrong type") << R"("start":1)"
                                    << R"("start":"1")" << false;
        QTest::newRow("unknown type of a variable") << R"("type":"INTEGER")"
                                                    << R"("type":"DATE")" << false;
        QTest::newRow("unknown name") << R"("name":"B")"
                                      << R"("name":"C")" << false;
        QTest::newRow("another label") << R"("label":"Two")"
                                       << R"("label":"Three")" << true;
    }
    void anotherFormIsNotValidByTheExportedSchema()
    {
        write(dictionary(item("A", "One") + item("B", "Two")));
        const JsonSchema schema(json("json-schema", "survey.dcf"));
        QString text = QJsonDocument(form("survey.dcf")).toJson(QJsonDocument::Compact);
        QFETCH(QString, replaced);
        QFETCH(QString, by);
        QVERIFY(text.contains(replaced));
        if (!replaced.isEmpty())
            text.replace(replaced, by);
        const QJsonDocument other = QJsonDocument::fromJson(text.toUtf8());
        QVERIFY(other.isObject());
        QTEST(schema.violation(other.object()).isEmpty(), "isValid");
    }

    void formOfShowHasSoManyVariables_data()
    {
        QTest::addColumn<QByteArray>("items");
        QTest::addColumn<bool>("isValid");
        QTest::newRow("as many") << item("B", "Two") + item("A", "One") << true;
        QTest::newRow("one too few") << item("A", "One") << false;
        QTest::newRow("one too many") << item("A", "One") + item("B", "Two") + item("B", "Three") << false;
    }
    void formOfShowHasSoManyVariables()
    {
        QFETCH(QByteArray, items);
        write(dictionary(item("A", "One") + item("B", "Two")));
        const JsonSchema schema(json("json-schema", "survey.dcf"));
        write(dictionary(items));
        QTEST(schema.violation(form("survey.dcf")).isEmpty(), "isValid");
    }

    void errorIsNotValidByTheExportedSchema()
    {
        write(dictionary(item("A", "One")));
        const JsonSchema schema(json("json-schema", "survey.dcf"));
        const QJsonObject error{ { "error", QJsonObject{ { "code", 242 }, { "line", 17 } } } };
        QVERIFY(!schema.violation(error).isEmpty());
    }

    void formOfOddTextsIsValidByTheExportedSchema()
    {
        write(oddDictionary());
        QCOMPARE(JsonSchema(json("json-schema", "survey.dcf")).violation(form("survey.dcf")), QString());
    }

    void namesAreListedOnce()
    {
        write(dictionary(item("B", "One") + item("A", "Two") + item("B", "Three") + item("", "Four")));
        const QJsonObject name = fieldSchema()["name"].toObject();
        QCOMPARE(name["enum"].toArray(), (QJsonArray{ "B", "A", "" }));
        QCOMPARE(name["type"].toString(), QString("string"));
    }

    void nameWithAHalfIsValidAsItStandsAndReplaced_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isValid");
        const QString head("X+");
        QTest::newRow("as it stands") << head + QChar(0xD83D) << true;
        QTest::newRow("replaced") << head + QChar(0xFFFD) << true;
        QTest::newRow("another character") << head + "e" << false;
        QTest::newRow("letter with an accent") << head + QChar(0xE9) << false;
        QTest::newRow("no character") << head << false;
        QTest::newRow("more behind") << head + QChar(0xFFFD) + "e" << false;
        QTest::newRow("more in front") << "e" + head + QChar(0xFFFD) << false;
        QTest::newRow("signs are no expressions") << QString("XX") + QChar(0xFFFD) << false;
        QTest::newRow("name of the other variable") << "Y" << true;
    }
    void nameWithAHalfIsValidAsItStandsAndReplaced()
    {
        write(jsonDictionary({ "X+\\uD83D", "Y", "X+\\uD83E" }));
        const JsonSchema schema(json("json-schema", "survey.dcf"));
        QJsonObject shown = form("survey.dcf");
        QCOMPARE(schema.violation(shown), QString());
        QJsonArray fields = shown["fields"].toArray();
        QJsonObject field = fields.at(0).toObject();
        QFETCH(QString, name);
        field["name"] = name;
        fields[0] = field;
        shown["fields"] = fields;
        QTEST(schema.violation(shown).isEmpty(), "isValid");
        QCOMPARE(fieldSchema()["name"].toObject()["anyOf"].toArray().size(), 2); // both halves make one pattern
    }

    void jsonIsLaidOutForAPersonInTheOrderOfTheKeys_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("csvw") << "csvw";
        QTest::newRow("json-schema") << "json-schema";
    }
    void jsonIsLaidOutForAPersonInTheOrderOfTheKeys()
    {
        QFETCH(QString, target);
        const QByteArray printed = exported(target, QStringLiteral(VAN_EXAMPLES "/census.dcf")).out;
        QVERIFY(printed.startsWith("{\n    \""));
        QCOMPARE(printed, QJsonDocument::fromJson(printed).toJson(QJsonDocument::Indented));
    }

    // The example of docs/export.md.
    void recordsOfTheExample_data()
    {
        QTest::addColumn<int>("minutes");
        QTest::addColumn<bool>("isValid");
        QTest::newRow("in the bounds") << 90 << true;
        QTest::newRow("missing") << 999 << true;
        QTest::newRow("beyond the bounds") << 181 << false;
    }
    void recordsOfTheExample()
    {
        QFETCH(int, minutes);
        const JsonSchema schema(json("json-schema", QStringLiteral(VAN_EXAMPLES "/marks.dcf")));
        QTEST(schema.violation(QJsonObject{ { "MINUTES", minutes } }).isEmpty(), "isValid");
    }

    void outputGoesIntoAFile()
    {
        write(dictionary(item("X", "A label")));
        const QByteArray printed = exported("ddi", "survey.dcf").out;
        const Run run = folder.run({ "export", "--to", "ddi", "-o", "survey.xml", "survey.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(folder.read("survey.xml"), printed);
        QCOMPARE(folder.run({ "export", "--to", "ddi", "-o", "-", "survey.dcf" }).out, printed);
    }

    void failureLeavesTheFileThatWasThere()
    {
        write("before", "survey.xml");
        write("no dictionary");
        QCOMPARE(folder.run({ "export", "--to", "ddi", "-o", "survey.xml", "survey.dcf" }).status, noAnswer);
        QCOMPARE(folder.read("survey.xml"), QByteArray("before"));
    }

    void pipeIsWrittenToAndStays()
    {
        write(dictionary(item("X", "A label")));
        const QByteArray printed = exported("csvw", "survey.dcf").out;
        QVERIFY(!printed.isEmpty());
        QFile::remove(folder.filePath("pipe"));
        ReadPipe pipe(folder.filePath("pipe"));
        QVERIFY2(pipe.isRead(), "no pipe can be made, or there is no cat");
        const Run run = folder.run({ "export", "--to", "csvw", "-o", "pipe", "survey.dcf" });
        QVERIFY(pipe.isThere());
        QCOMPARE(run.status, fine);
        QCOMPARE(pipe.taken(patience), printed);
    }

    void fullDiskIsStatus2AndOneLine_data() { addTargets(); }
    void fullDiskIsStatus2AndOneLine()
    {
        QFETCH(QString, target);
        write(dictionary(item("X", "A label")));
        verifyFullDiskIsTold(folder, { "export", "--to", target, "survey.dcf" });
    }

    void noAnswerIsStatus2AndOneLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("problem");
        const QStringList ddi{ "--to", "ddi" };
        QTest::newRow("absent") << ddi + QStringList("absent.dcf") << QByteArray("absent.dcf: no such file\n");
        QTest::newRow("folder") << ddi + QStringList(".") << QByteArray(".: is a folder\n");
        QTest::newRow("empty name") << ddi + QStringList("") << QByteArray("'': no such file\n");
        QTest::newRow("no variable") << ddi + QStringList("empty.dcf") << QByteArray("empty.dcf: no variable found");
        QTest::newRow("read as another type")
            << ddi + QStringList{ "--type", "spss", "survey.dcf" } << QByteArray("survey.dcf: no variable found");
        QTest::newRow("no target") << QStringList("survey.dcf") << QByteArray();
        QTest::newRow("unknown target") << QStringList{ "--to", "sas", "survey.dcf" } << QByteArray();
        QTest::newRow("no file") << ddi << QByteArray();
        QTest::newRow("two files") << ddi + QStringList{ "survey.dcf", "survey.dcf" } << QByteArray();
        QTest::newRow("dialog") << ddi + QStringList{ "--decimals", "ask", "survey.dcf" } << QByteArray();
        QTest::newRow("output in no folder")
            << ddi + QStringList{ "-o", "absent/x", "survey.dcf" } << QByteArray("absent/x: cannot be written: ");
        QTest::newRow("output is a folder")
            << ddi + QStringList{ "-o", ".", "survey.dcf" } << QByteArray(".: cannot be written: ");
        QTest::newRow("output is the file itself")
            << ddi + QStringList{ "-o", "./survey.dcf", "survey.dcf" } << QByteArray("./survey.dcf: is the file");
    }
    void noAnswerIsStatus2AndOneLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, problem);
        const QByteArray content = dictionary(item("X", "A label"));
        write(content);
        write("", "empty.dcf");
        const Run run = folder.run(QStringList("export") + arguments);
        verifyComplaint(run, problem);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(folder.read("survey.dcf"), content);
    }

    void decimalCodesAreAnsweredFor()
    {
        write(dictionary(item("X", "A number", "Start=1\nLen=3\n") + valueSet("Value=0.5;Half\nValue=2;Two\n")));
        QVERIFY(ddiVariables("survey.dcf").at(0).all("catgry").isEmpty());
        const Run run = folder.run({ "export", "--to", "ddi", "--decimals", "yes", "survey.dcf" });
        QVERIFY(run.out.contains("<labl>Two</labl>"));
    }

    void helpTellsOfTheCommand()
    {
        verifyHelpTellsOf("export", { "--to", "--type", "--decimals", "--output", "FILE" });
    }

private:
    static void addFiles()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("CSPro text") << QStringLiteral(VAN_EXAMPLES "/census.dcf");
        QTest::newRow("CSPro 8") << QStringLiteral(VAN_EXAMPLES "/census8.dcf");
        QTest::newRow("occurrences") << QStringLiteral(VAN_EXAMPLES "/occurrences.dcf");
        QTest::newRow("SPSS") << QStringLiteral(VAN_MADE_DATA "/types.sav");
        QTest::newRow("Stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta");
    }

    static void addCorpus()
    {
        for (const char *file : { "cspro-text/dhs-tj-tjhh80.dcf", "cspro-text/chimera-dictionary.dcf",
                                  "cspro-json/cspro-ex-geocodes.dcf" })
            QTest::newRow(file) << QStringLiteral(VAN_CORPUS "/") + file;
        for (const char *kind : { "spss", "stata" }) {
            for (const QString &file : corpusFiles(kind).mid(0, 3))
                QTest::addRow("%s/%s", kind, qPrintable(QFileInfo(file).fileName())) << file;
        }
    }

    static void addTargets()
    {
        QTest::addColumn<QString>("target");
        for (const char *target : { "ddi", "csvw", "json-schema" })
            QTest::newRow(target) << target;
    }

    static QByteArray jsonItem(const QByteArray &text)
    {
        return "{ \"name\": \"" + text + "\", \"labels\": [ { \"text\": \"" + text
            + "\" } ], \"contentType\": \"numeric\", \"start\": 1, \"length\": 2 }";
    }

    // A dictionary in the JSON form of these records, each a name and a value, with one item.
    static QByteArray dictionaryOfRecords(const QVector<QPair<QByteArray, QByteArray>> &records)
    {
        QByteArrayList written;
        for (const auto &[name, value] : records)
            written.append("{ \"name\": \"" + name + "\", \"recordType\": \"" + value + "\", \"items\": [ "
                           + jsonItem(name + "_1") + " ] }");
        return "{ \"recordType\": { \"start\": 1, \"length\": 1 }, \"levels\": [ { \"name\": \"L\", \"ids\": { "
               "\"items\": [] }, \"records\": [ "
            + written.join(", ") + " ] } ] }";
    }

    // A dictionary in the JSON form of one item for each text, which is its name and its label, with JSON's escapes.
    static QByteArray jsonDictionary(const QByteArrayList &texts)
    {
        QByteArrayList items;
        for (const QByteArray &text : texts)
            items.append(jsonItem(text));
        return "{ \"levels\": [ { \"name\": \"L\", \"ids\": { \"items\": [ " + items.join(", ")
            + " ] }, \"records\": [] } ] }";
    }

    // Names and labels of every odd kind.
    static QByteArray oddDictionary()
    {
        return dictionary(item("", "No name") + item("<&>\"'", "\x01 \x1F \x7F \xC2\x85") + item("2ND", "<&>\"']]>")
                          + item("A B", "") + item("A B", "\xD8\xA7\xD9\x84") + item("\xEF\xBF\xBE", "\xF0\x9F\x98\x80")
                          + item("T", "", "Start=1\nLen=0\nDataType=Alpha\n") + item("N", "", "Len=3\n")
                          + valueSet("Value=1;\nValue=2; \nValue=-3;<x>\n")
                          + item("M", "Many", "Start=1\nLen=1\nOccurrences=40\n"));
    }

    static QString ddiSchema() { return QStringLiteral(VAN_SCHEMAS "/ddi-codebook-2.5/codebook.xsd"); }

    void verifyDdi(const QByteArray &document) const
    {
        if (!QFile::exists(ddiSchema()))
            QSKIP("the schema of DDI Codebook 2.5 is not here");
        write(document, "document.xml");
        QProcess xmllint;
        xmllint.start("xmllint", { "--nonet", "--noout", "--schema", ddiSchema(), folder.filePath("document.xml") });
        QVERIFY2(xmllint.waitForFinished(patience) && xmllint.exitStatus() == QProcess::NormalExit,
                 "xmllint did not end, or is not here");
        QVERIFY2(xmllint.exitCode() == 0, xmllint.readAllStandardError().constData());
    }

    static bool isColumnName(const QString &name)
    {
        static const QRegularExpression pattern(
            "^(?!_)([A-Za-z0-9_]|%[0-9A-Fa-f]{2})(\\.?([A-Za-z0-9_]|%[0-9A-Fa-f]{2}))*$");
        return pattern.match(name).hasMatch();
    }

    Element ddi(const QString &file) const { return readDdi(exported("ddi", file).out); }

    static Element readDdi(const QByteArray &document)
    {
        QXmlStreamReader xml(document);
        if (!xml.readNextStartElement())
            return {};
        const Element root = readElement(xml);
        return xml.hasError() ? Element() : root;
    }

    QVector<Element> ddiVariables(const QString &file) const { return ddi(file).one("dataDscr").all("var"); }

    QJsonObject json(const QString &target, const QString &file) const
    {
        return exported(target, file).json().toObject();
    }

    QJsonObject column(int index) const
    {
        return json("csvw", "survey.dcf")["tableSchema"].toObject()["columns"].toArray().at(index).toObject();
    }

    QJsonObject record(const QString &file) const
    {
        return json("json-schema", file)["$defs"].toObject()["record"].toObject();
    }

    QJsonObject properties() const { return record("survey.dcf")["properties"].toObject(); }

    QJsonObject fieldSchema() const
    {
        const QJsonObject definitions = json("json-schema", "survey.dcf")["$defs"].toObject();
        return definitions["field"].toObject()["properties"].toObject();
    }

    // What `fields` prints.
    QJsonObject form(const QString &file) const
    {
        return folder.run({ "fields", "--format", "json", file }).json().toObject();
    }

    static QByteArray written(const Layout &layout, void (*write)(const Layout &layout, QIODevice &device))
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        write(layout, buffer);
        return buffer.data();
    }

    void write(const QByteArray &content, const QString &name = QStringLiteral("survey.dcf")) const
    {
        folder.write(name, content);
    }

    Run exported(const QString &target, const QString &file) const
    {
        return folder.run({ "export", "--to", target, file });
    }

    ToolFolder folder;
};

QTEST_GUILESS_MAIN(VanlayoutExportTest)
#include "VanlayoutExportTest.moc"
