#include "layout/MadeLayout.h"

#include "write/SearchCsv.h"

#include <QtTest>

using namespace vanlayout;

class SearchCsvTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachHitIsALine()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        SearchCsv csv(buffer);
        csv.write(
            "a.dcf",
            { { "L", "R", "A", SearchPlace::Label, "EN", "Work, paid", "Work, paid", {} },
              { "L", "R", "B", SearchPlace::Value, "", "Yes", "\"B\"", { { "1", "", "Yes" }, { "5", "9", "" } } } });
        csv.write("b.dcf", {});
        csv.write("c.dcf", { { "", "", "C", SearchPlace::Name, "", "C", "a\nb", { { "", "", "Other" } } } });
        QCOMPARE(buffer.data(),
                 QByteArray("file,level,record,item,where,language,text,label,values\r\n"
                            "a.dcf,L,R,A,label,EN,\"Work, paid\",\"Work, paid\",\r\n"
                            "a.dcf,L,R,B,value,,Yes,\"\"\"B\"\"\",1 Yes; 5 to 9\r\n"
                            "c.dcf,,,C,name,,C,\"a\nb\",Other\r\n"));
    }

    void eachUseOfASetIsALine()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        writeSharedSetsCsv({ { "0123456789ab",
                               { made::value("1"), made::value("2") },
                               { { "a.dcf", "L", "R", "A", "A_VS1" }, { "b.sav", "", "", "B,2", "" } } } },
                           buffer);
        QCOMPARE(buffer.data(),
                 QByteArray("id,values,file,level,record,item,valueSet\r\n"
                            "0123456789ab,2,a.dcf,L,R,A,A_VS1\r\n"
                            "0123456789ab,2,b.sav,,,\"B,2\",\r\n"));
    }
};

QTEST_APPLESS_MAIN(SearchCsvTest)
#include "SearchCsvTest.moc"
