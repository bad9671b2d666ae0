#include "lookup/Lookup.h"

#include "import/ErrorManager.h"
#include "import/ReadReport.h"
#include "lookup/LocaleTextStream_p.h"
#include "lookup/LookupEntries_p.h"
#include "util/EmptyText_p.h"
#include "util/FileReading_p.h"
#include "util/NumberCharacter_p.h"
#include "util/TextCache_p.h"
#include "util/UtilFiles.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{

constexpr char separators[] = { ' ', '\t', ',', ';', ':' };
constexpr int spaceSeparator = 0;

// The number of lines between two reports of the progress; a power of two.
constexpr int linesOfProgress = 1 << 13;

QString withoutLeadingBlanks(QStringView text)
{
    const auto *first = std::find_if_not(text.begin(), text.end(), [](QChar character) { return character.isSpace(); });
    return text.mid(first - text.begin()).toString();
}

// The character of a separator by its number; a blank for a number that no separator has.
QChar separatorCharacter(int separator)
{
    const bool isKnown = separator >= 0 && separator < int(std::size(separators));
    return QLatin1Char(separators[isKnown ? separator : spaceSeparator]);
}

// A separator in the first column has no key before it and does not count as a separator.
bool hasKey(int separatorPosition)
{
    return separatorPosition >= 1;
}

// Adds 1, up to the max of an int.
void increase(int &counter)
{
    if (counter < std::numeric_limits<int>::max())
        ++counter;
}

} // namespace

TVpLookup::TVpLookup()
    : id(emptyText())
    , label(emptyText())
    , errorText(emptyText())
    , text1(emptyText())
    , text2(emptyText())
    , fileName(emptyText())
{
}

TVpLookup::TVpLookup(const TVpLookup &other) = default;
TVpLookup &TVpLookup::operator=(const TVpLookup &other) = default;

TVpLookup::TVpLookup(TVpLookup && /*other*/)
    : errorCode(0)
    , flag1(false)
{
}

TVpLookup::~TVpLookup() = default;

QString TVpLookup::getId() const
{
    return id;
}

void TVpLookup::setId(const QString &newId)
{
    id = newId;
}

QString TVpLookup::getLabel() const
{
    return label;
}

void TVpLookup::setLabel(const QString &newLabel)
{
    label = newLabel;
}

QString TVpLookup::getFfileName() const
{
    return fileName;
}

void TVpLookup::setFfileName(const QString &newFileName)
{
    fileName = newFileName;
}

int TVpLookup::getSeparator() const
{
    return separator;
}

void TVpLookup::setSeparator(int newSeparator)
{
    separator = newSeparator;
}

int TVpLookup::getMaxMessages() const
{
    return maxMessages;
}

void TVpLookup::setMaxMessages(int limit)
{
    maxMessages = limit;
}

QString TVpLookup::getReadProblem() const
{
    return readFailed ? errorText : QString();
}

void TVpLookup::setProgressListener(ProgressListener listener)
{
    progressListener = std::move(listener);
}

void TVpLookup::updateFileName(QString name)
{
    if (name.isEmpty() && !fileName.isEmpty()) {
        fileAccepted = true;
    } else if (UtilFiles::FileExists(name)) {
        fileName = name;
        fileAccepted = true;
    }
}

void TVpLookup::consistencyCheck(econsistencyCheck mode, std::map<QString, int *> &frequencies, QStringList *errors)
{
    consistency = mode;
    importAVL(frequencies, errors); // the result is dropped
}

bool TVpLookup::isCounting() const
{
    return consistency == ccFrequencies || consistency == ccBoth;
}

bool TVpLookup::isReporting() const
{
    return consistency == ccErrors || consistency == ccBoth;
}

QString TVpLookup::separatorText() const
{
    return QString(separatorCharacter(separator));
}

bool TVpLookup::openLookup()
{
    if (!UtilFiles::FileExists(fileName))
        return false;
    fileSize = QFileInfo(fileName).size();
    currentSize = 0;
    readFailed = false;
    return true;
}

bool TVpLookup::readLookup()
{
    currentLine = emptyText();
    QFile file(fileName);
    if (file.open(QIODevice::ReadOnly)) {
        LocaleTextStream stream(&file);
        QString line;
        while (stream.readLineInto(&line))
            currentLine += line;
    }
    if (readFailed)
        return false;
    currentSize = currentLine.size();
    increase(lineNumber);
    return true;
}

// One check of an open file, with the results so far and the steps for each line.
class TVpLookup::Import
{
public:
    Import(TVpLookup &checkedLookup, QFile &openFile, std::map<QString, int *> &callersFrequencies,
           QStringList *callersErrors)
        : target(checkedLookup)
        , file(openFile)
        , stream(&openFile)
        , frequencies(callersFrequencies)
        , errors(callersErrors)
    {
        stream.setAutoDetectUnicode(true);
    }

    /// Makes the next line the current one. Returns false after the last line, and if reading fails.
    bool readLine()
    {
        if (stream.atEnd())
            return false;
        const qint64 position = file.pos();
        const bool hasLine = stream.readLineInto(&target.currentLine);
        if (file.error() != QFileDevice::NoError)
            return false;                         // the current line is incomplete
        if (!hasLine && file.pos() == position) { // not at the end, and no text: the file has become shorter
            if (target.report)
                target.report->add(NoteKind::readingEnded, QString(), target.lineNumber);
            return false;
        }
        target.currentSize = target.currentLine.size();
        increase(target.lineNumber);
        return true;
    }

