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
    /// The option that the entry passes to the program: at a login nobody waits for it.
    static constexpr QLatin1String option{"--at-login"};

    /// `program` is the absolute path of what to start.
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
