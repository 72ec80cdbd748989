#pragma once

#include "Platform/LoginItem.h"

#include <QCoreApplication>
#include <QLatin1String>

namespace morvane {

/// The login item as an entry in the person's XDG autostart folder, where desktops look for what
/// to start, and where their own settings switch entries off.
class AutostartEntry : public LoginItem {
    Q_DECLARE_TR_FUNCTIONS(AutostartEntry)

public:
    /// What the entry says to the program, which has nobody waiting for it at a login.
    static constexpr QLatin1String option{"--at-login"};

    /// The program is what is to be started: an absolute path.
    explicit AutostartEntry(QString program);

    bool isEnabled() const override;
    Result<void> registerItem() override;
    Result<void> unregisterItem() override;

private:
    bool startsUs() const;

    QString m_program;
    QString m_path;
};

} // namespace morvane
