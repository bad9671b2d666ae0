#ifndef LOOKUP_REPORTS_H
#define LOOKUP_REPORTS_H

#include "import/Constants.h"
#include "model_vanadmin_export.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>

// Classes of the caller. The library only passes pointers to them.
class TVanDataset;
class TVanDictionary;
class TVanDatabaseCreationInfo;

/// The captions and values of every report on a lookup.
struct LookupReportTexts {
    QString title;
    QString idCaption;
    QString labelCaption;
    QString fileCaption;
    QString id;
    QString label;
    QString file;
};

/// The outcome of one check of a `TVpLookup`, for a program that presents it. The caller sets the values. The captions
/// cannot be changed.
///
/// The caller owns the list of error lines and the ints of the frequencies, which must live as long as they are used.
///
/// Re-entrant: different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT ReportLookup : public QObject
{
    Q_OBJECT

public:
    ReportLookup();
    /// Takes nothing from its argument. Its captions are empty and not null.
    ReportLookup(ReportLookup &&other);
    ~ReportLookup() override;

    QString titleReport() const;
    QString idLabel() const;       ///< caption of the identification
    QString labelLabel() const;    ///< caption of the label
    QString getLabelLabel() const; ///< the same as labelLabel()
    QString dataFileLabel() const; ///< caption of the file
    QString idValue() const;
    void setIdValue(const QString &value);
    QString labelValue() const;
    void setLabelValue(const QString &value);
    QString dataFileValue() const;
    void setDataFileValue(const QString &value);

    std::map<QString, int *> frequenciesTree() const; ///< a copy of the map that points to the same ints
    void setFrequenciesTree(const std::map<QString, int *> &newFrequencies);
    QStringList *errorMessages() const; ///< null in a new object
    void setErrorMessages(QStringList *messages);
    econsistencyCheck getConsistency() const; ///< mode 0 in a new object
    void setConsistency(const econsistencyCheck &mode);

private:
    LookupReportTexts texts;
    std::map<QString, int *> frequencies;
    QStringList *errorList = nullptr; ///< not owned
    econsistencyCheck consistency = ccNone;
};

/// The captions and values of a report run, with the objects that it was made from. The caller sets all of them.
///
/// The caller owns the list of error lines. Dataset, dictionary and creation information are shared.
///
/// Re-entrant: different objects may be used on different threads, one object by one thread at a time.
class MODEL_VANADMIN_EXPORT DtoReportRunCreation : public QObject
{
    Q_OBJECT

public:
    DtoReportRunCreation();
    /// Takes nothing from its argument. Its captions are empty and not null.
    DtoReportRunCreation(DtoReportRunCreation &&other);
    ~DtoReportRunCreation() override;

    QString titleReport() const;
    void setTitleReport(const QString &title);
    QString idLabel() const; ///< caption of the identification
    void setIdLabel(const QString &caption);
    QString labelLabel() const; ///< caption of the label
    void setLabelLabel(const QString &caption);
    QString dataFileLabel() const; ///< caption of the file
    void setDataFileLabel(const QString &caption);
    QString idValue() const;
    void setIdValue(const QString &value);
    QString labelValue() const;
    void setLabelValue(const QString &value);
    QString dataFileValue() const;
    void setDataFileValue(const QString &value);

    QStringList *errorMessages() const; ///< null in a new object
    void setErrorMessages(QStringList *messages);
    std::shared_ptr<TVanDataset> getReport() const;
    void setReport(const std::shared_ptr<TVanDataset> &dataset);
    std::shared_ptr<TVanDictionary> getDic() const;
    void setDic(const std::shared_ptr<TVanDictionary> &newDictionary);
    std::shared_ptr<TVanDatabaseCreationInfo> getInfo() const;
    void setInfo(const std::shared_ptr<TVanDatabaseCreationInfo> &newInfo);

private:
    LookupReportTexts texts;
    QStringList *errorList = nullptr; ///< not owned
    std::shared_ptr<TVanDataset> report;
    std::shared_ptr<TVanDictionary> dictionary;
    std::shared_ptr<TVanDatabaseCreationInfo> info;
};

#endif
