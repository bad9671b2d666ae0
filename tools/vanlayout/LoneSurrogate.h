#ifndef VANLAYOUT_LONESURROGATE_H
#define VANLAYOUT_LONESURROGATE_H

#include <QStringView>

/// The index of the next unpaired surrogate at or after \a begin, or the size of the text. UTF-8 cannot represent one;
/// the suffix of an occurrence can be one.
inline int nextLoneSurrogate(QStringView text, int begin)
{
    const int size = int(text.size());
    for (int i = begin; i < size; ++i) {
        if (text[i].isHighSurrogate() && i + 1 < size && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            return i;
    }
    return size;
}

#endif
