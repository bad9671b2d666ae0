#ifndef STATISTICAL_STATADATAIMPORT_H
#define STATISTICAL_STATADATAIMPORT_H

#include "import/DataImport.h"
#include "model_vanadmin_export.h"
#include "statistical/StatValueLabel.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

struct readstat_value_s;
struct readstat_variable_s;
class TSTATAVariable;

namespace statistical
{
template <typename Importer> struct CommonImport;
class HandlerRunner;
} // namespace statistical

/// Reads the variables and value labels of a Stata file (`.dta`, versions 104 to 119) through ReadStat. Each variable
/// becomes a field; there are no groups and no data.
///
/// The file is parsed twice, for the value labels and for the variables. If it can be read only in part or not at all,
/// the importer has the fields that were read until then. A failure of the second parse writes one line to standard
/// output: "Error processing PATH: NUMBER", with ReadStat's error number. A field's `length` is the storage width in
/// bytes, which is 6 for a text of declared length 5. The `minimum` and `maximum` of numbers and texts are "0" and as
/// many nines as the length, up to 10,000. For a number with value labels they are the span of the labelled values.
/// Labels are read as Latin-1, byte by byte, although ReadStat delivers UTF-8. This is intended. A label of the value
/// -1 is lost.
///
/// Missing values, formats, notes and the names of label sets are not read. Fields and label sets outlive the importer;
/// copies share them. Call the operations that are protected here through a `TDataImport` pointer or reference.
/// All calls are made on the caller's thread; two importers share nothing.
class MODEL_VANADMIN_EXPORT TSTATADataImport : public TDataImport
{
public:
    /// Stores the path unchanged. No file is read.
    explicit TSTATADataImport(QString fileName);
    /// Has no path.
    TSTATADataImport();
    TSTATADataImport(const TSTATADataImport &other);
    TSTATADataImport &operator=(const TSTATADataImport &other);
    /// Takes nothing from its argument: equals the default constructor.
    TSTATADataImport(TSTATADataImport &&other);
    ~TSTATADataImport() override;

    /// Returns whether files are read in large pieces and not in the small pieces of ReadStat. The result is the same,
    /// and reading is much faster. It is off in a new importer. With a report attached, files are read in large pieces
    /// in any case, since ReadStat's own input does not notice a failing disk.
    bool isReadingBuffered() const;
    void setReadingBuffered(bool on);

    /// Logs the line "TSTATADataImport - selectLayoutSource", then calls the base class.
    QStringList *selectLayoutSource() override;

    void releaseContents() override; ///< frees the label sets too

    /// Sets the stream for the line about a failed parse: standard output in a new importer, no output for null. The
    /// stream is not owned.
    void setErrorStream(std::FILE *stream);

    // Handlers that ReadStat calls, with types of readstat.h; `context` is the importer.
    /// Adds a label to the set of this name. A value of an unknown type ends the process with status 1.
    static int handleValueLabel(const char *labelSet, readstat_value_s value, const char *label, void *context);
    /// Makes the field of a variable, which is added to the importer's fields when the file has been read.
    static int handleVariable(int index, readstat_variable_s *variable, const char *labelSet, void *context);

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "STATA_" and the source name
    QString getDataProviderType() override; ///< "STATA"
    /// Reads the file again and leaves the fields of an earlier opening alive. Returns true in any case.
    bool openFile() override;

    std::vector<TSTATAVariable *> variables; ///< in file order; kept
    /// The key is the address of ReadStat's name, which is stale once the handler returns. The map is never read.
    std::map<const char *, TSTATAVariable *> variablesByName;
    std::map<std::string, std::vector<TStatValueLabel *> *> labelSets; ///< by name; kept

private:
    friend struct statistical::CommonImport<TSTATADataImport>;
    using Variable = TSTATAVariable;

    void openRead(QString path);
    static statistical::HandlerRunner *outsideParse();

    qint32 number1 = 0;                                    ///< carried; never read
    qint32 number2 = 0;                                    ///< carried; never read
    statistical::HandlerRunner *handlers = outsideParse(); ///< never null; the parse in progress within one
    bool readsBuffered = false;
    std::FILE *errorStream = stdout;
};

/// Field of a Stata file.
class MODEL_VANADMIN_EXPORT TSTATAVariable : public TGenericField
{
public:
    explicit TSTATAVariable(TDataImport *importer);
    ~TSTATAVariable() override;

    bool isMissing() override;       ///< false
    bool isNotApplicable() override; ///< false
    bool isBlank() override;         ///< whether it is a text whose current value is white space

private:
    bool missing = false; ///< never changed
};

#endif
