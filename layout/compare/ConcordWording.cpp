#include "compare/ConcordWording_p.h"

namespace vanlayout
{

CodeChange wordingChange(const QString &before, const QString &after)
{
    if (before == after)
        return CodeChange::None;
    if (before.simplified().toCaseFolded() == after.simplified().toCaseFolded())
        return CodeChange::Spelling;
    return before.isEmpty() || after.isEmpty() ? CodeChange::Wording : CodeChange::Meaning;
}

} // namespace vanlayout
