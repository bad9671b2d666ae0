#include <QtTest>

#include "lookup/Lookup.h"
#include "lookup/Reports.h"
#include "support/TextState.h"

#include <QTemporaryFile>

#include <map>
#include <utility>

// The caller's layer defines the content of these classes.
class TVanDataset
{
};
class TVanDictionary
{
};
class TVanDatabaseCreationInfo
{
};

struct TestAccess {
    static void addTextsOf(const char *subject, const char *state, const TVpLookup &lookup)
    {
        addTexts(subject, state,
                 { { "id", lookup.id },
                   { "label", lookup.label },
                   { "errorText", lookup.errorText },
                   { "text1", lookup.text1 },
                   { "text2", lookup.text2 },
                   { "fileName", lookup.fileName } });
        addTexts(subject, "null",
                 { { "key", lookup.key }, { "value", lookup.value }, { "currentLine", lookup.currentLine } });
    }
    static QString line(const TVpLookup &lookup) { return lookup.currentLine; }
    static const std::map<QString, QString> &entries(const TVpLookup &lookup) { return lookup.entries; }
    static void readAll(TVpLookup &lookup) { lookup.readLookup(); }
};

namespace
{

TVpLookup checked(const QByteArray &bytes)
{
    QTemporaryFile file;
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("%s cannot be written", qPrintable(file.fileName()));
    TVpLookup lookup;
    lookup.setFfileName(file.fileName());
    lookup.setSeparator(3);
    std::map<QString, int *> frequencies;
    lookup.consistencyCheck(ccNone, frequencies, nullptr);
    return std::as_const(lookup);
}

QString lineOfAllThatIsRead(const QString &fileName)
{
    TVpLookup lookup;
    lookup.setFfileName(fileName);
    TestAccess::readAll(lookup);
    return TestAccess::line(lookup);
}

template <typename Report> void addTextsOf(const char *subject, const char *captionState, const Report &report)
{
    addTexts(subject, captionState,
             { { "title", report.titleReport() },
               { "identification caption", report.idLabel() },
               { "label caption", report.labelLabel() },
               { "file caption", report.dataFileLabel() } });
    addTexts(subject, "null",
             { { "identification", report.idValue() },
               { "label", report.labelValue() },
               { "file", report.dataFileValue() } });
}

} // namespace

/// Tests which empty texts of lookups and their reports are null, and which are not.
class LookupTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newTextsAreNotNullExceptTheCurrentLine_data()
    {
        addTextColumns();
        TVpLookup lookup;
        TestAccess::addTextsOf("lookup", "empty", lookup);
        addTexts("getter", "empty",
                 { { "getId", lookup.getId() },
                   { "getLabel", lookup.getLabel() },
                   { "getFfileName", lookup.getFfileName() } });
        TestAccess::addTextsOf("copy", "empty", TVpLookup(std::as_const(lookup)));
        TestAccess::addTextsOf("moved lookup", "null", TVpLookup(std::move(lookup)));
    }
    void newTextsAreNotNullExceptTheCurrentLine()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
        QVERIFY(isWithoutMemory(text));
    }

    // Key and value begin as null texts.
    void valueIsNullOnlyBeforeTheFirstSeparator()
    {
        const TVpLookup lookup = checked("x\nA;\ny\nB;b\n");
        const auto &entries = TestAccess::entries(lookup);
        QCOMPARE(entries.size(), size_t(3));
        QCOMPARE(stateOf(entries.at(QString())), QString("null"));
        QCOMPARE(stateOf(entries.at("A")), QString("empty"));
        QCOMPARE(stateOf(entries.at("B")), QString("\"b\""));
    }

    void currentLineIsEmptiedAndNotNull_data()
    {
        addTextColumns();
        addTexts("line", "empty",
                 { { "of an empty file", TestAccess::line(checked("")) },
                   { "of an empty last line", TestAccess::line(checked("A;a\n\n")) },
                   { "of a file that is not there", lineOfAllThatIsRead("/no/such/file") } });
    }
    void currentLineIsEmptiedAndNotNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    void movedReportHasEmptyCaptionsThatAreNotNull_data()
    {
        addTextColumns();
        ReportLookup report;
        addTextsOf("moved lookup report", "empty", ReportLookup(std::move(report)));
        DtoReportRunCreation run;
        addTextsOf("moved run report", "empty", DtoReportRunCreation(std::move(run)));
    }
    void movedReportHasEmptyCaptionsThatAreNotNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }
};

QTEST_APPLESS_MAIN(LookupTextsTest)
#include "LookupTextsTest.moc"
