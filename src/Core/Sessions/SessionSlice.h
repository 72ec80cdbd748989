#pragma once

#include "Core/Sessions/Session.h"

#include <QList>

namespace morvane {

/// A run of sessions out of a longer list. It shares the list's data, so it is cheap to copy, and
/// doesn't change when the list does.
class SessionSlice {
public:
    SessionSlice() = default;

    /// The sessions of the list from one position up to another.
    SessionSlice(const QList<Session> &list, qsizetype from, qsizetype to)
        : m_list(list), m_from(from), m_to(to) {}

    QList<Session>::const_iterator begin() const { return m_list.cbegin() + m_from; }
    QList<Session>::const_iterator end() const { return m_list.cbegin() + m_to; }
    qsizetype size() const { return m_to - m_from; }
    bool isEmpty() const { return size() == 0; }
    const Session &first() const { return m_list[m_from]; }

private:
    QList<Session> m_list;
    qsizetype m_from = 0;
    qsizetype m_to = 0;
};

} // namespace morvane
