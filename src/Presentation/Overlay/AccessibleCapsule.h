#pragma once

#include <QAccessibleWidget>

namespace morvane {

class PanelSurface;

/// The capsule or the notch as a screen reader sees it: as large as it looks, with the menu that is
/// open on it, which would otherwise belong to nothing that can be reached, and with what the
/// pointer does to it as actions. Made and owned
/// by Qt, for as long as the widget lives.
class AccessibleCapsule : public QAccessibleWidget {
public:
    explicit AccessibleCapsule(PanelSurface &surface);

    /// To be known to Qt before the first surface is asked for; once is enough.
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
