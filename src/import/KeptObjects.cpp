#include "import/KeptObjects.h"

#include "import/GenericField.h"

#include <QtAlgorithms>

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

struct Entry {
    const void *address;
    std::function<void()> free;
};

} // namespace

struct KeptObjects::Shelf {
    std::vector<TGenericField *> fields;
    std::vector<Entry> others;

    // Fields that were added several times, as those of a file that is opened again may be, stand once from here on.
    void dropRepeatedFields()
    {
        std::sort(fields.begin(), fields.end());
        fields.erase(std::unique(fields.begin(), fields.end()), fields.end());
    }

    void addField(TGenericField *field)
    {
        if (fields.size() == fields.capacity()) {
            dropRepeatedFields();
            fields.reserve(std::max<size_t>(16, fields.size() * 2));
        }
        fields.push_back(field);
    }

    // Puts everything on top of another shelf.
    void moveTo(Shelf &other)
    {
        other.fields.insert(other.fields.end(), fields.cbegin(), fields.cend());
        std::move(others.begin(), others.end(), std::back_inserter(other.others));
        fields = {};
        others = {};
    }
};

KeptObjects::KeptObjects()
    : shelves{ std::make_shared<Shelf>() }
{
}

KeptObjects::KeptObjects(const KeptObjects &other) = default;
KeptObjects::~KeptObjects() = default;

KeptObjects &KeptObjects::operator=(const KeptObjects &other)
{
    const auto former = shelves;
    shelves = other.shelves;
    for (const auto &shelf : former) {
        if (std::find(shelves.cbegin(), shelves.cend(), shelf) == shelves.cend())
            shelves.push_back(shelf);
    }
    return *this;
}

void KeptObjects::addField(TGenericField *field)
{
    shelves.front()->addField(field);
}

void KeptObjects::add(const void *address, std::function<void()> free)
{
    shelves.front()->others.push_back({ address, std::move(free) });
}

void KeptObjects::forget(const void *address)
{
    for (const auto &shelf : shelves) {
        auto &entries = shelf->others;
        const auto isWanted = [address](const Entry &entry) { return entry.address == address; };
        const auto found = std::find_if(entries.rbegin(), entries.rend(), isWanted);
        if (found != entries.rend()) {
            entries.erase(std::next(found).base());
            return;
        }
    }
}

void KeptObjects::giveBack()
{
    // Nothing is left on a shelf while objects go: they may ask their makers to give back, too. A field may stand on
    // several shelves.
    Shelf going;
    for (auto shelf = shelves.crbegin(); shelf != shelves.crend(); ++shelf)
        (*shelf)->moveTo(going);
    shelves.resize(1);
    going.dropRepeatedFields();
    qDeleteAll(going.fields);
    for (auto entry = going.others.crbegin(); entry != going.others.crend(); ++entry)
        entry->free();
}
