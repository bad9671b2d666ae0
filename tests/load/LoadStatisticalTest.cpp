#include "load/LoadableLayout.h"
#include "load/SasFormats_p.h"
#include "load/SasTexts_p.h"
#include "load/SpssMissing_p.h"
#include "load/StataTexts_p.h"

#include <QTest>

#include <algorithm>

using namespace vanlayout;

Q_DECLARE_METATYPE(vanlayout::LoadTarget)
Q_DECLARE_METATYPE(vanlayout::SpecialForm)

/// The texts of the programs for SPSS, Stata and SAS. tests/load/run_spss.py, run_stata.py and run_sas.py run them.
class LoadStatisticalTest : public QObject
{
    Q_OBJECT

private slots:
    void textsCannotEndTheirLiteral_data();
    void textsCannotEndTheirLiteral();
    void longTextsAreBrokenIntoLines();
    void labelsThatStataExpandsAreSetByAMacro_data();
    void labelsThatStataExpandsAreSetByAMacro();
    void longTextOfStataIsPutTogetherInPieces();
    void valueLabelOfStataHolds65536Codes();
    void stataHasRoomForAllVariables();
    void recordTypeMayHoldAPlaceholder();
    void textsWithASpecialCodeAreListed_data();
    void textsWithASpecialCodeAreListed();
    void longSpecialCodesAreListed_data();
    void longSpecialCodesAreListed();
    void spssErasesItsFilesWhenTheirDataSetsAreClosed();
    void spssKnowsTheLengthOfALine_data();
    void spssKnowsTheLengthOfALine();
    void textIsCutAtTheEndOfItsPiece_data();
    void textIsCutAtTheEndOfItsPiece();
    void occurrenceThatNoPieceHoldsIsRefused();
    void namesAreNoOperandsInSas();
    void headSaysWhatWasNotRun_data();
    void headSaysWhatWasNotRun();
    void headOfStataHoldsNothingThatACommentExpands();
    void linesAreShort_data();
    void linesAreShort();
    void relativePathsAreNoCommands_data();
    void relativePathsAreNoCommands();
    void pathThatSasExpandsIsNotInLet();
    void stataHasADictionaryForEachTable();
    void textsOfStataArePartsOfALineThatNoBlankBegins_data();
    void textsOfStataArePartsOfALineThatNoBlankBegins();
    void stataTypesHoldAllNumbers_data();
    void stataTypesHoldAllNumbers();
    void firstMissingValuesThatFitCount_data();
    void firstMissingValuesThatFitCount();
    void codeBeforeASystemMissingRangeIsKept();
    void wideTextHasOneMissingValue();
    void codesThatStataCannotLabelAreListed();
    void rangesOfAFormatDoNotOverlap();
    void specialComesBeforeARangeInAFormat();
    void subitemBeyondItsItemIsWithinTheLineOfSpss();
};

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList texts(const char *separated)
{
    return QString::fromLatin1(separated).split(QStringLiteral(", "));
}

CodeRow rowOf(const char *from, const char *to, const char *label, Special special = Special::None)
{
    CodeRow row;
    row.from = row.low = QString::fromLatin1(from);
    row.high = to ? QString::fromLatin1(to) : row.low;
    row.to = to ? row.high : QString();
    row.label = QString::fromLatin1(label);
    row.special = special;
    return row;
}

QVector<SpecialRule> rules(const QStringList &ranges)
{
    QVector<SpecialRule> made;
    for (const QString &range : ranges) {
        const QStringList ends = range.split(QLatin1Char(':'));
        made.append({ CellOutcome::NoAnswer, ends.constFirst(), ends.constLast() });
    }
    return made;
}

void addTargets()
{
    QTest::addColumn<LoadTarget>("target");
    QTest::newRow("spss") << LoadTarget::Spss;
    QTest::newRow("stata") << LoadTarget::Stata;
    QTest::newRow("sas") << LoadTarget::Sas;
}

} // namespace

