#ifndef CSPRO_CSPROJSONNOTES_P_H
#define CSPRO_CSPROJSONNOTES_P_H

#include <QJsonObject>
#include <QString>

class ReadReport;

namespace cspro
{

/// The diagnostics of the reader of CSPro 8 dictionaries. Each operation returns at once where there is no report.
class JsonDictionaryNotes
{
public:
    /// Sends the notes to \a newReport, which is not owned; to none where it is null.
    void setReport(ReadReport *newReport) { report = newReport; }

    /// The file gives no layout: the system failed to read it, which \a readProblem says, or, where that is empty, its
    /// content is no dictionary, which \a problem says.
    void fileNotRead(const QString &readProblem, const QString &problem) const;
    /// The document that is read: the keys and values that the reader skips, or reads as something else.
    void document(const QJsonObject &root) const;
    /// Reading ended within \a record, at a bound.
    void readingEnded(const QString &record) const;

private:
    ReadReport *report = nullptr;
};

} // namespace cspro

#endif
