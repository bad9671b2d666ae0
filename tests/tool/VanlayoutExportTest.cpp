#include "tool/JsonSchema.h"

#include <QtTest>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <sys/stat.h>

namespace
{

constexpr int fine = 0;
constexpr int noAnswer = 2;
constexpr int patience = 120000; // milliseconds, far more than any run takes

struct Run {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

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
        QTest::addColumn<QString>("file");
        QTest::newRow("CSPro text") << QStringLiteral(VAN_EXAMPLES "/census.dcf");
        QTest::newRow("CSPro 8") << QStringLiteral(VAN_EXAMPLES "/census8.dcf");
        QTest::newRow("marks") << QStringLiteral(VAN_EXAMPLES "/marks.dcf");
        QTest::newRow("occurrences") << QStringLiteral(VAN_EXAMPLES "/occurrences.dcf");
        QTest::newRow("SPSS") << QStringLiteral(VAN_MADE_DATA "/types.sav");
        QTest::newRow("Stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta");
        for (const char *file : { "cspro-text/dhs-tj-tjhh80.dcf", "cspro-text/chimera-dictionary.dcf",
                                  "cspro-json/cspro-ex-geocodes.dcf" })
            QTest::newRow(file) << QStringLiteral(VAN_CORPUS "/") + file;
        for (const char *kind : { "spss", "stata" }) {
            const QDir files(QStringLiteral(VAN_CORPUS "/") + kind);
            for (const QString &file : files.entryList(QDir::Files).mid(0, 3))
                QTest::addRow("%s/%s", kind, qPrintable(file)) << files.filePath(file);
        }
    }
    void ddiIsValid()
    {
        QFETCH(QString, file);
        if (!QFile::exists(file))
            QSKIP("the corpus is not here");
        const Run run = exported("ddi", file);
        QCOMPARE(run.status, fine);
        QCOMPARE(run.err, QByteArray());
        if (!canValidate())
            QSKIP("xmllint or the schema of DDI Codebook 2.5 is not here");
        QCOMPARE(schemaViolations(run.out), QByteArray());
    }

