#pragma once

#include "EndToEnd/OnScreen.h"

#include <QRect>

#include <optional>

namespace morvane {

/// The real program on a display.
class ProgramOnScreen : public OnScreen {
protected:
    explicit ProgramOnScreen(const WindowManager &manager = WindowManager::openbox)
        : OnScreen(manager) {}

    /// Where the visible object of this role and name is.
    std::optional<QRect> find(const QString &role, const QString &name) const {
        const auto told = start({FIND_ACCESSIBLE, "--extents", role, name})->outputAtEnd();
        if (!told) {
            return std::nullopt;
        }
        const QList<QByteArray> numbers = told->simplified().split(' ');
        return QRect(numbers.value(0).toInt(), numbers.value(1).toInt(), numbers.value(2).toInt(),
                     numbers.value(3).toInt());
    }

    /// Where the capsule or the notch's shell is, closed or open as the panel; empty where there is
    /// none.
    QRect tab() const { return find("filler", "Morvane").value_or(QRect()); }

    std::unique_ptr<ChildProcess> program;
};

} // namespace morvane
