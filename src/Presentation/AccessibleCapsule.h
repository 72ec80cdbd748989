#pragma once

#include <QAccessibleWidget>

namespace morvane {

class FloatingCapsuleView;

/// The capsule as a screen reader sees it: with the menu that is open on it, which would otherwise
/// belong to nothing that can be reached. Made and owned by Qt, for as long as the view lives.
class AccessibleCapsule : public QAccessibleWidget {
public:
    explicit AccessibleCapsule(FloatingCapsuleView &view);

    /// To be known to Qt before the first view is asked for; once is enough.
    static void install();

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    QAccessibleInterface *menu() const;
};

} // namespace morvane
