#ifndef STATISTICAL_STATISTICALIMPORT_P_H
#define STATISTICAL_STATISTICALIMPORT_P_H

#include "import/GenericField.h"
#include "import/KeptObjects_p.h"
#include "import/LayoutNotes_p.h"
#include "statistical/StatValueLabel.h"
#include "util/Nines_p.h"
#include "util/StataNames_p.h"

#include <readstat.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// What the importers of the two statistical formats do alike.
namespace statistical
{

using LabelSet = std::vector<TStatValueLabel *>;
using LabelSets = std::map<std::string, LabelSet *>;

/// Most bytes in the value labels of a file. The labels of a Stata file may share their texts, so that a small file can
/// hold any number of bytes.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION // the way is the same, and a thousand times as many can be tried
constexpr qint64 mostLabelBytes = 250000;
#else
constexpr qint64 mostLabelBytes = 250000000;
#endif

/// Why a file is not read, or not to its end, although its contents do not end the reading.
struct ReadProblem {
    QString line;            ///< for a person; null where there is no problem
    bool isOfDevice = false; ///< the system fails to read the file

    bool isNull() const { return line.isNull(); }
};

/// What sets one format apart. Whatever is not named here is the same for both.
struct Format {
    readstat_error_t (*parse)(readstat_parser_t *, const char *path, void *context);
    /// Appends a label, or a value that is a text, in the format's reading of its bytes.
    void (*appendText)(QString &text, const char *bytes, size_t size);
    /// A float is an integer where it has no decimals, and so are the values of its labels then.
    bool decimalsDecide;
    qint32 (*widthOf)(const readstat_variable_t &variable);
    bool textsHaveRange;
    bool textsAreLatin1; ///< so that each letter beyond ASCII becomes several
    /// Why ReadStat cannot be trusted with a file.
    ReadProblem (*problem)(const QString &path);
    NameBounds widestNames;
    NameBounds (*nameBounds)(const QString &path);
};
extern const Format stata;
extern const Format spss;

/// The parse of one file: what is remembered from one call of a handler to the next.
class Reading
{
public:
    Reading(const Format &format, const QString &path, bool isBuffered);

    /// One pass over the file. A handler that is null is not installed. An exception out of a handler ends the pass and
    /// is raised here.
    readstat_error_t pass(readstat_value_label_handler onLabel, readstat_variable_handler onVariable, void *context);
    const QByteArray &path() const { return localPath; }

    /// Runs the body of a handler. No exception may cross ReadStat: it is kept until the pass has ended.
    template <typename Body> int run(Body body)
    {
        try {
            body();
            return READSTAT_HANDLER_OK;
        } catch (...) {
            raised = std::current_exception();
            return READSTAT_HANDLER_ABORT;
        }
    }

    /// Whether a file may have \a bytes more in its value labels. Where it may not, the file has a problem.
    bool hasRoomFor(qint64 bytes);
    const ReadProblem &problem() const { return readProblem; }

    NameBounds bounds;
    ReadReport *report = nullptr; ///< hears of what is lost or changed; not owned
    // What a report hears; called with one alone.
    /// Notes on the labels of a set wait for the first variable that uses it.
    void tellOfLabel(const LabelSet *set, const char *setName, const readstat_value_t &value,
                     const TStatValueLabel &held, const char *label);
    void tellOfVariable(const readstat_variable_t &variable, const TGenericField &field) const;
    /// Tells under the name of \a variable what waits of a set.
    void tellOfSet(const LabelSet *set, const QString &variable);
    /// Tells of the sets that no variable has used, and how the two passes ended, where they did not end well.
    void tellOfEnd(const LabelSets &sets, readstat_error_t labelPass, readstat_error_t variablePass, bool hasVariables);