void LoadStatisticalTest::textsCannotEndTheirLiteral_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("inSpss");
    QTest::addColumn<QByteArray>("inStata");
    QTest::addColumn<QByteArray>("inSas");
    QTest::newRow("plain") << text("Rooms") << text("'Rooms'") << QByteArray("\"Rooms\"") << QByteArray("'Rooms'");
    QTest::newRow("empty") << QString() << text("''") << QByteArray("\"\"") << QByteArray("''");
    QTest::newRow("apostrophe") << text("a'b") << text("'a''b'") << QByteArray("\"a'b\"") << QByteArray("'a''b'");
    QTest::newRow("quote") << text("a\"b") << text("'a\"b'") << QByteArray("\"a\" + char(34) + \"b\"")
                           << QByteArray("'a\"b'");
    QTest::newRow("macros") << text("`a' $b &c %d") << text("'`a'' $b &c %d'")
                            << QByteArray("char(96) + \"a' \" + char(36) + \"b &c %d\"")
                            << QByteArray("'`a'' $b &c %d'");
    QTest::newRow("comments") << text("a//b/*c") << text("'a//b/*c'")
                              << QByteArray("\"a\" + char(47) + \"/b\" + char(47) + \"*c\"") << QByteArray("'a//b/*c'");
    QTest::newRow("braces") << text("a{b}") << text("'a{b}'") << QByteArray("\"a\" + char(123) + \"b\" + char(125)")
                            << QByteArray("'a{b}'");
    QTest::newRow("line end") << text("a\nb") << text("'a' + X'0a' + 'b'") << QByteArray("\"a\" + char(10) + \"b\"")
                              << QByteArray("'a\nb'");
}

void LoadStatisticalTest::textsCannotEndTheirLiteral()
{
    QFETCH(QString, label);
    QTEST(spssQuoted(label), "inSpss");
    QTEST(stataExpression(label), "inStata");
    QTEST(sasQuoted(label), "inSas");
}

void LoadStatisticalTest::longTextsAreBrokenIntoLines()
{
    const QString label(199, QLatin1Char('x'));
    const QByteArray bytes = label.toLatin1();
    QCOMPARE(spssQuoted(label.left(100)).toLatin1(), '\'' + bytes.left(100) + '\'');
    QCOMPARE(spssQuoted(label.left(101)).toLatin1(), '\'' + bytes.left(100) + "' +\n    'x'");
    // The limit is one of bytes, as SPSS has it, and no character is divided.
    const QString wide = QString::fromUtf8("\xf0\x9f\x98\x80").repeated(25);
    QCOMPARE(spssQuoted(wide + QLatin1Char('y')), QLatin1Char('\'') + wide + QLatin1String("' +\n    'y'"));
    QCOMPARE(spssQuoted(QLatin1Char('y') + wide),
             QLatin1String("'y") + wide.left(48) + QLatin1String("' +\n    '") + wide.left(2) + QLatin1Char('\''));
    QCOMPARE(sasQuoted(label), '\'' + bytes + '\'');
    QCOMPARE(sasQuoted(label + QLatin1Char('y')), '\'' + bytes + "\ny'");
    // No line ends with a blank.
    QCOMPARE(sasQuoted(label.left(198) + QLatin1String(" yz")), '\'' + bytes.left(198) + " y\nz'");
    QCOMPARE(stataExpression(label), "\"" + bytes.left(100) + "\" + \"" + bytes.mid(100) + '"');
}

void LoadStatisticalTest::labelsThatStataExpandsAreSetByAMacro_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("commands");
    const QByteArray macro = "    label data `\"`macval(van_label)'\"'\n";
    QTest::newRow("plain") << text("a \"b\" c") << QByteArray("    label data `\"a \"b\" c\"'\n");
    QTest::newRow("global macro") << text("$a") << "    local van_label = char(36) + \"a\"\n" + macro;
    QTest::newRow("local macro") << text("`a'") << "    local van_label = char(96) + \"a'\"\n" + macro;
    QTest::newRow("brace") << text("a{") << "    local van_label = \"a\" + char(123)\n" + macro;
    QTest::newRow("end of the text") << text("a\"'b") << QByteArray("    label data `\"a\" 'b\"'\n");
    QTest::newRow("begin of a text") << text("a`\"b") << QByteArray("    label data `\"a'\"b\"'\n");
    QTest::newRow("backquote at the end") << text("a`") << QByteArray("    label data `\"a'\"'\n");
    QTest::newRow("both") << text("\"`") << QByteArray("    label data `\"\" '\"'\n");
}

void LoadStatisticalTest::labelsThatStataExpandsAreSetByAMacro()
{
    QFETCH(QString, label);
    QTEST(stataLabelCommand("label data", label, 80), "commands");
}

