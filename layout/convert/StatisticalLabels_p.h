#ifndef LAYOUT_CONVERT_STATISTICALLABELS_P_H
#define LAYOUT_CONVERT_STATISTICALLABELS_P_H

#include "convert/StatisticalLosses_p.h"
#include "convert/StatisticalNames_p.h"
#include "load/TargetRules_p.h"
#include "util/KeyedHash_p.h"

#include <readstat.h>

#include <map>
#include <optional>

namespace vanlayout
{

/// Returns the text cut to a limit. If it is longer, appends \a loss, whose text is continued with what is kept.
QString cutWithLoss(const QString &text, const LengthLimit &limit, const Loss &loss, Losses &losses);

/// The number of a code, with either decimal mark; none for blanks, texts and missing values such as `.a`.
std::optional<double> statisticalNumberOf(const QString &code);

/// The sets of value labels of a statistical file.
class StatisticalLabels
{
public:
    struct Reports {
        StatisticalLosses &ofKinds;
        Losses &single;
    };

    /// The writer and the reports must exist as long as the object.
    StatisticalLabels(readstat_writer_t *fileWriter, StatisticalFormat target, const QString &languageCode,
                      const Reports &reportsOfLosses);

    /// The labels of a variable; null if it has none that the file can hold. Occurrences of an item have the same set.
    readstat_label_set_t *setOf(const Item &item, const QString &variable);

private:
    readstat_label_set_t *make(const ValueSet &set);
    void addValue(const Value &value);
    void addLabel(const Value &value, const Range &range);
    bool write(const QString &code, const QByteArray &label);
    bool writeNumber(const QString &code, const QByteArray &label);
    const QString *earlierLabel(const QString &code, const QString &label);
    readstat_label_set_t *written();
    QByteArray nameOf(const ValueSet &set);
    void lose(const QString &what);

    readstat_writer_t *writer;
    bool isSav;
    QString language;
    Reports reports;
    StatisticalNames names;
    std::map<const ValueSet *, readstat_label_set_t *> sets;
    // of the set that is made
    const ValueSet *source = nullptr;
    readstat_label_set_t *made = nullptr;
    bool isText = false;
    QString path;                      // of the variable
    KeyedMap<QString, QString> labels; // by code
};

} // namespace vanlayout

#endif
