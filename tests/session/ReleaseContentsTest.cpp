#include <QtTest>

#include "cspro/CSProDataImport.h"
#include "cspro/CSProJsonDataImport.h"
#include "import/DataProvider.h"
#include "import/ErrorManager.h"
#include "import/ReadReport.h"
#include "import/SourceField.h"
#include "record/Record.h"
#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/BlockBalance.h"
#include "support/FakeImporter.h"

#include <QLoggingCategory>
#include <QTemporaryFile>

#include <memory>

struct TestAccess {
    static const TVpRecord *record(const TVpDataProvider &provider) { return provider.record; }
    static double stateValue(const TDataImport &importer) { return importer.stateValue; }
    static void makeFieldsAgain(TCSProDataImport &importer) { importer.copyDataFromDictionary(); }
};

namespace
{

/// Operations on an importer of one format.
struct Format {
    const char *name = nullptr;
    std::unique_ptr<TDataImport> (*newImporter)() = nullptr;
    std::unique_ptr<TDataImport> (*newCopy)(const TDataImport &importer) = nullptr;
    void (*assignTo)(TDataImport &target, const TDataImport &source) = nullptr;
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

template <typename Importer> std::unique_ptr<TDataImport> make()
{
    return std::make_unique<Importer>(QString::fromUtf8(fileOf<Importer>()));
}

template <typename Importer> std::unique_ptr<TDataImport> copyOf(const TDataImport &importer)
{
    return std::make_unique<Importer>(static_cast<const Importer &>(importer));
}

template <typename Importer> void assign(TDataImport &target, const TDataImport &source)
{
    static_cast<Importer &>(target) = static_cast<const Importer &>(source);
}

template <typename Importer> Format formatOf(const char *name)
{
    return { name, make<Importer>, copyOf<Importer>, assign<Importer> };
}

const Format formats[] = { formatOf<TCSProDataImport>("CSPro text"), formatOf<TCSProJsonDataImport>("CSPro 8"),
                           formatOf<TSTATADataImport>("Stata"), formatOf<TSPSSDataImport>("SPSS") };

// Paths that are not a file of every format.
const char *const otherPaths[] = { "",
                                   "/no/such/file",
                                   VAN_EXAMPLES,
                                   VAN_EXAMPLES "/census.dcf",
                                   VAN_EXAMPLES "/census8.dcf",
                                   VAN_MADE_DATA "/types-118.dta",
                                   VAN_MADE_DATA "/types.sav" };

QStringList opened(TDataImport &importer)
{
    const std::unique_ptr<QStringList> names(importer.selectLayoutSource());
    return *names;
}

// Opens a text dictionary in which an item has too many occurrences, with a report that is gone afterwards.
std::unique_ptr<VpErrorManager> openedWithError(TDataImport &importer)
{
    QTemporaryFile file;
    if (!file.open())
        return nullptr;
    file.write("[Record]\nName=HOUSE\nRecordTypeValue='1'\n"
               "[Item]\nName=A\nLen=8\n[ValueSet]\nName=A_VS\nValue=12345678;A report would hear of these digits\n"
               "[Item]\nName=B\nOccurrences=2000000000\n");
    file.close();
    ReadReport report;
    importer.setReadReport(&report);
    importer.setSourceName(file.fileName());
    std::unique_ptr<VpErrorManager> error;
    try {
        opened(importer);
    } catch (VpErrorManager *thrown) {
        error.reset(thrown);
    }
    importer.setReadReport(nullptr); // reading has ended
    return error;
}

QStringList describedBy(const TVpDataProvider &provider)
{
    QStringList described;
    for (const TVpSourceField *field : *provider.getFields())
        described << field->fieldName << field->label << field->valueLabels << field->group
                  << field->typeNames->join(' ');
    return described;
}

} // namespace

Q_DECLARE_METATYPE(Format)

/// Everything that an importer or a provider has made is released. Each test must hold as many blocks of memory at its
/// end as at its start: an extra block is an object that was not released, a missing block one that was released twice.
class ReleaseContentsTest : public QObject
{
    Q_OBJECT

private:
    static void addRows()
    {
        QTest::addColumn<Format>("format");
        for (const Format &format : formats)
            QTest::newRow(format.name) << format;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        // Objects that are made once for the process are made here, before blocks are counted.
        for (const Format &format : formats) {
            for (const char *path : otherPaths) {
                const auto importer = format.newImporter();
                opened(*importer);
                importer->setSourceName(path);
                opened(*importer);
                importer->releaseContents();
            }
        }
        const auto importer = make<TCSProDataImport>();
        QVERIFY(openedWithError(*importer));
        importer->releaseContents();
    }

