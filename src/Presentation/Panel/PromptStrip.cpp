#include "Presentation/Panel/PromptStrip.h"

#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/InputView.h"
#include "Presentation/Panel/ReadingTime.h"
#include "Presentation/Style/FocusRing.h"

#include <QVBoxLayout>

namespace morvane {

PromptStrip::PromptStrip(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent), m_column(new QVBoxLayout(this)), m_input(new InputView(this)),
      m_countdown(new Countdown(scheduler, this)), m_choices(new QWidget(this)),
      m_reading(new ReadingTime(scheduler, *this)) {
    m_column->setContentsMargins(0, 8, 0, 2);
    m_column->setSpacing(5);
    m_choices->setEnabled(false);
    connect(m_reading, &ReadingTime::changed, this, [this](bool isOver) {
        // The keys stay in the row, and don't go on to the next.
        if (!isOver && containsFocus(*m_choices)) {
            parentWidget()->setFocus();
        }
        m_choices->setEnabled(isOver);
    });
}

bool PromptStrip::hasBeenRead() const {
    return m_reading->isOver();
}

void PromptStrip::setInputHeightLimit(int limit) {
    m_input->setHeightLimit(limit);
}

void PromptStrip::readAnew() {
    m_reading->startAnew();
}

} // namespace morvane

#include "moc_PromptStrip.cpp"
