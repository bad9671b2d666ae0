#include "lookup/Reports.h"

#include <QtTest>

// The caller's layer gives these their content.
class TVanDataset
{
};
class TVanDictionary
{
};
class TVanDatabaseCreationInfo
{
};

namespace
{

template <typename Report> QStringList captionsOf(const Report &report)
{
    return { report.titleReport(), report.idLabel(), report.labelLabel(), report.dataFileLabel() };
}

template <typename Report> QStringList valuesOf(const Report &report)
{
    return { report.idValue(), report.labelValue(), report.dataFileValue() };
}

const QStringList usualCaptions = { "VanX Lookup Checking", "Lookup Identification", "Lookup Label", "Lookup File" };
const QStringList nothing3 = { QString(), QString(), QString() };
const QStringList nothing4 = nothing3 + QStringList(QString());

} // namespace

/// The two records that carry the outcome of a check.
class ReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newReportHasItsCaptions()
    {
        const ReportLookup lookup;
        QCOMPARE(captionsOf(lookup), usualCaptions);
        QCOMPARE(valuesOf(lookup), nothing3);
        QCOMPARE(lookup.getLabelLabel(), QString("Lookup Label"));
        QVERIFY(lookup.frequenciesTree().empty());
        QVERIFY(!lookup.errorMessages());
        QCOMPARE(int(lookup.getConsistency()), 0);
        QVERIFY(!lookup.parent());

        const DtoReportRunCreation run;
        QCOMPARE(captionsOf(run), usualCaptions);
        QCOMPARE(valuesOf(run), nothing3);
        QVERIFY(!run.errorMessages());
        QVERIFY(!run.getReport() && !run.getDic() && !run.getInfo());
        QVERIFY(!run.parent());
    }

    void valuesAreHeld()
    {
        ReportLookup lookup;
        DtoReportRunCreation run;
        holdValues(lookup);
        holdValues(run);
        lookup.setConsistency(ccBoth);
        QCOMPARE(int(lookup.getConsistency()), 3);
    }

    void captionsOfARunCanBeChanged()
    {
        DtoReportRunCreation run;
        run.setTitleReport("a");
        run.setIdLabel("b");
        run.setLabelLabel("c");
        run.setDataFileLabel("d");
        QCOMPARE(captionsOf(run), (QStringList{ "a", "b", "c", "d" }));
        QCOMPARE(valuesOf(run), nothing3);
    }

    void frequenciesAreCopiedAndTheirIntsShared()
    {
        int one = 1;
        int two = 2;
        std::map<QString, int *> map = { { "a", &one } };
        ReportLookup report;
        report.setFrequenciesTree(map);
        map["b"] = &two;
        QCOMPARE(report.frequenciesTree().size(), size_t(1));
        std::map<QString, int *> copy = report.frequenciesTree();
        copy["c"] = &two;
        QCOMPARE(report.frequenciesTree().size(), size_t(1));
        QVERIFY(report.frequenciesTree()["a"] == &one);
        report.setFrequenciesTree(report.frequenciesTree());
        QCOMPARE(report.frequenciesTree().size(), size_t(1));
        report.setFrequenciesTree({});
        QVERIFY(report.frequenciesTree().empty());
    }

    void listOfErrorsStaysTheCallers()
    {
        QStringList errors("1_text");
        {
            ReportLookup report;
            report.setErrorMessages(&errors);
            QVERIFY(report.errorMessages() == &errors);
            DtoReportRunCreation run;
            run.setErrorMessages(&errors);
            QVERIFY(run.errorMessages() == &errors);
        }
        QCOMPARE(errors, QStringList("1_text"));
    }

    void sharedObjectsAreReleasedWithTheRun()
    {
        const auto dataset = std::make_shared<TVanDataset>();
        const auto dictionary = std::make_shared<TVanDictionary>();
        const auto info = std::make_shared<TVanDatabaseCreationInfo>();
        {
            DtoReportRunCreation run;
            run.setReport(dataset);
            run.setDic(dictionary);
            run.setInfo(info);
            QVERIFY(run.getReport() == dataset);
            QVERIFY(run.getDic() == dictionary);
            QVERIFY(run.getInfo() == info);
            QCOMPARE(dataset.use_count(), 2L);
        }
        QCOMPARE(dataset.use_count(), 1L);
        QCOMPARE(dictionary.use_count(), 1L);
        QCOMPARE(info.use_count(), 1L);
    }

    void moveTakesNothing()
    {
        int one = 1;
        QStringList errors;
        ReportLookup report;
        report.setIdValue("id");
        report.setFrequenciesTree({ { "a", &one } });
        report.setErrorMessages(&errors);
        report.setConsistency(ccBoth);
        const ReportLookup moved(std::move(report));
        QCOMPARE(captionsOf(moved), nothing4);
        QCOMPARE(valuesOf(moved), nothing3);
        QVERIFY(moved.frequenciesTree().empty());
        QVERIFY(!moved.errorMessages());
        QCOMPARE(int(moved.getConsistency()), 0);
        QCOMPARE(report.idValue(), QString("id")); // NOLINT(bugprone-use-after-move): it keeps all
        QCOMPARE(captionsOf(report), usualCaptions);

        DtoReportRunCreation run;
        run.setReport(std::make_shared<TVanDataset>());
        const DtoReportRunCreation movedRun(std::move(run));
        QCOMPARE(captionsOf(movedRun), nothing4);
        QVERIFY(!movedRun.getReport());
        QVERIFY(run.getReport() != nullptr); // NOLINT(bugprone-use-after-move): it keeps all
    }

    void reportsAreObjectsWithoutSignals()
    {
        for (const QMetaObject *meta : { &ReportLookup::staticMetaObject, &DtoReportRunCreation::staticMetaObject }) {
            QVERIFY(meta->superClass() == &QObject::staticMetaObject);
            QCOMPARE(meta->methodCount(), QObject::staticMetaObject.methodCount());
            QCOMPARE(meta->propertyCount(), QObject::staticMetaObject.propertyCount());
        }
    }

private:
    template <typename Report> static void holdValues(Report &report)
    {
        report.setIdValue("id");
        report.setLabelValue("label");
        report.setDataFileValue("file");
        QCOMPARE(valuesOf(report), (QStringList{ "id", "label", "file" }));
        QCOMPARE(captionsOf(report), usualCaptions);
    }
};

QTEST_APPLESS_MAIN(ReportsTest)
#include "ReportsTest.moc"
