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
class Reading;
} // namespace statistical

/// Reads the variables and value labels of a Stata file (`.dta`, versions 104 to 119) through ReadStat: one field for
/// each variable, no groups, no data.
///
/// The file is parsed twice, for the value labels and for the variables. A file that cannot be read, or only in part,
/// gives an open importer with the fields reported until then; a failure of the second parse is one line
/// "Error processing PATH: NUMBER" on standard output, with ReadStat's error number. A field's `length` is the storage
/// width in bytes, which is 6 for a text of declared length 5. Its `minimum` and `maximum` are "0" and as many nines as
/// the length, 10,000 at most, texts included, or the span of its value labels where it is numeric and has any. Labels
/// are taken as Latin-1, byte by byte, although ReadStat hands over UTF-8; this is meant. A label of the value -1 is
/// lost.
///
/// Missing values, formats, notes and the names of label sets are not read. Fields and label sets outlive the importer;
/// copies share them. Call the operations that are protected here through a `TDataImport` pointer or reference.
/// Everything runs on the caller's thread; two importers share nothing.
class MODEL_VANADMIN_EXPORT TSTATADataImport : public TDataImport
{
public:
    /// Keeps the path, unchanged; reads nothing yet.
    explicit TSTATADataImport(QString fileName);
    /// Empty: no path.
    TSTATADataImport();
    TSTATADataImport(const TSTATADataImport &other);
    TSTATADataImport &operator=(const TSTATADataImport &other);
    /// Takes nothing from its argument: the same as the default constructor.
    TSTATADataImport(TSTATADataImport &&other);
    ~TSTATADataImport() override;

    /// Whether files are read in large pieces instead of by ReadStat's own small ones: the same result, much sooner.
    /// Off in a new importer. Where a report is attached, files are read so in any case: ReadStat's own reading does
    /// not notice a disk that fails.
    bool isReadingBuffered() const;
    void setReadingBuffered(bool on);

    /// As the base, after the line "TSTATADataImport - selectLayoutSource" in the log.
    QStringList *selectLayoutSource() override;

    void releaseContents() override; ///< label sets included

    /// Where the line about a failed parse goes: standard output in a new importer, nowhere for null. Not owned.
    void setErrorStream(std::FILE *stream);

    // The handlers that ReadStat calls, with types of readstat.h; `context` is the importer.
    /// Keeps a label in the set of this name. One of a type that is none ends the process with status 1.
    static int handleValueLabel(const char *labelSet, readstat_value_s value, const char *label, void *context);
    /// Makes the field of a variable, which joins the importer's fields once the file has been read.
    static int handleVariable(int index, readstat_variable_s *variable, const char *labelSet, void *context);

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "STATA_" and the source name
    QString getDataProviderType() override; ///< "STATA"
    /// Reads the file anew, leaving the former fields alive. Always true.
    bool openFile() override;

    std::vector<TSTATAVariable *> variables; ///< in file order; kept
    /// By the address of ReadStat's own name, which is stale once the handler returns; nothing reads it.
    std::map<const char *, TSTATAVariable *> variablesByName;
    std::map<std::string, std::vector<TStatValueLabel *> *> labelSets; ///< by name; kept

private:
    friend struct statistical::CommonImport<TSTATADataImport>;
    using Variable = TSTATAVariable;

    void openRead(QString path);

    qint32 number1 = 0;                      ///< carried
    qint32 number2 = 0;                      ///< carried
    statistical::Reading *reading = nullptr; ///< the parse in progress, or null outside of one
    bool readsBuffered = false;
    std::FILE *errorStream = stdout;
};

/// The field of a Stata file.
class MODEL_VANADMIN_EXPORT TSTATAVariable : public TGenericField
{
public:
    explicit TSTATAVariable(TDataImport *importer);
    ~TSTATAVariable() override;

    bool isMissing() override;       ///< false
    bool isNotApplicable() override; ///< false
    bool isBlank() override;         ///< a text whose current value is white space

private:
    bool missing = false; ///< never changed
};

#endif
