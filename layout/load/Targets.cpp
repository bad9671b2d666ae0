#include "Targets_p.h"

#include "SpssProgram_p.h"

namespace vanlayout
{

namespace
{

bool isNeverReserved(const QString & /*name*/)
{
    return false;
}

} // namespace

const QVector<TargetRules> &targetRules()
{
    static const QVector<TargetRules> rules = {
        { LoadTarget::Spss,
          "spss",
          NameCharacters::Plain,
          NameStart::Letter,
          NameCase::Ignored,
          { 64, LengthUnit::Bytes },
          { 255, LengthUnit::Bytes },
          { 120, LengthUnit::Bytes },
          isReservedInSpss,
          isNeverReserved,
          spssProgram,
          false,
          0 },
    };
    return rules;
}

} // namespace vanlayout
