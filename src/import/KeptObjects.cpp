#include "import/KeptObjects_p.h"

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

    // Removes duplicates: a reopened file may add a field again.
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

    // Moves everything to the end of another shelf. This needs no memory if the other shelf is empty: objects may have
    // to be freed because no memory is left.
    void moveTo(Shelf &other)
    {
        if (other.fields.empty() && other.others.empty()) {
            std::swap(*this, other);
            return;
        }
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
    if (this == &other)
        return *this;
    const auto former = std::exchange(shelves, other.shelves);
    // Shelves that nobody else reaches are merged into one, so that their number stays small after many assignments.
    std::shared_ptr<Shelf> own;
    for (auto shelf = former.crbegin(); shelf != former.crend(); ++shelf) {
        if (shelf->use_count() > 1)
            continue;
        if (own)
            (*shelf)->moveTo(*own);
        else
            own = *shelf;
    }
    if (own)
        shelves.push_back(std::move(own));
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

void KeptObjects::freeAll()
{
    // The shelves are emptied before any object is freed, since its destructor may call this again. A field may be on
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
