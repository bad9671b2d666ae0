#ifndef LAYOUT_READ_CSPROTEXTREADER_P_H
#define LAYOUT_READ_CSPROTEXTREADER_P_H

#include "read/CSProTextLines_p.h"
#include "read/CSProTextValues_p.h"
#include "read/Diagnostics_p.h"
#include "read/ElementLines.h"
#include "read/MadeOnce_p.h"

#include <vector>

namespace vanlayout
{

/// Reads a CSPro dictionary in text form, statement by statement.
///
/// Each kind of section has a row in the table `sections()`: its name, its keys, and the steps at its beginning and
/// end. The statements of one value are a separate section, which each key `Value` begins. An element is added to the
/// layout at the beginning of its section. Its problems and extra entries are assigned their path at the end of the
/// section, because the name may come late.
///
/// A key that is not in the table of its section is kept in `Layout::extras`. So is a section that is unknown or
/// misplaced: it has one entry for its line, with the key `[Foo]`, and one for each of its keys.
class CSProTextReader
{
public:
    /// \a linesOfElements receives the lines of the elements unless it is null.
    CSProTextReader(Layout &target, Diagnostics &targetDiagnostics, ElementLines *linesOfElements = nullptr);

    void read(const QByteArray &bytes);

private:
    /// Selects the one of several equal keys in a section that is used; in a list all of them are used.
    enum class Counts { First, Last, All };

    struct Key {
        std::string_view name;
        Counts counts;
        void (*read)(CSProTextReader &reader, const Statement &statement);
    };
    using Keys = std::vector<Key>;

    struct Section {
        std::string_view name;
        const Keys &keys;
        bool (CSProTextReader::*begin)(); ///< false if the section is not allowed here
        void (CSProTextReader::*end)();
        QString (CSProTextReader::*path)() const; ///< path of the element of the section
    };

    /// The common members of named elements.
    struct Named {
        QString *name = nullptr;
        Labels *labels = nullptr;
        QString *note = nullptr;
        QStringList *aliases = nullptr;
        QVector<OccurrenceLabel> *occurrenceLabels = nullptr;
    };

    static const Keys &dictionaryKeys();
    static const Keys &noKeys();
    static const Keys &levelKeys();
    static const Keys &recordKeys();
    static const Keys &itemKeys();
    static const Keys &valueSetKeys();
    static const Keys &valueKeys();
    static const Keys &relationKeys();
    static const std::vector<Section> &sections();
    static const Section &valueSection();
    static const Section *findSection(std::string_view name);

    void readStatement(const Statement &statement);
    void finish();

    // Sections
    void beginSection(const Statement &statement);
    void enter(const Section *next, int line);
    void leave();
    void leaveSection();
    void keepSection(const Statement &statement, const Section *known);
    void keepTextAfterSection(const Statement &statement);
    void nameFindings(int problem, int extra);
    template <typename Element> void setNamed(Element &element);
    void requireLevel();
    bool beginNoEdit();
    bool beginDictionary();
    bool beginLanguages();
    bool beginLevel();
    bool beginIdItems();
    bool beginRecord();
    bool beginItem();
    bool beginValueSet();
    bool beginRelation();
    void endNothing();
    void endDictionary();
    void endLanguages();
    void endLevel();
    void endRecord();
    void endItem();
    void endValueSet();
    void endValue();
    void endRelation();
    QString pathOfFile() const;
    QString pathOfLevel() const;
    QString pathOfIds() const;
    QString pathOfRecord() const;
    QString pathOfItem() const;
    QString pathOfValueSet() const;
    QString pathOfValue() const;
    QString pathOfRelation() const;

    // Lines of the elements, if they are wanted
    void noteLevelLine();
    void noteRecordLine();
    void noteItemLine();
    void noteValueSetLine();
    void noteValueLine();
    ElementLines::Element &itemLines() const;

    // Keys
    void readKey(const Statement &statement);
    void readKnownKey(const Key &key, const Statement &statement);
    void readLanguage(const Statement &statement);
    void keepUnknownKey(const Statement &statement);
    void keepBadOccurrence(const Statement &statement);
    void keep(const QString &key, const Statement &statement);
    void keepRepeated(const Statement &statement);
    int numberIn(const Statement &statement);
    bool yesOrNoIn(const Statement &statement);
    Labels labelsIn(std::string_view text, int line);
    void checkPartCount(int parts, int line);
    static QString textIn(const Statement &statement);
    static void readName(CSProTextReader &reader, const Statement &statement);
    static void readLabel(CSProTextReader &reader, const Statement &statement);
    static void readAlias(CSProTextReader &reader, const Statement &statement);
    static void readNote(CSProTextReader &reader, const Statement &statement);
    static void readOccurrenceLabel(CSProTextReader &reader, const Statement &statement);
    void readVersion(const Statement &statement);
    void readPositions(const Statement &statement);
    RecordTypeColumns &recordTypeColumns();
    void readItemType(const Statement &statement);
    void readDataType(const Statement &statement);
    void readCaptureType(const Statement &statement);
    void readCaptureDateFormat(const Statement &statement);
    void readValue(const Statement &statement);
    void readSpecial(const Statement &statement);
    void readRelationLabel(const Statement &statement);
    void readPrimaryLink(const Statement &statement);
    void readSecondary(const Statement &statement);
    void readSecondaryLink(const Statement &statement);
    void readLinkItem(const Statement &statement, QString RelationLink::*member, bool &isRead);
    void openLink();

    // Checks
    void require(bool isThere, const char *id, const QString &message);
    void finishNote();
    void checkOccurrenceLabels(int occurrences);
    void finishCapture();
    void finishSubitem();
    void nameLanguages();
    void checkLevels();
    void warn(const char *id, const QString &message, int line);
    void inform(const char *id, const QString &message, int line);

    Layout &layout;
    Diagnostics &diagnostics;
    ElementLines *elementLines;

    const Section *section = nullptr; ///< the open section; null within one that is kept in the extras
    int sectionLine = 0;
    std::vector<Statement> stated; ///< for each key of the section the statement that counts; its line is 0 for none
    int firstProblem = 0;          ///< index of the first problem of the section in the list of the layout
    int firstExtra = 0;            ///< index of its first extra

    QString firstSection; ///< name of the first section, for a message
    int firstSectionLine = 0;
    bool hasDictionary = false;
    std::vector<Statement> dictionaryStatements; ///< as `stated`, for a [Dictionary] that is continued
    bool areLanguagesRead = false;
    int dictionaryLabelLine = 0;
    std::vector<int> levelLines;

    // The open elements. Each is in the layout, in a list that does not grow while the element is open.
    Named named;
    Level *level = nullptr;
    Record *record = nullptr;
    QVector<Item> *items = nullptr; ///< list of the next item: the ids of the level, or the items of the record
    QString holder;                 ///< name of the last of these items that is not a subitem
    bool hasHolder = false;
    Item *item = nullptr;
    Statement dateFormat; ///< date format that counts in the open item; its line is 0 for none
    int itemLevel = 0;    ///< index of the level of the open item
    int itemRecord = 0;   ///< index of its record there; -1 for the ids
    ValueSet *set = nullptr;
    std::vector<Value> values; ///< values of the open set
    bool areCodesNumbers = true;
    std::vector<int> occurrenceLines; ///< lines of the occurrence labels of the open element
    Relation *relation = nullptr;
    bool hasPrimaryLink = false; ///< whether the last link of the relation has it
    bool hasSecondary = false;
    bool hasSecondaryLink = false;

    MadeOnce<csprotext::Codes> codes;
    MadeOnce<Labels> labels;
};

} // namespace vanlayout

#endif