    /// What the labels of one set give to a variable: the same text for all that share the set.
    struct LabelText {
        bool isMade = false;
        QString text;
        QString minimum;           ///< null where no value lies below the start of the search
        QString maximum;           ///< null where none lies above
        bool isOfIntegers = false; ///< made after the values were turned to integers
        double lower = 0;          ///< the minimum as it is in the file
        double upper = 0;
    };
    std::unordered_map<const LabelSet *, LabelText> labelTexts;
    LabelSet *lastSet = nullptr; ///< where the last label went
    std::string lastSetName;
    Nines nines;

private:
    const Format &format;
    QByteArray localPath;    ///< in the encoding of the system
    bool isBuffered = false; ///< what is no regular file is left to ReadStat's own reading
    bool isRefused = false;
    ReadProblem readProblem;
    qint64 labelBytes = 0;
    std::exception_ptr raised;
    std::unordered_map<const LabelSet *, std::vector<ReadNote>> waitingNotes;
};

/// Whether a value label can hold a value of this type.
bool isSupported(const readstat_value_t &value);
/// Writes the line about such a value to standard error and ends the process with status 1.
[[noreturn]] void endAtUnsupportedType(const char *sourceFile, int line);

/// Keeps a label in its set, which is made, and kept, if there is none; a label without text is dropped. Of a type that
/// is supported.
void addValueLabel(LabelSets &sets, const char *labelSet, const readstat_value_t &value, const char *label,
                   Reading *reading, KeptObjects &kept);
/// Fills the description of \a field from \a variable and the labels of its set. Without a \a reading nothing is
/// remembered for the next variable.
void describe(const Format &format, const readstat_variable_t &variable, const char *labelSet, const LabelSets &sets,
              Reading *reading, TGenericField &field);
/// Whether the field is a text whose current value is white space.
bool isBlank(const TGenericField &field);

/// The operations of an importer of class \a Importer that touch its members.
template <typename Importer> struct ImportBody {
    static int handleValueLabel(Importer *importer, const char *labelSet, const readstat_value_t &value,
                                const char *label)
    {
        if (!importer || !labelSet)
            return READSTAT_HANDLER_OK;
        if (label && importer->reading && !importer->reading->hasRoomFor(qint64(std::strlen(label))))
            return READSTAT_HANDLER_ABORT;
        return inHandler(importer->reading, [&] {
            addValueLabel(importer->labelSets, labelSet, value, label, importer->reading, *importer->kept);
        });
    }

    static int handleVariable(const Format &format, Importer *importer, const readstat_variable_t *variable,
                              const char *labelSet)
    {
        if (!importer || !variable)
            return READSTAT_HANDLER_OK;
        return inHandler(importer->reading, [&] {
            auto field = std::make_unique<typename Importer::Variable>(importer);
            describe(format, *variable, labelSet, importer->labelSets, importer->reading, *field);
            importer->kept->addField(field.get());
            auto *made = field.release(); // kept, so what raises from here on loses nothing
            importer->variables.push_back(made);
            importer->variablesByName[variable->name] = made;
        });
    }

    /// Both passes over the file, the labels first: a variable takes its labels as it arrives. Answers the result of
    /// the second.
    static readstat_error_t read(Importer *importer, Reading &reading)
    {
        importer->labelSets.clear();
        importer->reading = &reading;
        ReadReport *report = importer->getReadReport();
        const bool canTell = report && !reportMissingFile(*report, importer->getSourceName());
        reading.report = canTell ? report : nullptr;
        if (canTell && !importer->variables.empty())
            report->add(NoteKind::openedTwice, importer->getSourceName());
        const std::unique_ptr<Importer, EndReading> atEnd(importer);
        const readstat_error_t labelResult = reading.pass(Importer::handleValueLabel, nullptr, importer);
        const readstat_error_t result = reading.pass(nullptr, Importer::handleVariable, importer);
        importer->readProblem = reading.problem().line;
        for (auto *variable : importer->variables)
            importer->addField(variable);
        if (canTell) {
            reading.tellOfEnd(importer->labelSets, labelResult, result, !importer->variables.empty());
            reportRepeatedNames(*report, importer->fields, importer->fieldsByName.size());
        }
        return result;
    }

    /// Forgets what is about to be freed.
    static void forget(Importer *importer)
    {
        importer->variables.clear();
        importer->variablesByName.clear();
        importer->labelSets.clear();
    }

private:
    struct EndReading {
        void operator()(Importer *importer) const { importer->reading = nullptr; }
    };

    template <typename Body> static int inHandler(Reading *reading, Body body)
    {
        if (reading)
            return reading->run(body);
        body();
        return READSTAT_HANDLER_OK;
    }
};

} // namespace statistical

#endif
