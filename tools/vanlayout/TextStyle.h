#ifndef VANLAYOUT_TEXTSTYLE_H
#define VANLAYOUT_TEXTSTYLE_H

#include "model/Layout.h"
#include "write/CSProText.h"

/// The bytes of the source that have no meaning in a text dictionary, which are kept if it is written as text again.
/// A source that is not in UTF-8 gets the byte-order mark if it is written in UTF-8.
vanlayout::CSProTextStyle styleOf(const vanlayout::Layout &layout);

#endif