    void splitLine()
    {
        target.splitKeyValueAVL(errors);
        if (target.report && target.currentLine.contains(QChar(QChar::ReplacementCharacter)))
            target.report->add(NoteKind::unreadableLetters, target.currentLine, target.lineNumber);
    }

    void checkKeySize()
    {
        if (!target.isReporting())
            return;
        const int size = target.key.size();
        if (firstKeySize == 0) { // an empty first key sets no size
            firstKeySize = size;
        } else if (size != firstKeySize) {
            const QString format = QStringLiteral("Key [%1] has a different key size [%2] from the first record [%3]");
            target.issueErrorMessage(errors,
                                     formatMessage(QStringLiteral("VpLookup.importAVL.wrongKeySize"), format,
                                                   target.key, QString::number(size), QString::number(firstKeySize)));
        }
    }

    /// Keeps the first value of a key. Further values of the key are not counted in the frequencies.
    void enterKey()
    {
        if (!entries.add(target.key, values.text(target.value)))
            reportDuplicate();
        else if (target.isCounting())
            frequencies.count(target.key, target.value);
    }

    void reportProgress() const
    {
        if (target.progressListener && target.lineNumber % linesOfProgress == 0)
            target.progressListener(file.pos(), target.fileSize);
    }

    void moveEntriesTo(std::map<QString, QString> &map) { entries.moveTo(map); }

private:
    void reportDuplicate()
    {
        // A line that repeats the line before has its own note.
        if (target.report && hasKey(target.separatorPosition()))
            target.report->add(NoteKind::duplicateKey, target.currentLine, target.lineNumber);
        if (target.isReporting())
            target.issueErrorMessage(errors,
                                     formatMessage(QStringLiteral("VpLookup.importAVL.duplicateKey"),
                                                   QStringLiteral("Key [%1] already exists"), target.key));
    }

    TVpLookup &target;
    QFile &file;
    LocaleTextStream stream;
    lookup::Entries entries;
    lookup::Frequencies frequencies;
    TextCache values; ///< values are often repeated
    QStringList *errors;
    int firstKeySize = 0;
};

bool TVpLookup::importAVL(std::map<QString, int *> &frequencies, QStringList *errors)
{
    readFailed = false;
    if (!openLookup()) {
        errorText = formatMessage(QStringLiteral("Workspace.LoadDefinition.InputDataFile"),
                                  QStringLiteral("Input data file [%1] was not found"), fileName);
        errorCode = 1;
        if (report)
            report->add(NoteKind::fileNotRead, fileName);
        return false;
    }
    // Key and value keep the texts of the last line of an earlier check.
    entries.clear();
    lineNumber = 0;
    currentLine = emptyText();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        if (report)
            report->add(NoteKind::fileNotRead, fileName);
        return true;
    }
    Import import(*this, file, frequencies, errors);
    while (import.readLine()) {
        import.splitLine();
        import.checkKeySize();
        import.enterKey();
        import.reportProgress();
    }
    if (hasReadFailed(file))
        return false;
    import.moveEntriesTo(entries);
    return true;
}

// Returns whether the system has failed to read the file to its end. Reading a file of size 0 may fail at its first
// byte, which the stream has not requested.
bool TVpLookup::hasReadFailed(QFile &file)
{
    char next = 0;
    file.read(&next, 1);
    const QString problem = readProblemOf(file);
    readFailed = !problem.isEmpty();
    if (!readFailed)
        return false;
    errorText = problem;
    errorCode = 1;
    if (report)
        report->add(NoteKind::readFailed, problem, lineNumber + 1);
    return true;
}

// The position of the first separator in the current line; -1 if there is none.
int TVpLookup::separatorPosition() const
{
    return currentLine.indexOf(separatorCharacter(separator));
}

void TVpLookup::splitKeyValueAVL(QStringList *errors)
{
    const int position = separatorPosition();
    if (hasKey(position)) {
        const QStringView rest = QStringView(currentLine).mid(position + 1);
        key = currentLine.left(position);
        value = separator == spaceSeparator ? withoutLeadingBlanks(rest) : rest.toString();
        return;
    }
    // Key and value keep the texts of the line before.
    if (report)
        report->add(NoteKind::repeatsLineBefore, currentLine, lineNumber);
    if (isReporting()) {
        issueErrorMessage(errors,
                          formatMessage(QStringLiteral("VpLookup.splitKeyValueAVL.noSeparator"),
                                        QStringLiteral("Separator [%1] does not exist"), separatorText()));
    }
}

void TVpLookup::setReadReport(ReadReport *newReport)
{
    report = newReport;
}

void TVpLookup::issueErrorMessage(QStringList *errors, QString message)
{
    increase(errorCount);
    if (errorCount > maxMessages && !tooManyIssued) {
        tooManyIssued = true;
        // Each of the two numbers is passed as the one character with that code, not as digits. This is intended.
        message = formatMessage(QStringLiteral("System.Common.MaxMessages"),
                                QStringLiteral("Too many error messages [%1], only the first [%2] will be shown"),
                                QString(numberCharacter(errorCount)), QString(numberCharacter(maxMessages)));
    }
    if (errors)
        errors->append(QString::number(lineNumber) + Vocabulary::Underscore + message);
}
