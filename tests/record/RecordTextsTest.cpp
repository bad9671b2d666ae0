#include <QtTest>

#include "record/QuestIndex.h"
#include "record/Record.h"
#include "support/TextState.h"

#include <utility>

struct TestAccess {
    static void addTextsOf(const char *subject, const char *state, const TVpRecord &record)
    {
        addTexts(subject, state,
                 { { "name", record.name },
                   { "caption", record.caption },
                   { "third text", record.text1 },
                   { "text2", record.text2 },
                   { "text4", record.text4 } });
        addTexts(subject, "null", { { "text3", record.text3 } });
    }
    static void setType(TVpRecord &record, TVpRecordType *type) { record.recordType = type; }
    static void link(TVpRecord &record, TVpRecord &child)
    {
        record.child = &child;
        child.parent = &record;
    }
    static void addReference(TVpRecord &record) { record.addRecordReferenceToList(nullptr); }
    static QString key(const TVpRecord &record) { return record.getKeyValue(QStringLiteral("line")); }
    static QString parentKey(const TVpRecord &record) { return record.getParentKeyValue(QStringLiteral("line")); }
    static QString assembled(const TVpRecord &record, TQuestIndex &index) { return record.assembleRecord(&index); }
    static QString assembledByKey(const TVpRecord &record, TQuestIndex &index)
    {
        return record.assembleRecord(&index, QString());
    }
    static QString checked(TVpRecord &record, TQuestIndex &index) { return record.checkQuestionnaire(&index); }
    static QString checkedBelow(TVpRecord &record, TQuestIndex &index)
    {
        return record.checkQuestionnaire(&index, QString());
    }
};

namespace
{

/// Makes a questionnaire of these lines. The record type of a line is its first character.
struct Questionnaire : TQuestIndex {
    explicit Questionnaire(const QStringList &questionnaireLines, const QString &assembledText = QString())
        : held(questionnaireLines)
    {
        lines = &held;
        typeLength = 1;
        text = assembledText;
    }

    QStringList held;
};

struct Typed : TVpRecord {
    explicit Typed(const QString &code)
        : type{ code }
    {
        TestAccess::setType(*this, &type);
    }

    TVpRecordType type;
};

QString checked(const QString &type, Questionnaire questionnaire)
{
    Typed record(type);
    questionnaire.lines = &questionnaire.held;
    return TestAccess::checked(record, questionnaire);
}

QString checkedBelow(const QString &type, Questionnaire questionnaire)
{
    Typed record(type);
    questionnaire.lines = &questionnaire.held;
    return TestAccess::checkedBelow(record, questionnaire);
}

QString assembled(const QStringList &lines, int references)
{
    TVpRecord record;
    Questionnaire questionnaire(lines);
    for (int i = 0; i < references; ++i)
        TestAccess::addReference(record);
    return TestAccess::assembled(record, questionnaire);
}

QString assembledByKey(const QString &text)
{
    const TVpRecord record;
    Questionnaire questionnaire({}, text);
    return TestAccess::assembledByKey(record, questionnaire);
}

} // namespace

/// Tests which empty texts of records and questionnaires are null, and which are not.
class RecordTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newTextsButOneAreNotNull_data()
    {
        addTextColumns();
        TVpRecord record;
        TestAccess::addTextsOf("record", "empty", record);
        addTexts("record", "empty", { { "nodeCaption", record.nodeCaption() }, { "typeCode", record.typeCode() } });
        TestAccess::addTextsOf("copy", "empty", TVpRecord(std::as_const(record)));
        TestAccess::addTextsOf("moved record", "null", TVpRecord(std::move(record)));
    }
    void newTextsButOneAreNotNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
        QVERIFY(isWithoutMemory(text));
    }

    void emptyResultIsNotNull_data()
    {
        addTextColumns();
        const TVpRecord record;
        const QString empty = QStringLiteral("");
        addTexts("answer", "empty",
                 { { "getKeyValue", TestAccess::key(record) },
                   { "getParentKeyValue", TestAccess::parentKey(record) },
                   { "assembleRecord", assembled({}, 0) },
                   { "assembleRecord, one line for a reference", assembled({ "" }, 1) },
                   { "assembleRecord, several lines", assembled({ "", "" }, 1) },
                   { "assembleRecord with a key, empty text", assembledByKey(empty) },
                   { "check without lines of its type", checked("1", Questionnaire({ "2" }, "t")) },
                   { "check without lines", checked("1", Questionnaire({}, "t")) },
                   { "check of an empty type", checked(empty, Questionnaire({ "" }, "t")) },
                   { "check of a null type", checked(QString(), Questionnaire({ "" }, "t")) },
                   { "check, null text", checked("1", Questionnaire({ "1" })) },
                   { "check, empty text", checked("1", Questionnaire({ "1" }, empty)) },
                   { "check below, no lines", checkedBelow("1", Questionnaire({}, "t")) },
                   { "check below, null text", checkedBelow("1", Questionnaire({ "1" })) },
                   { "findRecord, no such type", Questionnaire({ "1" }).findRecord("2", 0) },
                   { "findRecord, no such occurrence", Questionnaire({ "1" }).findRecord("1", 1) },
                   { "findRecord, negative occurrence", Questionnaire({ "1" }).findRecord("1", -1) },
                   { "findRecord, no lines", TQuestIndex().findRecord("1", 0) },
                   { "findRecord, type of an empty line", Questionnaire({ "" }).findRecord(empty, 0) },
                   { "findRecord, type of a null line", Questionnaire({ QString() }).findRecord(empty, 0) } });
        addTexts("answer", "null", { { "assembleRecord with a key, null text", assembledByKey(QString()) } });
        addTexts("answer", "\"t\r\n\"", { { "check", checked("1", Questionnaire({ "1" }, "t")) } });
        addTexts("answer", "\"1\"", { { "findRecord", Questionnaire({ "1" }).findRecord("1", 0) } });
    }
    void emptyResultIsNotNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }

    // Text that was gathered before is dropped.
    void checkThatFailsBelowAndAboveIsNotNull()
    {
        Typed house(QStringLiteral("1"));
        Typed person(QStringLiteral("2"));
        TestAccess::link(house, person);
        Questionnaire questionnaire({ "1", "2" }, QString());
        QCOMPARE(stateOf(TestAccess::checked(house, questionnaire)), QString("empty"));
        QCOMPARE(stateOf(TestAccess::checkedBelow(house, questionnaire)), QString("empty"));
    }
};

QTEST_APPLESS_MAIN(RecordTextsTest)
#include "RecordTextsTest.moc"
