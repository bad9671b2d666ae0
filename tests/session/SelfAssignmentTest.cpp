#include <QtTest>

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "cspro/CSProModel_p.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/ReadReport.h"
#include "import/SourceField.h"
#include "lookup/Lookup.h"
#include "record/QuestIndex.h"
#include "record/Record.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/BlockBalance.h"

#include <QLoggingCategory>

#include <functional>
#include <memory>

struct TestAccess {
    static QString &name(TVpRecord &record) { return record.name; }
    static QString asString(TGenericField &field) { return field.getAsString(); }
};

namespace
{

template <typename Subject> void assignToItself(Subject &subject)
{
    const Subject &same = subject;
    subject = same;
}

/// Actions on an object of any one class. They return texts that describe the contents of the object.
struct Case {
    std::function<QStringList()> alone;
    std::function<QStringList()> withCopy;
    QStringList expected;
};

/// Makes the case of a class: `fill` fills an object, which is then assigned to itself, with or without a living copy;
/// `answersOf` uses the object and describes its contents.
template <typename Subject, typename... Arguments>
Case caseOf(std::function<void(Subject &)> fill, std::function<QStringList(Subject &)> answersOf, QStringList expected,
            Arguments... arguments)
{
    const auto alone = [=] {
        Subject subject(arguments...);
        fill(subject);
        assignToItself(subject);
        QStringList answers = answersOf(subject);
        assignToItself(subject);
        return answers == answersOf(subject) ? answers : QStringList("the second assignment has changed something");
    };
    const auto withCopy = [=] {
        Subject subject(arguments...);
        fill(subject);
        Subject copy(subject);
        assignToItself(subject);
        const QStringList answers = answersOf(subject);
        return answers == answersOf(copy) ? answers : QStringList("the copy holds something else");
    };
    return { alone, withCopy, std::move(expected) };
}

// The description of a field and its value; the value is set anew, so that the field is used.
QStringList answersOfField(TGenericField &field)
{
    field.setAsString(QStringLiteral("17"));
    return { field.name, field.label, field.valueLabels, field.currentText() };
}

void fillField(TGenericField &field)
{
    field.name = QStringLiteral("AGE");
    field.label = QStringLiteral("Age");
    field.valueLabels = QStringLiteral("1 One\t");
    field.type = vtInteger;
    field.length = 2;
}

template <typename Field, typename... Arguments> Case caseOfField(Arguments... arguments)
{
    return caseOf<Field>(fillField, answersOfField, { "AGE", "Age", "1 One\t", "17" }, arguments...);
}

Case caseOfSourceField()
{
    const auto fill = [](TVpSourceField &field) {
        field.fieldName = QStringLiteral("AGE");
        field.start = 1;
        field.length = 2;
        field.setDataProviderType(QStringLiteral("CSPRO"));
    };
    const auto answersOf = [](TVpSourceField &field) {
        field.setDataProviderType(QStringLiteral("STATA"));
        return QStringList{ field.fieldName, field.DataProviderType, field.getStringValue(QStringLiteral("x17y")) };
    };
    return caseOf<TVpSourceField>(fill, answersOf, { "AGE", "STATA", "17" });
}

Case caseOfRecord()
{
    const auto fill = [](TVpRecord &record) { TestAccess::name(record) = QStringLiteral("HOUSE"); };
    const auto answersOf = [](TVpRecord &record) {
        return QStringList{ record.nodeCaption(), QString::number(record.retrieveRecord("HOUSE") == &record) };
    };
    return caseOf<TVpRecord>(fill, answersOf, { "HOUSE", "1" });
}

Case caseOfQuestIndex()
{
    static QStringList lines = { QStringLiteral("1a"), QStringLiteral("2b"), QStringLiteral("1c") };
    const auto fill = [](TQuestIndex &index) {
        index.typeLength = 1;
        index.lines = &lines;
    };
    const auto answersOf
        = [](TQuestIndex &index) { return QStringList{ QString::number(index.countRecords(QStringLiteral("1"))) }; };
    return caseOf<TQuestIndex>(fill, answersOf, { "2" });
}

Case caseOfLookup()
{
    const auto fill = [](TVpLookup &lookup) {
        lookup.setId(QStringLiteral("id"));
        lookup.setFfileName(VAN_EXAMPLES "/occupations.txt");
        lookup.setSeparator(4); // which no line has
        lookup.setMaxMessages(1000000);
    };
    const auto answersOf = [](TVpLookup &lookup) {
        std::map<QString, int *> frequencies;
        QStringList errors;
        lookup.consistencyCheck(ccErrors, frequencies, &errors);
        return QStringList{ lookup.getId(), errors.value(0) };
    };
    return caseOf<TVpLookup>(fill, answersOf, { "id", "1_Separator [:] does not exist" });
}

Case caseOfError()
{
    const auto answersOf = [](VpErrorManager &error) { return QStringList{ error.composeMessage() }; };
    const VpErrorManager error(QStringLiteral("CSPro"), 242, QStringLiteral("text"));
    return caseOf<VpErrorManager>([](VpErrorManager &) {}, answersOf, { error.composeMessage() },
                                  QStringLiteral("CSPro"), 242, QStringLiteral("text"));
}

Case caseOfReport()
{
    const auto fill = [](ReadReport &report) { report.add(NoteKind::missingKey, QStringLiteral("Name"), 7); };
    const auto answersOf = [](ReadReport &report) {
        report.clear();
        report.add(NoteKind::missingKey, QStringLiteral("Label"), 8);
        return QStringList{ report.notes().front().text, QString::number(report.count(NoteKind::missingKey)) };
    };
    return caseOf<ReadReport>(fill, answersOf, { "Label", "1" });
}

Case caseOfNote()
{
    const auto answersOf = [](ReadNote &note) {
        return QStringList{ note.id(), note.text, QString::number(note.line) };
    };
    return caseOf<ReadNote>(
        [](ReadNote &note) {
            note = { NoteKind::missingKey, 7, QString(), QStringLiteral("Name") };
        },
        answersOf, { ReadReport::idOf(NoteKind::missingKey), "Name", "7" });
}

Case caseOfDictionaryRecord()
{
    const auto fill = [](TCSProRecord &record) {
        record.name = QStringLiteral("HOUSE");
        record.recordType = QStringLiteral("1");
    };
    const auto answersOf = [](TCSProRecord &record) { return QStringList{ record.name, record.recordType }; };
    return caseOf<TCSProRecord>(fill, answersOf, { "HOUSE", "1" });
}

/// Operations on an importer of one format.
struct Format {
    std::unique_ptr<TDataImport> (*make)() = nullptr;
    std::unique_ptr<TDataImport> (*copy)(const TDataImport &importer) = nullptr;
    void (*assignToItself)(TDataImport &importer) = nullptr;
};

template <typename Importer> const char *fileOf();
template <> const char *fileOf<TCSProDataImport>()
{
    return VAN_EXAMPLES "/census.dcf";
}
template <> const char *fileOf<TCSProJsonDataImport>()
{
    return VAN_EXAMPLES "/census8.dcf";
}
template <> const char *fileOf<TSTATADataImport>()
{
    return VAN_MADE_DATA "/types-118.dta";
}
template <> const char *fileOf<TSPSSDataImport>()
{
    return VAN_MADE_DATA "/types.sav";
}

template <typename Importer> Format formatOf()
{
    return { []() -> std::unique_ptr<TDataImport> {
                return std::make_unique<Importer>(QString::fromUtf8(fileOf<Importer>()));
            },
             [](const TDataImport &importer) -> std::unique_ptr<TDataImport> {
                 return std::make_unique<Importer>(static_cast<const Importer &>(importer));
             },
             [](TDataImport &importer) { assignToItself(static_cast<Importer &>(importer)); } };
}

void addFormats()
{
    QTest::addColumn<Format>("format");
    QTest::newRow("CSPro text") << formatOf<TCSProDataImport>();
    QTest::newRow("CSPro 8") << formatOf<TCSProJsonDataImport>();
    QTest::newRow("Stata") << formatOf<TSTATADataImport>();
    QTest::newRow("SPSS") << formatOf<TSPSSDataImport>();
}

QStringList opened(TDataImport &importer)
{
    const std::unique_ptr<QStringList> names(importer.selectLayoutSource());
    return *names;
}

QStringList namesOf(const TVpDataProvider &provider)
{
    QStringList names;
    for (const TVpSourceField *field : *provider.getFields())
        names.append(field->fieldName);
    return names;
}

} // namespace