void LoadStatisticalTest::longTextOfStataIsPutTogetherInPieces()
{
    const QByteArray commands = stataMacro("a", QString(100, QLatin1Char('$')));
    QVERIFY(commands.startsWith("    scalar van_text = char(36) + char(36)"));
    QVERIFY(commands.endsWith("\n    local a = scalar(van_text)\n"));
    QCOMPARE(commands.count("scalar van_text = "), 3);
    QCOMPARE(commands.count("scalar van_text = scalar(van_text) + char(36)"), 2);
    QCOMPARE(commands.count("char(36)"), 100);
    QVERIFY(!stataMacro("a", QString(40, QLatin1Char('$'))).contains("scalar"));
}

void LoadStatisticalTest::valueLabelOfStataHolds65536Codes()
{
    CodeList list;
    for (int i = 0; i < 65537; ++i)
        list.labels.append({ QString::number(i), QStringLiteral("x"), CellOutcome::Value });
    QCOMPARE(stataValueLabel("A", list).count("label define A "), 65536);
    QCOMPARE(stataUnlabelled(list, false), QStringList(QStringLiteral("65536 (x)")));
}

void LoadStatisticalTest::stataHasRoomForAllVariables()
{
    Item item = made::placed(made::item(QStringLiteral("A"), 1));
    item.occurrences = 1900;
    QVERIFY(!made::program(made::loadable({ item }), LoadTarget::Stata).contains("maxvar"));
    item.occurrences = 3000;
    const QByteArray program = made::program(made::loadable({ item }), LoadTarget::Stata);
    // The start of the line, the line in two pieces, the id, 3,000 columns, 40 others, and the id once more.
    QVERIFY2(program.contains("\n    set maxvar 3045\n"), program.mid(program.indexOf("maxvar"), 30).constData());
    QVERIFY(QByteArray(program).replace("\n* ", " ").contains("A table needs 3045 variables."));
}

void LoadStatisticalTest::recordTypeMayHoldAPlaceholder()
{
    Layout layout = made::loadable({});
    layout.recordType = RecordTypeColumns{ 3, 2 };
    layout.levels[0].records[0].recordType = QStringLiteral("%1");
    const QByteArray program = made::program(layout, LoadTarget::Spss);
    QVERIFY2(program.contains("RECODE @type ('%1'=1) (ELSE=0) INTO @record."), program.constData());
}

void LoadStatisticalTest::textsWithASpecialCodeAreListed_data()
{
    QTest::addColumn<LoadTarget>("target");
    QTest::addColumn<SpecialForm>("form");
    QTest::addColumn<QByteArray>("codes");
    for (const LoadTarget target : { LoadTarget::Stata, LoadTarget::Sas }) {
        const QByteArray name = target == LoadTarget::Sas ? "sas" : "stata";
        QTest::newRow(name.constData()) << target << SpecialForm::Missing << QByteArray("\"ZZ\", \"XX\"\n");
        QTest::newRow((name + ", kept").constData()) << target << SpecialForm::Keep << QByteArray("\"XX\"\n");
    }
}

void LoadStatisticalTest::textsWithASpecialCodeAreListed()
{
    QFETCH(LoadTarget, target);
    QFETCH(SpecialForm, form);
    QFETCH(QByteArray, codes);
    Item item = made::placed(made::item(QStringLiteral("A"), 2,
                                        { made::value(QStringLiteral("ZZ"), QStringLiteral("None"), Special::Missing),
                                          made::value(QStringLiteral("XX"), QString(), Special::NotApplicable),
                                          made::value(QStringLiteral("ZZ"), QString(), Special::Refused) }));
    item.type = itemtype::alpha();
    LoadOptions options;
    options.specials = form;
    QByteArray program = made::program(made::loadable({ item }), target, options);
    program.replace(" */\n", "\n");
    QVERIFY2(program.contains("R.A: texts with these special codes stay as they are: " + codes), program.constData());
    if (target == LoadTarget::Stata)
        QVERIFY(program.contains("R.A: Stata has no labels for ZZ (None)\n"));
}

void LoadStatisticalTest::longSpecialCodesAreListed_data()
{
    addTargets();
}

void LoadStatisticalTest::longSpecialCodesAreListed()
{
    QFETCH(LoadTarget, target);
    Item item = made::placed(made::item(QStringLiteral("A"), 16,
                                        { made::value(QString(16, QLatin1Char('9')), QString(), Special::Missing) }));
    const QByteArray sentence("R.A has special codes of more than 15 digits.");
    QVERIFY(made::program(made::loadable({ item }), target).contains(sentence));
    item.length = 15;
    QVERIFY(!made::program(made::loadable({ item }), target).contains(sentence));
}

