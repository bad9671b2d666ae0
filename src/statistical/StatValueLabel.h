#ifndef STATISTICAL_STATVALUELABEL_H
#define STATISTICAL_STATVALUELABEL_H

#include <QtGlobal>

#include <cstddef>

/// One value label, held from the parse of the labels to that of the variables. Stays alive with its set.
///
/// An integer of -1, a double of -1.0 and no text together mean that it holds no value, so -1 itself cannot be held.
/// The texts belong to the label, made with `new[]`; a copy of it shares them.
struct TStatValueLabel {
    double doubleValue = -1.0;   ///< the value when it is floating
    qint32 intValue = -1;        ///< the value when it is integer
    char *stringValue = nullptr; ///< the value when it is text: a copy of its own
    size_t stringLength = 0;     ///< in bytes
    char *label = nullptr;       ///< a copy of its own
    size_t labelLength = 0;      ///< in bytes
};

#endif
