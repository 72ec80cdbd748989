#pragma once

#include <QPainterPath>
#include <QWidget>

namespace morvane {

class FadingContent;

/// Fades the content below it. Everything in the notch is on black, so a translucent black on top
/// has the same effect as an opacity, without rendering the content separately. Clicks go through
/// it.
class NotchVeil : public QWidget {
    Q_OBJECT

public:
    /// The contents are siblings of the veil, and outlive it.
    NotchVeil(QList<const FadingContent *> contents, QWidget *parent);

    /// The shell's outline, in the parent's points; the veil paints nothing outside it.
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
