#pragma once

#include "Presentation/Style/Animation.h"

#include <QWidget>

#include <vector>

namespace morvane {

/// Pages of which one is shown, and a move to another slides from one to the other.
class PageStack : public QWidget {
    Q_OBJECT

public:
    /// The scheduler must outlive the stack.
    PageStack(Scheduler &scheduler, QWidget *parent);

    /// Takes over a page; the first is shown. One that is higher than the stack is scrolled.
    void add(QWidget *page);

    /// Further pages come from the right.
    void show(int index, Motion motion);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void settle();
    void bringIntoSight(QWidget *focus);

    std::vector<QWidget *> m_pages; ///< each in what scrolls it
    int m_shown = 0;
    Animation m_slide;
};

} // namespace morvane
