#include "write/ConcordCsv.h"

#include <QtTest>

#include "layout/MadeConcordance.h"

using namespace vanlayout;
using made::absent;

namespace
{

QByteArray variablesOf(const Concordance &concordance, const ConcordCsvOptions &options = {})
{
    return made::bytesOf([&](QIODevice &device) { return writeConcordVariablesCsv(concordance, device, options); });
}

QByteArray codesOf(const Concordance &concordance, const ConcordCsvOptions &options = {})
{
    return made::bytesOf([&](QIODevice &device) { return writeConcordCodesCsv(concordance, device, options); });
}

Concordance survey()
{
    Concordance concordance;
    concordance.rounds = QStringList{ "data/one.dcf", "two.sav" };
    concordance.variables = {
        made::variable({ absent, made::cell("C", "Roof") }),
        made::variable({ made::cell("A", "Sex"),
                         made::cell("B", "Sex, of \"child\"", { ConcordChange::Renamed, ConcordChange::Label }) }),
    };
    ConcordCode missing = made::codeRange(1, "8", "9", { absent, "" });
    missing.special = Special::Missing;
    concordance.codes = { made::code(1, "1", { "Male", "Man" }, CodeChange::Wording), missing };
    return concordance;
}

// The cells of a file whose texts contain no separators, except for those that are to be found.
QByteArray quoted(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    const bool needsQuotes = text.contains(',') || text.contains('"') || text.contains('\n') || text.contains('\r');
    return needsQuotes ? '"' + bytes.replace("\"", "\"\"") + '"' : bytes;
}

} // namespace

class ConcordCsvTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachVariableHasARowAndEachRoundItsColumns()
    {
        QCOMPARE(
            variablesOf(survey()),
            QByteArray("variable,name,changes,level one.dcf,record one.dcf,item one.dcf,label one.dcf,"
                       "changes one.dcf,level two.sav,record two.sav,item two.sav,label two.sav,changes two.sav\r\n"
                       "0,C,absent,,,,,,L,R,C,Roof,\r\n"
                       "1,A,renamed label,L,R,A,Sex,,L,R,B,\"Sex, of \"\"child\"\"\",renamed label\r\n"));
    }

    void eachCodeHasARowAndEachRoundItsLabel()
    {
        QCOMPARE(codesOf(survey()),
                 QByteArray("variable,name,from,to,special,change,one.dcf,two.sav\r\n"
                            "1,A,1,,,wording,Male,Man\r\n"
                            "1,A,8,9,missing,none,,(no label)\r\n"));
    }

    void emptyConcordanceHasTheHeads()
    {
        QCOMPARE(variablesOf(Concordance()), QByteArray("variable,name,changes\r\n"));
        QCOMPARE(codesOf(Concordance()), QByteArray("variable,name,from,to,special,change\r\n"));
    }

    void spreadsheetsGetAByteOrderMarkAndNoFormulas()
    {
        const Concordance concordance = made::hostileConcordance("=1+2");
        QVERIFY(variablesOf(concordance).contains(",=1+2,"));
        QVERIFY(codesOf(concordance).contains(",=1+2,"));
        for (const QByteArray &bytes : { variablesOf(concordance, { true }), codesOf(concordance, { true }) }) {
            QVERIFY(bytes.startsWith("\xEF\xBB\xBFvariable,"));
            QVERIFY(bytes.contains(",'=1+2,"));
            QVERIFY(!bytes.contains(",=1+2"));
        }
    }

    void hostileTextsStayTexts_data() { made::hostileTexts(); }
    void hostileTextsStayTexts()
    {
        QFETCH(QString, text);
        const Concordance concordance = made::hostileConcordance(text);
        QByteArray cell = quoted(text) + ',';
        QVERIFY(variablesOf(concordance).contains(cell.repeated(4)));
        QVERIFY(codesOf(concordance).contains(",meaning," + cell + quoted(text + "2") + "\r\n"));
    }

    void deviceThatRefusesIsReported()
    {
        QVERIFY(made::reportsFullDevice([](QIODevice &device) { return writeConcordVariablesCsv(survey(), device); }));
        QVERIFY(made::reportsFullDevice([](QIODevice &device) { return writeConcordCodesCsv(survey(), device); }));
    }
};

QTEST_APPLESS_MAIN(ConcordCsvTest)
#include "ConcordCsvTest.moc"
