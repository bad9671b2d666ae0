#ifndef LAYOUT_CONCORD_MADESURVEY_H
#define LAYOUT_CONCORD_MADESURVEY_H

#include "layout/MadeLayout.h"

/// A questionnaire of a household survey, for tests without real files.
namespace made
{

struct Question {
    const char *name;
    const char *label;
    const char *values; ///< `code=label|code=label`
};

// clang-format off
constexpr Question personQuestions[] = {
    { "P101", "Line number", "" },
    { "P102", "Name of household member", "" },
    { "P103", "Relationship to the head of household", "1=Head|2=Spouse|3=Son or daughter|4=Grandchild|5=Parent|6=Other relative|7=Not related" },
    { "P104", "Sex", "1=Male|2=Female" },
    { "P105", "Age in completed years", "0=Under one year|98=98 and over|99=Don't know" },
    { "P106", "Month of birth", "1=January|2=February|3=March|98=Don't know" },
    { "P107", "Year of birth", "" },
    { "P108", "Marital status", "1=Never married|2=Married|3=Living together|4=Divorced|5=Widowed" },
    { "P109", "Age at first marriage", "" },
    { "P110", "Religion", "1=Catholic|2=Protestant|3=Muslim|4=Traditional|5=None|6=Other" },
    { "P111", "Ethnic group", "1=Northern people|2=River people|3=Hill people|9=Other" },
    { "P112", "Mother tongue", "1=English|2=French|3=Swahili|9=Other" },
    { "P113", "Is the mother alive", "1=Yes|2=No|8=Don't know" },
    { "P114", "Mother's line number", "" },
    { "P115", "Is the father alive", "1=Yes|2=No|8=Don't know" },
    { "P116", "Father's line number", "" },
    { "P117", "Place of birth", "1=This district|2=Another district|3=Abroad" },
    { "P118", "District of birth", "" },
    { "P119", "Place of residence one year ago", "1=This district|2=Another district|3=Abroad" },
    { "P120", "Main reason for moving", "1=Work|2=Study|3=Marriage|4=Conflict|5=Other" },
    { "P201", "Can read and write", "1=Yes|2=No" },
    { "P202", "Ever attended school", "1=Yes|2=No" },
    { "P203", "Attending school at present", "1=Yes|2=No" },
    { "P204", "Highest grade completed", "0=None|1=Primary|2=Secondary|3=Higher" },
    { "P205", "Reason for leaving school", "1=Cost|2=Distance|3=Work|4=Illness|5=Other" },
    { "P206", "Distance to school in kilometres", "" },
    { "P207", "Uses a computer", "1=Yes|2=No" },
    { "P208", "Uses the internet", "1=Yes|2=No" },
    { "P209", "Has a mobile phone", "1=Yes|2=No" },
    { "P301", "Worked for pay in the last seven days", "1=Yes|2=No" },
    { "P302", "Had a job but was absent", "1=Yes|2=No" },
    { "P303", "Looked for work in the last four weeks", "1=Yes|2=No" },
    { "P304", "Available to start work", "1=Yes|2=No" },
    { "P305", "Main occupation", "" },
    { "P306", "Industry of the main occupation", "" },
    { "P307", "Employment status", "1=Employee|2=Employer|3=Own account|4=Family worker" },
    { "P308", "Hours worked in the last week", "" },
    { "P309", "Earnings from the main occupation", "" },
    { "P310", "Period of the earnings", "1=Day|2=Week|3=Month" },
    { "P311", "Has a second job", "1=Yes|2=No" },
    { "P401", "Difficulty seeing", "1=None|2=Some|3=A lot|4=Cannot at all" },
    { "P402", "Difficulty hearing", "1=None|2=Some|3=A lot|4=Cannot at all" },
    { "P403", "Difficulty walking", "1=None|2=Some|3=A lot|4=Cannot at all" },
    { "P404", "Difficulty remembering", "1=None|2=Some|3=A lot|4=Cannot at all" },
    { "P405", "Was ill in the last month", "1=Yes|2=No" },
    { "P406", "Kind of illness", "1=Fever|2=Cough|3=Diarrhoea|4=Injury|5=Other" },
    { "P407", "Where treatment was sought", "1=Public hospital|2=Private clinic|3=Pharmacy|4=Healer|5=Nowhere" },
    { "P408", "Covered by health insurance", "1=Yes|2=No" },
    { "P501", "Children ever born alive", "" },
    { "P502", "Sons living in the household", "" },
    { "P503", "Daughters living in the household", "" },
    { "P504", "Sons living elsewhere", "" },
    { "P505", "Daughters living elsewhere", "" },
    { "P506", "Children who have died", "" },
    { "P507", "Date of the last birth", "" },
    { "P508", "Sex of the child born last", "1=Male|2=Female" },
};
constexpr Question housingQuestions[] = {
    { "H01", "Type of dwelling", "1=House|2=Flat|3=Hut|4=Tent|5=Other" },
    { "H02", "Number of rooms", "" },
    { "H03", "Tenure of the dwelling", "1=Owned|2=Rented|3=Free" },
    { "H04", "Monthly rent", "" },
    { "H05", "Main material of the roof", "1=Thatch|2=Iron sheets|3=Tiles|4=Concrete" },
    { "H06", "Main material of the walls", "1=Mud|2=Bricks|3=Wood|4=Concrete" },
    { "H07", "Main material of the floor", "1=Earth|2=Wood|3=Cement|4=Tiles" },
    { "H08", "Main source of drinking water", "1=Piped into dwelling|2=Public tap|3=Well|4=Spring|5=River|6=Rain" },
    { "H09", "Time to fetch water in minutes", "" },
    { "H10", "Type of toilet", "1=Flush|2=Pit latrine|3=Bucket|4=None" },
    { "H11", "Toilet shared with other households", "1=Yes|2=No" },
    { "H12", "Main fuel for cooking", "1=Electricity|2=Gas|3=Charcoal|4=Firewood|5=Dung" },
    { "H13", "Main source of lighting", "1=Electricity|2=Kerosene|3=Candle|4=Solar" },
    { "H14", "Disposal of solid waste", "1=Collected|2=Burnt|3=Buried|4=Thrown away" },
    { "H15", "Owns a radio", "1=Yes|2=No" },
    { "H16", "Owns a television", "1=Yes|2=No" },
    { "H17", "Owns a bicycle", "1=Yes|2=No" },
    { "H18", "Owns a refrigerator", "1=Yes|2=No" },
    { "H19", "Owns a motor vehicle", "1=Yes|2=No" },
    { "H20", "Land for farming in hectares", "" },
    { "H21", "Number of cattle", "" },
    { "H22", "Number of goats and sheep", "" },
    { "H23", "Number of chickens", "" },
};
constexpr Question furtherQuestions[] = {
    { "D01", "Name of the deceased person", "" },
    { "D02", "Cause of death", "1=Illness|2=Accident|3=Violence|4=Childbirth" },
    { "D03", "Received remittances from abroad", "1=Yes|2=No" },
    { "D04", "Amount of the last remittance", "" },
    { "D05", "Trust in the local council", "1=Not at all|2=Somewhat|3=A lot" },
    { "D06", "Voted in the last election", "1=Yes|2=No" },
    { "D07", "Meals eaten yesterday", "" },
    { "D08", "Went hungry during the last season", "1=Never|2=Sometimes|3=Often" },
    { "D09", "Has a birth certificate", "1=Yes, seen|2=Yes, not seen|3=No" },
    { "D10", "Sleeps under a mosquito net", "1=Yes|2=No" },
    { "D11", "Smokes tobacco", "1=Daily|2=Occasionally|3=Never" },
    { "D12", "Member of a cooperative", "1=Yes|2=No" },
    { "D13", "Has a bank account", "1=Yes|2=No" },
    { "D14", "Loan taken during the year", "1=Bank|2=Moneylender|3=Relatives|4=None" },
    { "D15", "Distance to the nearest clinic", "" },
    { "D16", "Vaccination card available", "1=Seen|2=Not seen|3=No card" },
    { "D17", "Crop with the largest harvest", "1=Maize|2=Rice|3=Cassava|4=Millet" },
    { "D18", "Fertiliser used", "1=Yes|2=No" },
    { "D19", "Passport number", "" },
    { "D20", "Citizenship", "1=By birth|2=By naturalisation|3=Foreign" },
};
// clang-format on

template <size_t Count> Record recordOf(const QString &name, const Question (&questions)[Count])
{
    Record made = record(name);
    for (const Question &question : questions) {
        QVector<Value> values;
        const QStringList list = QString::fromUtf8(question.values).split(QLatin1Char('|'), Qt::SkipEmptyParts);
        for (const QString &text : list)
            values.append(value(text.section(QLatin1Char('='), 0, 0), text.section(QLatin1Char('='), 1)));
        Item asked = item(QString::fromUtf8(question.name), values.isEmpty() ? 4 : 2, values);
        asked.labels = labels(QString::fromUtf8(question.label));
        made.items.append(asked);
    }
    return made;
}

inline Layout surveyOf(const QVector<Record> &records)
{
    Layout made;
    made.format = Format::CSProText;
    made.levels = { level({ item(QStringLiteral("HHNO"), 4) }, records) };
    return made;
}
inline Layout householdSurvey()
{
    return surveyOf(
        { recordOf(QStringLiteral("PERSON"), personQuestions), recordOf(QStringLiteral("HOUSING"), housingQuestions) });
}
/// Questions that are in no first round.
inline Layout furtherSurvey()
{
    return surveyOf({ recordOf(QStringLiteral("OTHER"), furtherQuestions) });
}

} // namespace made

#endif
