#include "compare/ConcordOpposites_p.h"

#include "util/KeyedHash_p.h"

#include <QStringList>

#include <algorithm>

namespace vanlayout
{

namespace
{

// One line for each subject; its sides are separated by `|`.
constexpr const char *subjects[] = {
    "yes oui si sim ja | no non nao nein not none",
    "male males man men masculin homme hommes hombre hombres masculino masculinos varon homem homens | "
    "female females woman women feminin femme femmes mujer mujeres femenino femenina feminino feminina mulher mulheres",
    "boy boys garcon garcons nino menino | girl girls fille filles nina menina",
    "father pere padre pai | mother mere madre mae",
    "son sons fils hijo filho | daughter daughters hija filha",
    "husband mari marido esposo | wife wives epouse esposa",
    "brother brothers frere freres hermano hermanos irmao | sister sisters soeur soeurs hermana hermanas irma",
    "uncle oncle tio | aunt tante tia",
    "nephew neveu sobrino sobrinho | niece sobrina sobrinha",
    "grandfather grandpere abuelo avo | grandmother grandmere abuela",
    "grandson petitfils nieto neto | granddaughter petitefille nieta neta",
    "north nord norte northern | south sud sur sul southern | east est este leste eastern | west ouest oeste western",
    "urban urbain urbaine urbano urbana | rural rurale",
    "less under below fewer moins menos menor younger before avant antes | "
    "more over above plus mas mais mayor maior older after apres despues depois",
    "upper higher high haut haute superieur superior alto alta | middle moyen moyenne medio medium | "
    "lower low bas basse inferieur inferior bajo baja baixo",
    "primary primaire primaria primario | secondary secondaire secundaria secundario | tertiary tertiaire terciaria "
    "university universite universidad universitaire superieure",
    "public publique publico publica government govt | private prive privee privado privada",
    "inside indoor indoors interieur dentro interior | outside outdoor outdoors exterieur fuera exterior fora",
    "first 1st premier premiere primero primera primeiro primeira | second 2nd deuxieme segundo segunda | third 3rd "
    "troisieme "
    "tercero tercera terceiro terceira | fourth 4th quatrieme cuarto cuarta quarto | fifth 5th cinquieme quinto quinta "
    "| sixth 6th sixieme sexto",
    "day days daily jour jours dia dias | week weeks weekly semaine semaines semana semanas | month months monthly "
    "mois mes meses | "
    "year years yearly annual an ans annee annees ano anos",
    "hour hours heure heures hora horas | minute minutes minuto minutos",
    "january janvier enero janeiro | february fevrier febrero fevereiro | march mars marzo marco | april avril abril | "
    "may mai mayo maio | "
    "june juin junio junho | july juillet julio julho | august aout agosto | september septembre septiembre setembro | "
    "october octobre octubre outubro | november novembre noviembre novembro | december decembre diciembre dezembro",
    "monday lundi lunes | tuesday mardi martes | wednesday mercredi miercoles | thursday jeudi jueves | friday "
    "vendredi viernes | "
    "saturday samedi sabado | sunday dimanche domingo",
    "always toujours siempre sempre | often souvent | sometimes parfois veces | rarely seldom rarement raramente | "
    "never jamais nunca",
    "good bon bonne bueno buena bom boa | bad mauvais mauvaise malo mala mau",
    "better mieux meilleur mejor melhor | worse pire peor pior",
    "large big grand grande | small petit petite pequeno pequena",
    "left gauche izquierda esquerda | right droite derecha direita",
    "increase increased augmente aumento | decrease decreased diminue disminuyo diminuiu",
    "morning matin | evening soir | night nuit noche noite",
    "owner owned own proprietaire propietario proprietario | tenant rented rent locataire inquilino",
    "living alive vivant vivo | dead died deceased decede mort muerto morto",
    "red rouge rojo | green vert verde | blue bleu azul | black noir negro preto | white blanc blanco branco | yellow "
    "jaune amarillo amarelo",
    "employer employers employeur employeurs empleador empleadores empregador empregadores | "
    "employee employees employe employes empleado empleados empleada empleadas empregado empregados empregada "
    "empregadas",
    "internal interne | external externe",
    "import imports importation | export exports exportation",
    "hot chaud caliente quente | cold froid frio",
    "single celibataire soltero soltera solteiro solteira | married marie mariee casado casada | divorced divorce "
    "divorcee divorciado "
    "divorciada | widowed widow widower veuf veuve viudo viuda viuvo viuva | separated separe separee separado "
    "separada",
};

KeyedMap<QString, ConcordSide> readSubjects()
{
    KeyedMap<QString, ConcordSide> sides;
    int subject = 0;
    for (const char *const line : subjects) {
        const QStringList lists = QString::fromLatin1(line).split(QLatin1Char('|'));
        for (int side = 0; side < lists.size(); ++side) {
            const QStringList words = lists.at(side).split(QLatin1Char(' '), Qt::SkipEmptyParts);
            for (const QString &word : words)
                sides.emplace(word, ConcordSide{ subject, side });
        }
        ++subject;
    }
    return sides;
}

struct LookAlikes {
    const char *one;
    const char *other;
};

// Words of labels that differ by one letter.
constexpr LookAlikes lookAlikes[] = {
    { "horse", "house" },    { "horses", "houses" },      { "daily", "dairy" },     { "farmer", "former" },
    { "county", "country" }, { "counties", "countries" }, { "widow", "window" },    { "widows", "windows" },
    { "plant", "planet" },   { "friend", "fiend" },       { "board", "boarder" },   { "border", "boarder" },
    { "cousin", "cousine" }, { "voisin", "voisine" },     { "adopted", "adapted" }, { "poisson", "poison" },
    { "dessert", "desert" }, { "cheveux", "chevaux" },
};

KeyedSet<QString> setOf(const QString &words)
{
    const QStringList list = words.split(QLatin1Char(' '));
    return KeyedSet<QString>(list.begin(), list.end());
}

} // namespace

ConcordSide sideOf(const QString &word)
{
    static const KeyedMap<QString, ConcordSide> sides = readSubjects();
    const auto found = sides.find(word);
    return found != sides.end() ? found->second : ConcordSide();
}

bool isRelative(const QString &word)
{
    static const KeyedSet<QString> words = setOf(
        QStringLiteral("father mother parent parents son sons daughter daughters child children brother brothers "
                       "sister sisters uncle aunt pere mere fils fille filles enfant enfants frere freres soeur "
                       "soeurs oncle tante"));
    return words.count(word) > 0;
}

bool isOfOtherRelative(const QString &word)
{
    static const QStringList words
        = { QStringLiteral("law"),   QStringLiteral("step"),    QStringLiteral("grand"),  QStringLiteral("great"),
            QStringLiteral("half"),  QStringLiteral("foster"),  QStringLiteral("beau"),   QStringLiteral("beaux"),
            QStringLiteral("belle"), QStringLiteral("petit"),   QStringLiteral("petite"), QStringLiteral("petits"),
            QStringLiteral("demi"),  QStringLiteral("petites"), QStringLiteral("belles"), QStringLiteral("grands") };
    return words.contains(word);
}

bool isNegation(const QString &word)
{
    static const KeyedSet<QString> words = setOf(
        QStringLiteral("no not non none never without neither nor cannot nobody nothing pas ne sans aucun aucune "
                       "jamais ni sin ningun ninguno ninguna nunca jamas nao sem nenhum nenhuma nem "
                       "nicht kein keine ohne"));
    return words.count(word) > 0;
}

bool differByPrefix(const QString &one, const QString &other)
{
    static const QStringList prefixes
        = { QStringLiteral("un"),   QStringLiteral("in"),   QStringLiteral("im"),   QStringLiteral("il"),
            QStringLiteral("ir"),   QStringLiteral("non"),  QStringLiteral("dis"),  QStringLiteral("des"),
            QStringLiteral("mal"),  QStringLiteral("mis"),  QStringLiteral("sub"),  QStringLiteral("pre"),
            QStringLiteral("post"), QStringLiteral("semi"), QStringLiteral("anti"), QStringLiteral("ex"),
            QStringLiteral("co"),   QStringLiteral("de"),   QStringLiteral("re"),   QStringLiteral("fe"),
            QStringLiteral("wo"),   QStringLiteral("step"), QStringLiteral("grand") };
    const QString &shorter = one.size() < other.size() ? one : other;
    const QString &longer = one.size() < other.size() ? other : one;
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](const QString &prefix) { return longer == prefix + shorter; });
}

bool areLookAlikes(const QString &one, const QString &other)
{
    return std::any_of(std::begin(lookAlikes), std::end(lookAlikes), [&](const LookAlikes &words) {
        const QLatin1String left(words.one);
        const QLatin1String right(words.other);
        return (one == left && other == right) || (one == right && other == left);
    });
}

} // namespace vanlayout
