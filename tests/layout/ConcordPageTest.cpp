#include "write/ConcordPage.h"

#include <QtTest>

#include "layout/MadeConcordance.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace vanlayout;
using made::absent;

namespace
{

QString pageOf(const Concordance &concordance)
{
    return QString::fromUtf8(made::bytesOf([&](QIODevice &device) { return writeConcordPage(concordance, device); }));
}

QString between(const QString &page, const QString &begin, const QString &end)
{
    const int at = page.indexOf(begin) + begin.size();
    return page.mid(at, page.indexOf(end, at) - at);
}

QString dataOf(const QString &page)
{
    return between(page, "<script type=\"application/json\" id=\"page-data\">", "</script>");
}

Concordance survey()
{
    Concordance concordance;
    concordance.rounds = QStringList{ "data/one.dcf", "data/two.dcf", "data/three.dcf" };
    concordance.variables = {
        made::variable({ made::cell("A", "Sex"), made::cell("A", "Sex"),
                         made::cell("B", "Sex", { ConcordChange::Renamed, ConcordChange::Moved }) }),
        made::variable({ absent, made::cell("A", "Roof"), absent }),
        made::variable({ made::cell("C"), made::cell("C"), made::cell("C") }),
    };
    ConcordCode missing = made::codeRange(1, "8", "9", { absent, "", absent });
    missing.special = Special::NotApplicable;
    concordance.codes = { made::code(0, "1", { "Sex", "Sex", "Man" }, CodeChange::Meaning),
                          made::code(0, "2", { "A", absent, "A" }, CodeChange::Removed), missing };
    return concordance;
}

} // namespace

class ConcordPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headHasTheRoundsAndCounts()
    {
        const QString page = pageOf(survey());
        QVERIFY(page.contains(QString::fromUtf8("<title>one.dcf \u2026 three.dcf \u2013 concordance</title>")));
        QVERIFY(page.contains("<p class=\"format\">Concordance of 3 rounds</p>"));
        QCOMPARE(between(page, "<ul class=\"counts\">\n", "</ul>"),
                 QString("<li><b>3</b> variables</li>\n<li><b>2</b> differ</li>\n<li><b>3</b> codes</li>\n"
                         "<li><b>1</b> meaning changed</li>\n"));
        QVERIFY(!page.contains("data/"));
        QVERIFY(!page.contains("{{"));
    }

    void textsAreInTheDataOnce()
    {
        const QString data = dataOf(pageOf(survey()));
        QCOMPARE(data,
                 QString(R"({"rounds":["one.dcf","two.dcf","three.dcf"],)"
                         R"("changes":["renamed","moved","type","width","decimals","label","values"],)"
                         R"("codeChanges":["none","spelling","wording","meaning","added","removed"],"variables":[)"
                         R"([[[0,1,2,0],0,[3,1,2,3]],[[4,5,"",3,[2,0,7]],[7,5,"",5,[1,null,0]]]],)"
                         R"([[null,[0,8,2,0],null],[[9,10,"not applicable",0,[null,6,null]]]],)"
                         R"([[[11,5,2,0],0,0],[]]],)"
                         R"("texts":["A","Sex","R","B","1","","Man","2","Roof","8","9","C"]})"));
    }

    void emptyConcordanceIsAPage()
    {
        const QString page = pageOf(Concordance());
        QVERIFY(page.contains("<b>0</b> variables"));
        QVERIFY(QJsonDocument::fromJson(dataOf(page).toUtf8()).isObject());
    }

    void hostileTextsStayTexts_data() { made::hostileTexts(); }
    void hostileTextsStayTexts()
    {
        QFETCH(QString, text);
        const QString page = pageOf(made::hostileConcordance(text));
        const QString plain = pageOf(made::hostileConcordance("plain"));
        for (const char *tag : { "<script", "</script>", "<main", "</div>", "<b>", "<!--" })
            QCOMPARE(page.count(tag), plain.count(tag));
        const QJsonObject data = QJsonDocument::fromJson(dataOf(page).toUtf8()).object();
        QCOMPARE(data["texts"].toArray().size(), 3); // with the empty text
        QCOMPARE(data["texts"].toArray()[0].toString(), text);
        for (const QChar unit : page) {
            const ushort code = unit.unicode();
            QVERIFY(code == '\n' || (code >= 0x20 && code < 0x7F) || code >= 0xA0);
            QVERIFY(code != 0x2028 && !unit.isSurrogate());
        }
    }

    void nothingRunsButTheScript()
    {
        const QString page = pageOf(survey());
        const auto hashOf = [](const QString &content) {
            return "'sha256-" + QCryptographicHash::hash(content.toUtf8(), QCryptographicHash::Sha256).toBase64() + "'";
        };
        QCOMPARE(between(page, "Content-Security-Policy\" content=\"", "\""),
                 "default-src 'none'; style-src " + hashOf(between(page, "<style>", "</style>")) + "; script-src "
                     + hashOf(between(page, "<script>", "</script>")) + "; base-uri 'none'; form-action 'none'");
        QVERIFY(!page.contains("http:") && !page.contains("https:"));
    }

    void pageLooksLikeACodebook()
    {
        const QString page = pageOf(survey());
        QFile style(":/vanlayout/codebook/page.css");
        QVERIFY(style.open(QIODevice::ReadOnly));
        QVERIFY(between(page, "<style>", "</style>").startsWith(QString::fromUtf8(style.readAll())));
    }

    void deviceThatRefusesIsReported()
    {
        QVERIFY(made::reportsFullDevice([](QIODevice &device) { return writeConcordPage(survey(), device); }));
    }
};

QTEST_APPLESS_MAIN(ConcordPageTest)
#include "ConcordPageTest.moc"
