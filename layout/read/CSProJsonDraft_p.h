#ifndef LAYOUT_READ_CSPROJSONDRAFT_P_H
#define LAYOUT_READ_CSPROJSONDRAFT_P_H

#include "read/CSProJsonFindings_p.h"
#include "read/CSProPositions_p.h"

#include <QStringList>

#include <set>
#include <string_view>
#include <vector>

namespace vanlayout
{

/// The use of a text in the layout.
enum class JsonUse {
    Held,    ///< the layout has a member for it
    Extra,   ///< the layout has no member for it: it is kept in the extras
    Unknown, ///< likewise, and it is not one of the words that the key can have, which is a problem
};

/// The layout while its JSON form is being read. An element is open until its object ends; then it moves into the
/// element that contains it. Rules that depend on several keys of an object are applied at its end, because keys have
/// no order.
class CSProJsonDraft
{
public:
    CSProJsonDraft(Layout &target, CSProJsonFindings &list)
        : layout(target)
        , findings(list)
    {
    }

    void beginLabel();
    void endLabel();
    void endLabels();
    void endLanguages();

    void beginOccurrenceLabel();
    /// False if it states no occurrence.
    bool endOccurrenceLabel();

    void beginPair();
    /// False if it has no code.
    bool endPair();
    void beginValue();
    void endValue();
    void beginValueSet();
    void endValueSet();
    void beginCapture();
    void endCapture();
    void beginItem();
    void endItem();
    void beginIds();
    void endIds();
    void beginRecord();
    void endRecord();
    void beginLevel();
    void endLevel();

    void beginLink();
    void endLink();
    void beginRelation();
    void endRelation();

    void beginLanguage();
    void endLanguage();
    void beginLevels();
    void beginSecurity();
    void beginRecordType();
    void endRecordType();

    JsonUse setCode(const QString &text);
    /// \a ends are the texts of the list; \a isSound is false if it also has other entries. \a json is the JSON of the
    /// list, which must remain valid until the end of the pair.
    void setRange(QStringList ends, bool isSound, std::string_view json);
    JsonUse setSpecial(const QString &text);
    JsonUse setCaptureType(const QString &text);
    JsonUse setDateFormat(const QString &text);
    JsonUse setContentType(const QString &text);
    JsonUse setSoftware(const QString &text);
    JsonUse setFileType(const QString &text);
    JsonUse setVersion(const QString &text);
    void setStart(int start);
    void setSubitemOffset(int offset);
    void setLength(int length);
    void setDecimalMark(bool isWritten);
    void setZeroFill(bool isFilled);
    void setRelativePositions(bool areRelative);

    /// Whether the object has a key that dictionaries have and other JSON files do not.
    bool hasDictionaryKey() const { return hasKeyOfDictionary; }
    /// Text of the key "fileType"; null if it is absent.
    QString fileType() const { return typeOfFile; }
    /// Applies the rules that depend on the whole dictionary: columns, defaults, languages of labels.
    void complete();

    Layout &layout;
    CSProJsonFindings &findings;
    ElementAddress address; ///< of the named element or value that is open

    // open elements
    Level level;
    Record record;
    Item item;
    ValueSet valueSet;
    Value value;
    Relation relation;
    RelationLink link;
    Language language;
    OccurrenceLabel occurrenceLabel;
    Label label;
    Capture capture;

    std::string_view number;   ///< spelling of the number that is being set
    bool isNumberText = false; ///< whether that number is stated as a text

    // The lists to which the entries of open lists are added.
    Labels *labels = nullptr;
    QStringList *aliases = nullptr;
    QVector<OccurrenceLabel> *occurrenceLabels = nullptr;

private:
    // Statements on the open item that `Item` does not hold.
    struct ItemStatements {
        StoredColumns columns;
        QString offset; ///< offset of a subitem in its JSON spelling
        bool hasLength = false;
        bool hasDecimalMark = false;
        bool hasZeroFill = false;
    };
    // The open pair.
    struct Pair {
        QString code;
        bool hasCode = false;
        QStringList rangeEnds;
        std::string_view rangeJson;
        bool hasRange = false;
        bool isRangeSound = false;
    };
    // A language that labels name, with the first element that has such a label.
    struct UsedLanguage {
        QString name;
        ElementAddress address;
    };

    QVector<Item> &openItems();
    void beginItems();
    void endBinaryItem();
    void keepLength();
    void keepSubitemOffset();
    void keepDateFormat();
    void endSubitem();
    void endNumber();
    bool endRange();
    void noteLanguage(const QString &name);
    void warnOfMissingKey(const char *key);
    void checkOccurrenceLabels(const QVector<OccurrenceLabel> &list, int maximum);
    void fillZeroFill();
    void checkColumns();
    void checkColumns(const QVector<Item> &items, const std::vector<StoredColumns> &stated, ElementAddress place);
    void checkOffset(qint64 offset, const StoredColumns &stated, const ElementAddress &place);
    void checkLanguages();

    ItemStatements statements;
    Pair pair;
    QString statedDateFormat;                  ///< date format of the open capture
    QString parent;                            ///< name of the last item of the container that is not a subitem
    bool hasParent = false;                    ///< whether there is such an item
    std::vector<StoredColumns> columnsOfItems; ///< columns of the items of the open container
    std::vector<LevelColumns> columnsOfLevels;
    std::vector<ElementAddress> withoutZeroFill; ///< numeric items to which the default of the dictionary applies
    std::vector<UsedLanguage> usedLanguages;
    std::set<QString> usedLanguageNames; ///< upper case
    QString typeOfFile;
    bool hasKeyOfDictionary = false;
};

} // namespace vanlayout

#endif
