#pragma once

#include <QCoreApplication>
#include <QString>

namespace morvane {

/// What is called otherwise on a Linux desktop than where the texts were first written.
struct PlatformWords {
    Q_DECLARE_TR_FUNCTIONS(PlatformWords)

public:
    /// The keys of one of the digit shortcuts: "⌘1" elsewhere.
    static QString digitShortcut(int digit);
};

} // namespace morvane
