#include "Pictures/WindowStage.h"

#include "Presentation/Windows/FormSection.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>

namespace morvane {

namespace {

constexpr QSize settingsSize(600, 660);
constexpr int margin = 14; ///< around a group of the settings

} // namespace

WindowStage::WindowStage() {
    addFakeScreen(m_platform);
    // As most window managers do.
    static_cast<FakeHostWindows &>(*m_platform.hostWindows).letsFocus = true;
}

void WindowStage::installAgents() {
    m_home.write(".claude/settings.json", "{}");
    m_home.write(".codex/config.toml");
    m_home.write(".gemini/settings.json", "{}");
}

void WindowStage::open(const QString &title) {
    m_delegate.applicationDidFinishLaunching();
    if (m_settings.hasCompletedFirstRun() && title == QLatin1String("Morvane Settings")) {
        m_delegate.applicationShouldHandleReopen();
    }
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == title) {
            m_window = widget;
        }
    }
    if (m_window == nullptr) {
        qFatal("there is no window \"%s\"", qPrintable(title));
    }
    m_window->activateWindow();
    pass(Seconds(1));
}

void WindowStage::openSettings() {
    m_settings.setHasCompletedFirstRun(true);
    open(QStringLiteral("Morvane Settings"));
    // Whatever the screen's size is at this scale.
    m_window->resize(settingsSize);
    pass(Seconds(0));
}

void WindowStage::press(const QString &name) {
    control(name)->click();
    pass(Seconds(1));
}

void WindowStage::focus(const QString &name) {
    control(name)->setFocus(Qt::TabFocusReason);
    pass(Seconds(0));
}

void WindowStage::pressKey(Qt::Key key) {
    QTest::keyClick(m_window->focusWidget(), key);
    pass(Seconds(0));
}

QAbstractButton *WindowStage::control(const QString &name) const {
    for (auto *button : m_window->findChildren<QAbstractButton *>()) {
        const bool isCalledSo =
            button->text().remove(u'&') == name || button->accessibleName().startsWith(name);
        if (isCalledSo && button->isVisible()) {
            return button;
        }
    }
    qFatal("there is no control \"%s\"", qPrintable(name));
}

void WindowStage::pass(Seconds length) {
    QCoreApplication::processEvents();
    static_cast<ManualScheduler &>(*m_platform.scheduler).advance(length);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

QImage WindowStage::picture() const {
    return m_window->grab().toImage();
}

QImage WindowStage::alert() const {
    return m_window->findChild<QMessageBox *>()->grab().toImage();
}

QImage WindowStage::section(const QString &heading) const {
    // A change is laid out one level of nesting at a time.
    for (int level = 0; level < 5; ++level) {
        QCoreApplication::processEvents();
    }
    for (FormSection *section : m_window->findChildren<FormSection *>()) {
        if (section->accessibleName() == heading) {
            const QRect frame = section->geometry().adjusted(-margin, -margin, margin, margin);
            return section->parentWidget()->grab(frame).toImage();
        }
    }
    qFatal("there is no section \"%s\"", qPrintable(heading));
}

} // namespace morvane
