#include "Presentation/Panel/RowList.h"

#include "Presentation/Panel/ListRow.h"
#include "Presentation/Panel/ReadingTime.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Presentation/Style/FocusRing.h"

#include <QAbstractButton>
#include <QCursor>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHash>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace morvane {

namespace {

constexpr int spacing = 2;
constexpr int firstGuess = 56;
constexpr int entryOffset = -6;
constexpr int exitOffset = -3;

int between(int from, int to, double share) {
    return from + static_cast<int>(std::lround((to - from) * share));
}

QPixmap pictureOf(QWidget &widget) {
    QPixmap picture(widget.size() * widget.devicePixelRatio());
    picture.setDevicePixelRatio(widget.devicePixelRatio());
    picture.fill(Qt::transparent);
    widget.render(&picture, {}, {}, QWidget::DrawChildren);
    return picture;
}

} // namespace

RowList::RowList(Scheduler &scheduler, QWidget *parent)
    : QWidget(parent), m_scheduler(scheduler), m_movement(scheduler), m_usualHeight(firstGuess) {
    QAccessible::installActivationObserver(this);
}

RowList::~RowList() {
    QAccessible::removeActivationObserver(this);
}

void RowList::accessibilityActiveChanged(bool active) {
    m_isScreenReaderActive = active;
    if (active && isVisible()) {
        emit heightsChanged();
    }
}

void RowList::setEntries(const QList<Entry> &entries, std::optional<Seconds> duration) {
    if (duration) {
        for (Slot &slot : m_slots) {
            slot.startTop = slot.widget != nullptr ? slot.widget->y() : slot.top;
            slot.startHeight = slot.height;
        }
        finish();
    }
    takeOver(entries, duration.has_value());
    if (duration) {
        start(*duration);
    }
}

void RowList::takeOver(const QList<Entry> &entries, bool moves) {
    const QList<Slot> gone = std::exchange(m_slots, {});
    QHash<QString, Slot> before;
    for (const Slot &slot : gone) {
        before.insert(slot.entry.key, slot);
    }
    m_slots.reserve(entries.size());
    for (const Entry &entry : entries) {
        const auto known = before.constFind(entry.key);
        Slot slot;
        if (known != before.cend()) {
            slot = *known;
            before.erase(known);
        } else {
            slot.isEntering = moves;
        }
        slot.entry = entry;
        if (slot.widget != nullptr) {
            slot.widget = entry.fill(slot.widget);
            slot.isMeasured = false;
        }
        m_slots.append(slot);
    }
    for (qsizetype index = 0; index < gone.size(); ++index) {
        if (before.contains(gone[index].entry.key)) {
            letGo(gone, index, moves);
        }
    }
}

/// A row with a text in it stays where it was.
void RowList::letGo(const QList<Slot> &before, qsizetype place, bool moves) {
    Slot slot = before[place];
    if (holdsText(slot)) {
        static_cast<ListRow *>(slot.widget)->outliveEntry();
        slot.isMeasured = false;
        m_slots.insert(std::min(place, m_slots.size()), slot);
        return;
    }
    if (slot.widget != nullptr && containsFocus(*slot.widget)) {
        passFocusOn(before, place);
    }
    dismiss(slot, moves);
}

/// Passes the focus to the next row that stays, else to the nearest one before it, else to a new
/// one. Qt would pass it to an arbitrary button.
void RowList::passFocusOn(const QList<Slot> &before, qsizetype place) {
    QList<Slot> heirs = before.sliced(place + 1);
    std::reverse_copy(before.begin(), before.begin() + place, std::back_inserter(heirs));
    heirs.append(m_slots);
    for (const Slot &heir : std::as_const(heirs)) {
        const auto known = std::ranges::find(m_slots, heir.entry.key,
                                             [](const Slot &slot) { return slot.entry.key; });
        if (known == m_slots.end()) {
            continue;
        }
        make(*known);
        if (qobject_cast<ListRow *>(known->widget) != nullptr) {
            known->widget->setFocus(Qt::NoFocusReason);
            return;
        }
    }
}

