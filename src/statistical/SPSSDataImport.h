#ifndef STATISTICAL_SPSSDATAIMPORT_H
#define STATISTICAL_SPSSDATAIMPORT_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"
#include "statistical/StatValueLabel.h"

#include <map>
#include <string>
#include <vector>

struct readstat_value_s;
struct readstat_variable_s;
class TSPSSVariable;

namespace statistical
{
template <typename Importer> struct CommonImport;
class Reading;
} // namespace statistical

/// Reads the variables and value labels of an SPSS file (`.sav`, `.zsav`) through ReadStat: one field for each
/// variable, no groups, no data.
///
/// The file is parsed twice, for the value labels and for the variables. A file that cannot be read, or only in part,
/// gives an open importer with the fields reported until then, and no message. A number without decimals is an integer,
/// whatever its storage; the decimals are those of its format. A field's `length` is one digit, the second character of
/// the format: 8 for "F8.2", and, as is meant, 1 for "F10.2" and 0 for "DATE11". A number's `minimum` and `maximum` are
/// "0" and as many nines as the length, or the span of its value labels where it has any; a text has none. Labels are
/// UTF-8. A label of the value -1 is lost. Variables that share a label set see its values as integers from the first
/// variable without decimals on.
///
/// A second opening keeps the variables of the first and adds the file's variables again, so every field comes twice;
/// this is meant. Missing values, formats, notes and the names of label sets are not read. Fields and label sets
/// outlive the importer; copies share them. Call the operations that are protected here through a `TDataImport` pointer
/// or reference. Everything runs on the caller's thread; two importers share nothing.
class MODEL_VANADMIN_EXPORT TSPSSDataImport : public TDataImport
{
public:
    /// Keeps the path, unchanged; reads nothing yet.
    explicit TSPSSDataImport(QString fileName);
    /// Empty: no path.
    TSPSSDataImport();
    TSPSSDataImport(const TSPSSDataImport &other);
    TSPSSDataImport &operator=(const TSPSSDataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TSPSSDataImport(TSPSSDataImport &&other);
    ~TSPSSDataImport() override;

    /// Whether files are read in large pieces instead of by ReadStat's own small ones: the same result, much sooner.
    /// Off in a new importer. Where a report is attached, files are read so in any case: ReadStat's own reading does
    /// not notice a disk that fails.
    bool isReadingBuffered() const;
    void setReadingBuffered(bool on);

    QStringList *selectLayoutSource() override; ///< as the base

    void releaseContents() override; ///< label sets included

    // The handlers that ReadStat calls, with types of readstat.h; `context` is the importer.
    /// Keeps a label in the set of this name. One of a type that is none ends the process with status 1.
    static int handleValueLabel(const char *labelSet, readstat_value_s value, const char *label, void *context);
    /// Makes the field of a variable, which joins the importer's fields once the file has been read.
    static int handleVariable(int index, readstat_variable_s *variable, const char *labelSet, void *context);

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "SPSS_" and the source name
    QString getDataProviderType() override; ///< "SPSS"
    /// Reads the file and adds its variables to those of a former opening. Always true.
    bool openFile() override;

    std::vector<TSPSSVariable *> variables; ///< in file order; kept
    /// By the address of ReadStat's own name, which is stale once the handler returns; nothing reads it.
    std::map<const char *, TSPSSVariable *> variablesByName;
    std::map<std::string, std::vector<TStatValueLabel *> *> labelSets; ///< by name; kept

private:
    friend struct statistical::CommonImport<TSPSSDataImport>;
    using Variable = TSPSSVariable;

    void openRead(QString path);

    statistical::Reading *reading = nullptr; ///< the parse in progress, or null outside of one
    bool readsBuffered = false;
};

/// The field of an SPSS file.
class MODEL_VANADMIN_EXPORT TSPSSVariable : public TGenericField
{
public:
    explicit TSPSSVariable(TDataImport *importer);
    ~TSPSSVariable() override;

    bool isMissing() override;       ///< true, unlike a Stata field; neither looks at a value
    bool isNotApplicable() override; ///< false
    bool isBlank() override;         ///< a text whose current value is white space
};

#endif