    void ddiOfOddTextsIsValid()
    {
        if (!canValidate())
            QSKIP("xmllint or the schema of DDI Codebook 2.5 is not here");
        write(oddDictionary());
        QCOMPARE(schemaViolations(exported("ddi", "survey.dcf").out), QByteArray());
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

    void halfOfASurrogatePairIsReplacedInXmlAndEscapedInJson()
    {
        write("{ \"levels\": [ { \"name\": \"L\", \"ids\": { \"items\": [ { \"name\": \"X\\uD83D\", \"labels\": [ { "
              "\"text\": \"half \\uDE00\" } ], \"contentType\": \"numeric\", \"start\": 1, \"length\": 2 } ] }, "
              "\"records\": [] } ] }");
        const QJsonObject shown
            = QJsonDocument::fromJson(tool({ "show", "--format", "json", "survey.dcf" }).out).object();
        const QJsonObject field = shown["fields"].toArray().at(0).toObject();
        QVERIFY(field["label"].toString().contains(QChar(0xDE00)));
        const Element variable = ddiVariables("survey.dcf").value(0);
        QCOMPARE(variable.one("labl").text, QString("half ") + QChar(0xFFFD));
        QCOMPARE(column(0)["dc:description"], field["label"]);
        QCOMPARE(properties().value(field["name"].toString()).toObject()["title"], field["label"]);
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
        const QJsonArray codes = age["qb:codeList"].toObject()["skos:hasTopConcept"].toArray();
        QCOMPARE(codes.size(), 3);
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
        QVERIFY2(!violation.contains("$schema"), qPrintable(violation));
        QFETCH(bool, isValid);
        QVERIFY2(violation.isEmpty() == isValid, qPrintable(violation));
    }

    void jsonSchemaNamesCodesByTheirLabels()
    {
        write(dictionary(item("SEX", "Sex of the person", "Start=1\nLen=1\n")
                         + valueSet("Value=1;Male\nValue=2;Female\nValue=9;Not stated\nName=MISSING ,Special\n")));
        const QJsonObject schema = json("json-schema", "survey.dcf");
        QCOMPARE(schema["$schema"].toString(), QString("https://json-schema.org/draft/2020-12/schema"));
        QCOMPARE(schema["title"].toString(), QString("survey"));
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
    }

    void roundedBoundsAndCodesAreNotNumbersOfTheData()
    {
        write(dictionary(item("BIG", "A large number", "Start=1\nLen=7\n")
                         + valueSet("Value=5;Five\nValue=1234567;More\n")));
        const QJsonObject big = properties()["BIG"].toObject();
        QCOMPARE(big["anyOf"].toArray().size(), 2); // 1.23457e+06 is neither
        QCOMPARE(big["anyOf"].toArray().at(0).toObject(), (QJsonObject{ { "type", "integer" }, { "minimum", 5 } }));
        const Element variable = ddiVariables("survey.dcf").at(0);
        QVERIFY(!variable.one("valrng/range").attributes.hasAttribute("max"));
        QCOMPARE(variable.all("catgry").at(1).one("catValu").text, QString("1.23457e+06"));
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
        const QByteArray schema = exported("json-schema", file).out;
        for (const char *keyword : { "\"minimum\"", "\"maximum\"", "\"maxLength\"" })
            QVERIFY2(!schema.contains(keyword), keyword);
        for (const QJsonValue &column : json("csvw", file)["tableSchema"].toObject()["columns"].toArray())
            QCOMPARE(column["datatype"].toObject().keys(), QStringList("base"));
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

    void everyVariableIsExportedInItsOrder_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("CSPro text") << QStringLiteral(VAN_EXAMPLES "/census.dcf");
        QTest::newRow("CSPro 8") << QStringLiteral(VAN_EXAMPLES "/census8.dcf");
        QTest::newRow("occurrences") << QStringLiteral(VAN_EXAMPLES "/occurrences.dcf");
        QTest::newRow("SPSS") << QStringLiteral(VAN_MADE_DATA "/types.sav");
        QTest::newRow("Stata") << QStringLiteral(VAN_MADE_DATA "/types-118.dta");
    }
    void everyVariableIsExportedInItsOrder()
    {
        QFETCH(QString, file);
        const QJsonObject layout = QJsonDocument::fromJson(tool({ "show", "--format", "json", file }).out).object();
        const QJsonArray fields = layout["fields"].toArray();
        const QVector<Element> variables = ddiVariables(file);
        const QJsonArray columns = json("csvw", file)["tableSchema"].toObject()["columns"].toArray();
        QCOMPARE(variables.size(), fields.size());
        QCOMPARE(columns.size(), fields.size());
        QCOMPARE(json("json-schema", file)["properties"].toObject().size(), fields.size());
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
        everyVariableIsExportedInItsOrder_data();
        QTest::newRow("error") << folder.filePath("error.dcf");
    }
    void formOfShowIsWhatItsSchemaSays()
    {
        QFETCH(QString, file);
        // Several ranges in one line, and a further line of the set: reading ends in an error.
        write(dictionary(item("X", "Ends") + valueSet("Value=1:2 3:4;A\nValue=5;B\n")), "error.dcf");
        const QByteArray form = tool({ "show", "--format", "json", file }).out;
        QVERIFY(!form.isEmpty());
        const QJsonObject shown = QJsonDocument::fromJson(form).object();
        QCOMPARE(shown.contains("error"), file.endsWith("error.dcf"));
        QFile schemaFile(QStringLiteral(VAN_DOCS "/layout.schema.json"));
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

    void outputGoesIntoAFile()
    {
        write(dictionary(item("X", "A label")));
        const QByteArray printed = exported("ddi", "survey.dcf").out;
        const Run run = tool({ "export", "--to", "ddi", "-o", "survey.xml", "survey.dcf" });
        QCOMPARE(run.status, fine);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.err, QByteArray());
        QCOMPARE(read("survey.xml"), printed);
        QCOMPARE(tool({ "export", "--to", "ddi", "-o", "-", "survey.dcf" }).out, printed);
    }

    void failureLeavesTheFileThatWasThere()
    {
        write("before", "survey.xml");
        write("no dictionary");
        QCOMPARE(tool({ "export", "--to", "ddi", "-o", "survey.xml", "survey.dcf" }).status, noAnswer);
        QCOMPARE(read("survey.xml"), QByteArray("before"));
    }

    void pipeIsWrittenToAndStays()
    {
        write(dictionary(item("X", "A label")));
        const QString pipe = folder.filePath("pipe");
        QFile::remove(pipe);
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QProcess reader;
        reader.start("cat", { pipe });
        if (!reader.waitForStarted())
            QSKIP("there is no cat");
        const Run run = tool({ "export", "--to", "csvw", "-o", "pipe", "survey.dcf" });
        struct stat status = {};
        const bool isPipe = stat(QFile::encodeName(pipe).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
        if (!isPipe)
            reader.kill();
        QVERIFY(reader.waitForFinished(patience));
        QCOMPARE(run.status, fine);
        QVERIFY(isPipe);
        QCOMPARE(reader.readAllStandardOutput(), exported("csvw", "survey.dcf").out);
    }

    void fullDiskIsStatus2AndOneLine_data() { addTargets(); }
    void fullDiskIsStatus2AndOneLine()
    {
        QFETCH(QString, target);
        if (!QFile::exists("/dev/full"))
            QSKIP("there is no /dev/full");
        write(dictionary(item("X", "A label")));
        QProcess process;
        process.setStandardOutputFile("/dev/full");
        const Run run = tool({ "export", "--to", target, "survey.dcf" }, process);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.err, QByteArray("vanlayout: standard output: cannot be written\n"));
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
        const Run run = tool(QStringList("export") + arguments);
        QCOMPARE(run.status, noAnswer);
        QCOMPARE(run.out, QByteArray());
        QVERIFY2(run.err.startsWith("vanlayout: " + problem), run.err.constData());
        QCOMPARE(run.err.count('\n'), 1);
        QCOMPARE(read("survey.dcf"), content);
    }

    void decimalCodesAreAnsweredFor()
    {
        write(dictionary(item("X", "A number", "Start=1\nLen=3\n") + valueSet("Value=0.5;Half\nValue=2;Two\n")));
        QVERIFY(ddiVariables("survey.dcf").at(0).all("catgry").isEmpty());
        const Run run = tool({ "export", "--to", "ddi", "--decimals", "yes", "survey.dcf" });
        QVERIFY(run.out.contains("<labl>Two</labl>"));
    }

    void helpTellsOfTheCommand()
    {
        QVERIFY(tool({ "--help" }).out.contains("export"));
        const QByteArray help = tool({ "export", "--help" }).out;
        for (const char *option : { "--to", "--type", "--decimals", "--output", "FILE" })
            QVERIFY2(help.contains(option), option);
    }

private:
    static void addTargets()
    {
        QTest::addColumn<QString>("target");
        for (const char *target : { "ddi", "csvw", "json-schema" })
            QTest::newRow(target) << target;
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

    static bool canValidate()
    {
        return QFile::exists(ddiSchema()) && !QStandardPaths::findExecutable("xmllint").isEmpty();
    }

    // What xmllint says of a document that is not valid; nothing of one that is.
    QByteArray schemaViolations(const QByteArray &document) const
    {
        write(document, "document.xml");
        QProcess xmllint;
        xmllint.start("xmllint", { "--nonet", "--noout", "--schema", ddiSchema(), folder.filePath("document.xml") });
        if (!xmllint.waitForFinished(patience) || xmllint.exitStatus() != QProcess::NormalExit)
            return "xmllint did not end";
        const QByteArray problems = xmllint.readAllStandardError();
        return xmllint.exitCode() == 0 ? QByteArray() : "status of xmllint: " + problems;
    }

    static bool isColumnName(const QString &name)
    {
        static const QRegularExpression pattern(
            "^(?!_)([A-Za-z0-9_]|%[0-9A-Fa-f]{2})(\\.?([A-Za-z0-9_]|%[0-9A-Fa-f]{2}))*$");
        return pattern.match(name).hasMatch();
    }

    Element ddi(const QString &file) const
    {
        QXmlStreamReader xml(exported("ddi", file).out);
        if (!xml.readNextStartElement())
            return {};
        const Element root = readElement(xml);
        return xml.hasError() ? Element() : root;
    }

    QVector<Element> ddiVariables(const QString &file) const { return ddi(file).one("dataDscr").all("var"); }

    QJsonObject json(const QString &target, const QString &file) const
    {
        return QJsonDocument::fromJson(exported(target, file).out).object();
    }

    QJsonObject column(int index) const
    {
        return json("csvw", "survey.dcf")["tableSchema"].toObject()["columns"].toArray().at(index).toObject();
    }

    QJsonObject properties() const { return json("json-schema", "survey.dcf")["properties"].toObject(); }

    void write(const QByteArray &content, const QString &name = QStringLiteral("survey.dcf")) const
    {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    QByteArray read(const QString &name) const
    {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Run exported(const QString &target, const QString &file) const { return tool({ "export", "--to", target, file }); }

    Run tool(const QStringList &arguments) const
    {
        QProcess process;
        return tool(arguments, process);
    }

    Run tool(const QStringList &arguments, QProcess &process) const
    {
        process.setWorkingDirectory(folder.path());
        process.start(VAN_TOOL, arguments);
        if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return { process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError() };
    }

    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(VanlayoutExportTest)
#include "VanlayoutExportTest.moc"
