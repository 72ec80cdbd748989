#include "Presentation/Panel/ListRow.h"

#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/AgentBadge.h"
#include "Presentation/Panel/NameLine.h"
#include "Presentation/Panel/RowList.h"
#include "Presentation/Style/ButtonKeys.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/FocusRing.h"

#include <QBoxLayout>
#include <QPainter>

#include <utility>

namespace morvane {

namespace {

constexpr double rowRadius = 9;

} // namespace

ListRow::ListRow(const PanelContext &context, const Look &look, QWidget *parent)
    : PanelButton(parent), m_context(context),
      m_nameLine(new NameLine(context, look.nameColor, *this)), m_agent(new AgentBadge(this)),
      m_line(new QHBoxLayout(this)), m_column(new QVBoxLayout) {
    // A button's own policy is a fixed height, which would cut off text of several lines.
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    m_line->setContentsMargins(10, look.topMargin, 10, look.topMargin + 2);
    m_line->setSpacing(11);
    m_line->addLayout(m_column, 1);
    m_column->setSpacing(2);
    m_column->addWidget(m_nameLine);
    m_nameLine->addBadge(*m_agent);
    connect(m_nameLine, &NameLine::renamed, this, [this](const QString &cwd, const QString &name) {
        m_context.actions.onRenameCommit(cwd, name);
    });
}

void ListRow::addMark(QWidget &mark) {
    auto *place = new QVBoxLayout;
    place->setContentsMargins(0, 3, 0, 0);
    place->addWidget(&mark);
    place->addStretch();
    m_line->insertLayout(0, place);
}

void ListRow::showName(const QString &name, const QString &cwd) {
    m_nameLine->setName(name);
    m_nameLine->setRenamable(m_context.actions.onRenameCommit ? cwd : QString());
}

QString ListRow::name() const {
    return m_nameLine->name();
}

void ListRow::showAgent(std::optional<AgentKind> agent) {
    m_agent->setAgent(agent);
}

bool ListRow::isEditing() const {
    return m_nameLine->isEditing();
}

void ListRow::abandonEditing() {
    m_nameLine->abandonEditing();
}

void ListRow::followPointer(std::optional<QPoint> pointer) {
    const auto isUnder = [&pointer](const QWidget &widget) {
        return pointer && widget.rect().contains(widget.mapFromGlobal(*pointer));
    };
    // Qt tells a row that the pointer has left it, but not a button that it has never told of the
    // pointer's arrival.
    const bool wasUnder = std::exchange(m_wasUnderPointer, isUnder(*this));
    if (!underMouse() && !wasUnder && !m_wasUnderPointer) {
        return;
    }
    QList<QAbstractButton *> buttons = findChildren<QAbstractButton *>();
    buttons.append(this);
    for (QAbstractButton *button : std::as_const(buttons)) {
        if (button->underMouse() != isUnder(*button)) {
            button->setAttribute(Qt::WA_UnderMouse, !button->underMouse());
            button->update();
        }
    }
}

const QWidget &ListRow::nameWidget() const {
    return *m_nameLine;
}

QPoint ListRow::firstLine() const {
    return m_nameLine->mapTo(this, m_nameLine->rect().center());
}

/// A click beside an open field only closes the field, and must not take the person to the terminal
/// as well; nor must a click that just misses a button of the strip.
bool ListRow::hitButton(const QPoint &position) const {
    const bool isInStrip = strip() != nullptr && position.y() >= strip()->y();
    return !isEditing() && !isInStrip && QAbstractButton::hitButton(position);
}

bool ListRow::takesPresses() const {
    const auto *list = qobject_cast<const RowList *>(parentWidget());
    return list == nullptr || !list->holdsPresses();
}

void ListRow::mousePressEvent(QMouseEvent *event) {
    if (takesPresses()) {
        PanelButton::mousePressEvent(event);
    }
}

void ListRow::keyPressEvent(QKeyEvent *event) {
    if (takesPresses() || !ButtonKeys::asSpace(*event)) {
        PanelButton::keyPressEvent(event);
    }
}

/// Focus is passed on without a reason by a widget that can't be pressed any more, and the next key
/// may be meant for that widget.
void ListRow::focusInEvent(QFocusEvent *event) {
    PanelButton::focusInEvent(event);
    auto *list = qobject_cast<RowList *>(parentWidget());
    if (list != nullptr && event->reason() == Qt::NoFocusReason) {
        list->holdPresses();
    }
}

void ListRow::paintEvent(QPaintEvent *) {
    if (!underMouse() && !containsFocus(*this)) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? Colors::rowPressed : Colors::rowHover);
    painter.drawRoundedRect(rect(), rowRadius, rowRadius);
    paintFocus(painter, rowRadius);
}

} // namespace morvane

#include "moc_ListRow.cpp"