Q_DECLARE_METATYPE(Case)
Q_DECLARE_METATYPE(Format)

/// Assignment of an object to itself, for every class that can be copied. The table of accessors covers the records of
/// a database. A test of importers or providers must hold as many blocks of memory at its end as at its start.
class SelfAssignmentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        // Objects that are made once for the process are made here, before blocks are counted.
        const auto formats = { formatOf<TCSProDataImport>(), formatOf<TCSProJsonDataImport>(),
                               formatOf<TSTATADataImport>(), formatOf<TSPSSDataImport>() };
        for (const Format &format : formats) {
            const auto importer = format.make();
            opened(*importer);
            TVpDataProvider provider;
            provider.genericGetFieldsFrom(importer.get());
            provider.releaseContents();
            importer->releaseContents();
        }
    }

    void objectHoldsWhatItHeld_data()
    {
        QTest::addColumn<Case>("subject");
        TDataImport *const none = nullptr;
        TCSProItem *const noItem = nullptr;
        QTest::newRow("TCSProVariable") << caseOfField<TCSProVariable>(none, noItem);
        QTest::newRow("TCSProJsonVariable") << caseOfField<TCSProJsonVariable>(none, noItem);
        QTest::newRow("TSTATAVariable") << caseOfField<TSTATAVariable>(none);
        QTest::newRow("TSPSSVariable") << caseOfField<TSPSSVariable>(none);
        QTest::newRow("TVpSourceField") << caseOfSourceField();
        QTest::newRow("TVpRecord") << caseOfRecord();
        QTest::newRow("TQuestIndex") << caseOfQuestIndex();
        QTest::newRow("TVpLookup") << caseOfLookup();
        QTest::newRow("VpErrorManager") << caseOfError();
        QTest::newRow("ReadReport") << caseOfReport();
        QTest::newRow("ReadNote") << caseOfNote();
        QTest::newRow("TCSProRecord") << caseOfDictionaryRecord();
    }
    void objectHoldsWhatItHeld()
    {
        QFETCH(Case, subject);
        QCOMPARE(subject.alone(), subject.expected);
        QCOMPARE(subject.withCopy(), subject.expected);
    }

    void importerThatWasNotOpenedCanBeOpened_data() { addFormats(); }
    void importerThatWasNotOpenedCanBeOpened()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto reference = format.make();
        const QStringList names = opened(*reference);
        QVERIFY(!names.isEmpty());
        reference->releaseContents();

        const auto importer = format.make();
        const auto copy = format.copy(*importer);
        format.assignToItself(*importer);
        QCOMPARE(opened(*importer), names);
        QCOMPARE(importer->fieldByName(names.last())->name, names.last());
        importer->releaseContents();
        copy->releaseContents();
        QCOMPARE(opened(*copy), names);
        copy->releaseContents();
    }

    void openedImporterKeepsItsFieldsAndFreesThemOnce_data() { addFormats(); }
    void openedImporterKeepsItsFieldsAndFreesThemOnce()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.make();
        const QStringList names = opened(*importer);
        const auto copy = format.copy(*importer);
        TGenericField *const field = importer->fieldByName(names.first());
        format.assignToItself(*importer);
        format.assignToItself(*copy);
        QCOMPARE(importer->fieldByName(names.first()), field);
        QCOMPARE(copy->fieldByName(names.first()), field);
        copy->releaseContents();
        importer->releaseContents();
        format.assignToItself(*importer);
        QCOMPARE(opened(*importer), names);
        importer->releaseContents();
    }

    void importerThatWasReleasedCanBeOpened_data() { addFormats(); }
    void importerThatWasReleasedCanBeOpened()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.make();
        const QStringList names = opened(*importer);
        const auto copy = format.copy(*importer);
        importer->releaseContents();
        format.assignToItself(*importer);
        QCOMPARE(opened(*importer), names);
        importer->releaseContents();
    }

    void providerCanBeFilledAgain()
    {
        const BlockBalance balance;
        const auto importer = formatOf<TCSProDataImport>().make();
        const QStringList names = opened(*importer);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        TVpDataProvider copy(provider);
        const QList<TVpSourceField *> *const fields = provider.getFields();
        assignToItself(provider);
        assignToItself(copy);
        QCOMPARE(provider.getFields(), fields);
        QCOMPARE(copy.getFields(), fields);

        provider.genericGetFieldsFrom(importer.get());
        QCOMPARE(namesOf(provider), names);
        QCOMPARE(namesOf(copy), names);
        provider.releaseContents();
        assignToItself(provider);
        provider.genericGetFieldsFrom(importer.get());
        QCOMPARE(namesOf(provider), names);
        provider.releaseContents();
        importer->releaseContents();
    }

    void providerThatWasNotFilledCanBeFilled()
    {
        const BlockBalance balance;
        const auto importer = formatOf<TCSProDataImport>().make();
        const QStringList names = opened(*importer);
        TVpDataProvider provider;
        const TVpDataProvider copy(provider);
        assignToItself(provider);
        provider.genericGetFieldsFrom(importer.get());
        QCOMPARE(namesOf(provider), names);
        QCOMPARE(copy.getFields(), nullptr);
        provider.releaseContents();
        importer->releaseContents();
    }
};

QTEST_GUILESS_MAIN(SelfAssignmentTest)
#include "SelfAssignmentTest.moc"
