#ifndef VANLAYOUT_GRAVITIES_H
#define VANLAYOUT_GRAVITIES_H

#include "import/ReadReport.h"

/// All gravities of notes, the gravest first.
constexpr NoteGravity gravities[] = { NoteGravity::lost, NoteGravity::changed, NoteGravity::curious };

#endif
