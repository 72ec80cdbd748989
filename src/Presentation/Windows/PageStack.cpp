#include "Presentation/Windows/PageStack.h"

#include "Presentation/Windows/KeepFocusInSight.h"

#include <QScrollArea>
#include <QScrollBar>

namespace morvane {

namespace {

constexpr Seconds slideTime(0.28);

} // namespace

PageStack::PageStack(Scheduler &scheduler, QWidget *parent) : QWidget(parent), m_slide(scheduler) {
    keepFocusInSight(*this);
}

void PageStack::add(QWidget *page) {
    auto *view = new QScrollArea(this);
    view->setFrameShape(QFrame::NoFrame);
    view->setFocusPolicy(Qt::NoFocus);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setWidgetResizable(true);
    view->setWidget(page);
    view->viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
    m_pages.push_back(view);
    view->setVisible(m_pages.size() == 1);
}

void PageStack::show(int index, Motion motion) {
    if (index == m_shown) {
        return;
    }
    settle();
    QWidget *left = m_pages[static_cast<std::size_t>(m_shown)];
    QWidget *shown = m_pages[static_cast<std::size_t>(index)];
    const int direction = index > m_shown ? 1 : -1;
    m_shown = index;
    if (motion == Motion::atOnce) {
        settle();
        return;
    }
    // The page that slides out must not take keys any more.
    left->setEnabled(false);
    shown->setGeometry(rect().translated(direction * width(), 0));
    shown->show();
    const auto slide = [this, left, shown, direction](double share) {
        const int moved = qRound(Animation::easeOut(share) * width());
        left->move(-direction * moved, 0);
        shown->move(direction * (width() - moved), 0);
    };
    m_slide.start(slideTime, slide, [this] { settle(); });
}

void PageStack::scrollPage(QAbstractSlider::SliderAction action) {
    m_pages[static_cast<std::size_t>(m_shown)]->verticalScrollBar()->triggerAction(action);
}

void PageStack::settle() {
    m_slide.stop();
    for (std::size_t index = 0; index < m_pages.size(); ++index) {
        QWidget *page = m_pages[index];
        page->setEnabled(true);
        page->setGeometry(rect());
        page->setVisible(index == static_cast<std::size_t>(m_shown));
    }
}

void PageStack::resizeEvent(QResizeEvent *) {
    settle();
}

} // namespace morvane

#include "moc_PageStack.cpp"
