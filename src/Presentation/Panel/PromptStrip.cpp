#include "Presentation/Panel/PromptStrip.h"

#include "Core/Ground/BoundedText.h"
#include "Presentation/Panel/Countdown.h"
#include "Presentation/Panel/InputView.h"
#include "Presentation/Panel/ReadingTime.h"
#include "Presentation/Style/FocusRing.h"

#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr qsizetype askedLength = 400; ///< takes half a minute to listen to, with each choice

} // namespace

PromptStrip::PromptStrip(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent), m_column(new QVBoxLayout(this)), m_input(new InputView(this)),
      m_countdown(new Countdown(scheduler, this)), m_choices(new QWidget(this)),
      m_reading(new ReadingTime(scheduler, *this)) {
    m_column->setContentsMargins(0, 8, 0, 2);
    m_column->setSpacing(5);
    m_choices->setEnabled(false);
    connect(m_reading, &ReadingTime::changed, this, [this](bool isOver) {
        // Keeps the focus in this row instead of letting it go on to the next.
        if (!isOver && containsFocus(*m_choices)) {
            parentWidget()->setFocus(Qt::NoFocusReason);
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

/// Screen readers go through a widget's children in their stacking order.
void PromptStrip::add(QWidget &part, Qt::Alignment alignment) {
    part.raise();
    m_column->addWidget(&part, 0, alignment);
}

void PromptStrip::readAnew() {
    m_reading->startAnew();
}

void PromptStrip::setAsked(const QString &asked) {
    const QString beginning = BoundedText::of(asked, askedLength);
    m_asked = beginning == asked ? asked : tr("%1\nThere is more of it.").arg(beginning);
}

void PromptStrip::describe(QWidget &choice, const QString &help) const {
    choice.setAccessibleDescription(help.isEmpty() ? m_asked : m_asked + u'\n' + help);
}

} // namespace morvane

#include "moc_PromptStrip.cpp"