void RowList::dismiss(const Slot &slot, bool moves) {
    if (slot.widget == nullptr) {
        return;
    }
    if (moves && !slot.widget->visibleRegion().isEmpty()) {
        m_ghosts.append({pictureOf(*slot.widget), slot.widget->pos()});
    }
    slot.widget->hide();
    // What brought the change may be a click in this very row.
    slot.widget->deleteLater();
}

void RowList::start(Seconds duration) {
    m_share = 0;
    m_movement.start(
        duration,
        [this](double share) {
            m_share = Animation::easeOut(share);
            place();
            update();
        },
        [this] { finish(); });
}

void RowList::finish() {
    m_movement.stop();
    m_share = 1;
    if (!m_ghosts.isEmpty()) {
        m_ghosts.clear();
        update();
    }
    for (Slot &slot : m_slots) {
        slot.isEntering = false;
        if (slot.widget != nullptr) {
            slot.widget->setGraphicsEffect(nullptr);
            slot.widget->clearMask();
        }
    }
}

int RowList::layOut(int width, int from, int to) {
    if (width != m_width) {
        m_width = width;
        for (Slot &slot : m_slots) {
            slot.isMeasured = false;
        }
    }
    int top = 0;
    for (Slot &slot : m_slots) {
        if (slot.widget == nullptr) {
            slot.height = m_usualHeight;
            if ((top < to && top + slot.height > from) || m_isScreenReaderActive || m_makesAll) {
                make(slot);
            }
        }
        measure(slot);
        if (!slot.isPlaced) {
            slot.isPlaced = true;
            slot.startTop = top;
            slot.startHeight = slot.height;
        }
        slot.top = top;
        top += slot.height + spacing;
    }
    if (m_isScreenReaderActive) {
        orderForReaders();
    }
    place();
    return std::max(0, top - spacing);
}

void RowList::make(Slot &slot) {
    if (slot.widget == nullptr) {
        slot.widget = slot.entry.fill(nullptr);
        slot.widget->show();
    }
}

void RowList::measure(Slot &slot) {
    if (slot.widget == nullptr || slot.isMeasured) {
        return;
    }
    slot.isMeasured = true;
    activateLayouts(*slot.widget);
    const int tall = slot.widget->heightForWidth(m_width);
    slot.height = tall >= 0 ? tall : slot.widget->sizeHint().height();
    if (qobject_cast<ListRow *>(slot.widget) != nullptr) {
        m_usualHeight = slot.height;
    }
}

void RowList::place() {
    for (Slot &slot : m_slots) {
        if (slot.widget != nullptr) {
            place(slot);
        }
    }
    followPointer();
}

void RowList::place(Slot &slot) const {
    const int start = slot.isEntering ? slot.top + entryOffset : slot.startTop;
    slot.widget->setGeometry(0, between(start, slot.top, m_share), m_width, slot.height);
    if (m_share >= 1) {
        return;
    }
    if (slot.isEntering) {
        if (slot.widget->graphicsEffect() == nullptr) {
            slot.widget->setGraphicsEffect(new QGraphicsOpacityEffect(slot.widget));
        }
        static_cast<QGraphicsOpacityEffect *>(slot.widget->graphicsEffect())->setOpacity(m_share);
    } else if (slot.startHeight < slot.height) {
        // What has been added to a row is uncovered as the rows below make way for it.
        slot.widget->setMask(QRect(0, 0, m_width, between(slot.startHeight, slot.height, m_share)));
    }
}

void RowList::makeAll() {
    if (!std::exchange(m_makesAll, true)) {
        emit heightsChanged();
    }
}

