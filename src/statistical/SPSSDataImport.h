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
class HandlerRunner;
} // namespace statistical

/// Reads the variables and value labels of an SPSS file (`.sav`, `.zsav`) through ReadStat. Each variable becomes a
/// field; there are no groups and no data.
///
/// The file is parsed twice, for the value labels and for the variables. If it can be read only in part or not at all,
/// the importer has the fields that were read until then, and writes no message. A number without decimals is an
/// integer, whatever its storage; its format determines the decimals. A field's `length` is one digit, the second
/// character of the format: 8 for "F8.2", but 1 for "F10.2" and 0 for "DATE11". This is intended. The `minimum` and
/// `maximum` of a number are "0" and as many nines as the length, or the span of its value labels if it has any. A text
/// has no range. Labels are UTF-8. A label of the value -1 is lost. If variables share a label set, its values are
/// integers for the first variable without decimals and for all variables after it.
///
/// A second opening keeps the variables of the first and adds the file's variables again, so every field occurs twice.
/// This is intended. Missing values, formats, notes and the names of label sets are not read. Fields and label sets
/// outlive the importer; copies share them. Call the operations that are protected here through a `TDataImport` pointer
/// or reference. All calls are made on the caller's thread; two importers share nothing.
class MODEL_VANADMIN_EXPORT TSPSSDataImport : public TDataImport
{
public:
    /// Stores the path unchanged. No file is read.
    explicit TSPSSDataImport(QString fileName);
    /// Has no path.
    TSPSSDataImport();
    TSPSSDataImport(const TSPSSDataImport &other);
    TSPSSDataImport &operator=(const TSPSSDataImport &other);
    /// Takes nothing from its argument: equals the default constructor.
    TSPSSDataImport(TSPSSDataImport &&other);
    ~TSPSSDataImport() override;

    /// Returns whether files are read in large pieces and not in the small pieces of ReadStat. The result is the same,
    /// and reading is much faster. It is off in a new importer. With a report attached, files are read in large pieces
    /// in any case, since ReadStat's own input does not notice a failing disk.
    bool isReadingBuffered() const;
    void setReadingBuffered(bool on);

    QStringList *selectLayoutSource() override; ///< as in the base class

    void releaseContents() override; ///< frees the label sets too

    // Handlers that ReadStat calls, with types of readstat.h; `context` is the importer.
    /// Adds a label to the set of this name. A value of an unknown type ends the process with status 1.
    static int handleValueLabel(const char *labelSet, readstat_value_s value, const char *label, void *context);
    /// Makes the field of a variable, which is added to the importer's fields when the file has been read.
    static int handleVariable(int index, readstat_variable_s *variable, const char *labelSet, void *context);

protected:
    friend struct TestAccess;

    QString getDataProviderId() override;   ///< "SPSS_" and the source name
    QString getDataProviderType() override; ///< "SPSS"
    /// Reads the file and adds its variables to those of an earlier opening. Returns true in any case.
    bool openFile() override;

    std::vector<TSPSSVariable *> variables; ///< in file order; kept
    /// The key is the address of ReadStat's name, which is stale once the handler returns. The map is never read.
    std::map<const char *, TSPSSVariable *> variablesByName;
    std::map<std::string, std::vector<TStatValueLabel *> *> labelSets; ///< by name; kept

private:
    friend struct statistical::CommonImport<TSPSSDataImport>;
    using Variable = TSPSSVariable;

    void openRead(QString path);
    static statistical::HandlerRunner *outsideParse();

    statistical::HandlerRunner *handlers = outsideParse(); ///< never null; the parse in progress within one
    bool readsBuffered = false;
};

/// Field of an SPSS file.
class MODEL_VANADMIN_EXPORT TSPSSVariable : public TGenericField
{
public:
    explicit TSPSSVariable(TDataImport *importer);
    ~TSPSSVariable() override;

    bool isMissing() override;       ///< true, unlike a Stata field; neither depends on a value
    bool isNotApplicable() override; ///< false
    bool isBlank() override;         ///< whether it is a text whose current value is white space
};

#endif
