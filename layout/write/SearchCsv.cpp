#include "write/SearchCsv.h"

#include "write/CsvStream_p.h"
#include "write/Wording_p.h"

#include <QStringList>

namespace vanlayout
{

namespace
{

template <typename Place> QByteArray cellsOf(const CsvStream &csv, const QString &file, const Place &place)
{
    return csv.cell(file) + csv.cell(place.level) + csv.cell(place.record) + csv.cell(place.item);
}

QString describeAll(const QVector<SearchedValue> &values)
{
    QStringList texts;
    for (const SearchedValue &value : values)
        texts.append(describeSearched(value));
    return texts.join(QLatin1String("; "));
}

} // namespace

QString describeSearched(const SearchedValue &value)
{
    const QString codes = describeRanges({ { value.from, value.to } });
    return codes.isEmpty() || value.label.isEmpty() ? codes + value.label : codes + QLatin1Char(' ') + value.label;
}

SearchCsv::SearchCsv(QIODevice &target)
    : device(target)
{
    CsvStream csv(device, CsvStream::Reader::Program);
    csv.add("file,level,record,item,where,language,text,label,values,");
    csv.endLine();
    csv.end();
}

void SearchCsv::write(const QString &file, const QVector<SearchHit> &hits)
{
    CsvStream csv(device, CsvStream::Reader::Program);
    for (const SearchHit &hit : hits) {
        csv.add(cellsOf(csv, file, hit));
        csv.add(csv.cell(wordOf(hit.where)) + csv.cell(hit.language) + csv.cell(hit.text) + csv.cell(hit.label)
                + csv.cell(describeAll(hit.values)));
        csv.endLine();
    }
    csv.end();
}

void writeSharedSetsCsv(const QVector<SharedSet> &sets, QIODevice &device)
{
    CsvStream csv(device, CsvStream::Reader::Program);
    csv.add("id,values,file,level,record,item,valueSet,");
    csv.endLine();
    for (const SharedSet &set : sets) {
        const QByteArray cells = csv.cell(set.id) + CsvStream::cell(int(set.values.size()));
        for (const ValueSetUse &use : set.uses) {
            csv.add(cells + cellsOf(csv, use.file, use) + csv.cell(use.valueSet));
            csv.endLine();
        }
    }
    csv.end();
}

} // namespace vanlayout
