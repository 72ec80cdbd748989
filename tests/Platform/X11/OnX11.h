#pragma once

#include "EndToEnd/OnScreen.h"
#include "Platform/Linux/X11/X11Connection.h"

#include <memory>

namespace morvane {

/// This process itself as a program on the display, with an application of this kind.
template <typename Application>
class OnX11 : public OnScreen {
protected:
    explicit OnX11(const WindowManager &manager = WindowManager::openbox) : OnScreen(manager) {}

    void startAll() override { startApplication(); }

    void startApplication() {
        for (const QString &name : display->environment().keys()) {
            qputenv(name.toUtf8(), display->environment().value(name).toUtf8());
        }
        qputenv("QT_QPA_PLATFORM", "xcb");
        application = std::make_unique<Application>(m_count, m_arguments);
        x11 = X11Connection::open();
        ASSERT_TRUE(x11);
    }

private:
    char m_name[6] = "tests";
    char *m_arguments[2] = {m_name, nullptr};
    int m_count = 1;

protected:
    std::unique_ptr<Application> application;
    std::unique_ptr<X11Connection> x11;
};

} // namespace morvane
