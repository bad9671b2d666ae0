#include "compare/ConcordWording_p.h"

#include <QTest>

using namespace vanlayout;

namespace
{

struct Row {
    const char *before;
    const char *after;
    CodeChange change;
};

constexpr CodeChange none = CodeChange::None;
constexpr CodeChange spelling = CodeChange::Spelling;
constexpr CodeChange wording = CodeChange::Wording;
constexpr CodeChange meaning = CodeChange::Meaning;

// clang-format off
constexpr Row rows[] = {
    { "Yes", "Yes", none },
    { "", "", none },
    // case, blanks, accents and marks
    { "Yes", "YES", spelling },
    { "Don't know", "Don’t know", spelling },
    { "Don't know", "Dont know", spelling },
    { "Self-employed", "Self employed", spelling },
    { "Spouse / Partner", "Spouse/partner", spelling },
    { "Célibataire", "Celibataire", spelling },
    { "École primaire", "ecole  primaire", spelling },
    { "Other (specify)", "Other, specify", spelling },
    { "5-9", "5 - 9", spelling },
    { "N/A", "NA", spelling },
    { "1,000 or more", "1000 or more", spelling },
    { "São Tomé", "Sao Tome", spelling },
    // plurals
    { "Goat", "Goats", spelling },
    { "House", "Houses", spelling },
    { "Enfant du chef", "Enfants du chef", spelling },
    { "Mujer", "Mujeres", spelling },
    { "City", "Cities", spelling },
    { "Person", "Persons", spelling },
    { "Child", "Children", spelling },
    { "Wife", "Wives", spelling },
    { "Church", "Churches", spelling },
    { "Woman", "Women", spelling },
    { "Fisherman", "Fishermen", spelling },
    { "Knife", "Knives", spelling },
    { "Journal", "Journaux", spelling },
    { "País", "Países", spelling },
    { "Cruz", "Cruces", spelling },
    { "Região", "Regiões", spelling },
    { "Animal", "Animais", spelling },
    { "Papel", "Papéis", spelling },
    { "Jovem", "Jovens", spelling },
    // typing errors
    { "Catholic", "Cahtolic", spelling },
    { "Protestant", "Protestent", spelling },
    { "Married", "Maried", spelling },
    { "Religious leader", "Relgious leader", spelling },
    { "Electricity", "Electrcity", spelling },
    { "Neighbourhood", "Neighborhood", spelling },
    { "Divorcé", "Divorcée", spelling },
    { "Cement blocks", "Cememt blocks", meaning }, // too short for a wrong letter
    // the same in other words
    { "Head", "Head of household", wording },
    { "Primary", "Primary school", wording },
    { "Spouse", "Spouse/partner", wording },
    { "Brother or sister", "Sister or brother", wording },
    { "Don't know", "DK", wording },
    { "Ne sait pas", "NSP", wording },
    { "Not applicable", "N/A", wording },
    { "Don't know", "Does not know", wording },
    { "Piped water into the dwelling", "Water piped into dwelling", wording },
    { "Government hospital", "Govt. hospital", wording },
    { "Secondary education", "Sec. education", wording },
    { "University", "Univ.", wording },
    { "Male", "Man", wording },
    { "North", "Northern region", wording },
    { "East", "East of the river", wording },
    { "Homme", "Masculin", wording },
    { "Chef de ménage", "Chef du ménage (CM)", wording },
    { "Otro", "Otro (especifique)", wording },
    { "5-9", "5 to 9", wording },
    { "65+", "65 and over", wording },
    { "1. Yes", "Yes", wording },
    { "Never married", "Never been married", wording },
    { "Under 5", "Under 5 years", wording },
    { "Yes", "", wording },
    { "", "Yes", wording },
    { "Son/Daughter", "Son or daughter", wording },
    { "Shared tap or standpipe in the street", "Shared tap/standpipe, street", wording },
    { "No", "No one", wording },
    { "Son in law", "Son in law or daughter in law", wording },
    { "Grand house", "House", wording },
    { "0-4 years", "0-4", wording },
    { "Cohabiting", "Cohabiting (not married)", wording },
    { "Grade 1", "Grade 1 (old form 2)", wording },
    // another thing
    { "Yes", "No", meaning },
    { "Oui", "Non", meaning },
    { "Male", "Female", meaning },
    { "Man", "Woman", meaning },
    { "1-4", "5-9", meaning },
    { "1-4", "14", meaning },
    { "5-9", "5-14", meaning },
    { "5", "-5", meaning },
    { "1.5", "15", meaning },
    { "Has electricity", "Has no electricity", meaning },
    { "Avec eau", "Sans eau", meaning },
    { "Con agua", "Sin agua", meaning },
    { "Est allé à l'école", "N'est pas allé à l'école", meaning },
    { "Sabe leer", "No sabe leer", meaning },
    { "Com água", "Sem água", meaning },
    { "Under 5", "Over 5", meaning },
    { "< 5 years", "> 5 years", meaning },
    { "5 rooms", "5+ rooms", meaning },
    { "North", "South", meaning },
    { "North", "North East", meaning },
    { "Sud", "Sud-Ouest", meaning },
    { "Nord", "Sud", meaning },
    { "Urban", "Rural", meaning },
    { "Son", "Sun", meaning },
    { "Father", "Mother", meaning },
    { "Brother", "Mother", meaning },
    { "Hermano", "Hermana", meaning },
    { "Employed", "Unemployed", meaning },
    { "Formal sector", "Informal sector", meaning },
    { "Literate", "Illiterate", meaning },
    { "Strongly agree", "Strongly disagree", meaning },
    { "Secondary complete", "Secondary incomplete", meaning },
    { "Grade 1", "Grade 2", meaning },
    { "Class I", "Class II", meaning },
    { "Group A", "Group B", meaning },
    { "First class", "Second class", meaning },
    { "Premier cycle", "Second cycle", meaning },
    { "Public school", "Private school", meaning },
    { "Primary school", "Secondary school", meaning },
    { "House", "Horse", meaning },
    { "Farmer", "Former", meaning },
    { "Walls", "Halls", meaning },
    { "Goats", "Boats", meaning },
    { "Sister", "Mister", meaning },
    { "Widow", "Window", meaning },
    { "Day", "Week", meaning },
    { "Step son", "Step daughter", meaning },
    { "Son", "Son-in-law", meaning },
    { "Mother", "Grand-mother", meaning },
    { "Fils", "Petit-fils", meaning },
    { "Belle-soeur", "Soeur", meaning },
    { "Employeur", "Employé", meaning },
    { "Empleado", "Empleador", meaning },
    { "Adopted", "Adapted", meaning },
    { "Poisson", "Poison", meaning },
    { "Piped into dwelling", "Piped into yard", meaning },
    { "Avec eau", "Avec toilettes", meaning },
    { "Baker", "Bakery", wording },
    { "Monday", "Tuesday", meaning },
    { "January", "June", meaning },
    { "Catholic", "Muslim", meaning },
    { "Public school", "Public hospital", meaning },
    { "Agriculture", "Non-agriculture", meaning },
    { "Upper class", "Lower class", meaning },
    { "Married", "Single", meaning },
    { "100", "1000", meaning },
    { "?", "!", meaning },
    { "Oui", "Je ne sais pas", meaning },
    { "Мужской", "Женский", meaning },
    { "ذكر", "أنثى", meaning },
    { "男", "女", meaning },
};
// clang-format on

} // namespace

class ConcordWordingTest : public QObject
{
    Q_OBJECT

private slots:
    void aChangeOfLabelHasAClass_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("change");
        for (const Row &row : rows) {
            QTest::addRow("%s / %s", row.before, row.after)
                << QString::fromUtf8(row.before) << QString::fromUtf8(row.after) << int(row.change);
        }
    }
    void aChangeOfLabelHasAClass()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(int, change);
        QCOMPARE(wordOf(wordingChange(before, after)), wordOf(CodeChange(change)));
        QCOMPARE(wordOf(wordingChange(after, before)), wordOf(CodeChange(change)));
    }

    void aLongLabelIsCompared()
    {
        const QString words = QStringLiteral("word ").repeated(200000);
        QCOMPARE(wordingChange(words, words + QStringLiteral("end")), CodeChange::Spelling);
    }
};

QTEST_APPLESS_MAIN(ConcordWordingTest)

#include "ConcordWordingTest.moc"
