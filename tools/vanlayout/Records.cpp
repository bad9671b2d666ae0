#include "Records.h"

#include "import/SourceField.h"

#include <algorithm>
#include <vector>

namespace
{

int sizeOfCommonBeginning(const QString &one, const QString &other)
{
    return int(std::mismatch(one.cbegin(), one.cend(), other.cbegin(), other.cend()).first - one.cbegin());
}

/// The groups of a list of variables, in an order in which the groups that a text begins with are found at once.
class GroupNames
{
public:
    explicit GroupNames(const QList<TVpSourceField *> &fields)
    {
        for (const TVpSourceField *field : fields) {
            if (names.empty() || names.back() != field->group)
                names.push_back(field->group);
        }
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        linkBeginnings();
    }

    /// The size of the longest group with a "=" behind it that the text begins with; -1 if there is none.
    int sizeInFrontOfSign(const QString &text) const
    {
        int name = int(std::upper_bound(names.cbegin(), names.cend(), text) - names.cbegin()) - 1;
        if (name < 0)
            return -1;
        const int common = sizeOfCommonBeginning(names[size_t(name)], text);
        for (; name >= 0; name = beginnings[size_t(name)]) {
            const int size = names[size_t(name)].size();
            if (size <= common && size < text.size() && text.at(size) == QLatin1Char('='))
                return size;
        }
        return -1;
    }

private:
    // The groups that a group begins with are before it in the order, the longest one last.
    void linkBeginnings()
    {
        beginnings.reserve(names.size());
        for (const QString &name : names) {
            int beginning = int(beginnings.size()) - 1;
            while (beginning >= 0 && !name.startsWith(names[size_t(beginning)]))
                beginning = beginnings[size_t(beginning)];
            beginnings.push_back(beginning);
        }
    }

    std::vector<QString> names;
    std::vector<int> beginnings; ///< of each name the longest other one that it begins with, or -1
};

// Where the name ends: at a "=", or behind all where there is none.
int endOfName(const QString &record, const GroupNames &groups)
{
    const int end = groups.sizeInFrontOfSign(record);
    if (end >= 0)
        return end;
    const int last = record.lastIndexOf(QLatin1Char('='));
    return last < 0 ? record.size() : last;
}

} // namespace

QVector<RecordType> recordTypesOf(const Layout &layout)
{
    const GroupNames groups(*layout.provider.getFields());
    QVector<RecordType> types;
    const int count = layout.importer->getGroupCount();
    for (int i = 0; i < count; ++i) {
        const QString record = layout.importer->getGroupName(i);
        const int end = endOfName(record, groups);
        types.append({ record.left(end), record.mid(end + 1) });
    }
    return types;
}
