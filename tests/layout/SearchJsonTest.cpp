#include "layout/MadeLayout.h"

#include "write/SearchJson.h"

#include <QtTest>

using namespace vanlayout;

namespace
{

// Quotation marks are written as apostrophes.
QByteArray json(QByteArray text)
{
    return text.replace('\'', '"');
}

template <typename Write> QByteArray written(Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return write(buffer) ? buffer.data() : QByteArray("failed");
}

QVector<SearchHit> twoHits()
{
    return { { "L", "PERSON", "P1", SearchPlace::Value, "FR", "Oui", "Work", { { "1", "", "Oui" }, { "5", "9", "" } } },
             { "L", "(ids)", "ID", SearchPlace::Note, "", "a\n\"b\"\x1b\u2028", "", {} } };
}

QVector<SharedSet> oneSet()
{
    Value yes = made::range("1", "3", "Yes");
    yes.labels.parts.append(Label{ "FR", "Oui" });
    Value none = made::value("9", "None", Special::Missing);
    none.ranges.clear();
    return { { "0123456789ab", { yes, none }, { { "a.dcf", "L", "R", "A", "A_VS1" }, { "b.sav", "", "", "B", "" } } } };
}

} // namespace

class SearchJsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachHitIsALineWithAllKeysInOrder()
    {
        QCOMPARE(written([](QIODevice &device) { return writeSearchJson("x/a.dcf", twoHits(), device); }),
                 json("{'file':'x/a.dcf','level':'L','record':'PERSON','item':'P1','where':'value',"
                      "'language':'FR','text':'Oui','label':'Work','values':[{'from':'1','to':'','label':'Oui'},"
                      "{'from':'5','to':'9','label':''}]}"
                      "\n"
                      "{'file':'x/a.dcf','level':'L','record':'(ids)','item':'ID','where':'note','language':'',"
                      "'text':'a\\n\\'b\\'\\u001B\\u2028','label':'','values':[]}"
                      "\n"));
        QCOMPARE(written([](QIODevice &device) { return writeSearchJson("a", {}, device); }), QByteArray());
    }

    void eachSetIsALineWithAllKeysInOrder()
    {
        const QByteArray expected
            = json("{'id':'0123456789ab','values':[{'from':'1','to':'3','special':'','label':'@'},"
                   "{'from':'','to':'','special':'missing','label':'None'}],"
                   "'variables':[{'file':'a.dcf','level':'L','record':'R','item':'A','valueSet':'A_VS1'},"
                   "{'file':'b.sav','level':'','record':'','item':'B','valueSet':''}]}"
                   "\n");
        QCOMPARE(written([](QIODevice &device) { return writeSharedSetsJson(oneSet(), "", device); }),
                 QByteArray(expected).replace("@", "Yes"));
        QCOMPARE(written([](QIODevice &device) { return writeSharedSetsJson(oneSet(), "fr", device); }),
                 QByteArray(expected).replace("@", "Oui"));
    }

    void aFullDeviceIsReported()
    {
        made::FullDevice full;
        full.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        QVERIFY(!writeSearchJson("a", twoHits(), full));
        QVERIFY(!writeSharedSetsJson(oneSet(), "", full));
    }
};

QTEST_APPLESS_MAIN(SearchJsonTest)
#include "SearchJsonTest.moc"
