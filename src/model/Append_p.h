#ifndef MODEL_APPEND_P_H
#define MODEL_APPEND_P_H

#include <QList>

/// Appends to a list that a record holds by pointer. A record that was made by a move has no list until then.
template <typename Element> void append(QList<Element> *&list, const Element &element)
{
    if (!list)
        list = new QList<Element>;
    list->append(element);
}

#endif
