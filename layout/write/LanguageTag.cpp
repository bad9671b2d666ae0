#include "LanguageTag_p.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

namespace vanlayout
{

namespace
{

// ISO 639-1 codes, each followed by the three-letter codes of ISO 639-2 for the same language.
const char *const codes
    = "aa aar, ab abk, ae ave, af afr, ak aka, am amh, an arg, ar ara, as asm, av ava, ay aym, az aze, "
      "ba bak, be bel, bg bul, bh bih, bi bis, bm bam, bn ben, bo bod tib, br bre, bs bos, ca cat, "
      "ce che, ch cha, co cos, cr cre, cs ces cze, cu chu, cv chv, cy cym wel, da dan, de deu ger, "
      "dv div, dz dzo, ee ewe, el ell gre, en eng, eo epo, es spa, et est, eu eus baq, fa fas per, "
      "ff ful, fi fin, fj fij, fo fao, fr fra fre, fy fry, ga gle, gd gla, gl glg, gn grn, gu guj, "
      "gv glv, ha hau, he heb, hi hin, ho hmo, hr hrv, ht hat, hu hun, hy hye arm, hz her, ia ina, "
      "id ind, ie ile, ig ibo, ii iii, ik ipk, io ido, is isl ice, it ita, iu iku, ja jpn, jv jav, "
      "ka kat geo, kg kon, ki kik, kj kua, kk kaz, kl kal, km khm, kn kan, ko kor, kr kau, ks kas, "
      "ku kur, kv kom, kw cor, ky kir, la lat, lb ltz, lg lug, li lim, ln lin, lo lao, lt lit, lu lub, "
      "lv lav, mg mlg, mh mah, mi mri mao, mk mkd mac, ml mal, mn mon, mr mar, ms msa may, mt mlt, "
      "my mya bur, na nau, nb nob, nd nde, ne nep, ng ndo, nl nld dut, nn nno, no nor, nr nbl, nv nav, "
      "ny nya, oc oci, oj oji, om orm, or ori, os oss, pa pan, pi pli, pl pol, ps pus, pt por, qu que, "
      "rm roh, rn run, ro ron rum, ru rus, rw kin, sa san, sc srd, sd snd, se sme, sg sag, sh hbs, "
      "si sin, sk slk slo, sl slv, sm smo, sn sna, so som, sq sqi alb, sr srp, ss ssw, st sot, su sun, "
      "sv swe, sw swa, ta tam, te tel, tg tgk, th tha, ti tir, tk tuk, tl tgl, tn tsn, to ton, tr tur, "
      "ts tso, tt tat, tw twi, ty tah, ug uig, uk ukr, ur urd, uz uzb, ve ven, vi vie, vo vol, wa wln, "
      "wo wol, xh xho, yi yid, yo yor, za zha, zh zho chi, zu zul";

QHash<QString, QString> shortCodes()
{
    QHash<QString, QString> table;
    const QStringList languages = QString::fromLatin1(codes).split(QLatin1String(", "));
    for (const QString &language : languages) {
        const QStringList spellings = language.split(QLatin1Char(' '));
        for (const QString &spelling : spellings)
            table.insert(spelling, spellings.constFirst());
    }
    return table;
}

// The shortest code of a language; empty for two letters that are not the code of a language.
QString shortest(const QString &code)
{
    static const QHash<QString, QString> table = shortCodes();
    return table.value(code, code.size() == 2 ? QString() : code);
}

} // namespace

QString languageTagOf(const QString &language)
{
    static const QRegularExpression form(
        QStringLiteral("\\A([a-z]{2,3})((?:-[a-z]{3})?(?:-[a-z]{4})?(?:-(?:[a-z]{2}|[0-9]{3}))?"
                       "(?:-(?:[a-z0-9]{5,8}|[0-9][a-z0-9]{3}))*(?:-x(?:-[a-z0-9]{1,8})+)?)\\z"));
    QString tag = language.trimmed().toLower();
    tag.replace(QLatin1Char('_'), QLatin1Char('-'));
    const QRegularExpressionMatch parts = form.match(tag);
    const QString code = parts.hasMatch() ? shortest(parts.captured(1)) : QString();
    return code.isEmpty() ? QString() : code + parts.captured(2);
}

} // namespace vanlayout
