#include "Presentation/Panel/ExpandedView.h"

#include "Core/Ground/TimeFormat.h"
#include "Core/Sessions/SessionStore.h"
#include "Platform/MotionPreference.h"
#include "Platform/Scheduler.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/CompletedRow.h"
#include "Presentation/Panel/FocusOrder.h"
#include "Presentation/Panel/ListViewport.h"
#include "Presentation/Panel/PanelEntries.h"
#include "Presentation/Panel/PencilButton.h"
#include "Presentation/Panel/ReadingTime.h"
#include "Presentation/Panel/SessionRow.h"
#include "Presentation/Panel/UsageBars.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr int panelPadding = 14;
constexpr int footerGap = 12;
constexpr int standardWidth = 520;
constexpr int attentionWidth = 600;
constexpr int smallestListLimit = 120;
constexpr int standardBudget = 480;
constexpr int inputDivisor = 3; ///< divisor of the budget: a taller call is scrolled
constexpr Seconds contentDuration(0.18);
constexpr Seconds attentionDuration(0.14);
constexpr Seconds lookAgain(0.25); ///< while a person types or holds a button down

/// The row around a hidden focus widget; none if that widget is visible, or if the row is gone as
/// well.
ListRow *rowOfHiddenFocus() {
    QWidget *around = QApplication::focusWidget();
    if (around == nullptr || around->isVisible()) {
        return nullptr;
    }
    while (around != nullptr && qobject_cast<ListRow *>(around) == nullptr) {
        around = around->parentWidget();
    }
    return around != nullptr && around->isVisible() ? static_cast<ListRow *>(around) : nullptr;
}

} // namespace

