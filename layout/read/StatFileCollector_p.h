#ifndef LAYOUT_READ_STATFILECOLLECTOR_P_H
#define LAYOUT_READ_STATFILECOLLECTOR_P_H

#include "read/Formats_p.h"
#include "read/MadeOnce_p.h"
#include "util/StataNames_p.h"

#include <readstat.h>

#include <exception>
#include <map>
#include <string>
#include <vector>

namespace vanlayout::stat
{

/// Collects the events of ReadStat in one parse, in any order, and makes the layout from them.
///
/// An exception within a handler ends the parse and is rethrown by rethrow().
class Collector
{
public:
    Collector(const Input &fileInput, Layout &target, Diagnostics &targetDiagnostics);

    /// Sets the max bytes of labels and notes for a file of this size in bytes.
    void makeRoomFor(qint64 fileSize);

    /// Sets the handlers of the parser to this object, which must outlive the parse.
    void attachTo(readstat_parser_t *parser);
    /// Sets the handlers of a catalog's parser; its label sets are assigned by the names of formats.
    void attachCatalogTo(readstat_parser_t *parser);

    bool hasVariables() const { return !items.isEmpty(); }
    /// True if the collector ended the parse because nothing more is needed from it.
    bool hasEndedParse() const { return hasAll || hasTooMuchText; }
    /// The messages that ReadStat passed to the error handler, on one line; empty if there are none.
    QString words() const;
    void forgetWords() { messages.clear(); }

    /// Moves everything into the layout.
    void finish();
    /// Rethrows the exception of a handler, if any.
    void rethrow();

private:
    struct LabelSet {
        QVector<ValueSet> sets; ///< one set, in a list so that all items with it share its memory
        bool isUsed = false;
    };

    static int onMetadata(readstat_metadata_t *metadata, void *context);
    static int onNote(int index, const char *note, void *context);
    static int onVariable(int index, readstat_variable_t *variable, const char *labelSet, void *context);
    static int onFweight(readstat_variable_t *variable, void *context);
    static int onValueLabel(const char *labelSet, readstat_value_t value, const char *label, void *context);
    static void onError(const char *message, void *context);
    template <typename Step> int run(Step step);

    void takeMetadata(readstat_metadata_t *metadata);
    void takeNote(int index, const char *note);
    void takeVariable(const readstat_variable_t &variable, const char *labelSet);
    void takeValueLabel(const char *labelSet, const readstat_value_t &value, const char *label);

    QVector<Range> rangesOf(const readstat_value_t &value);
    bool hasRoomFor(const char *text);
    LabelSet &setNamed(const char *name);
    LabelSet *findSet(const std::string &name);
    void linkSets();
    void reportUnusedSets();
    bool isOldStata() const;
    /// The name of a label set as a text.
    QString nameOf(const std::string &labelSet) const;

    const Input &input;
    Layout &layout;
    Diagnostics &diagnostics;
    NameBounds bounds;
    QVector<Item> items;
    std::vector<std::string> setNames; ///< of each item's label set; empty for none
    QStringList notes;
    std::vector<LabelSet> labelSets;          ///< in the order of the file
    std::map<std::string, size_t> setsByName; ///< ordered, so that no choice of names makes it slow
    size_t lastSet = 0;                       ///< the labels of a set follow each other
    std::string lastSetName;
    MadeOnce<QVector<Range>> keptRanges; ///< by the bytes of numbers
    MadeOnce<Labels> keptLabels;
    QStringList messages;
    qint64 textLeft; ///< bytes of labels and notes that are still accepted
    bool hasTooMuchText = false;
    bool hasAll = false;
    qint64 announcedVariables = 0;
    std::exception_ptr raised;
};

} // namespace vanlayout::stat

#endif