void LoadStatisticalTest::spssErasesItsFilesWhenTheirDataSetsAreClosed()
{
    Item item = made::placed(made::item(QStringLiteral("A"), 2));
    item.occurrences = 2;
    LoadOptions options;
    options.occurrences = OccurrenceForm::Long;
    const QByteArray program = made::program(made::loadable({ item }), LoadTarget::Spss, options);
    QVERIFY2(program.endsWith("DATASET CLOSE ALL.\nNEW FILE.\nERASE FILE='R_A.tmp'.\n"),
             program.right(300).constData());
    QVERIFY(made::program(made::loadable({ item }), LoadTarget::Spss).endsWith("DATASET CLOSE ALL.\n"));
}

// SPSS reads 8,192 bytes of a line otherwise.
void LoadStatisticalTest::spssKnowsTheLengthOfALine_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("short") << 1 << QByteArray("/LRECL=12\n");
    QTest::newRow("one variable") << 5000 << QByteArray("/LRECL=20008\n");
    QTest::newRow("several variables") << 9000 << QByteArray("/LRECL=48000\n");
}

void LoadStatisticalTest::spssKnowsTheLengthOfALine()
{
    QFETCH(int, length);
    QFETCH(QByteArray, bytes);
    Item item = made::placed(made::item(QStringLiteral("A"), length));
    item.type = itemtype::alpha();
    const QByteArray program = made::program(made::loadable({ item }), LoadTarget::Spss);
    QVERIFY2(program.contains(bytes), program.mid(program.indexOf("FILE HANDLE"), 100).constData());
}

// A line of more than 8,000 characters is read in pieces of 32,000 bytes, one each 16,000 bytes.
void LoadStatisticalTest::textIsCutAtTheEndOfItsPiece_data()
{
    QTest::addColumn<LoadTarget>("target");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("held");
    for (const LoadTarget target : { LoadTarget::Spss, LoadTarget::Sas }) {
        const QByteArray name = target == LoadTarget::Sas ? "sas" : "spss";
        QTest::newRow((name + ", fits").constData()) << target << 16000 << 16001 << 16001;
        QTest::newRow((name + ", too long").constData()) << target << 16000 << 16002 << 16001;
        QTest::newRow((name + ", begin of a piece").constData()) << target << 16001 << 32000 << 32000;
        QTest::newRow((name + ", longer than a piece").constData()) << target << 16001 << 33000 << 32000;
    }
}

void LoadStatisticalTest::textIsCutAtTheEndOfItsPiece()
{
    QFETCH(LoadTarget, target);
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(int, held);
    Item item = made::placed(made::item(QStringLiteral("A"), length));
    item.type = itemtype::alpha();
    item.start = start;
    const QByteArray program = made::program(made::loadable({ item }), target);
    const QByteArray bytes = QByteArray::number(held);
    QCOMPARE(program.contains("R.A is cut to " + bytes + " bytes."), held < length);
    const QByteArray field = target == LoadTarget::Sas ? ", " + bytes + ");\n" : "/@size=" + bytes + ".\n";
    QVERIFY2(program.contains(field), program.constData());
}

void LoadStatisticalTest::occurrenceThatNoPieceHoldsIsRefused()
{
    Item item = made::item(QStringLiteral("A"), 16002);
    item.start = 16000;
    item.type = itemtype::alpha();
    item.occurrences = 2;
    LoadOptions options;
    options.occurrences = OccurrenceForm::Long;
    for (const LoadTarget target : { LoadTarget::Spss, LoadTarget::Sas }) {
        const QByteArray problem = made::program(made::loadable({ item }), target, options);
        QVERIFY2(problem.startsWith("has 16002 characters in an occurrence of the table R_A, of which s"),
                 problem.left(99).constData());
        QVERIFY(made::program(made::loadable({ item }), target).contains("Loads a CSPro data file"));
    }
    QVERIFY(made::program(made::loadable({ item }), LoadTarget::Stata, options).contains("Loads a CSPro data file"));
    item.length = 16001;
    QVERIFY(made::program(made::loadable({ item }), LoadTarget::Sas, options).contains("Loads a CSPro data file"));
}

