#include "layout/concord/DerivedRounds.h"
#include "read/Reader.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>

using namespace vanlayout;

// Prints how well concord() finds the variables of several rounds: precision and recall of the pairs of items, next to
// those of two simple rules. The sets are the tables of tests/data/concord, whose files are in the collection of real
// files, and rounds derived from single files of it.
//
//     ConcordQuality [--errors] [COLLECTION]

namespace
{

bool printsErrors = false;

struct Sums {
    truth::Quality name;
    truth::Quality nameThenLabel;
    truth::Quality concord;
};

void print(const QString &title, const Sums &sums)
{
    std::printf("%-44s", qUtf8Printable(title));
    for (const truth::Quality *const quality : { &sums.name, &sums.nameThenLabel, &sums.concord })
        std::printf("   P %.3f R %.3f", quality->precision(), quality->recall());
    std::printf("   %6d pairs\n", sums.concord.known);
}

void measure(const QString &title, const QVector<Layout> &rounds, const truth::Truth &truth, Sums &all)
{
    QStringList wrong;
    QStringList missing;
    Sums sums;
    sums.name = truth::compare(truth::byName(rounds), truth);
    sums.nameThenLabel = truth::compare(truth::byNameThenLabel(rounds), truth);
    sums.concord = truth::compare(truth::tableOf(concord(rounds)), truth, &wrong, &missing);
    print(title, sums);
    all.name.add(sums.name);
    all.nameThenLabel.add(sums.nameThenLabel);
    all.concord.add(sums.concord);
    if (!printsErrors)
        return;
    for (const QString &pair : qAsConst(wrong))
        std::printf("    wrong   %s\n", qUtf8Printable(pair));
    for (const QString &pair : qAsConst(missing))
        std::printf("    missing %s\n", qUtf8Printable(pair));
}

void measureMarked(const QString &collection)
{
    Sums all;
    const QFileInfoList tables = QDir(QStringLiteral(VAN_CONCORD_TRUTH)).entryInfoList({ QStringLiteral("*.csv") });
    for (const QFileInfo &table : tables) {
        const truth::Truth truth = truth::Truth::read(table.filePath());
        QVector<Layout> rounds;
        for (const QString &file : truth.files) {
            if (QFileInfo::exists(collection + QLatin1Char('/') + file))
                rounds.append(readLayout(collection + QLatin1Char('/') + file));
        }
        if (rounds.size() == truth.files.size())
            measure(table.completeBaseName(), rounds, truth, all);
    }
    print(QStringLiteral("all marked"), all);
}

struct Kind {
    const char *title;
    derived::Changes changes;
    derived::Rounds (*change)(const derived::Rounds &rounds); // null for none
};

void measureDerived(const QString &collection, const QStringList &files)
{
    const Kind kinds[] = {
        { "mild", derived::mild(), nullptr },
        { "usual", derived::usual(), nullptr },
        { "harsh", derived::harsh(), nullptr },
        { "extreme", derived::extreme(), nullptr },
        { "statistical", derived::harsh(), derived::asStatistical },
        { "no values", derived::harsh(), derived::withoutValues },
        { "no labels", derived::mild(), derived::withoutLabels },
    };
    for (const Kind &kind : kinds) {
        Sums all;
        for (int i = 0; i < files.size(); ++i) {
            const Layout first = readLayout(collection + QLatin1Char('/') + files.at(i));
            const Layout donor = readLayout(collection + QLatin1Char('/') + files.at((i + 1) % files.size()));
            derived::Rounds rounds = derived::derive(first, donor, 5, kind.changes, unsigned(i + 1));
            if (kind.change)
                rounds = kind.change(rounds);
            measure(QLatin1String(kind.title) + QLatin1Char(' ') + QFileInfo(files.at(i)).completeBaseName(),
                    rounds.layouts, rounds.truth, all);
        }
        print(QLatin1String("all ") + QLatin1String(kind.title), all);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QString collection = QStringLiteral(VAN_CORPUS);
    for (int i = 1; i < argc; ++i) {
        if (QByteArray(argv[i]) == "--errors")
            printsErrors = true;
        else
            collection = QString::fromLocal8Bit(argv[i]);
    }
    std::printf("%-44s   %-15s   %-15s   %s\n", "", "equal names", "names first", "concord");
    measureMarked(collection);
    const QStringList first = { "cspro-text/drc-epmu1m01.dcf",
                                "cspro-text/dhs-tj-tjhh80.dcf",
                                "cspro-text/istat-old-ipums.dcf",
                                "cspro-text/energy-community.dcf",
                                "cspro-text/drc-questionnaire-individu.dcf",
                                "spss/eatgads-pisa.zsav" };
    const QStringList second
        = { "cspro-text/cspro-ex-popstanlfs.dcf", "cspro-text/drc-rgaop.dcf",       "cspro-text/drc-cfcrtmch.dcf",
            "cspro-text/chimera-dictionary.dcf",  "cspro-text/istat-household.dcf", "cspro-text/namibia-individual.dcf",
            "cspro-text/dhs-cg-cgbio80.dcf" };
    measureDerived(collection, first);
    measureDerived(collection, second);
    return 0;
}
