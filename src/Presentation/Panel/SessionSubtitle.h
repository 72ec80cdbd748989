#pragma once

#include <QCoreApplication>
#include <QString>

namespace morvane {

struct Session;

/// The second line of a row: what the session is doing, and on what. A plain value.
struct SessionSubtitle {
    Q_DECLARE_TR_FUNCTIONS(SessionSubtitle)

public:
    QString status;
    QString detail; ///< empty when there is no more to say

    static SessionSubtitle of(const Session &session);

    /// Status and detail in one line.
    QString text() const;
};

} // namespace morvane