void LoadStatisticalTest::namesAreNoOperandsInSas()
{
    Item item = made::placed(
        made::item(QStringLiteral("NOT"), 2, { made::value(QStringLiteral("99"), QString(), Special::Missing) }));
    const QByteArray program = made::program(made::loadable({ item }), LoadTarget::Sas);
    QVERIFY2(program.contains("    if _van_value = 99 then _van_value = .M;\n    NOT = _van_value;\n"),
             program.constData());
}

void LoadStatisticalTest::headSaysWhatWasNotRun_data()
{
    QTest::addColumn<LoadTarget>("target");
    QTest::addColumn<QByteArray>("sentence");
    QTest::newRow("spss") << LoadTarget::Spss << QByteArray("SPSS itself was not run");
    QTest::newRow("stata") << LoadTarget::Stata
                           << QByteArray(
                                  "Stata itself was not run: programs of this form were tested with an interpreter");
    QTest::newRow("sas") << LoadTarget::Sas
                         << QByteArray("SAS itself was not run: programs of this form were tested with an interpreter");
}

void LoadStatisticalTest::headSaysWhatWasNotRun()
{
    QFETCH(LoadTarget, target);
    QFETCH(QByteArray, sentence);
    QByteArray program = made::program(made::loadable({}), target);
    program.replace("\n* ", " ").replace(" */\n/* ", " ");
    QVERIFY2(program.contains(sentence), program.left(2000).constData());
}

void LoadStatisticalTest::headOfStataHoldsNothingThatACommentExpands()
{
    Layout layout = made::loadable({});
    layout.labels = made::labels(QStringLiteral("a /* b // c `d' e"));
    const QByteArray program = made::program(layout, LoadTarget::Stata);
    QVERIFY2(program.contains("\"a / * b / / c 'd' e\""), program.left(1000).constData());
}

void LoadStatisticalTest::linesAreShort_data()
{
    addTargets();
}

void LoadStatisticalTest::linesAreShort()
{
    QFETCH(LoadTarget, target);
    const int limit = target == LoadTarget::Spss ? 256 : 1000;
    const QVector<Value> values = { made::value(QStringLiteral("1"), QString(40000, QLatin1Char('x'))),
                                    made::value(QStringLiteral("2"), QString(3000, QLatin1Char('$'))),
                                    made::value(QStringLiteral("3"), QString(3000, QLatin1Char('\''))) };
    Item item = made::placed(made::item(QStringLiteral("A"), 2, values));
    item.labels = made::labels(QString(3000, QChar(0x4e2d)));
    LoadOptions options;
    options.data = QString(3000, QLatin1Char('d'));
    const QByteArray program = made::program(made::loadable({ item }), target, options);
    const QList<QByteArray> lines = program.split('\n');
    const auto isLong = [&](const QByteArray &line) { return line.size() > limit && !line.startsWith("/*"); };
    const auto found = std::find_if(lines.begin(), lines.end(), isLong);
    QVERIFY2(found == lines.end(), found == lines.end() ? "" : found->left(200).constData());
}

void LoadStatisticalTest::relativePathsAreNoCommands_data()
{
    addTargets();
}

void LoadStatisticalTest::relativePathsAreNoCommands()
{
    QFETCH(LoadTarget, target);
    LoadOptions options;
    options.data = QStringLiteral("|touch canary");
    const QByteArray program = made::program(made::loadable({}), target, options);
    QVERIFY(program.contains("'./|touch canary'") || program.contains("\"./|touch canary\""));
    QVERIFY(!program.contains("'|touch canary'") && !program.contains("\"|touch canary\""));
}

void LoadStatisticalTest::pathThatSasExpandsIsNotInLet()
{
    LoadOptions options;
    options.data = QStringLiteral("a&b;c.dat");
    const QByteArray program = made::program(made::loadable({}), LoadTarget::Sas, options);
    QVERIFY(program.contains("%let data = ;\n"));
    QVERIFY(program.contains("if path = ' ' then path = './a&b;c.dat';\n"));
    options.data = QStringLiteral("C:\\data\\a.dat");
    QVERIFY(made::program(made::loadable({}), LoadTarget::Sas, options).contains("%let data = C:\\data\\a.dat;\n"));
}

