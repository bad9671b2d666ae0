#ifndef IMPORT_KEPTOBJECTS_P_H
#define IMPORT_KEPTOBJECTS_P_H

#include <functional>
#include <memory>
#include <vector>

class TGenericField;

/// The objects that an importer or a provider has made and that outlive it. They stay reachable, so that they can be
/// freed on request.
///
/// Copies share the objects: whichever copy frees first frees all of them, once. After an assignment the target still
/// reaches the objects that it had made before, unless a copy of the target reaches them. An assignment of an object to
/// itself changes nothing. Destroying the last copy frees nothing: its objects then last as long as the process. All
/// calls are made on the caller's thread; nothing is locked.
class KeptObjects
{
public:
    KeptObjects();
    KeptObjects(const KeptObjects &other);
    KeptObjects &operator=(const KeptObjects &other);
    ~KeptObjects();

    /// Keeps \a field, which was made with `new`. It may be added any number of times, to this object and its copies
    /// only.
    void addField(TGenericField *field);
    /// Keeps the object at \a address: freeAll() will run \a free, which frees it.
    void add(const void *address, std::function<void()> free);
    /// No longer keeps the object that was added with \a address; its maker frees it.
    void forget(const void *address);
    /// Frees the fields, then all other objects, the last one added first. Objects that are added later are kept again.
    void freeAll();

    /// Makes a new object and keeps it.
    template <typename T> T *make()
    {
        auto made = std::make_unique<T>();
        T *object = made.get();
        add(object, [object] { delete object; });
        return made.release();
    }

private:
    struct Shelf;

    std::vector<std::shared_ptr<Shelf>>
        shelves; ///< new objects go to the first one; the others are from former assignments
};

#endif
