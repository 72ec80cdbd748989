#include "Presentation/Panel/ReadingTime.h"

#include "Platform/Scheduler.h"
#include "Presentation/Overlay/KeyablePanel.h"
#include "Presentation/Panel/ListRow.h"
#include "Presentation/Panel/ListViewport.h"

#include <QEvent>
#include <QScreen>

#include <utility>

namespace morvane {

namespace {

constexpr int looksNeeded = 7;
constexpr Seconds betweenLooks = ReadingTime::length / looksNeeded;

/// What can be seen of a widget, in its own points.
QRect inSight(const QWidget &widget) {
    QRect result = widget.visibleRegion().boundingRect();
    const auto uncover = [&](const QWidget &around, const QRect &uncovered) {
        result &= uncovered.translated(-widget.mapTo(&around, QPoint()));
    };
    for (const QWidget *around = &widget; around != nullptr; around = around->parentWidget()) {
        // Qt's visible region takes no account of masks.
        if (!around->mask().isEmpty()) {
            uncover(*around, around->mask().boundingRect());
        }
        if (const auto *panel = qobject_cast<const KeyablePanel *>(around)) {
            uncover(*panel, panel->visibleRect());
        }
    }
    if (const QScreen *screen = widget.screen()) {
        result &= screen->geometry().translated(-widget.mapToGlobal(QPoint()));
    }
    return result;
}

/// The part in sight that the fade at the edges of a list doesn't darken.
QRect legible(const QWidget &widget) {
    QRect result = inSight(widget);
    for (const QWidget *around = &widget; around != nullptr; around = around->parentWidget()) {
        if (const auto *list = qobject_cast<const ListViewport *>(around)) {
            result &= list->legibleRect().translated(-widget.mapTo(list, QPoint()));
        }
    }
    return result;
}

} // namespace

ReadingTime::ReadingTime(Scheduler &scheduler, QWidget &prompt)
    : QObject(&prompt), m_scheduler(scheduler), m_prompt(prompt) {
    prompt.installEventFilter(this);
}

bool ReadingTime::isOver() {
    if (m_isOver && place() != m_place) {
        waitAnew();
    }
    return m_isOver;
}

void ReadingTime::startAnew() {
    m_seen = {};
    m_hasSeenName = false;
    waitAnew();
}

void ReadingTime::waitAnew() {
    stop();
    if (m_prompt.isVisible()) {
        m_place = place();
        lookLater();
    }
}

void ReadingTime::stop() {
    m_nextLook.cancel();
    m_looks = 0;
    if (std::exchange(m_isOver, false)) {
        emit changed(false);
    }
}

/// Counts looks instead of reading the clock, which may be set. It has to poll, because what
/// uncovers a widget (a clip, a mask, the shape of the window around it) need not notify it.
void ReadingTime::look() {
    const Place now = place();
    m_looks = now == m_place ? m_looks + 1 : 0;
    m_place = now;
    m_seen += legible(m_prompt);
    m_hasSeenName = m_hasSeenName || showsName();
    if (m_looks < looksNeeded) {
        lookLater();
    } else if (m_hasSeenName && QRegion(m_prompt.rect()).subtracted(m_seen).isEmpty()) {
        m_isOver = true;
        emit changed(true);
    }
}

/// Whether it stopped looking before everything was seen. What a fade covered may become legible
/// later, without a change of place.
bool ReadingTime::hasStoppedUnseen() const {
    return !m_isOver && m_looks >= looksNeeded;
}

void ReadingTime::lookLater() {
    m_nextLook = m_scheduler.after(betweenLooks, [this] { look(); });
}

ReadingTime::Place ReadingTime::place() const {
    return {QRect(m_prompt.mapToGlobal(QPoint()), m_prompt.size()), inSight(m_prompt)};
}

bool ReadingTime::showsName() const {
    const auto *row = qobject_cast<const ListRow *>(m_prompt.parentWidget());
    return row == nullptr || legible(row->nameWidget()) == row->nameWidget().rect();
}

/// A widget gets an event when it moves within its parent, not when the parent moves.
void ReadingTime::watchAncestors() {
    for (QWidget *widget = &m_prompt; widget != nullptr; widget = widget->parentWidget()) {
        widget->installEventFilter(this);
    }
}

bool ReadingTime::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::Show:
        if (watched == &m_prompt) {
            watchAncestors();
            startAnew();
        }
        break;
    case QEvent::Hide:
        if (watched == &m_prompt) {
            stop();
        }
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (m_prompt.isVisible() && (place() != m_place || hasStoppedUnseen())) {
            waitAnew();
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace morvane

#include "moc_ReadingTime.cpp"
