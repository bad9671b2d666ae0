#include "write/ConcordJson.h"

#include <QtTest>

#include "layout/MadeConcordance.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace vanlayout;
using made::absent;

namespace
{

QByteArray jsonOf(const Concordance &concordance, JsonStyle style = JsonStyle::Compact)
{
    return made::bytesOf([&](QIODevice &device) { return writeConcordJson(concordance, device, style); });
}

Concordance survey()
{
    Concordance concordance;
    concordance.rounds = QStringList{ "data/one.dcf", "two.sav" };
    concordance.variables = {
        made::variable(
            { made::cell("A", "Sex"), made::cell("B", "Sex", { ConcordChange::Renamed, ConcordChange::Values }) }),
        made::variable({ absent, made::cell("C") }),
    };
    ConcordCode missing = made::codeRange(0, "8", "9", { absent, "" });
    missing.special = Special::NotApplicable;
    missing.change = CodeChange::Added;
    concordance.codes = { made::code(0, "1", { "Male", "Man" }, CodeChange::Wording), missing };
    return concordance;
}

} // namespace

class ConcordJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysAreInTheirOrder()
    {
        QCOMPARE(
            jsonOf(survey()),
            QByteArray(R"({"rounds":["data/one.dcf","two.sav"],"variables":[)"
                       R"({"cells":[{"level":"L","record":"R","item":"A","label":"Sex","changes":[]},)"
                       R"({"level":"L","record":"R","item":"B","label":"Sex","changes":["renamed","values"]}]},)"
                       R"({"cells":[null,{"level":"L","record":"R","item":"C","label":"","changes":[]}]}],"codes":[)"
                       R"({"variable":0,"from":"1","to":"","special":"","cells":["Male","Man"],"change":"wording"},)"
                       R"({"variable":0,"from":"8","to":"9","special":"notApplicable","cells":[null,""],)"
                       R"("change":"added"}]})"
                       "\n"));
    }

    void emptyConcordanceHasAllLists()
    {
        QCOMPARE(jsonOf(Concordance()), QByteArray("{\"rounds\":[],\"variables\":[],\"codes\":[]}\n"));
    }

    void prettyFormIsTheSameDocument()
    {
        const QByteArray pretty = jsonOf(survey(), JsonStyle::Pretty);
        QVERIFY(pretty.contains("\n  \"rounds\": ["));
        QCOMPARE(QJsonDocument::fromJson(pretty), QJsonDocument::fromJson(jsonOf(survey())));
    }

    void hostileTextsStayTexts_data() { made::hostileTexts(); }
    void hostileTextsStayTexts()
    {
        QFETCH(QString, text);
        const QByteArray bytes = jsonOf(made::hostileConcordance(text));
        const QString expected = QString::fromUtf8(text.toUtf8()); // half a surrogate pair is replaced
        QJsonParseError error = {};
        const QJsonObject object = QJsonDocument::fromJson(bytes, &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        const QJsonObject cell = object["variables"].toArray()[0].toObject()["cells"].toArray()[0].toObject();
        for (const char *key : { "level", "record", "item", "label" })
            QCOMPARE(cell[key].toString(), expected);
        const QJsonObject code = object["codes"].toArray()[1].toObject();
        QCOMPARE(code["from"].toString(), expected);
        QCOMPARE(code["cells"].toArray()[1].toString(), expected);
        for (const char byte : bytes.chopped(1))
            QVERIFY(uchar(byte) >= 0x20);
        QVERIFY(!bytes.contains("\xE2\x80\xA8") && !bytes.contains("\xC2\x9B"));
    }

    void deviceThatRefusesIsReported()
    {
        QVERIFY(made::reportsFullDevice([](QIODevice &device) { return writeConcordJson(survey(), device); }));
    }
};

QTEST_APPLESS_MAIN(ConcordJsonTest)
#include "ConcordJsonTest.moc"
