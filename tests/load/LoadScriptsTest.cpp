#include "load/LoadableLayout.h"
#include "load/ScriptText_p.h"

#include <QTest>

#include <algorithm>

using namespace vanlayout;

/// The texts of the programs for Python, R and PostgreSQL. tests/load/run_pandas.py, run_dask.py, run_r.py and
/// run_postgresql.py run them.
class LoadScriptsTest : public QObject
{
    Q_OBJECT

private slots:
    void textsCannotEndTheirLiteral_data();
    void textsCannotEndTheirLiteral();
    void longTextsAreJoinedPieces();
    void absentTextsHaveALiteral();
    void argumentsAreBrokenBetweenTwo();
    void linesAreShort_data();
    void linesAreShort();
    void programToRunIsFirst();
    void moduleHasNoNameThatPythonUses_data();
    void moduleHasNoNameThatPythonUses();
    void pathForRCannotBeAnAddress();
    void codesHaveTheTypeOfTheColumnInPython();
    void rangesWithoutLabelsAreListedForR();
    void rowsThatMayBeTooLongAreListedForPostgresql_data();
    void rowsThatMayBeTooLongAreListedForPostgresql();
};

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

void LoadScriptsTest::textsCannotEndTheirLiteral_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("inPython");
    QTest::addColumn<QByteArray>("inR");
    QTest::newRow("plain") << text("Rooms") << QByteArray("'Rooms'") << QByteArray("\"Rooms\"");
    QTest::newRow("empty") << text("") << QByteArray("''") << QByteArray("\"\"");
    QTest::newRow("quotes") << text("a'b\"c") << QByteArray("'a\\'b\"c'") << QByteArray("\"a'b\\\"c\"");
    QTest::newRow("backslash") << text("a\\") << QByteArray("'a\\\\'") << QByteArray("\"a\\\\\"");
    QTest::newRow("letters") << text("Zo\u00EB \u20AC") << QByteArray("'Zo\xC3\xAB \xE2\x82\xAC'")
                             << QByteArray("\"Zo\xC3\xAB \xE2\x82\xAC\"");
    QTest::newRow("beyond U+FFFF") << text("\U0001D538") << QByteArray("'\xF0\x9D\x94\xB8'")
                                   << QByteArray("\"\xF0\x9D\x94\xB8\"");
    QTest::newRow("control") << text("a\nb") << QByteArray("'a\\u000ab'") << QByteArray("\"a\\u{a}b\"");
    QTest::newRow("writing direction") << text("a\u202Eb") << QByteArray("'a\\u202eb'")
                                       << QByteArray("\"a\\u{202e}b\"");
    QTest::newRow("invisible beyond U+FFFF")
        << text("\U000E0001") << QByteArray("'\\U000e0001'") << QByteArray("\"\\U{e0001}\"");
    QTest::newRow("no character") << QString(QChar(0)) << QByteArray("'\\u0000'") << QByteArray("\"\\u{fffd}\"");
    QTest::newRow("lone surrogate") << QString(QChar(0xD800)) << QByteArray("'\xEF\xBF\xBD'")
                                    << QByteArray("\"\xEF\xBF\xBD\"");
}

void LoadScriptsTest::textsCannotEndTheirLiteral()
{
    QFETCH(QString, text);
    QTEST(literal(text, python()), "inPython");
    QTEST(literal(text, r()), "inR");
}

void LoadScriptsTest::longTextsAreJoinedPieces()
{
    const QString piece(300, QLatin1Char('x'));
    const QByteArray bytes = piece.toLatin1();
    QCOMPARE(literal(piece, python()), '\'' + bytes + '\'');
    QCOMPARE(literal(piece + QLatin1Char('y'), python()), "('" + bytes + "'\n    'y')");
    QCOMPARE(literal(piece + QLatin1Char('y'), r()), "paste0(\"" + bytes + "\",\n    \"y\")");
}

void LoadScriptsTest::absentTextsHaveALiteral()
{
    QCOMPARE(literalOrNothing(QString(), python()), QByteArray("None"));
    QCOMPARE(literalOrNothing(QString(), r()), QByteArray("NA"));
    QCOMPARE(literalOrNothing(QStringLiteral(""), r()), QByteArray("\"\""));
}

void LoadScriptsTest::argumentsAreBrokenBetweenTwo()
{
    const QByteArray wide(100, 'x');
    QCOMPARE(argumentLines({ "a", "b" }, "  "), QByteArray("a, b"));
    QCOMPARE(argumentLines({ wide, wide, "c" }, "  "), wide + ",\n  " + wide + ", c");
}

void LoadScriptsTest::linesAreShort_data()
{
    QTest::addColumn<int>("target");
    QTest::newRow("pandas") << int(LoadTarget::Pandas);
    QTest::newRow("dask") << int(LoadTarget::Dask);
    QTest::newRow("r") << int(LoadTarget::R);
}