ExpandedView::ExpandedView(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_context(context), m_contentWidthBudget(attentionWidth),
      m_viewport(new ListViewport(m_context.scheduler, this)),
      m_footer(new UsageBars(m_context, this)) {
    setContentHeightBudget(standardBudget);
    connect(m_viewport, &ListViewport::contentResized, this, &ExpandedView::contentResized);
    connect(m_footer, &UsageBars::contentResized, this, &ExpandedView::contentResized);
    connect(qApp, &QApplication::focusChanged, this, &ExpandedView::focusMoved);
}

/// While its widgets are destroyed the focus moves once more, and the view must no longer react.
ExpandedView::~ExpandedView() {
    qApp->disconnect(this);
}

void ExpandedView::setContentHeightBudget(int budget) {
    m_contentHeightBudget = budget;
    m_footer->setContentHeightBudget(budget);
}

void ExpandedView::setContentWidthBudget(int budget) {
    m_contentWidthBudget = budget;
}

int ExpandedView::wantedWidth() const {
    return std::min(m_needsAttention ? attentionWidth : standardWidth, m_contentWidthBudget);
}

int ExpandedView::maxActiveListHeight(int contentHeightBudget, int footerHeight) {
    const int footer = footerHeight > 0 ? footerHeight + footerGap : 0;
    return std::max(smallestListLimit, contentHeightBudget - footer - 2 * panelPadding);
}

/// If the focus moves meanwhile, the list scrolls to it only when it is complete, and not away from
/// a prompt to which it has just been scrolled.
void ExpandedView::refresh() {
    const QPointer<QWidget> focus = QApplication::focusWidget();
    m_isTakingOver = true;
    const bool showsCall = takeOver();
    m_isTakingOver = false;
    if (QApplication::focusWidget() != focus) {
        focusMoved(focus, QApplication::focusWidget());
        if (showsCall) {
            m_viewport->scrollToTop();
        }
    }
}

bool ExpandedView::takeOver() {
    const bool needsAttention =
        m_context.store.hasPendingDecision() || m_context.store.hasExternalPrompt();
    const bool attentionChanges = std::exchange(m_needsAttention, needsAttention) != needsAttention;
    const PanelEntries::Options options{needsAttention, m_contentHeightBudget / inputDivisor};
    const auto next = PanelEntries(m_context, m_viewport->rows(), options).all();
    const bool contentChanges = takeKeys(next);
    m_viewport->rows().setEntries(next, movement(attentionChanges, contentChanges));
    if (takeContent()) {
        m_viewport->rows().holdPresses();
    }
    if (attentionChanges) {
        m_owesPrompt = needsAttention;
    }
    const bool showsCall = showCall();
    if (attentionChanges || contentChanges) {
        startReading();
    }
    m_footer->setGivesWay(needsAttention);
    m_footer->refresh();
    m_footerHeight = m_footer->sizeHint().height();
    if (width() == wantedWidth()) {
        m_viewport->refresh();
    }
    // If the size is about to change, what is in sight stays there until then. Compared only after
    // the viewport has kept its place, because `sizeHint` lays the list out.
    if (size() == sizeHint()) {
        place();
    }
    scheduleAges();
    return showsCall;
}

/// A waiting prompt is at the top of the list, and nothing else may announce it: the open panel has
/// replaced the capsule. But the list never scrolls while a person types or holds a button down.
bool ExpandedView::showCall() {
    if (!m_owesPrompt) {
        return false;
    }
    if (m_viewport->rows().isInUse()) {
        // Nothing else tells when a held button is released outside itself.
        m_call = m_context.scheduler.after(lookAgain, [this] { showCall(); });
        return false;
    }
    m_owesPrompt = false;
    m_viewport->scrollToTop();
    m_viewport->rows().holdPresses();
    return true;
}

/// Whether the entries on show, or their order, have changed.
bool ExpandedView::takeKeys(const QList<RowList::Entry> &next) {
    QStringList keys;
    for (const RowList::Entry &entry : next) {
        keys.append(entry.key);
    }
    return std::exchange(m_keys, keys) != keys;
}

/// Whether an entry or a prompt has come or gone. A mere change of order doesn't count: rows of
/// agents at work change places all the time, and could hardly be pressed if each change held
/// presses back.
bool ExpandedView::takeContent() {
    QSet<QString> content(m_keys.cbegin(), m_keys.cend());
    for (const Session &session : m_context.store.activeSessions()) {
        const auto call = session.pendingDecisionID();
        if (call || session.pendingExternalResponse) {
            content.insert(call.value_or(session.id));
        }
    }
    return std::exchange(m_content, content) != content;
}

/// Nothing moves in a view that isn't on screen yet, as its rows have no earlier places there.
std::optional<Seconds> ExpandedView::movement(bool attentionChanges, bool contentChanges) const {
    if (!isVisible() || m_context.motion.isReduced() || !(attentionChanges || contentChanges)) {
        return std::nullopt;
    }
    return attentionChanges ? attentionDuration : contentDuration;
}

bool ExpandedView::hasBeenRead(const QString &sessionID) const {
    const auto rows = m_viewport->rows().findChildren<SessionRow *>(Qt::FindDirectChildrenOnly);
    return std::ranges::any_of(rows, [&](const SessionRow *row) {
        return row->session().id == sessionID && row->hasBeenRead();
    });
}

/// Until the entries have been shown long enough to be read, no digit opens a record, as it may
/// have been meant for an earlier one.
void ExpandedView::startReading() {
    m_areRecordsRead = false;
    m_reading.cancel();
    if (isVisible()) {
        m_reading =
            m_context.scheduler.after(ReadingTime::length, [this] { m_areRecordsRead = true; });
    }
}

std::optional<CompletedRecord> ExpandedView::recordAt(int digit) const {
    const auto rows = m_viewport->rows().findChildren<CompletedRow *>(Qt::FindDirectChildrenOnly);
    const auto row = std::ranges::find_if(rows, [digit](const CompletedRow *candidate) {
        return candidate->badge() == digit && !candidate->visibleRegion().isEmpty();
    });
    return m_areRecordsRead && row != rows.end() ? std::optional((*row)->record()) : std::nullopt;
}

/// One timer for all records, aimed at the first age that changes.
void ExpandedView::scheduleAges() {
    m_ages.cancel();
    if (!isVisible() || m_needsAttention) {
        return;
    }
    std::optional<Seconds> next;
    for (const CompletedRecord &record : m_context.store.jumpableCompleted()) {
        const Seconds change =
            TimeFormat::untilAgoChanges(record.finishedAt, m_context.scheduler.now());
        next = std::min(next.value_or(change), change);
    }
    if (next) {
        m_ages = m_context.scheduler.after(*next, [this] { refresh(); });
    }
}

QSize ExpandedView::sizeHint() const {
    const int limit = maxActiveListHeight(m_contentHeightBudget, m_footerHeight);
    const int width = wantedWidth();
    const int whole = m_viewport->contentHeight(width - 2 * panelPadding, limit);
    return {width, std::clamp(whole, 1, limit) + footerGap + m_footerHeight + 2 * panelPadding};
}

/// The footer stands at the bottom, and the list has the rest.
void ExpandedView::place() {
    QRect content = rect().adjusted(panelPadding, panelPadding, -panelPadding, -panelPadding);
    QRect footer = content;
    footer.setTop(content.bottom() + 1 - m_footerHeight);
    m_footer->setGeometry(footer);
    content.setBottom(footer.top() - 1 - footerGap);
    m_viewport->setGeometry(content);
}

void ExpandedView::resizeEvent(QResizeEvent *) {
    place();
}

void ExpandedView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    scheduleAges();
    startReading();
}

