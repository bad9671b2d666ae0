#include "Targets_p.h"

namespace vanlayout
{

const QVector<TargetRules> &targetRules()
{
    static const QVector<TargetRules> rules;
    return rules;
}

} // namespace vanlayout
