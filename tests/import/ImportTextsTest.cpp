#include <QtTest>

#include "import/DataImport.h"
#include "import/DataProvider.h"
#include "import/SourceField.h"
#include "support/DebugCapture.h"
#include "support/FakeImporter.h"
#include "support/TextState.h"

#include <memory>
#include <utility>

struct TestAccess {
    static QString asString(TGenericField &field) { return field.getAsString(); }
    static QString recordTypeValue(TVpDataProvider &provider, const QString &line, int start, int size)
    {
        provider.currentLine = line;
        provider.recordTypeStart = start;
        provider.recordTypeSize = size;
        return provider.getRecordTypeValue();
    }
    static QString label(const TVpDataProvider &provider) { return provider.getDataProviderLabel(); }
    static QString recordTypeAfterCutting(TVpDataProvider &provider)
    {
        provider.getRecordType();
        return provider.recordTypeValue;
    }
    static void addEmptyTexts(const char *subject, const char *state, const TVpDataProvider &p)
    {
        addTexts(subject, state,
                 { { "recordTypeValue", p.recordTypeValue },
                   { "text1", p.text1 },
                   { "currentLine", p.currentLine },
                   { "currentRecordType", p.currentRecordType },
                   { "text2", p.text2 },
                   { "text3", p.text3 },
                   { "fallbackFileName", p.fallbackFileName },
                   { "dataProviderId", p.dataProviderId },
                   { "dataProviderLabel", p.dataProviderLabel },
                   { "dataProviderType", p.dataProviderType },
                   { "layoutFileName", p.layoutFileName },
                   { "dataFileName", p.dataFileName },
                   { "text5", p.text5 },
                   { "text6", p.text6 },
                   { "text7", p.text7 } });
    }
    static void addNullTexts(const char *subject, const TVpDataProvider &p)
    {
        addTexts(subject, "null", { { "text4", p.text4 }, { "text8", p.text8 } });
    }
};

namespace
{

/// Calls every operation of the base that a format may override.
class PlainField : public TGenericField
{
public:
    PlainField()
        : TGenericField(nullptr)
    {
    }
    PlainField(PlainField &&) = default;
    bool isMissing() override { return false; }
    bool isNotApplicable() override { return false; }
    bool isBlank() override { return false; }
};

class PlainImporter : public TDataImport
{
public:
    PlainImporter() = default;
    explicit PlainImporter(const QString &name)
        : TDataImport(name)
    {
    }
    PlainImporter(PlainImporter &&) = default;
    QString getDataProviderId() override { return id; }
    QString getDataProviderType() override { return QString(); }
    QString base() const { return baseText; }
    void keep(TGenericField *field) { addField(field); }

    QString id;
};

void addEmptyTexts(const char *subject, const char *state, const TGenericField &field)
{
    addTexts(subject, state,
             { { "name", field.name },
               { "valueLabels", field.valueLabels },
               { "missingValue", field.missingValue },
               { "notApplicable", field.notApplicable },
               { "minimum", field.minimum },
               { "maximum", field.maximum },
               { "decimals", field.decimals } });
}

void addEmptyTexts(const char *subject, const char *state, const TVpSourceField &field)
{
    addTexts(subject, state,
             { { "fieldName", field.fieldName },
               { "label", field.label },
               { "valueLabels", field.valueLabels },
               { "minimum", field.minimum },
               { "maximum", field.maximum },
               { "notApplicable", field.notApplicable },
               { "missingValue", field.missingValue },
               { "text1", field.text1 },
               { "text2", field.text2 },
               { "text3", field.text3 },
               { "providerId", field.providerId },
               { "group", field.group },
               { "text4", field.text4 },
               { "blankValue", field.blankValue },
               { "text5", field.text5 },
               { "text6", field.text6 },
               { "FieldType", field.FieldType },
               { "DataProviderType", field.DataProviderType } });
}

QString valueIn(const QString &line, int start, int length)
{
    TVpSourceField field;
    field.start = start;
    field.length = length;
    return field.getStringValue(line);
}

QString valueLabel(const QString &labels, const QString &code)
{
    PlainField field;
    field.valueLabels = labels;
    return field.getValueLabel(code);
}

/// Returns the source field that an importer makes from its only field. The list of type names is not freed, as
/// elsewhere.
TVpSourceField sourceOfOnlyField(TDataImport &importer)
{
    const DebugCapture quiet;
    QList<TVpSourceField *> made;
    importer.getDictionary(&made);
    const std::unique_ptr<TVpSourceField> only(made.takeFirst());
    return std::as_const(*only);
}

QString providerIdOf(const QString &importerId)
{
    FakeField field;
    PlainImporter importer;
    importer.id = importerId;
    importer.keep(&field);
    return sourceOfOnlyField(importer).providerId;
}

} // namespace