void ExpandedView::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    m_ages.cancel();
    m_call.cancel();
    startReading();
    // A panel always opens at the top of its list.
    m_viewport->scrollToTop();
}

void ExpandedView::takeFocus() {
    m_viewport->rows().makeAll();
    const auto awaiting = m_context.store.sessionAwaitingDecision();
    const auto rows = m_viewport->rows().inOrder();
    const auto isAwaiting = [&](const QWidget *widget) {
        const auto *row = qobject_cast<const SessionRow *>(widget);
        return row != nullptr && awaiting && row->session().id == awaiting->id;
    };
    const auto isRow = [](const QWidget *widget) {
        return qobject_cast<const ListRow *>(widget) != nullptr;
    };
    auto first = std::ranges::find_if(rows, isAwaiting);
    first = first != rows.end() ? first : std::ranges::find_if(rows, isRow);
    (first != rows.end() ? *first : this)->setFocus(Qt::ShortcutFocusReason);
}

void ExpandedView::keyPressEvent(QKeyEvent *event) {
    const FocusOrder order(m_viewport->rows(), *m_footer);
    switch (event->key()) {
    case Qt::Key_Down:
        order.moveToLine(FocusOrder::Direction::forward);
        break;
    case Qt::Key_Up:
        order.moveToLine(FocusOrder::Direction::back);
        break;
    case Qt::Key_Right:
        order.moveInLine(FocusOrder::Direction::forward);
        break;
    case Qt::Key_Left:
        order.moveInLine(FocusOrder::Direction::back);
        break;
    case Qt::Key_PageDown:
        m_viewport->scrollByPage(1);
        break;
    case Qt::Key_PageUp:
        m_viewport->scrollByPage(-1);
        break;
    default:
        event->ignore();
    }
}

/// Does nothing while the panel hides, since the list is at its top again already. Qt also calls
/// this when the focus widget is hidden; the focus then stays in its row, for the next stop may be
/// another session's.
bool ExpandedView::focusNextPrevChild(bool next) {
    if (!isVisible()) {
        return false;
    }
    if (ListRow *row = rowOfHiddenFocus()) {
        row->setFocus(Qt::NoFocusReason);
        return true;
    }
    return FocusOrder(m_viewport->rows(), *m_footer)
        .move(next ? FocusOrder::Direction::forward : FocusOrder::Direction::back);
}

/// A row that contains the focus shows it too, and so does its pencil.
void ExpandedView::focusMoved(const QWidget *from, const QWidget *to) {
    if (m_isTakingOver) {
        return;
    }
    RowList &rows = m_viewport->rows();
    for (QWidget *row : rows.inOrder()) {
        if (row == from || row == to || row->isAncestorOf(from) || row->isAncestorOf(to)) {
            row->update();
            for (auto *pencil : row->findChildren<PencilButton *>()) {
                pencil->update();
            }
        }
    }
    if (rows.isAncestorOf(to)) {
        m_viewport->reveal(*to);
    }
}

/// The wheel also scrolls from beside the list, where the pointer rests when the panel has opened.
void ExpandedView::wheelEvent(QWheelEvent *event) {
    m_viewport->scroll(*event);
}

} // namespace morvane

#include "moc_ExpandedView.cpp"
