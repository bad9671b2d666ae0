#include "DdiValueSetNotes_p.h"

#include "Codes_p.h"
#include "Wording_p.h"
#include "util/KeyedHash_p.h"

namespace vanlayout
{

namespace
{

QString valueLine(const Value &value, const QString &label)
{
    QVector<Range> ranges = value.ranges;
    for (Range &range : ranges) {
        if (isSingle(range))
            range.to.clear();
    }
    QString line = describeRanges(ranges);
    if (!label.isEmpty())
        line += QLatin1String(": ") + label;
    if (value.special != Special::None)
        line += QLatin1String(" [") + describeSpecial(value.special) + QLatin1Char(']');
    return line;
}

// Collects lines by language, in one pass over the texts.
class NoteMaker
{
public:
    void addLabel(const Labels &labels)
    {
        for (const Label &label : labels.parts) {
            if (!label.text.isEmpty())
                noteIn(label.language).lines.append(label.text);
        }
    }

    void addValue(const Value &value)
    {
        bool hasLabel = false;
        for (const Label &label : value.labels.parts) {
            if (label.text.isEmpty())
                continue;
            hasLabel = true;
            noteIn(label.language).lines.append(valueLine(value, label.text));
        }
        if (!hasLabel)
            firstNote().lines.append(valueLine(value, QString()));
    }

    QVector<DdiValueSetNote> notes;

private:
    // The first language is that of the first note, even if values without a label were added before.
    DdiValueSetNote &noteIn(const QString &language)
    {
        const auto [place, isNew] = places.try_emplace(language, places.empty() ? 0 : notes.size());
        if (place->second == notes.size())
            notes.append(DdiValueSetNote());
        DdiValueSetNote &note = notes[place->second];
        if (isNew)
            note.language = language;
        return note;
    }

    DdiValueSetNote &firstNote()
    {
        if (notes.isEmpty())
            notes.append(DdiValueSetNote());
        return notes.first();
    }

    KeyedMap<QString, int> places; ///< index in the notes by language
};

} // namespace

QVector<DdiValueSetNote> ddiValueSetNotes(const ValueSet &set, bool hasValues)
{
    NoteMaker maker;
    maker.addLabel(set.labels);
    for (int i = 0; i < set.values.size() && hasValues; ++i)
        maker.addValue(set.values.at(i));
    return maker.notes;
}

} // namespace vanlayout
