#ifndef IMPORT_CONSTANTS_H
#define IMPORT_CONSTANTS_H

#include <QString>

/// Constants that are common to all parts of the library: 108 texts in three groups, and four enumerations.
///
/// Texts are compared by content, never by identity. They exist before the first exported call and live as long as
/// the library. A text that no operation reads is part of the declared vocabulary too. The texts are never changed, so
/// they may be read on any thread.

// clang-format off

/// Names of classes and modules. The first argument of a `VpErrorManager` is one of them and states where an error
/// arose.
///
/// A tag is only a label: a class with the name of a tag does not necessarily throw errors with that tag.
namespace ClassTag {

// in use, each with its error codes: 106 and 107; 101, 211 and 242; 101 and 211; 101 and 211
inline const QString DataImport = QStringLiteral("DataImport");
inline const QString CSPro = QStringLiteral("CSPro");
inline const QString CSProItem = QStringLiteral("CSProItem");
inline const QString CSProValueSet = QStringLiteral("CSProValueSet");

// declared only
inline const QString AreaList = QStringLiteral("AreaList");
inline const QString AreaListDataSet = QStringLiteral("AreaListDataSet");
inline const QString BufferedFile = QStringLiteral("BufferedFile");
inline const QString CSDB = QStringLiteral("CSDB");
inline const QString CSDBDataImport = QStringLiteral("CSDBDataImport");
inline const QString CSProDataImport = QStringLiteral("CSProDataImport");
inline const QString CSProRecord = QStringLiteral("CSProRecord");
inline const QString Quimbal = QStringLiteral("Quimbal");
inline const QString DBFDataImport = QStringLiteral("DBFDataImport");
inline const QString DBFFile = QStringLiteral("DBFFile");
inline const QString DBFIndex = QStringLiteral("DBFIndex");
inline const QString DDF = QStringLiteral("DDF");
inline const QString DSProperties = QStringLiteral("DSProperties");
inline const QString DataExport = QStringLiteral("DataExport");
inline const QString DataNode = QStringLiteral("DataNode");
inline const QString Define = QStringLiteral("Define");
inline const QString Distribution = QStringLiteral("Distribution");
inline const QString EIM = QStringLiteral("EIM");
inline const QString Entity = QStringLiteral("Entity");
inline const QString FrameVandaraGis = QStringLiteral("FrameVandaraGis");
inline const QString GINIPlus = QStringLiteral("GINIPlus");
inline const QString HexoChart = QStringLiteral("HexoChart");
inline const QString MLDBGroup = QStringLiteral("MLDBGroup");
inline const QString MLDBSubGroup = QStringLiteral("MLDBSubGroup");
inline const QString MLDBTot = QStringLiteral("MLDBTot");
inline const QString MainForm = QStringLiteral("MainForm");
inline const QString Output = QStringLiteral("Output");
inline const QString Preferences = QStringLiteral("Preferences");
inline const QString Range = QStringLiteral("Range");
inline const QString VanRegister = QStringLiteral("VanRegister");
inline const QString RegisterIni = QStringLiteral("RegisterIni");
inline const QString VpQuimbal = QStringLiteral("VpQuimbal");
inline const QString VpDataSet = QStringLiteral("VpDataSet");
inline const QString VpJsonReader = QStringLiteral("VpJsonReader");
inline const QString VpMapDefinition = QStringLiteral("VpMapDefinition");
inline const QString VpRecord = QStringLiteral("VpRecord");
inline const QString VpStatProcess = QStringLiteral("VpStatProcess");
inline const QString VpWebAccess = QStringLiteral("VpWebAccess");
inline const QString VpWebConfig = QStringLiteral("VpWebConfig");
inline const QString VpWebIni = QStringLiteral("VpWebIni");
inline const QString VpWebTradePack = QStringLiteral("VpWebTradePack");
inline const QString SPSS = QStringLiteral("SPSS");
inline const QString SPSSDataImport = QStringLiteral("SPSSDataImport");
inline const QString Utilities = QStringLiteral("Utilities");
inline const QString Variable = QStringLiteral("Variable");
inline const QString WebSelection = QStringLiteral("WebSelection");
inline const QString Workspace = QStringLiteral("Workspace");
inline const QString XCL = QStringLiteral("XCL");
inline const QString XNode = QStringLiteral("xNode");
inline const QString XPlotMain = QStringLiteral("xPlotMain");
inline const QString XPlotNode = QStringLiteral("xPlotNode");
inline const QString VclxPlot = QStringLiteral("VclxPlot");

} // namespace ClassTag