/// Tests which empty texts of fields, importers and providers are null, and which are not.
class ImportTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newTextsThatAreEmptyAreNotNullAndNeedNoMemory_data()
    {
        addTextColumns();
        addEmptyTexts("field", "empty", PlainField());
        addEmptyTexts("source field", "empty", TVpSourceField());
        TestAccess::addEmptyTexts("provider", "empty", TVpDataProvider());
    }
    void newTextsThatAreEmptyAreNotNullAndNeedNoMemory()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
        QVERIFY(isWithoutMemory(text));
    }

    void textIsAsItsRuleSays_data()
    {
        addTextColumns();
        addNewTexts();
        addMovedTexts();
        addAnswersOfFields();
        addAnswersOfImporters();
        addAnswersOfProviders();
    }
    void textIsAsItsRuleSays()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    void sourceNameThatIsNoFileIsEmptyAndNotNull_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no such file") << "/no/such/file";
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << "";
    }
    void sourceNameThatIsNoFileIsEmptyAndNotNull()
    {
        QFETCH(QString, name);
        PlainImporter importer(QStringLiteral("former"));
        importer.setSourceName(name);
        QCOMPARE(stateOf(importer.getSourceName()), QString("empty"));
    }

    // The null ones are those of the field.
    void sourceFieldTakesTheTextsOfTheFieldAsTheyAre_data()
    {
        addTextColumns();
        FakeImporter importer(QStringLiteral("path"), QStringLiteral("FORMAT"));
        FakeField field(&importer, QStringLiteral(""));
        field.group = QStringLiteral("");
        importer.layout.append(&field);
        importer.openFile();
        const TVpSourceField source = sourceOfOnlyField(importer);
        addTexts("of a new field", "empty",
                 { { "fieldName", source.fieldName },
                   { "valueLabels", source.valueLabels },
                   { "minimum", source.minimum },
                   { "maximum", source.maximum },
                   { "notApplicable", source.notApplicable },
                   { "missingValue", source.missingValue },
                   { "group", source.group },
                   { "FieldType", source.FieldType },
                   { "DataProviderType", source.DataProviderType },
                   { "blankValue", source.blankValue } });
        addTexts("of a new field", "null", { { "label", source.label } });
        addTexts("of a new field", "\"FORMAT_path\"", { { "providerId", source.providerId } });

        addTexts("of an importer", "empty", { { "with an empty id", providerIdOf(QStringLiteral("")) } });
        addTexts("of an importer", "null", { { "with a null id", providerIdOf(QString()) } });
    }
    void sourceFieldTakesTheTextsOfTheFieldAsTheyAre()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    void blankValueThatIsNotNullEqualsANullValue()
    {
        TVpSourceField field;
        QVERIFY(field.getStringValue(QString()).isNull());
        QVERIFY(field.isBlankValue);
    }

