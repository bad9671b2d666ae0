#ifndef IMPORT_KEPTOBJECTS_P_H
#define IMPORT_KEPTOBJECTS_P_H

#include <functional>
#include <memory>
#include <vector>

class TGenericField;

/// What an importer or a provider has made that outlives it, within reach so that it can be given back.
///
/// Copies share it: whichever of them gives back first gives back all of it, once. An assignment keeps within reach
/// what its target had made before and no copy of the target reaches; one to itself changes nothing. Destroying the
/// last copy gives nothing back: what was made then lasts as long as the process. Everything runs on the caller's
/// thread; nothing is locked.
class KeptObjects
{
public:
    KeptObjects();
    KeptObjects(const KeptObjects &other);
    KeptObjects &operator=(const KeptObjects &other);
    ~KeptObjects();

    /// A field made with `new`, any number of times; this object and its copies alone may keep it.
    void addField(TGenericField *field);
    /// Has giveBack() run \a free, which frees what stands at \a address.
    void add(const void *address, std::function<void()> free);
    /// Takes out of reach what was added under \a address, as its maker frees it now.
    void forget(const void *address);
    /// Frees everything: the fields, then the rest, what was added last first. What is added from then on is kept anew.
    void giveBack();

    /// A new object that is kept.
    template <typename T> T *make()
    {
        auto made = std::make_unique<T>();
        T *object = made.get();
        add(object, [object] { delete object; });
        return made.release();
    }

private:
    struct Shelf;

    std::vector<std::shared_ptr<Shelf>> shelves; ///< new objects go to the first; the others are of former assignments
};

#endif
