#ifndef STATISTICAL_STATVALUELABEL_H
#define STATISTICAL_STATVALUELABEL_H

#include <QtGlobal>

#include <cstddef>

/// One value label, kept between the parse of the labels and the parse of the variables. It lives as long as its set.
///
/// An integer of -1, a double of -1.0 and a null text together mean that the label has no value, so a value of -1
/// cannot be stored. The texts belong to the label and are made with `new[]`; a copy of the label shares them.
struct TStatValueLabel {
    double doubleValue = -1.0;   ///< the value if it is a floating-point number
    qint32 intValue = -1;        ///< the value if it is an integer
    char *stringValue = nullptr; ///< the value if it is a text; a private copy
    size_t stringLength = 0;     ///< in bytes
    char *label = nullptr;       ///< the label text; a private copy
    size_t labelLength = 0;      ///< in bytes
};

#endif
