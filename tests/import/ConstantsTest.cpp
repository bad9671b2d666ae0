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

// The list of all constants, in the order of the header.
struct Constant {
    const char *group;
    const char *identifier;
    const char *expected;
    const QString &text;
};

// clang-format off
const Constant constants[] = {
    {"ClassTag", "DataImport", "DataImport", ClassTag::DataImport},
    {"ClassTag", "CSPro", "CSPro", ClassTag::CSPro},
    {"ClassTag", "CSProItem", "CSProItem", ClassTag::CSProItem},
    {"ClassTag", "CSProValueSet", "CSProValueSet", ClassTag::CSProValueSet},
    {"ClassTag", "AreaList", "AreaList", ClassTag::AreaList},
    {"ClassTag", "AreaListDataSet", "AreaListDataSet", ClassTag::AreaListDataSet},
    {"ClassTag", "BufferedFile", "BufferedFile", ClassTag::BufferedFile},
    {"ClassTag", "CSDB", "CSDB", ClassTag::CSDB},
    {"ClassTag", "CSDBDataImport", "CSDBDataImport", ClassTag::CSDBDataImport},
    {"ClassTag", "CSProDataImport", "CSProDataImport", ClassTag::CSProDataImport},
    {"ClassTag", "CSProRecord", "CSProRecord", ClassTag::CSProRecord},
    {"ClassTag", "Quimbal", "Quimbal", ClassTag::Quimbal},
    {"ClassTag", "DBFDataImport", "DBFDataImport", ClassTag::DBFDataImport},
    {"ClassTag", "DBFFile", "DBFFile", ClassTag::DBFFile},
    {"ClassTag", "DBFIndex", "DBFIndex", ClassTag::DBFIndex},
    {"ClassTag", "DDF", "DDF", ClassTag::DDF},
    {"ClassTag", "DSProperties", "DSProperties", ClassTag::DSProperties},
    {"ClassTag", "DataExport", "DataExport", ClassTag::DataExport},
    {"ClassTag", "DataNode", "DataNode", ClassTag::DataNode},
    {"ClassTag", "Define", "Define", ClassTag::Define},
    {"ClassTag", "Distribution", "Distribution", ClassTag::Distribution},
    {"ClassTag", "EIM", "EIM", ClassTag::EIM},
    {"ClassTag", "Entity", "Entity", ClassTag::Entity},
    {"ClassTag", "FrameVandaraGis", "FrameVandaraGis", ClassTag::FrameVandaraGis},
    {"ClassTag", "GINIPlus", "GINIPlus", ClassTag::GINIPlus},
    {"ClassTag", "HexoChart", "HexoChart", ClassTag::HexoChart},
    {"ClassTag", "MLDBGroup", "MLDBGroup", ClassTag::MLDBGroup},
    {"ClassTag", "MLDBSubGroup", "MLDBSubGroup", ClassTag::MLDBSubGroup},
    {"ClassTag", "MLDBTot", "MLDBTot", ClassTag::MLDBTot},
    {"ClassTag", "MainForm", "MainForm", ClassTag::MainForm},
    {"ClassTag", "Output", "Output", ClassTag::Output},
    {"ClassTag", "Preferences", "Preferences", ClassTag::Preferences},
    {"ClassTag", "Range", "Range", ClassTag::Range},
    {"ClassTag", "VanRegister", "VanRegister", ClassTag::VanRegister},
    {"ClassTag", "RegisterIni", "RegisterIni", ClassTag::RegisterIni},
    {"ClassTag", "VpQuimbal", "VpQuimbal", ClassTag::VpQuimbal},
    {"ClassTag", "VpDataSet", "VpDataSet", ClassTag::VpDataSet},
    {"ClassTag", "VpJsonReader", "VpJsonReader", ClassTag::VpJsonReader},
    {"ClassTag", "VpMapDefinition", "VpMapDefinition", ClassTag::VpMapDefinition},
    {"ClassTag", "VpRecord", "VpRecord", ClassTag::VpRecord},
    {"ClassTag", "VpStatProcess", "VpStatProcess", ClassTag::VpStatProcess},
    {"ClassTag", "VpWebAccess", "VpWebAccess", ClassTag::VpWebAccess},
    {"ClassTag", "VpWebConfig", "VpWebConfig", ClassTag::VpWebConfig},
    {"ClassTag", "VpWebIni", "VpWebIni", ClassTag::VpWebIni},
    {"ClassTag", "VpWebTradePack", "VpWebTradePack", ClassTag::VpWebTradePack},
    {"ClassTag", "SPSS", "SPSS", ClassTag::SPSS},
    {"ClassTag", "SPSSDataImport", "SPSSDataImport", ClassTag::SPSSDataImport},
    {"ClassTag", "Utilities", "Utilities", ClassTag::Utilities},
    {"ClassTag", "Variable", "Variable", ClassTag::Variable},
    {"ClassTag", "WebSelection", "WebSelection", ClassTag::WebSelection},
    {"ClassTag", "Workspace", "Workspace", ClassTag::Workspace},
    {"ClassTag", "XCL", "XCL", ClassTag::XCL},
    {"ClassTag", "XNode", "xNode", ClassTag::XNode},
    {"ClassTag", "XPlotMain", "xPlotMain", ClassTag::XPlotMain},
    {"ClassTag", "XPlotNode", "xPlotNode", ClassTag::XPlotNode},
    {"ClassTag", "VclxPlot", "VclxPlot", ClassTag::VclxPlot},
    {"Vocabulary", "LineBreak", "\r\n", Vocabulary::LineBreak},
    {"Vocabulary", "Tab", "\t", Vocabulary::Tab},
    {"Vocabulary", "Blank", " ", Vocabulary::Blank},
    {"Vocabulary", "Comma", ",", Vocabulary::Comma},
    {"Vocabulary", "Colon", ":", Vocabulary::Colon},
    {"Vocabulary", "Semicolon", ";", Vocabulary::Semicolon},
    {"Vocabulary", "Equals", "=", Vocabulary::Equals},
    {"Vocabulary", "Underscore", "_", Vocabulary::Underscore},
    {"Vocabulary", "Yes", "YES", Vocabulary::Yes},
    {"Vocabulary", "SuffixDat", ".dat", Vocabulary::SuffixDat},
    {"Vocabulary", "SuffixTxt", ".txt", Vocabulary::SuffixTxt},
    {"Vocabulary", "SuffixJson", ".json", Vocabulary::SuffixJson},
    {"Vocabulary", "SuffixLsdJson", ".lsd.json", Vocabulary::SuffixLsdJson},
    {"Vocabulary", "SuffixWipJson", ".wip.json", Vocabulary::SuffixWipJson},
    {"Vocabulary", "TitleConfig", "VanX Config", Vocabulary::TitleConfig},
    {"Vocabulary", "TitleHierarchy", "VanX Hierarchy", Vocabulary::TitleHierarchy},
    {"Vocabulary", "DoubleSemicolon1", ";;", Vocabulary::DoubleSemicolon1},
    {"Vocabulary", "DoubleSemicolon2", ";;", Vocabulary::DoubleSemicolon2},
    {"Vocabulary", "TypeInteger", "INTEGER", Vocabulary::TypeInteger},
    {"Vocabulary", "TypeReal", "REAL", Vocabulary::TypeReal},
    {"Vocabulary", "TypeString", "STRING", Vocabulary::TypeString},
    {"CSProKeyword", "SectionDictionary", "DICTIONARY", CSProKeyword::SectionDictionary},
    {"CSProKeyword", "SectionRecord", "RECORD", CSProKeyword::SectionRecord},
    {"CSProKeyword", "SectionItem", "ITEM", CSProKeyword::SectionItem},
    {"CSProKeyword", "SectionValueSet", "VALUESET", CSProKeyword::SectionValueSet},
    {"CSProKeyword", "Name", "Name", CSProKeyword::Name},
    {"CSProKeyword", "Label", "Label", CSProKeyword::Label},
    {"CSProKeyword", "RecordTypeStart", "RecordTypeStart", CSProKeyword::RecordTypeStart},
    {"CSProKeyword", "RecordTypeLen", "RecordTypeLen", CSProKeyword::RecordTypeLen},
    {"CSProKeyword", "Positions", "Positions", CSProKeyword::Positions},
    {"CSProKeyword", "ZeroFill", "ZeroFill", CSProKeyword::ZeroFill},
    {"CSProKeyword", "DecimalChar", "DecimalChar", CSProKeyword::DecimalChar},
    {"CSProKeyword", "RecordTypeValue", "RecordTypeValue", CSProKeyword::RecordTypeValue},
    {"CSProKeyword", "Required", "Required", CSProKeyword::Required},
    {"CSProKeyword", "MaxRecords", "MaxRecords", CSProKeyword::MaxRecords},
    {"CSProKeyword", "RecordLen", "RecordLen", CSProKeyword::RecordLen},
    {"CSProKeyword", "Start", "Start", CSProKeyword::Start},
    {"CSProKeyword", "Len", "Len", CSProKeyword::Len},
    {"CSProKeyword", "DataType", "DataType", CSProKeyword::DataType},
    {"CSProKeyword", "ItemType", "ItemType", CSProKeyword::ItemType},
    {"CSProKeyword", "Occurrences", "Occurrences", CSProKeyword::Occurrences},
    {"CSProKeyword", "Decimal", "Decimal", CSProKeyword::Decimal},
    {"CSProKeyword", "Note", "Note", CSProKeyword::Note},
    {"CSProKeyword", "OccurenceLabel", "OccurenceLabel", CSProKeyword::OccurenceLabel},
    {"CSProKeyword", "Value", "Value", CSProKeyword::Value},
    {"CSProKeyword", "HeaderDictionary", "[Dictionary]", CSProKeyword::HeaderDictionary},
    {"CSProKeyword", "HeaderRecord", "[Record]", CSProKeyword::HeaderRecord},
    {"CSProKeyword", "HeaderItem", "[Item]", CSProKeyword::HeaderItem},
    {"CSProKeyword", "HeaderValueSet", "[ValueSet]", CSProKeyword::HeaderValueSet},
    {"CSProKeyword", "HeaderLevel", "[Level]", CSProKeyword::HeaderLevel},
    {"CSProKeyword", "HeaderIdItems", "[IdItems]", CSProKeyword::HeaderIdItems},
    {"CSProKeyword", "HeaderRelation", "[Relation]", CSProKeyword::HeaderRelation},
};
// clang-format on

