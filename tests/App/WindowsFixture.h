#pragma once

#include "App/AppDelegate.h"
#include "App/AppFixture.h"
#include "Presentation/Style/TextLabel.h"

#include <algorithm>

namespace morvane {

/// The program's windows as a person meets them: by what is written on them.
class WindowsFixture : public AppFixture {
protected:
    WindowsFixture() { addFakeScreen(platform); }

    /// Otherwise the next test would find the last closed window by its title.
    ~WindowsFixture() override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void open(const char *title) {
        const bool isNewcomer = !settings.hasCompletedFirstRun();
        delegate.applicationDidFinishLaunching();
        if (!isNewcomer) {
            delegate.applicationShouldHandleReopen();
        }
        window = windowTitled(title);
        ASSERT_NE(window, nullptr);
    }

    QPushButton *button(const char *text) { return shownControl<QPushButton>(*window, text); }

    bool reads(const QString &part) {
        return std::ranges::any_of(
            window->findChildren<TextLabel *>(), [&](const TextLabel *label) {
                return label->isVisibleTo(window) && label->text().contains(part);
            });
    }

    /// Makes the window active again, as when a person returns from another one.
    void comeBack() { send(*window, QEvent(QEvent::WindowActivate)); }

    /// What Tab goes through, by name.
    QStringList tabOrder() const {
        QStringList result;
        for (const QWidget *next = window->nextInFocusChain(); next != window;
             next = next->nextInFocusChain()) {
            const auto *button = qobject_cast<const QAbstractButton *>(next);
            if (button != nullptr && button->isVisible() && button->focusPolicy() != Qt::NoFocus) {
                result << (button->accessibleName().isEmpty() ? button->text().remove(u'&')
                                                              : button->accessibleName());
            }
        }
        return result;
    }

    AppDelegate delegate{settings, platform};
    QWidget *window = nullptr;
};

} // namespace morvane
