#pragma once

#include "Platform/Displays.h"

#include <memory>
#include <utility>

namespace morvane {

/// The displays of this machine, the primary one presented as built in and notched.
class NotchedDisplays : public Displays {
public:
    NotchedDisplays(std::unique_ptr<Displays> real, const QSize &notch)
        : m_real(std::move(real)), m_notch(notch) {
        connect(m_real.get(), &Displays::changed, this, &Displays::changed);
    }

    QList<Display> displays() const override {
        QList<Display> result = m_real->displays();
        if (!result.isEmpty()) {
            Display &primary = result.first();
            primary.isBuiltin = true;
            primary.topSafeAreaInset = m_notch.height();
            primary.auxiliaryTopLeftArea =
                QSize((primary.frame.width() - m_notch.width()) / 2, m_notch.height());
            primary.auxiliaryTopRightArea = primary.auxiliaryTopLeftArea;
        }
        return result;
    }

    QPoint pointerPosition() const override { return m_real->pointerPosition(); }
    bool isPointerKnown() const override { return m_real->isPointerKnown(); }

private:
    std::unique_ptr<Displays> m_real;
    QSize m_notch;
};

} // namespace morvane