// R breaks an escape that falls on byte 4096 of a line.
void LoadScriptsTest::linesAreShort()
{
    QFETCH(int, target);
    const QString longText = QString(700, QChar(0x20AC)) + QString(700, QLatin1Char('"')) + QString(700, QChar(0x202E));
    Item item = made::placed(made::item(longText, 2, { made::value(QStringLiteral("1"), longText) }));
    item.labels = made::labels(longText);
    Item textItem
        = made::placed(made::item(QStringLiteral("T"), 2000, { made::value(longText, longText) }, itemtype::alpha()));
    Layout layout = made::loadable({ item, textItem });
    layout.labels = made::labels(longText);
    LoadOptions options;
    options.data = longText;
    const LoadProgram program = makeLoadProgram(layout, LoadTarget(target), options);
    QVERIFY(!program.files.isEmpty());
    for (const LoadFile &file : program.files) {
        const QList<QByteArray> lines = file.text.split('\n');
        const auto isShort = [](const QByteArray &line) { return line.size() <= 1000; };
        QVERIFY(std::all_of(lines.begin(), lines.end(), isShort));
    }
}

void LoadScriptsTest::programToRunIsFirst()
{
    const LoadProgram program = makeLoadProgram(made::loadable({}), LoadTarget::Dask);
    QCOMPARE(program.files.size(), 2);
    QCOMPARE(program.files.at(0).name, QStringLiteral("D_dask.py"));
    QCOMPARE(program.files.at(1).name, QStringLiteral("D.py"));
    QVERIFY(program.files.at(0).text.contains("\nMODULE = 'D'\n"));
    QCOMPARE(program.files.at(1).text, made::program(made::loadable({}), LoadTarget::Pandas));
}

void LoadScriptsTest::moduleHasNoNameThatPythonUses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("module");
    QTest::newRow("library") << text("re") << text("re_2");
    QTest::newRow("package") << text("pandas") << text("pandas_2");
    QTest::newRow("word of the language") << text("class") << text("class_2");
    QTest::newRow("first of the list") << text("False") << text("False_2");
    QTest::newRow("last of the list") << text("zoneinfo") << text("zoneinfo_2");
    QTest::newRow("other case") << text("RE") << text("RE");
    QTest::newRow("part of a name") << text("panda") << text("panda");
}

// The program would be imported in place of the module.
void LoadScriptsTest::moduleHasNoNameThatPythonUses()
{
    QFETCH(QString, name);
    Layout layout = made::loadable({});
    layout.name = name;
    const LoadProgram program = makeLoadProgram(layout, LoadTarget::Dask);
    QCOMPARE(program.files.at(0).name, name + QLatin1String("_dask.py"));
    const QString module = program.files.at(1).name.chopped(3);
    QTEST(module, "module");
    const QByteArray moduleLine = "\nMODULE = '" + module.toLatin1() + "'\n";
    QVERIFY(program.files.at(0).text.contains(moduleLine));
    QVERIFY(program.files.at(0).text.contains(' ' + module.toLatin1() + ".py"));
    QVERIFY(program.files.at(1).text.contains("python3 " + module.toLatin1() + ".py DATA OUT"));
    QVERIFY(program.files.at(1).text.contains("\nDATA = '" + name.toLatin1() + ".dat'\n"));
}

void LoadScriptsTest::pathForRCannotBeAnAddress()
{
    LoadOptions options;
    options.data = QStringLiteral("http://example.org/x.dat");
    QVERIFY(made::program(made::loadable({}), LoadTarget::R, options)
                .contains("\nDATA <- \"./http://example.org/x.dat\"\n"));
}

void LoadScriptsTest::codesHaveTheTypeOfTheColumnInPython()
{
    Item decimal = made::placed(
        made::item(QStringLiteral("X"), 4, { made::value(QStringLiteral("01"), QStringLiteral("One")) }));
    decimal.decimals = 1;
    QVERIFY(made::program(made::loadable({ decimal }), LoadTarget::Pandas).contains("\n        1.0: 'One'}"));
    decimal.decimals = 0;
    QVERIFY(made::program(made::loadable({ decimal }), LoadTarget::Pandas).contains("\n        1: 'One'}"));
    decimal.type = itemtype::alpha();
    QVERIFY(made::program(made::loadable({ decimal }), LoadTarget::Pandas).contains("\n        '01': 'One'}"));
}

void LoadScriptsTest::rangesWithoutLabelsAreListedForR()
{
    const Item item = made::placed(made::item(
        QStringLiteral("X"), 4, { made::range(QStringLiteral("1"), QStringLiteral("5000"), QStringLiteral("Any")) }));
    QVERIFY(made::program(made::loadable({ item }), LoadTarget::R).contains("\n# R.X: 1 to 5000 is \"Any\"\n"));
    QVERIFY(made::program(made::loadable({ item }), LoadTarget::Pandas).contains("(1, 5000, 'Any')"));
}

void LoadScriptsTest::rowsThatMayBeTooLongAreListedForPostgresql_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("occurrences");
    QTest::addColumn<bool>("isListed");
    QTest::newRow("integers") << 9 << 1598 << false;
    QTest::newRow("bigints") << 18 << 1500 << true;
    QTest::newRow("fewer bigints") << 18 << 1000 << false;
    QTest::newRow("long numbers") << 19 << 500 << true;
    QTest::newRow("fewer long numbers") << 19 << 400 << false;
}

void LoadScriptsTest::rowsThatMayBeTooLongAreListedForPostgresql()
{
    QFETCH(int, length);
    QFETCH(int, occurrences);
    Item item = made::placed(made::item(QStringLiteral("X"), length));
    item.occurrences = occurrences;
    const QByteArray program = made::program(made::loadable({ item }), LoadTarget::Postgresql);
    QVERIFY(program.contains("CREATE TABLE"));
    QTEST(program.contains("\"row is too big\""), "isListed");
}

QTEST_MAIN(LoadScriptsTest)

#include "LoadScriptsTest.moc"