void LoadStatisticalTest::stataHasADictionaryForEachTable()
{
    const LoadProgram program
        = makeLoadProgram(made::loadable({ made::placed(made::item(QStringLiteral("A"))) }), LoadTarget::Stata);
    QCOMPARE(program.files.size(), 2);
    QCOMPARE(program.files.at(0).name, QStringLiteral("D.do"));
    QCOMPARE(program.files.at(1).name, QStringLiteral("R.dct"));
    QVERIFY(program.files.at(1).text.contains("\n    str A 3-"));
}

// A part of the line that begins at the record type keeps the blanks of texts, if the record type begins with none.
void LoadStatisticalTest::textsOfStataArePartsOfALineThatNoBlankBegins_data()
{
    QTest::addColumn<QString>("mark");
    QTest::addColumn<int>("start");
    QTest::addColumn<bool>("isPart");
    QTest::newRow("after the record type") << text("R") << 5 << true;
    QTest::newRow("blank before the record type") << text(" R") << 5 << false;
    QTest::newRow("before the record type") << text("R") << 1 << false;
    QTest::newRow("last column") << text("R") << 3 + 2043 << true;
    QTest::newRow("too far") << text("R") << 3 + 2044 << false;
}

void LoadStatisticalTest::textsOfStataArePartsOfALineThatNoBlankBegins()
{
    QFETCH(QString, mark);
    QFETCH(int, start);
    QFETCH(bool, isPart);
    Item item = made::placed(made::item(QStringLiteral("A"), 2));
    item.type = itemtype::alpha();
    item.start = start;
    Layout layout = made::loadable({ item });
    layout.recordType = RecordTypeColumns{ 3, 2 };
    layout.levels[0].records[0].recordType = mark;
    const LoadProgram program = makeLoadProgram(layout, LoadTarget::Stata);
    QCOMPARE(program.files.at(1).text.contains("\n    str A "), !isPart);
    QCOMPARE(program.files.at(0).text.contains("These texts lose blanks before them if infix takes them off: R.A\n"),
             !isPart);
}

void LoadStatisticalTest::stataTypesHoldAllNumbers_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("99 is a byte") << 2 << 0 << QByteArray("byte");
    QTest::newRow("999 is no byte") << 3 << 0 << QByteArray("int");
    QTest::newRow("9,999 is an int") << 4 << 0 << QByteArray("int");
    QTest::newRow("99,999 is no int") << 5 << 0 << QByteArray("long");
    QTest::newRow("nine digits are a long") << 9 << 0 << QByteArray("long");
    QTest::newRow("ten digits are none") << 10 << 0 << QByteArray("double");
    QTest::newRow("decimals") << 2 << 1 << QByteArray("double");
}

void LoadStatisticalTest::stataTypesHoldAllNumbers()
{
    QFETCH(int, length);
    QFETCH(int, decimals);
    PlannedColumn column;
    column.type = decimals > 0 ? CellType::Decimal : CellType::Integer;
    column.length = length;
    column.decimals = decimals;
    QTEST(stataTypeOf(column), "type");
}

void LoadStatisticalTest::firstMissingValuesThatFitCount_data()
{
    QTest::addColumn<QStringList>("codes");
    QTest::addColumn<QString>("values");
    QTest::addColumn<QString>("leftOver");
    QTest::newRow("three codes") << texts("7, 8, 9") << text("7, 8, 9") << QString();
    QTest::newRow("a fourth") << texts("6, 7, 8, 9") << text("6, 7, 8") << text("9");
    QTest::newRow("range and code") << texts("90:95, 99, 98") << text("90 THRU 95, 99") << text("98");
    QTest::newRow("code and range") << texts("99, 90:95, 98") << text("99, 90 THRU 95") << text("98");
    QTest::newRow("two codes, then a range") << texts("98, 99, 90:95") << text("98, 99") << text("90 THRU 95");
    QTest::newRow("two ranges") << texts("90:95, 80:85, 99") << text("90 THRU 95, 99") << text("80 THRU 85");
    QTest::newRow("the same code twice") << texts("9, 9, 8, 7") << text("9, 8, 7") << QString();
    QTest::newRow("upside down") << texts("95:90, 9") << text("9") << QString();
}

void LoadStatisticalTest::firstMissingValuesThatFitCount()
{
    QFETCH(QStringList, codes);
    CodeList list;
    list.specials = rules(codes);
    const SpssMissing missing = spssMissingOf(list);
    QTEST(missing.values.join(QLatin1String(", ")), "values");
    QTEST(missing.leftOver.join(QLatin1String(", ")), "leftOver");
}