// Texts that exist before the first call. They are copied by an object that is made at load time.
const QStringList textsAtLoadTime = { ClassTag::VclxPlot, Vocabulary::TypeString, CSProKeyword::HeaderRelation };

static_assert(std::is_same_v<decltype(ClassTag::DataImport), const QString>);
static_assert(std::is_same_v<decltype(Vocabulary::LineBreak), const QString>);
static_assert(std::is_same_v<decltype(CSProKeyword::Name), const QString>);

QStringList identifiersOf(const QString &group)
{
    QStringList result;
    for (const Constant &constant : constants) {
        if (group == QLatin1String(constant.group))
            result.append(QLatin1String(constant.identifier));
    }
    return result;
}

// The identifiers that the header declares in a group, in its order.
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
        for (const Constant &constant : constants)
            QTest::addRow("%s::%s", constant.group, constant.identifier) << constant.text << QString(constant.expected);
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
        QTest::addColumn<int>("count");
        QTest::newRow("class tags") << "ClassTag" << 56;
        QTest::newRow("general vocabulary") << "Vocabulary" << 21;
        QTest::newRow("CSPro keywords") << "CSProKeyword" << 31;
    }
    void groupHoldsSoManyConstantsInDeclaredOrder()
    {
        QFETCH(QString, group);
        QFETCH(int, count);
        QCOMPARE(declaredIn(group).size(), count);
        QCOMPARE(declaredIn(group), identifiersOf(group));
    }

    void constantsAre108InAll() { QCOMPARE(int(std::size(constants)), 108); }

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

    void typeTextIsAtThePositionOfItsValue_data()
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
        QTest::newRow("3 in the source field only, spelled SSPS") << int(dpSPSS) << QString() << "SSPS";
        QTest::newRow("4 in the source field only") << int(dpStata) << QString() << "STATA";
        QTest::newRow("5 in neither") << int(dpReserved5) << QString() << QString();
    }
    void typeTextIsAtThePositionOfItsValue()
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
};

QTEST_GUILESS_MAIN(ConstantsTest)
#include "ConstantsTest.moc"
