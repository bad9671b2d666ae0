#include "lookup/Reports.h"
#include "support/Callable.h"

#include <QCoreApplication>
#include <QTranslator>
#include <QtTest>

#include <type_traits>

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

CALLABLE(SetsTitle, setTitleReport(QString()));
CALLABLE(SetsIdCaption, setIdLabel(QString()));
CALLABLE(SetsLabelCaption, setLabelLabel(QString()));
CALLABLE(SetsFileCaption, setDataFileLabel(QString()));

/// Translates the texts of QObject's context.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "QObject") == 0 ? '<' + QString::fromLatin1(sourceText) + '>' : QString();
    }
    bool isEmpty() const override { return false; }
};

const QStringList usualCaptions = { "VanX Lookup Checking", "Lookup Identification", "Lookup Label", "Lookup File" };
const QStringList values = { "id", "label", "file" };
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

    void captionsAreTranslatedAsQObjectsOwn()
    {
        int count = 1;
        char name[] = "test";
        char *arguments[] = { name, nullptr };
        const QCoreApplication application(count, arguments);
        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        QStringList translated = usualCaptions;
        for (QString &caption : translated)
            caption = '<' + caption + '>';
        ReportLookup lookup;
        QCOMPARE(captionsOf(lookup), translated);
        DtoReportRunCreation run;
        QCOMPARE(captionsOf(run), translated);
        QCOMPARE(captionsOf(ReportLookup(std::move(lookup))), nothing4);
        QCOMPARE(captionsOf(DtoReportRunCreation(std::move(run))), nothing4);
    }

    void captionsOfALookupStay()
    {
        QVERIFY(!SetsTitle<ReportLookup>::value && SetsTitle<DtoReportRunCreation>::value);
        QVERIFY(!SetsIdCaption<ReportLookup>::value && SetsIdCaption<DtoReportRunCreation>::value);
        QVERIFY(!SetsLabelCaption<ReportLookup>::value && SetsLabelCaption<DtoReportRunCreation>::value);
        QVERIFY(!SetsFileCaption<ReportLookup>::value && SetsFileCaption<DtoReportRunCreation>::value);
    }

    void gettersReturnByValue()
    {
        QVERIFY((std::is_same<decltype(std::declval<ReportLookup>().titleReport()), QString>::value));
        QVERIFY((std::is_same<decltype(std::declval<ReportLookup>().idValue()), QString>::value));
        QVERIFY(
            (std::is_same<decltype(std::declval<ReportLookup>().frequenciesTree()), std::map<QString, int *>>::value));
        QVERIFY((std::is_same<decltype(std::declval<DtoReportRunCreation>().labelValue()), QString>::value));
        QVERIFY((std::is_same<decltype(std::declval<DtoReportRunCreation>().getReport()),
                              std::shared_ptr<TVanDataset>>::value));
        QVERIFY((std::is_same<decltype(std::declval<DtoReportRunCreation>().getDic()),
                              std::shared_ptr<TVanDictionary>>::value));
        QVERIFY((std::is_same<decltype(std::declval<DtoReportRunCreation>().getInfo()),
                              std::shared_ptr<TVanDatabaseCreationInfo>>::value));
    }

    void settersTakeByReference()
    {
        QVERIFY((std::is_same<decltype(&ReportLookup::setIdValue), void (ReportLookup::*)(const QString &)>::value));
        QVERIFY((std::is_same<decltype(&ReportLookup::setConsistency),
                              void (ReportLookup::*)(const econsistencyCheck &)>::value));
        QVERIFY((std::is_same<decltype(&ReportLookup::setFrequenciesTree),
                              void (ReportLookup::*)(const std::map<QString, int *> &)>::value));
        QVERIFY((std::is_same<decltype(&DtoReportRunCreation::setReport),
                              void (DtoReportRunCreation::*)(const std::shared_ptr<TVanDataset> &)>::value));
        QVERIFY((std::is_same<decltype(&DtoReportRunCreation::setDic),
                              void (DtoReportRunCreation::*)(const std::shared_ptr<TVanDictionary> &)>::value));
        QVERIFY(
            (std::is_same<decltype(&DtoReportRunCreation::setInfo),
                          void (DtoReportRunCreation::*)(const std::shared_ptr<TVanDatabaseCreationInfo> &)>::value));
    }

    void everyValueHasAPlaceOfItsOwn()
    {
        DtoReportRunCreation run;
        run.setIdValue("id");
        QCOMPARE(valuesOf(run), (QStringList{ "id", "", "" }));
        run.setDataFileValue("file");
        QCOMPARE(valuesOf(run), (QStringList{ "id", "", "file" }));
        run.setIdLabel("caption");
        QCOMPARE(captionsOf(run),
                 (QStringList{ usualCaptions.at(0), "caption", usualCaptions.at(2), usualCaptions.at(3) }));
        ReportLookup lookup;
        lookup.setLabelValue("label");
        QCOMPARE(valuesOf(lookup), (QStringList{ "", "label", "" }));
        lookup.setConsistency(econsistencyCheck(7)); // not tested by the setter
        QCOMPARE(int(lookup.getConsistency()), 7);
    }

    void pointersCanBeTakenBack()
    {
        QStringList errors;
        ReportLookup lookup;
        lookup.setErrorMessages(&errors);
        lookup.setErrorMessages(nullptr);
        QVERIFY(!lookup.errorMessages());
        const auto dictionary = std::make_shared<TVanDictionary>();
        DtoReportRunCreation run;
        run.setDic(dictionary);
        QCOMPARE(run.getDic().use_count(), 3L); // the test's, the run's and the one returned
        run.setDic(nullptr);
        QVERIFY(!run.getDic());
        QCOMPARE(dictionary.use_count(), 1L);
        run.setErrorMessages(&errors);
        run.setErrorMessages(nullptr);
        QVERIFY(!run.errorMessages());
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
        report.setFrequenciesTree({ { "b", &two } }); // replaces the former map
        QCOMPARE(report.frequenciesTree(), (std::map<QString, int *>{ { "b", &two } }));
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

    void moveOfALookupTakesNothing()
    {
        int one = 1;
        QStringList errors;
        ReportLookup report;
        holdValues(report);
        report.setFrequenciesTree({ { "a", &one } });
        report.setErrorMessages(&errors);
        report.setConsistency(ccBoth);
        const ReportLookup moved(std::move(report));
        QCOMPARE(captionsOf(moved), nothing4);
        QCOMPARE(moved.getLabelLabel(), QString());
        QCOMPARE(valuesOf(moved), nothing3);
        QVERIFY(moved.frequenciesTree().empty());
        QVERIFY(!moved.errorMessages());
        QCOMPARE(int(moved.getConsistency()), 0);
        QCOMPARE(valuesOf(report), values); // NOLINT(bugprone-use-after-move): it keeps all
        QCOMPARE(captionsOf(report), usualCaptions);
        QVERIFY(report.frequenciesTree().at("a") == &one);
        QVERIFY(report.errorMessages() == &errors);
        QCOMPARE(int(report.getConsistency()), int(ccBoth));
    }

    void moveOfARunTakesNothing()
    {
        QStringList errors;
        DtoReportRunCreation run;
        holdValues(run);
        run.setErrorMessages(&errors);
        run.setReport(std::make_shared<TVanDataset>());
        run.setDic(std::make_shared<TVanDictionary>());
        run.setInfo(std::make_shared<TVanDatabaseCreationInfo>());
        const DtoReportRunCreation moved(std::move(run));
        QCOMPARE(captionsOf(moved), nothing4);
        QCOMPARE(valuesOf(moved), nothing3);
        QVERIFY(!moved.errorMessages());
        QVERIFY(!moved.getReport() && !moved.getDic() && !moved.getInfo());
        QCOMPARE(valuesOf(run), values); // NOLINT(bugprone-use-after-move): it keeps all
        QCOMPARE(captionsOf(run), usualCaptions);
        QVERIFY(run.errorMessages() == &errors);
        QVERIFY(run.getReport() && run.getDic() && run.getInfo());
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
        QCOMPARE(valuesOf(report), values);
        QCOMPARE(captionsOf(report), usualCaptions);
    }
};

QTEST_APPLESS_MAIN(ReportsTest)
#include "ReportsTest.moc"