QWidgetList RowList::inOrder() const {
    QWidgetList result;
    for (const Slot &slot : m_slots) {
        if (slot.widget != nullptr) {
            result.append(slot.widget);
        }
    }
    return result;
}

/// Screen readers go through a widget's children in their stacking order.
void RowList::orderForReaders() {
    const QWidgetList wanted = inOrder();
    QWidgetList present;
    for (QWidget *child : findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (!child->isHidden()) {
            present.append(child);
        }
    }
    if (present != wanted) {
        for (QWidget *widget : wanted) {
            widget->raise();
        }
    }
}

std::optional<qsizetype> RowList::anchor(int offset) const {
    std::optional<qsizetype> firstInSight;
    for (qsizetype index = 0; index < m_slots.size(); ++index) {
        const Slot &slot = m_slots[index];
        const auto *row = qobject_cast<ListRow *>(slot.widget);
        if (slot.isPlaced && row != nullptr && row->isEditing()) {
            return index;
        }
        if (slot.isPlaced && !firstInSight && slot.top + slot.height > offset) {
            firstInSight = index;
        }
    }
    return offset > 0 ? firstInSight : std::nullopt;
}

bool RowList::holdsText(const Slot &slot) {
    const auto *row = qobject_cast<ListRow *>(slot.widget);
    return row != nullptr && row->holdsText();
}

bool RowList::holdsText(const QString &key) const {
    return std::ranges::any_of(
        m_slots, [&](const Slot &slot) { return slot.entry.key == key && holdsText(slot); });
}

bool RowList::isInUse() const {
    const auto isEdited = [](const Slot &slot) {
        const auto *row = qobject_cast<ListRow *>(slot.widget);
        return row != nullptr && row->isEditing();
    };
    return std::ranges::any_of(m_slots, isEdited) ||
           std::ranges::any_of(findChildren<QAbstractButton *>(), &QAbstractButton::isDown);
}

void RowList::holdPresses() {
    m_holdsPresses = isVisible();
    if (m_holdsPresses) {
        m_release = m_scheduler.after(ReadingTime::length, [this] { m_holdsPresses = false; });
    }
}

void RowList::shiftStart(int distance) {
    for (Slot &slot : m_slots) {
        slot.startTop += distance;
    }
    for (Ghost &ghost : m_ghosts) {
        ghost.position.ry() += distance;
    }
}

void RowList::abandonEditingOutside(int from, int to) {
    for (const Slot &slot : std::as_const(m_slots)) {
        auto *row = qobject_cast<ListRow *>(slot.widget);
        if (row != nullptr && (slot.top >= to || slot.top + slot.height <= from)) {
            row->abandonEditing();
        }
    }
}

void RowList::followPointer() {
    const std::optional<QPoint> pointer =
        underMouse() ? std::optional(QCursor::pos()) : std::nullopt;
    for (const Slot &slot : std::as_const(m_slots)) {
        if (auto *row = qobject_cast<ListRow *>(slot.widget)) {
            row->followPointer(pointer);
        }
    }
}

bool RowList::event(QEvent *event) {
    if (event->type() == QEvent::LayoutRequest) {
        for (Slot &slot : m_slots) {
            slot.isMeasured = false;
        }
        emit heightsChanged();
        return true;
    }
    return QWidget::event(event);
}

void RowList::leaveEvent(QEvent *event) {
    QWidget::leaveEvent(event);
    followPointer();
}

void RowList::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    m_release.cancel();
    m_holdsPresses = false;
    finish();
    place();
}

void RowList::paintEvent(QPaintEvent *) {
    if (m_ghosts.isEmpty()) {
        return;
    }
    QPainter painter(this);
    painter.setOpacity(1 - m_share);
    for (const Ghost &ghost : std::as_const(m_ghosts)) {
        painter.drawPixmap(ghost.position + QPoint(0, between(0, exitOffset, m_share)),
                           ghost.picture);
    }
}

} // namespace morvane

#include "moc_RowList.cpp"