/// Separators, line break, file suffixes and type names.
namespace Vocabulary {

// in use
inline const QString LineBreak = QStringLiteral("\r\n");
inline const QString Tab = QStringLiteral("\t");
inline const QString Blank = QStringLiteral(" ");
inline const QString Comma = QStringLiteral(",");
inline const QString Colon = QStringLiteral(":");
inline const QString Semicolon = QStringLiteral(";");
inline const QString Equals = QStringLiteral("=");
inline const QString Underscore = QStringLiteral("_");
inline const QString Yes = QStringLiteral("YES");

// declared only
inline const QString SuffixDat = QStringLiteral(".dat");
inline const QString SuffixTxt = QStringLiteral(".txt");
inline const QString SuffixJson = QStringLiteral(".json");
inline const QString SuffixLsdJson = QStringLiteral(".lsd.json");
inline const QString SuffixWipJson = QStringLiteral(".wip.json");
inline const QString TitleConfig = QStringLiteral("VanX Config");
inline const QString TitleHierarchy = QStringLiteral("VanX Hierarchy");
// Two separate constants have the same text.
inline const QString DoubleSemicolon1 = QStringLiteral(";;");
inline const QString DoubleSemicolon2 = QStringLiteral(";;");
// The importer base writes the same three type names from literals.
inline const QString TypeInteger = QStringLiteral("INTEGER");
inline const QString TypeReal = QStringLiteral("REAL");
inline const QString TypeString = QStringLiteral("STRING");

} // namespace Vocabulary

/// Section names and keys of the CSPro text dictionary.
namespace CSProKeyword {

// section names, compared with the upper-cased word of a header
inline const QString SectionDictionary = QStringLiteral("DICTIONARY");
inline const QString SectionRecord = QStringLiteral("RECORD");
inline const QString SectionItem = QStringLiteral("ITEM");
inline const QString SectionValueSet = QStringLiteral("VALUESET");

// keys
inline const QString Name = QStringLiteral("Name");
inline const QString Label = QStringLiteral("Label");
inline const QString RecordTypeStart = QStringLiteral("RecordTypeStart");
inline const QString RecordTypeLen = QStringLiteral("RecordTypeLen");
inline const QString Positions = QStringLiteral("Positions");
inline const QString ZeroFill = QStringLiteral("ZeroFill");
inline const QString DecimalChar = QStringLiteral("DecimalChar");
inline const QString RecordTypeValue = QStringLiteral("RecordTypeValue");
inline const QString Required = QStringLiteral("Required");
inline const QString MaxRecords = QStringLiteral("MaxRecords");
inline const QString RecordLen = QStringLiteral("RecordLen");
inline const QString Start = QStringLiteral("Start");
inline const QString Len = QStringLiteral("Len");
inline const QString DataType = QStringLiteral("DataType");
inline const QString ItemType = QStringLiteral("ItemType");
inline const QString Occurrences = QStringLiteral("Occurrences");
inline const QString Decimal = QStringLiteral("Decimal");

// declared only; "Occurence" is spelled with one r
inline const QString Note = QStringLiteral("Note");
inline const QString OccurenceLabel = QStringLiteral("OccurenceLabel");
inline const QString Value = QStringLiteral("Value");
inline const QString HeaderDictionary = QStringLiteral("[Dictionary]");
inline const QString HeaderRecord = QStringLiteral("[Record]");
inline const QString HeaderItem = QStringLiteral("[Item]");
inline const QString HeaderValueSet = QStringLiteral("[ValueSet]");
inline const QString HeaderLevel = QStringLiteral("[Level]");
inline const QString HeaderIdItems = QStringLiteral("[IdItems]");
inline const QString HeaderRelation = QStringLiteral("[Relation]");

} // namespace CSProKeyword

// clang-format on

/// Type of a data provider or of a source field: the position of its text in a list of type texts.
///
/// `TVpDataProvider` and `TVpSourceField` have different lists. Values 5, 6, 8 and 9 have no text and do not occur.
enum eDataProviderType : int {
    dpNone = 0,  ///< "NONE", also "not set"
    dpCSPro = 1, ///< "CSPRO"
    dpCSV = 2,   ///< "CSV"
    dpSPSS = 3,  ///< "SSPS"; this spelling is intended
    dpStata = 4, ///< "STATA"
    dpReserved5 = 5,
    dpReserved6 = 6,
    dpReserved8 = 8,
    dpReserved9 = 9
};

/// Data type of a field.
enum eVanVarType : int {
    vtNone = 0,    ///< not set
    vtInteger = 1, ///< "INTEGER"
    vtReal = 2,    ///< "REAL"
    vtString = 3   ///< "STRING"
};

/// Mode of a lookup check, as two flags. Any other value acts as 0.
enum econsistencyCheck : int {
    ccNone = 0,
    ccFrequencies = 1, ///< counts frequencies
    ccErrors = 2,      ///< reports errors
    ccBoth = 3         ///< does both
};

/// View of a selection unit. It is stored and returned, and has no effect. The library makes only the value 1.
enum eSelectionView : int { svDefault = 1 };

#endif
