#pragma once

#include <QAccessibleWidget>

namespace morvane {

class PanelSurface;

/// The capsule or the notch as a screen reader sees it: its rectangle is the visible part, an open
/// menu is its child, since nothing else would lead to that, and what the pointer can do is offered
/// as actions. Made and owned by Qt, for as long as the widget lives.
class AccessibleCapsule : public QAccessibleWidget {
public:
    explicit AccessibleCapsule(PanelSurface &surface);

    /// Registers this class with Qt, before the first surface is queried; once is enough.
    static void install();

    QRect rect() const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    PanelSurface &surface() const;
    QAccessibleInterface *menu() const;
};

} // namespace morvane
