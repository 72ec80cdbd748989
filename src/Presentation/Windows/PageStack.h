#pragma once

#include "Presentation/Style/Animation.h"

#include <QAbstractSlider>

#include <vector>

class QScrollArea;

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

    /// Scrolls the page on show, as far as it is higher than the stack.
    void scrollPage(QAbstractSlider::SliderAction action);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void settle();

    std::vector<QScrollArea *> m_pages; ///< each page in what scrolls it
    int m_shown = 0;
    Animation m_slide;
};

} // namespace morvane