private:
    static void addNewTexts()
    {
        addTexts("new field", "null", { { "label", PlainField().label } });
        TestAccess::addNullTexts("new provider", TVpDataProvider());
        const PlainImporter importer;
        addTexts("new importer", "null",
                 { { "source name", importer.getSourceName() },
                   { "data source name", importer.getDataSourceName() },
                   { "base text", importer.base() } });
        addTexts("new importer of a name", "empty",
                 { { "source name", PlainImporter(QStringLiteral("")).getSourceName() } });
    }

    static void addMovedTexts()
    {
        PlainField field;
        const PlainField movedField(std::move(field));
        addEmptyTexts("moved field", "null", movedField);
        addTexts("moved field", "null", { { "label", movedField.label } });
        TVpSourceField source;
        addEmptyTexts("moved source field", "null", TVpSourceField(std::move(source)));
        TVpDataProvider provider;
        const TVpDataProvider movedProvider(std::move(provider));
        TestAccess::addEmptyTexts("moved provider", "null", movedProvider);
        TestAccess::addNullTexts("moved provider", movedProvider);
        PlainImporter importer(QStringLiteral("name"));
        addTexts("moved importer", "null", { { "source name", PlainImporter(std::move(importer)).getSourceName() } });
    }

    static QString asString(FakeField field, eVanVarType type)
    {
        field.type = type;
        field.length = 5;
        return TestAccess::asString(field);
    }

    static void addAnswersOfFields()
    {
        PlainField plain;
        FakeField blank;
        blank.saysBlank = true;
        FakeField missing;
        missing.saysMissing = true;
        FakeField notApplicable;
        notApplicable.saysNotApplicable = true;
        FakeField withNullCodes(missing);
        withNullCodes.missingValue = QString();
        addTexts("answer of a field", "empty",
                 { { "getGroup", plain.getGroup() },
                   { "getAsString, blank, no type", asString(blank, vtNone) },
                   { "getAsString, blank integer", asString(blank, vtInteger) },
                   { "getAsString, blank real", asString(blank, vtReal) },
                   { "getAsString, blank text", asString(blank, vtString) },
                   { "getAsString, no type", asString(FakeField(), vtNone) },
                   { "getAsString, unknown type", asString(FakeField(), eVanVarType(9)) },
                   { "getAsString, text of nothing", asString(FakeField(), vtString) },
                   { "getAsString, missing", asString(missing, vtInteger) },
                   { "getAsString, not applicable", asString(notApplicable, vtInteger) },
                   { "getValueLabel of nothing", valueLabel(QStringLiteral(""), QString()) } });
        addTexts("answer of a field", "null",
                 { { "getAsString, missing, null code", asString(withNullCodes, vtInteger) },
                   { "getValueLabel, not found", valueLabel(QStringLiteral("x1 One\t"), QStringLiteral("2")) },
                   { "getValueLabel, no labels", valueLabel(QStringLiteral(""), QStringLiteral("2")) },
                   { "getStringValue, empty line", valueIn(QStringLiteral(""), 0, 5) },
                   { "getStringValue, null line", valueIn(QString(), 0, 5) },
                   { "getStringValue, after the line", valueIn(QStringLiteral("12345678"), 9, 10) } });
        addTexts("answer of a field", "\"678\"", { { "getStringValue", valueIn(QStringLiteral("12345678"), 5, 10) } });
    }

    static void addAnswersOfImporters()
    {
        PlainImporter importer;
        addTexts("answer of an importer", "empty",
                 { { "getGroupName", importer.getGroupName(0) },
                   { "getGroupName, negative", importer.getGroupName(-1) },
                   { "getGroupValue", importer.getGroupValue(0) },
                   { "getRecordTypeCurrent", importer.getRecordTypeCurrent() } });
    }

    static void addAnswersOfProviders()
    {
        const DebugCapture quiet;
        TVpDataProvider provider;
        addTexts("answer of a new provider", "empty",
                 { { "getFieldName", provider.getFieldName(QStringLiteral("A")) },
                   { "getDataFileName", provider.getDataFileName() },
                   { "getLayoutFileName", provider.getLayoutFileName() },
                   { "getDataProviderId", provider.getDataProviderId() },
                   { "getDataProviderType", provider.getDataProviderType() },
                   { "getDataProviderLabel", TestAccess::label(provider) },
                   { "getRecordTypeValue", provider.getRecordTypeValue() },
                   { "record type that was cut", TestAccess::recordTypeAfterCutting(provider) },
                   { "getRecordTypeValue, null line", TestAccess::recordTypeValue(provider, QString(), 0, 1) },
                   { "getRecordTypeValue, short line",
                     TestAccess::recordTypeValue(provider, QStringLiteral("123456789"), 3, 8) } });
        PlainImporter importer;
        importer.id = QString();
        provider.genericGetFieldsFrom(&importer);
        addTexts("answer of a filled provider", "empty",
                 { { "getFieldName", provider.getFieldName(QStringLiteral("A")) },
                   { "getDataFileName", provider.getDataFileName() },
                   { "getLayoutFileName", provider.getLayoutFileName() },
                   { "getDataProviderType", provider.getDataProviderType() } });
        addTexts("answer of a filled provider", "null", { { "getDataProviderId", provider.getDataProviderId() } });
        provider.releaseContents();
        provider.setDataFileName(QStringLiteral("a"));
        provider.setDataFileName(QString());
        provider.setDataProviderId(QString());
        addTexts("after a setter of a null text", "null",
                 { { "data file name", provider.getDataFileName() }, { "id", provider.getDataProviderId() } });
    }
};

QTEST_APPLESS_MAIN(ImportTextsTest)
#include "ImportTextsTest.moc"
