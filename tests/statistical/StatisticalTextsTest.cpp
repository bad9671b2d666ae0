#include <QtTest>

#include "statistical/SPSSDataImport.h"
#include "statistical/STATADataImport.h"
#include "support/TextState.h"

#include <readstat.h>

struct TestAccess {
    template <typename Importer> static const TGenericField &lastField(const Importer &importer)
    {
        return *importer.variables.back();
    }
};

namespace
{

enum Labels { noLabels, missingSet, labelOfMinusOne };

// Texts of the field that a format makes of a variable without a name, a label and a width.
template <typename Importer>
void addTextsOf(const char *subject, readstat_type_t type, Labels labels, const char *bound)
{
    Importer importer;
    readstat_variable_t variable = {};
    variable.type = type;
    if (labels == labelOfMinusOne) {
        readstat_value_t value = {};
        value.type = READSTAT_TYPE_INT32;
        value.v.i32_value = -1;
        Importer::handleValueLabel("set", value, "lost", &importer);
    }
    Importer::handleVariable(0, &variable, labels == noLabels ? nullptr : "set", &importer);
    const TGenericField &field = TestAccess::lastField(importer);
    addTexts(subject, "empty",
             { { "name", field.name },
               { "label", field.label },
               { "valueLabels", field.valueLabels },
               { "missingValue", field.missingValue },
               { "notApplicable", field.notApplicable },
               { "maximum", field.maximum },
               { "decimals", field.decimals } });
    addTexts(subject, bound, { { "minimum", field.minimum } });
    importer.releaseContents();
}

} // namespace

/// Tests that the texts of a field of a statistical file are never null.
class StatisticalTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyTextOfAFieldIsNotNull_data()
    {
        addTextColumns();
        const char *const zero = "\"0\"";
        addTextsOf<TSTATADataImport>("Stata text", READSTAT_TYPE_STRING, noLabels, zero);
        addTextsOf<TSTATADataImport>("Stata number", READSTAT_TYPE_DOUBLE, noLabels, zero);
        addTextsOf<TSTATADataImport>("Stata, missing set", READSTAT_TYPE_INT8, missingSet, zero);
        addTextsOf<TSTATADataImport>("Stata, label of -1", READSTAT_TYPE_INT8, labelOfMinusOne, zero);
        addTextsOf<TSPSSDataImport>("SPSS text", READSTAT_TYPE_STRING, noLabels, "empty");
        addTextsOf<TSPSSDataImport>("SPSS number", READSTAT_TYPE_DOUBLE, noLabels, zero);
        addTextsOf<TSPSSDataImport>("SPSS, missing set", READSTAT_TYPE_DOUBLE, missingSet, zero);
        addTextsOf<TSPSSDataImport>("SPSS, label of -1", READSTAT_TYPE_DOUBLE, labelOfMinusOne, zero);
    }
    void emptyTextOfAFieldIsNotNull()
    {
        QFETCH(QString, text);
        QTEST(stateOf(text), "state");
    }
};

QTEST_APPLESS_MAIN(StatisticalTextsTest)
#include "StatisticalTextsTest.moc"
