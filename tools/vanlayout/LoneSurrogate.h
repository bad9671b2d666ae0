#ifndef VANLAYOUT_LONESURROGATE_H
#define VANLAYOUT_LONESURROGATE_H

#include <QStringView>

/// Where the next half of a surrogate pair without its other half stands, from \a begin on, or the size of the text.
/// UTF-8 cannot hold such a half; the suffix of an occurrence can be one.
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
