#pragma once

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QStringList>
#include <QWidget>

namespace morvane {

/// The window with this title; null if there is none.
inline QWidget *windowTitled(const QString &title) {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle() == title) {
            return widget;
        }
    }
    return nullptr;
}

/// The visible control in a window with this name for a screen reader; null if there is none.
template <typename Control>
Control *shownControl(const QWidget &window, const QString &name) {
    for (Control *control : window.findChildren<Control *>()) {
        const QString own = control->accessibleName();
        const bool isIt = (own.isEmpty() ? control->text().remove(u'&') : own) == name;
        if (isIt && control->isVisibleTo(&window)) {
            return control;
        }
    }
    return nullptr;
}

/// Finds what a screen reader or the keyboard would lack in the visible part of a window.
class AccessibleControls {
public:
    explicit AccessibleControls(QWidget &window) : m_window(window) {
        QAccessible::setActive(true);
        visit(QAccessible::queryAccessibleInterface(&window));
        findMnemonics();
        QAccessible::setActive(false);
    }

    /// Controls without a name or a role, and mnemonics that lead to no control or to two.
    const QStringList &faults() const { return m_faults; }

    /// How many controls there are.
    int count() const { return m_count; }

private:
    void visit(QAccessibleInterface *interface) {
        if (interface == nullptr || interface->state().invisible) {
            return;
        }
        const QAccessible::Role role = interface->role();
        const bool isWindow = interface->object() == &m_window;
        if (interface->state().focusable && !isWindow) {
            ++m_count;
            if (interface->text(QAccessible::Name).isEmpty() || role == QAccessible::NoRole ||
                role == QAccessible::Client) {
                m_faults << interface->object()->metaObject()->className();
            }
        }
        for (int index = 0; index < interface->childCount(); ++index) {
            visit(interface->child(index));
        }
    }

    void findMnemonics() {
        QStringList letters;
        for (const QWidget *widget : m_window.findChildren<QWidget *>()) {
            // A label class that paints its text itself shows an ampersand literally.
            const bool isLabel = widget->metaObject() == &QLabel::staticMetaObject;
            const auto *label = isLabel ? static_cast<const QLabel *>(widget) : nullptr;
            const QKeySequence key = QKeySequence::mnemonic(widget->property("text").toString());
            const bool isShown = widget->isVisibleTo(&m_window);
            if (key.isEmpty() || !isShown || (!isLabel && !widget->inherits("QAbstractButton"))) {
                continue;
            }
            const QString letter = key.toString();
            if ((label != nullptr && label->buddy() == nullptr) || letters.contains(letter)) {
                m_faults << letter;
            }
            letters << letter;
        }
    }

    QWidget &m_window;
    QStringList m_faults;
    int m_count = 0;
};

} // namespace morvane