void LoadStatisticalTest::codeBeforeASystemMissingRangeIsKept()
{
    CodeList list;
    list.specials = { { CellOutcome::NoAnswer, QStringLiteral("9"), QStringLiteral("9") },
                      { CellOutcome::Missing, QStringLiteral("1"), QStringLiteral("10") },
                      { CellOutcome::Refused, QStringLiteral("20"), QStringLiteral("20") } };
    const QStringList recodes = { QStringLiteral("(9=COPY)"), QStringLiteral("(1 THRU 10=SYSMIS)") };
    QCOMPARE(spssMissingOf(list).recodes, recodes);
}

void LoadStatisticalTest::wideTextHasOneMissingValue()
{
    CodeList list;
    list.specials = rules({ QStringLiteral("ZZ"), QStringLiteral("YY"), QStringLiteral("NINEBYTES") });
    const QStringList both = { QStringLiteral("'ZZ'"), QStringLiteral("'YY'") };
    QCOMPARE(spssMissingOfText(list, 8).values, both);
    QCOMPARE(spssMissingOfText(list, 8).leftOver, QStringList(QStringLiteral("'NINEBYTES'")));
    QCOMPARE(spssMissingOfText(list, 9).values, both.mid(0, 1));
}

void LoadStatisticalTest::codesThatStataCannotLabelAreListed()
{
    CodeList list;
    list.labels = { { QStringLiteral("1"), QStringLiteral("Whole"), CellOutcome::Value },
                    { QStringLiteral("1.5"), QStringLiteral("Half"), CellOutcome::Value },
                    { QStringLiteral("9"), QStringLiteral("None"), CellOutcome::NoAnswer },
                    { QStringLiteral("2147483621"), QStringLiteral("Large"), CellOutcome::Value } };
    QCOMPARE(stataUnlabelled(list, false),
             QStringList({ QStringLiteral("1.5 (Half)"), QStringLiteral("2147483621 (Large)") }));
    QCOMPARE(stataValueLabel("A", list),
             QByteArray("    label define A 1 `\"Whole\"'\n    label define A .m `\"None\"', add\n"));
}

void LoadStatisticalTest::rangesOfAFormatDoNotOverlap()
{
    CodeList list;
    list.rows = { rowOf("5", nullptr, "Five"), rowOf("1", "9", "Small"), rowOf("9", "20", "Large"),
                  rowOf("1", "20", "Not used") };
    QCOMPARE(sasFormat("A_1_", list, false, SpecialForm::Missing),
             QByteArray(
                 "  value A_1_\n    5 = 'Five'\n    1 -< 5 = 'Small'\n    5 <- 9 = 'Small'\n    9 <- 20 = 'Large';\n"));
}

void LoadStatisticalTest::specialComesBeforeARangeInAFormat()
{
    CodeList list;
    list.rows = { rowOf("1", "99", "Years"), rowOf("98", nullptr, "Refused", Special::Refused),
                  rowOf("97", nullptr, "Default", Special::Default) };
    QCOMPARE(sasFormat("A_1_", list, false, SpecialForm::Missing),
             QByteArray("  value A_1_\n    .R = 'Refused'\n    1 - 99 = 'Years';\n"));
    QCOMPARE(
        sasFormat("A_1_", list, false, SpecialForm::Keep),
        QByteArray(
            "  value A_1_\n    98 = 'Refused'\n    97 = 'Default'\n    1 -< 97 = 'Years'\n    97 <-< 98 = 'Years'\n"
            "    98 <- 99 = 'Years';\n"));
}

// The last character of the second occurrence is in column 3 + 2 + 2 + 4 - 1, so that the program needs 11 positions.
void LoadStatisticalTest::subitemBeyondItsItemIsWithinTheLineOfSpss()
{
    Item item = made::placed(made::item(QStringLiteral("A"), 2));
    item.occurrences = 2;
    Item sub = made::item(QStringLiteral("S"), 4);
    sub.start = 5;
    sub.isSubitem = true;
    LoadOptions options;
    options.occurrences = OccurrenceForm::Long;
    const QByteArray program = made::program(made::loadable({ item, sub }), LoadTarget::Spss, options);
    QVERIFY2(program.contains("#at(11"), program.constData());
}

QTEST_MAIN(LoadStatisticalTest)

#include "LoadStatisticalTest.moc"
