#pragma once

#include <QPainterPath>
#include <QWidget>

namespace morvane {

class FadingContent;

/// Makes what lies below it faint: everything in the notch stands on black, and so a black that
/// lets something through does the same as an opacity, without painting the content apart. Clicks
/// go through it.
class NotchVeil : public QWidget {
    Q_OBJECT

public:
    /// The contents are siblings of the veil, and outlive it.
    NotchVeil(QList<const FadingContent *> contents, QWidget *parent);

    /// The shell, in the parent's points: outside of it nothing is black.
    void setShell(const QPainterPath &shell);

    /// Follows the contents' opacity.
    void refresh();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QList<const FadingContent *> m_contents;
    QPainterPath m_shell;
};

} // namespace morvane