    void importerIsAsBeforeItsFirstOpening_data() { addRows(); }
    void importerIsAsBeforeItsFirstOpening()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const QString path = importer->getSourceName();
        const QStringList names = opened(*importer);
        QVERIFY(!names.isEmpty());
        importer->releaseContents();
        QCOMPARE(importer->fieldByName(names.first()), nullptr);
        QCOMPARE(importer->getGroupCount(), 0);
        QCOMPARE(importer->getGroupName(0), QString());
        QCOMPARE(importer->getGroupValue(0), QString());
        QCOMPARE(importer->getRecordTypeIndex(QString("1")), -1);
        const auto unopened = format.newImporter();
        QCOMPARE(importer->isMultiple(), unopened->isMultiple());
        QCOMPARE(importer->getRecordTypeStart(), unopened->getRecordTypeStart());
        QCOMPARE(importer->getRecordTypeSize(), unopened->getRecordTypeSize());
        QCOMPARE(TestAccess::stateValue(*importer), TestAccess::stateValue(*unopened));
        unopened->releaseContents();
        QCOMPARE(importer->getSourceName(), path);
        QList<TVpSourceField *> none;
        importer->getDictionary(&none);
        QCOMPARE(none.size(), 0);
    }

    void releasedImporterCanBeOpenedAgain_data() { addRows(); }
    void releasedImporterCanBeOpenedAgain()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const QStringList names = opened(*importer);
        const int groups = importer->getGroupCount();
        importer->releaseContents();
        QCOMPARE(opened(*importer), names); // an SPSS file, too, has every variable once
        QCOMPARE(importer->getGroupCount(), groups);
        QVERIFY(importer->fieldByName(names.last()));
        importer->releaseContents();
    }

    void everyOpeningIsReleased_data() { addRows(); }
    void everyOpeningIsReleased()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        for (int i = 0; i < 5; ++i)
            opened(*importer);
        importer->releaseContents();
    }

    void importerThatNeverOpenedReleases_data() { addRows(); }
    void importerThatNeverOpenedReleases()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        format.newImporter()->releaseContents();
    }

    void secondReleaseDoesNothing_data() { addRows(); }
    void secondReleaseDoesNothing()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        opened(*importer);
        importer->releaseContents();
        importer->releaseContents();
        QCOMPARE(importer->getGroupCount(), 0);
    }

    void failedOpeningIsReleased_data()
    {
        QTest::addColumn<Format>("format");
        QTest::addColumn<QString>("path");
        for (const char *path : otherPaths) {
            for (const Format &format : formats)
                QTest::addRow("of '%s' as %s", path, format.name) << format << QString(path);
        }
    }
    void failedOpeningIsReleased()
    {
        QFETCH(Format, format);
        QFETCH(QString, path);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const QString goodPath = importer->getSourceName();
        const QStringList names = opened(*importer);
        importer->setSourceName(path);
        opened(*importer);
        importer->releaseContents();
        QCOMPARE(importer->getGroupCount(), 0);
        importer->setSourceName(goodPath);
        QCOMPARE(opened(*importer), names);
        importer->releaseContents();
    }

    void openingThatEndsInAThrownErrorIsReleased()
    {
        const BlockBalance balance;
        const auto importer = make<TCSProDataImport>();
        const QString goodPath = importer->getSourceName();
        const QStringList names = opened(*importer);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        QVERIFY(openedWithError(*importer));
        TestAccess::makeFieldsAgain(static_cast<TCSProDataImport &>(*importer));
        provider.genericGetFieldsFrom(importer.get());
        importer->releaseContents();
        QCOMPARE(importer->getRecordTypeSize(), 0);
        QCOMPARE(provider.getFields()->size(), 1);
        provider.releaseContents();
        importer->setSourceName(goodPath);
        QCOMPARE(opened(*importer), names);
        importer->releaseContents();
    }

    void selfAssignmentChangesNothing_data() { addRows(); }
    void selfAssignmentChangesNothing()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const QStringList names = opened(*importer);
        format.assignTo(*importer, *importer);
        QVERIFY(importer->fieldByName(names.first()));
        importer->releaseContents();
        format.assignTo(*importer, *importer);
        QCOMPARE(opened(*importer), names);
        importer->releaseContents();
    }

    // One importer for a whole session, to which each next one is assigned.
    void importerThatIsAssignedToAgainAndAgainReleases_data() { addRows(); }
    void importerThatIsAssignedToAgainAndAgainReleases()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        for (int i = 0; i < 5; ++i) {
            opened(*importer);
            if (i % 2 == 0)
                importer->releaseContents();
            format.assignTo(*importer, *format.newImporter());
        }
        importer->releaseContents();
        QCOMPARE(importer->getGroupCount(), 0);
    }

    void emptyImportersRelease()
    {
        const BlockBalance balance;
        TCSProDataImport text;
        TCSProJsonDataImport json;
        TSTATADataImport stata;
        TSPSSDataImport spss;
        TCSProDataImport movedText(std::move(text));
        TCSProJsonDataImport movedJson(std::move(json));
        TSTATADataImport movedStata(std::move(stata));
        TSPSSDataImport movedSpss(std::move(spss));
        const QVector<TDataImport *> importers
            = { &text, &json, &stata, &spss, &movedText, &movedJson, &movedStata, &movedSpss };
        stata.setErrorStream(nullptr);
        movedStata.setErrorStream(nullptr);
        for (TDataImport *importer : importers) {
            importer->releaseContents();
            QCOMPARE(opened(*importer), QStringList());
            importer->releaseContents();
        }
    }

    void copyMayGoOrReleaseToo_data() { addRows(); }
    void copyMayGoOrReleaseToo()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const QStringList names = opened(*importer);
        const auto copy = format.newCopy(*importer);
        const auto idleCopy = format.newCopy(*importer);
        importer->releaseContents();
        copy->releaseContents();
        QCOMPARE(opened(*copy), names);
        QCOMPARE(opened(*importer), names);
        copy->releaseContents(); // the objects that the two have made since are shared again
        importer->releaseContents();
    }

    void copyReleasesForItsSource_data() { addRows(); }
    void copyReleasesForItsSource()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        auto importer = format.newImporter();
        opened(*importer);
        const auto copy = format.newCopy(*importer);
        importer.reset();
        opened(*copy);
        copy->releaseContents();
    }

    void assignedImporterReleasesWhatItHadBefore_data() { addRows(); }
    void assignedImporterReleasesWhatItHadBefore()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const auto other = format.newImporter();
        const QStringList names = opened(*importer);
        opened(*other);
        format.assignTo(*importer, *other);
        QVERIFY(opened(*importer).contains(names.last()));
        importer->releaseContents();
        other->releaseContents();
    }

    void releasedImporterCanBeAssignedTo_data() { addRows(); }
    void releasedImporterCanBeAssignedTo()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        const auto other = format.newImporter();
        opened(*importer);
        const QStringList names = opened(*other);
        importer->releaseContents();
        format.assignTo(*importer, *other);
        QVERIFY(importer->fieldByName(names.first()));
        importer->releaseContents();
        other->releaseContents();
    }

    void providerReleasesAndIsFilledAgain_data() { addRows(); }
    void providerReleasesAndIsFilledAgain()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto importer = format.newImporter();
        opened(*importer);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        const QStringList described = describedBy(provider);
        const QString type = provider.getDataProviderType();
        provider.releaseContents();
        QCOMPARE(provider.getFields(), nullptr);
        QCOMPARE(provider.getField(described.first()), nullptr);
        QCOMPARE(provider.getFieldFromRecord(described.first(), QString()), nullptr);
        QCOMPARE(provider.getFieldName(described.first()), QString());
        QCOMPARE(provider.getRecord(QString()), nullptr);
        QCOMPARE(TestAccess::record(provider), nullptr);
        QCOMPARE(provider.getImportData(), importer.get()); // the importer stays
        QCOMPARE(provider.getDataProviderType(), type);
        QCOMPARE(provider.getLayoutFileName(), importer->getSourceName());
        provider.genericGetFieldsFrom(importer.get());
        QCOMPARE(describedBy(provider), described);
        QCOMPARE(provider.getDataProviderType(), type);
        QVERIFY(TestAccess::record(provider));
        provider.releaseContents();
        importer->releaseContents();
    }

    void everyFillingOfAProviderIsReleased()
    {
        const BlockBalance balance;
        const auto importer = make<TCSProDataImport>();
        opened(*importer);
        TVpDataProvider provider;
        for (int i = 0; i < 5; ++i)
            provider.genericGetFieldsFrom(importer.get());
        const TVpDataProvider copy(provider);
        provider.genericGetFieldsFrom(importer.get()); // the copy keeps the former list
        QCOMPARE(copy.getFields()->size(), provider.getFields()->size());
        provider.releaseContents();
        importer->releaseContents();
    }

    void providerStaysFilledWhenItsImporterReleases_data() { addRows(); }
    void providerStaysFilledWhenItsImporterReleases()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        auto importer = format.newImporter();
        opened(*importer);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        const QStringList described = describedBy(provider);
        importer->releaseContents();
        QCOMPARE(describedBy(provider), described);
        importer.reset();
        QCOMPARE(describedBy(provider), described);
        provider.releaseContents();
    }

    void providerFilledFromTwoImportersReleasesBoth()
    {
        const BlockBalance balance;
        const auto first = make<TCSProDataImport>();
        const auto second = make<TSPSSDataImport>();
        opened(*first);
        opened(*second);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(first.get());
        const TVpDataProvider copy(provider);
        const QStringList described = describedBy(copy);
        provider.genericGetFieldsFrom(second.get());
        first->releaseContents();
        QCOMPARE(describedBy(copy), described);
        second->releaseContents();
        provider.releaseContents();
        QCOMPARE(provider.getFields(), nullptr);
    }

    void selfAssignedProviderReleasesOnce()
    {
        const BlockBalance balance;
        const auto importer = make<TCSProDataImport>();
        opened(*importer);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        const TVpDataProvider &same = provider;
        provider = same;
        provider.genericGetFieldsFrom(importer.get());
        provider.releaseContents();
        provider = same;
        provider.releaseContents();
        importer->releaseContents();
    }

    void sourceFieldsThatWereAssignedToEachOtherAreFreedOnce()
    {
        const BlockBalance balance;
        const auto importer = make<TCSProDataImport>();
        opened(*importer);
        TVpDataProvider provider;
        TVpDataProvider other;
        provider.genericGetFieldsFrom(importer.get());
        TVpSourceField *const former = provider.getFields()->first();
        provider.genericGetFieldsFrom(importer.get());
        other.genericGetFieldsFrom(importer.get());
        *provider.getFields()->first() = *former; // they now share a list of type names
        *other.getFields()->first() = *former;
        other.releaseContents();
        provider.releaseContents();
        importer->releaseContents();
    }

    // An object that was assigned in between keeps nothing of it.
    void formerSourceOfAnAssignmentKeepsItsFields()
    {
        const BlockBalance balance;
        const auto importer = make<TCSProDataImport>();
        opened(*importer);
        TVpDataProvider first;
        TVpDataProvider second;
        first.genericGetFieldsFrom(importer.get());
        second.genericGetFieldsFrom(importer.get());
        const QStringList described = describedBy(first);
        TVpDataProvider current;
        current = first;
        current = second;
        current.releaseContents();
        QCOMPARE(describedBy(first), described);
        first.releaseContents();
        importer->releaseContents();
    }

    void rootsThatWereAssignedToEachOtherAreFreedOnce()
    {
        const BlockBalance balance;
        FakeImporter importer("layout.txt", "CSPRO");
        TVpDataProvider provider;
        TVpDataProvider other;
        provider.genericGetFieldsFrom(&importer);
        other.genericGetFieldsFrom(&importer);
        *provider.getRecord(QString()) = *other.getRecord(QString());
        provider.releaseContents();
        other.releaseContents();
        importer.releaseContents();
    }

    void copiedProviderReleasesOnce()
    {
        const BlockBalance balance;
        const auto importer = make<TCSProJsonDataImport>();
        opened(*importer);
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        TVpDataProvider copy(provider);
        TVpDataProvider assigned;
        assigned.genericGetFieldsFrom(importer.get());
        assigned = provider;
        copy.releaseContents();
        provider.releaseContents();
        assigned.releaseContents(); // also releases the objects that it made before the assignment
        importer->releaseContents();
    }

    void providerKnowsTypesAfterGivingBack()
    {
        const BlockBalance balance;
        TVpDataProvider provider;
        provider.releaseContents();
        provider.setDataProviderType(QString("CSPRO"));
        QCOMPARE(provider.getDataProviderType(), QString("CSPRO"));
        provider.releaseContents();
    }

    void movedProviderKnowsNoTypeStill()
    {
        const BlockBalance balance;
        TVpDataProvider source;
        TVpDataProvider moved(std::move(source));
        moved.setDataProviderType(QString("CSPRO"));
        QCOMPARE(moved.getDataProviderType(), QString());
        moved.releaseContents();
        source.releaseContents();
    }

    void sourceFieldThatIsTwiceInTheListIsFreedOnce()
    {
        const BlockBalance balance;
        // A format that fills the list by itself.
        class TwiceImporter : public FakeImporter
        {
        public:
            using FakeImporter::FakeImporter;
            void getDictionary(QList<TVpSourceField *> *target, QStringList * /*names*/) override
            {
                auto *field = new TVpSourceField;
                auto *sharing = new TVpSourceField(*field); // with the list of type names
                target->append({ field, sharing, field, nullptr });
            }
        };
        TwiceImporter importer("data.csv", "CSV");
        TVpDataProvider provider;
        provider.genericGetFieldsFrom(&importer);
        QCOMPARE(provider.getFields()->size(), 4);
        provider.releaseContents();
        importer.releaseContents();
    }

    void fieldsOfAnotherFormatGoWithTheirImporter()
    {
        const BlockBalance balance;
        FakeImporter importer("layout.txt", "CSPRO");
        importer.layout = { new FakeField(&importer, "AGE"), new FakeField(&importer, "SEX") };
        QCOMPARE(opened(importer), QStringList({ "AGE", "SEX" }));
        importer.releaseContents();
        importer.layout.clear();
        QCOMPARE(opened(importer), QStringList());
        importer.releaseContents();
    }

    // It does not release anything, and reads the list of the base directly.
    void formatThatOverridesNothingCanBeOpenedAgain()
    {
        const BlockBalance balance;
        class PlainImporter : public TDataImport
        {
        public:
            using TDataImport::TDataImport;
            QString getDataProviderId() override { return QStringLiteral("PLAIN_"); }
            QString getDataProviderType() override { return QStringLiteral("PLAIN"); }
            bool openFile() override
            {
                openDataImport();
                const int former = fields->size();
                for (int i = 0; i < fieldsInFile; ++i)
                    addField(new FakeField(this, QString::number(i)));
                return fields->size() > former;
            }
            int fieldsInFile = 0;
        };
        PlainImporter importer;
        PlainImporter moved(std::move(importer));
        for (PlainImporter *each : { &importer, &moved }) {
            for (const int count : { 2, 0, 1 }) {
                each->fieldsInFile = count;
                QCOMPARE(each->openFile(), count > 0);
                QCOMPARE(opened(*each).size(), count);
                each->releaseContents();
                QCOMPARE(each->fieldByName("0"), nullptr);
            }
        }
    }

    // The rules of the destructors still apply: the objects stay alive.
    void destroyingReleasesNothing()
    {
        const BlockBalance balance;
        auto importer = make<TCSProDataImport>();
        opened(*importer);
        auto provider = std::make_unique<TVpDataProvider>();
        provider->genericGetFieldsFrom(importer.get());
        auto *field = provider->getField(importer->fieldByName("P03_SEX") ? "P03_SEX"
                                                                          : provider->getFields()->first()->fieldName);
        const QString name = field->fieldName;
        TVpDataProvider copy(*provider);
        TCSProDataImport importerCopy(static_cast<TCSProDataImport &>(*importer));
        provider.reset();
        importer.reset();
        QCOMPARE(copy.getField(name), field);
        QCOMPARE(field->typeNames->size(), 5);
        copy.releaseContents();
        importerCopy.releaseContents();
    }

    void importersUsedInTurnDoNotInfluenceEachOther_data() { addRows(); }
    void importersUsedInTurnDoNotInfluenceEachOther()
    {
        QFETCH(Format, format);
        const BlockBalance balance;
        const auto alone = format.newImporter();
        TVpDataProvider aloneProvider;
        const QStringList names = opened(*alone);
        aloneProvider.genericGetFieldsFrom(alone.get());
        const QStringList described = describedBy(aloneProvider);

        // Each step of one importer is between two steps of another, of its own format and of every other.
        for (const Format &otherFormat : formats) {
            const auto first = format.newImporter();
            const auto other = otherFormat.newImporter();
            QCOMPARE(opened(*first), names);
            const QStringList otherNames = opened(*other);
            TVpDataProvider provider;
            TVpDataProvider otherProvider;
            provider.genericGetFieldsFrom(first.get());
            otherProvider.genericGetFieldsFrom(other.get());
            first->fieldByName(names.first())->setAsString("1");
            QCOMPARE(describedBy(provider), described);
            other->releaseContents();
            QCOMPARE(describedBy(provider), described);
            QCOMPARE(opened(*other), otherNames);
            otherProvider.releaseContents();
            QCOMPARE(describedBy(provider), described);
            other->releaseContents();
            provider.releaseContents();
            first->releaseContents();
        }
        aloneProvider.releaseContents();
        alone->releaseContents();
    }
};

QTEST_GUILESS_MAIN(ReleaseContentsTest)
#include "ReleaseContentsTest.moc"
