#ifndef VANLAYOUT_SEVERITIES_H
#define VANLAYOUT_SEVERITIES_H

#include "import/ReadReport.h"

/// All severities of notes, the most severe first.
constexpr NoteSeverity severities[] = { NoteSeverity::lost, NoteSeverity::changed, NoteSeverity::info };

#endif
