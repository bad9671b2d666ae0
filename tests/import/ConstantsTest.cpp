#include "import/Constants.h"
#include "import/DataProvider.h"
#include "import/Model_VanAdmin.h"
#include "import/SourceField.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <iterator>
#include <type_traits>

struct TestAccess {
    static QStringList typeNames(const TVpDataProvider &provider) { return *provider.typeNames; }
};

namespace
{

struct Constant {
    const char *identifier;
    const char *expected;
    const QString &text;
};

// clang-format off
const Constant classTags[] = {
    {"DataImport", "DataImport", ClassTag::DataImport},
    {"CSPro", "CSPro", ClassTag::CSPro},
    {"CSProItem", "CSProItem", ClassTag::CSProItem},
    {"CSProValueSet", "CSProValueSet", ClassTag::CSProValueSet},
    {"AreaList", "AreaList", ClassTag::AreaList},
    {"AreaListDataSet", "AreaListDataSet", ClassTag::AreaListDataSet},
    {"BufferedFile", "BufferedFile", ClassTag::BufferedFile},
    {"CSDB", "CSDB", ClassTag::CSDB},
    {"CSDBDataImport", "CSDBDataImport", ClassTag::CSDBDataImport},
    {"CSProDataImport", "CSProDataImport", ClassTag::CSProDataImport},
    {"CSProRecord", "CSProRecord", ClassTag::CSProRecord},
    {"Quimbal", "Quimbal", ClassTag::Quimbal},
    {"DBFDataImport", "DBFDataImport", ClassTag::DBFDataImport},
    {"DBFFile", "DBFFile", ClassTag::DBFFile},
    {"DBFIndex", "DBFIndex", ClassTag::DBFIndex},
    {"DDF", "DDF", ClassTag::DDF},
    {"DSProperties", "DSProperties", ClassTag::DSProperties},
    {"DataExport", "DataExport", ClassTag::DataExport},
    {"DataNode", "DataNode", ClassTag::DataNode},
    {"Define", "Define", ClassTag::Define},
    {"Distribution", "Distribution", ClassTag::Distribution},
    {"EIM", "EIM", ClassTag::EIM},
    {"Entity", "Entity", ClassTag::Entity},
    {"FrameVandaraGis", "FrameVandaraGis", ClassTag::FrameVandaraGis},
    {"GINIPlus", "GINIPlus", ClassTag::GINIPlus},
    {"HexoChart", "HexoChart", ClassTag::HexoChart},
    {"MLDBGroup", "MLDBGroup", ClassTag::MLDBGroup},
    {"MLDBSubGroup", "MLDBSubGroup", ClassTag::MLDBSubGroup},
    {"MLDBTot", "MLDBTot", ClassTag::MLDBTot},
    {"MainForm", "MainForm", ClassTag::MainForm},
    {"Output", "Output", ClassTag::Output},
    {"Preferences", "Preferences", ClassTag::Preferences},
    {"Range", "Range", ClassTag::Range},
    {"VanRegister", "VanRegister", ClassTag::VanRegister},
    {"RegisterIni", "RegisterIni", ClassTag::RegisterIni},
    {"VpQuimbal", "VpQuimbal", ClassTag::VpQuimbal},
    {"VpDataSet", "VpDataSet", ClassTag::VpDataSet},
    {"VpJsonReader", "VpJsonReader", ClassTag::VpJsonReader},
    {"VpMapDefinition", "VpMapDefinition", ClassTag::VpMapDefinition},
    {"VpRecord", "VpRecord", ClassTag::VpRecord},
    {"VpStatProcess", "VpStatProcess", ClassTag::VpStatProcess},
    {"VpWebAccess", "VpWebAccess", ClassTag::VpWebAccess},
    {"VpWebConfig", "VpWebConfig", ClassTag::VpWebConfig},
    {"VpWebIni", "VpWebIni", ClassTag::VpWebIni},
    {"VpWebTradePack", "VpWebTradePack", ClassTag::VpWebTradePack},
    {"SPSS", "SPSS", ClassTag::SPSS},
    {"SPSSDataImport", "SPSSDataImport", ClassTag::SPSSDataImport},
    {"Utilities", "Utilities", ClassTag::Utilities},
    {"Variable", "Variable", ClassTag::Variable},
    {"WebSelection", "WebSelection", ClassTag::WebSelection},
    {"Workspace", "Workspace", ClassTag::Workspace},
    {"XCL", "XCL", ClassTag::XCL},
    {"XNode", "xNode", ClassTag::XNode},
    {"XPlotMain", "xPlotMain", ClassTag::XPlotMain},
    {"XPlotNode", "xPlotNode", ClassTag::XPlotNode},
    {"VclxPlot", "VclxPlot", ClassTag::VclxPlot},
};
const Constant vocabulary[] = {
    {"LineBreak", "\r\n", Vocabulary::LineBreak},
    {"Tab", "\t", Vocabulary::Tab},
    {"Blank", " ", Vocabulary::Blank},
    {"Comma", ",", Vocabulary::Comma},
    {"Colon", ":", Vocabulary::Colon},
    {"Semicolon", ";", Vocabulary::Semicolon},
    {"Equals", "=", Vocabulary::Equals},
    {"Underscore", "_", Vocabulary::Underscore},
    {"Yes", "YES", Vocabulary::Yes},
    {"SuffixDat", ".dat", Vocabulary::SuffixDat},
    {"SuffixTxt", ".txt", Vocabulary::SuffixTxt},
    {"SuffixJson", ".json", Vocabulary::SuffixJson},
    {"SuffixLsdJson", ".lsd.json", Vocabulary::SuffixLsdJson},
    {"SuffixWipJson", ".wip.json", Vocabulary::SuffixWipJson},
    {"TitleConfig", "VanX Config", Vocabulary::TitleConfig},
    {"TitleHierarchy", "VanX Hierarchy", Vocabulary::TitleHierarchy},
    {"DoubleSemicolon1", ";;", Vocabulary::DoubleSemicolon1},
    {"DoubleSemicolon2", ";;", Vocabulary::DoubleSemicolon2},
    {"TypeInteger", "INTEGER", Vocabulary::TypeInteger},
    {"TypeReal", "REAL", Vocabulary::TypeReal},
    {"TypeString", "STRING", Vocabulary::TypeString},
};
const Constant keywords[] = {
    {"SectionDictionary", "DICTIONARY", CSProKeyword::SectionDictionary},
    {"SectionRecord", "RECORD", CSProKeyword::SectionRecord},
    {"SectionItem", "ITEM", CSProKeyword::SectionItem},
    {"SectionValueSet", "VALUESET", CSProKeyword::SectionValueSet},
    {"Name", "Name", CSProKeyword::Name},
    {"Label", "Label", CSProKeyword::Label},
    {"RecordTypeStart", "RecordTypeStart", CSProKeyword::RecordTypeStart},
    {"RecordTypeLen", "RecordTypeLen", CSProKeyword::RecordTypeLen},
    {"Positions", "Positions", CSProKeyword::Positions},
    {"ZeroFill", "ZeroFill", CSProKeyword::ZeroFill},
    {"DecimalChar", "DecimalChar", CSProKeyword::DecimalChar},
    {"RecordTypeValue", "RecordTypeValue", CSProKeyword::RecordTypeValue},
    {"Required", "Required", CSProKeyword::Required},
    {"MaxRecords", "MaxRecords", CSProKeyword::MaxRecords},
    {"RecordLen", "RecordLen", CSProKeyword::RecordLen},
    {"Start", "Start", CSProKeyword::Start},
    {"Len", "Len", CSProKeyword::Len},
    {"DataType", "DataType", CSProKeyword::DataType},
    {"ItemType", "ItemType", CSProKeyword::ItemType},
    {"Occurrences", "Occurrences", CSProKeyword::Occurrences},
    {"Decimal", "Decimal", CSProKeyword::Decimal},
    {"Note", "Note", CSProKeyword::Note},
    {"OccurenceLabel", "OccurenceLabel", CSProKeyword::OccurenceLabel},
    {"Value", "Value", CSProKeyword::Value},
    {"HeaderDictionary", "[Dictionary]", CSProKeyword::HeaderDictionary},
    {"HeaderRecord", "[Record]", CSProKeyword::HeaderRecord},
    {"HeaderItem", "[Item]", CSProKeyword::HeaderItem},
    {"HeaderValueSet", "[ValueSet]", CSProKeyword::HeaderValueSet},
    {"HeaderLevel", "[Level]", CSProKeyword::HeaderLevel},
    {"HeaderIdItems", "[IdItems]", CSProKeyword::HeaderIdItems},
    {"HeaderRelation", "[Relation]", CSProKeyword::HeaderRelation},
};
// clang-format on

// Texts that exist before the first call, as an object sees them that is made at load time.
const QStringList textsAtLoadTime = { ClassTag::VclxPlot, Vocabulary::TypeString, CSProKeyword::HeaderRelation };

static_assert(std::is_same_v<decltype(ClassTag::DataImport), const QString>);
static_assert(std::is_same_v<decltype(Vocabulary::LineBreak), const QString>);
static_assert(std::is_same_v<decltype(CSProKeyword::Name), const QString>);

template <size_t size> QStringList identifiers(const Constant (&group)[size])
{
    QStringList result;
    for (const Constant &constant : group)
        result.append(QLatin1String(constant.identifier));
    return result;
}

// What the header declares between the braces of a group, in its order.
QStringList declaredIn(const QString &group)
{
    QFile header(QStringLiteral(VAN_TEST_DATA "/../../src/import/Constants.h"));
    if (!header.open(QIODevice::ReadOnly))
        return { QStringLiteral("the header cannot be opened") };
    const QString text = QString::fromUtf8(header.readAll());
    const int begin = text.indexOf(QLatin1String("namespace ") + group + QLatin1String(" {"));
    const int end = text.indexOf(QLatin1String("} // namespace ") + group);
    QStringList result;
    static const QRegularExpression declaration(QStringLiteral("QString (\\w+) ="));
    auto found = declaration.globalMatch(text.mid(begin, end - begin));
    while (found.hasNext())
        result.append(found.next().captured(1));
    return result;
}

} // namespace

class ConstantsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyConstantHasItsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        addRows("ClassTag", classTags);
        addRows("Vocabulary", vocabulary);
        addRows("CSProKeyword", keywords);
    }
    void everyConstantHasItsText()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }

    void groupHoldsSoManyConstantsInDeclaredOrder_data()
    {
        QTest::addColumn<QString>("group");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<int>("count");
        QTest::newRow("class tags") << "ClassTag" << identifiers(classTags) << 56;
        QTest::newRow("general vocabulary") << "Vocabulary" << identifiers(vocabulary) << 21;
        QTest::newRow("CSPro keywords") << "CSProKeyword" << identifiers(keywords) << 31;
    }
    void groupHoldsSoManyConstantsInDeclaredOrder()
    {
        QFETCH(QString, group);
        QFETCH(QStringList, expected);
        QFETCH(int, count);
        QCOMPARE(expected.size(), count);
        QCOMPARE(declaredIn(group), expected);
    }

    void constantsAre108InAll()
    {
        QCOMPARE(int(std::size(classTags) + std::size(vocabulary) + std::size(keywords)), 108);
    }

    void constantsExistWhenTheProgramIsLoaded()
    {
        QCOMPARE(textsAtLoadTime, QStringList({ "VclxPlot", "STRING", "[Relation]" }));
    }

    void twoSemicolonsAreDeclaredAsTwoConstants()
    {
        QVERIFY(&Vocabulary::DoubleSemicolon1 != &Vocabulary::DoubleSemicolon2);
        QCOMPARE(Vocabulary::DoubleSemicolon1, Vocabulary::DoubleSemicolon2);
    }

    void occurenceLabelHasOneRWhereOccurrencesHasTwo()
    {
        QCOMPARE(CSProKeyword::OccurenceLabel.count(QLatin1Char('r')), 1);
        QCOMPARE(CSProKeyword::Occurrences.count(QLatin1Char('r')), 2);
    }

    void enumeratorHasItsValue_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("expected");
        // clang-format off
        QTest::newRow("provider NONE")      << int(dpNone) << 0;
        QTest::newRow("provider CSPRO")     << int(dpCSPro) << 1;
        QTest::newRow("provider CSV")       << int(dpCSV) << 2;
        QTest::newRow("provider SSPS")      << int(dpSPSS) << 3;
        QTest::newRow("provider STATA")     << int(dpStata) << 4;
        QTest::newRow("provider 5")         << int(dpReserved5) << 5;
        QTest::newRow("provider 6")         << int(dpReserved6) << 6;
        QTest::newRow("provider 8")         << int(dpReserved8) << 8;
        QTest::newRow("provider 9")         << int(dpReserved9) << 9;
        QTest::newRow("variable none")      << int(vtNone) << 0;
        QTest::newRow("variable INTEGER")   << int(vtInteger) << 1;
        QTest::newRow("variable REAL")      << int(vtReal) << 2;
        QTest::newRow("variable STRING")    << int(vtString) << 3;
        QTest::newRow("check nothing")      << int(ccNone) << 0;
        QTest::newRow("check frequencies")  << int(ccFrequencies) << 1;
        QTest::newRow("check errors")       << int(ccErrors) << 2;
        QTest::newRow("check both")         << int(ccBoth) << 3;
        QTest::newRow("selection view")     << int(svDefault) << 1;
        // clang-format on
    }
    void enumeratorHasItsValue()
    {
        QFETCH(int, value);
        QFETCH(int, expected);
        QCOMPARE(value, expected);
    }

    void enumerationsHoldAnyOtherNumberToo()
    {
        // A mode and a type come from outside and are stored untested.
        QCOMPARE(int(econsistencyCheck(1234567)), 1234567);
        QCOMPARE(int(eVanVarType(-1)), -1);
        static_assert(std::is_same_v<std::underlying_type_t<eDataProviderType>, int>);
        static_assert(std::is_same_v<std::underlying_type_t<eSelectionView>, int>);
    }

    void checkModeIsTwoSwitches()
    {
        QCOMPARE(int(ccFrequencies) | int(ccErrors), int(ccBoth));
        QCOMPARE(int(ccFrequencies) & int(ccErrors), int(ccNone));
    }

    void typeTextStandsAtThePositionOfItsValue_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("inProvider");
        QTest::addColumn<QString>("inSourceField");
        QTest::newRow("0") << int(dpNone) << "NONE"
                           << "NONE";
        QTest::newRow("1") << int(dpCSPro) << "CSPRO"
                           << "CSPRO";
        QTest::newRow("2") << int(dpCSV) << "CSV"
                           << "CSV";
        QTest::newRow("3 in the source field alone, spelled SSPS") << int(dpSPSS) << QString() << "SSPS";
        QTest::newRow("4 in the source field alone") << int(dpStata) << QString() << "STATA";
        QTest::newRow("5 in neither") << int(dpReserved5) << QString() << QString();
    }
    void typeTextStandsAtThePositionOfItsValue()
    {
        QFETCH(int, value);
        QFETCH(QString, inProvider);
        QFETCH(QString, inSourceField);
        QCOMPARE(TestAccess::typeNames(TVpDataProvider()).value(value), inProvider);
        QCOMPARE(TVpSourceField().typeNames->value(value), inSourceField);
    }

    void sectionNamesAreInUpperCase()
    {
        for (const QString &name : { CSProKeyword::SectionDictionary, CSProKeyword::SectionRecord,
                                     CSProKeyword::SectionItem, CSProKeyword::SectionValueSet })
            QCOMPARE(name.toUpper(), name);
    }

    void markerClassHasNoFields()
    {
        QVERIFY(std::is_empty_v<Model_VanAdmin>);
        const Model_VanAdmin marker;
        Q_UNUSED(marker)
    }

private:
    template <size_t size> static void addRows(const char *group, const Constant (&constants)[size])
    {
        for (const Constant &constant : constants)
            QTest::addRow("%s::%s", group, constant.identifier) << constant.text << QString(constant.expected);
    }
};

QTEST_GUILESS_MAIN(ConstantsTest)
#include "ConstantsTest.moc"
