#pragma once

#include "Presentation/Style/Animation.h"

#include <QAbstractSlider>

#include <vector>

class QScrollArea;

namespace morvane {

/// A stack of pages that shows one at a time, and slides from one to another.
class PageStack : public QWidget {
    Q_OBJECT

public:
    /// The scheduler must outlive the stack.
    PageStack(Scheduler &scheduler, QWidget *parent);

    /// Takes ownership of a page; the first is shown. A page that is higher than the stack scrolls.
    void add(QWidget *page);

    /// Slides pages with a higher index in from the right.
    void show(int index, Motion motion);

    /// Scrolls the shown page, if it is higher than the stack.
    void scrollPage(QAbstractSlider::SliderAction action);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void settle();

    std::vector<QScrollArea *> m_pages; ///< one around each page
    int m_shown = 0;
    Animation m_slide;
};

} // namespace morvane
