#include "Presentation/Windows/AgentList.h"

#include "Core/Agents/AgentAdapter.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/FocusRing.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr int agentSpace = 14;

} // namespace

AgentList::AgentList(AgentConnections &connections, AgentRow::Detail detail, QWidget *parent)
    : QWidget(parent), m_connections(connections), m_detail(detail),
      m_layout(new QVBoxLayout(this)) {
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(agentSpace);
}

void AgentList::show(const std::vector<const AgentAdapter *> &agents) {
    const auto kinds = [](const AgentAdapter *agent) { return agent->kind(); };
    if (!std::ranges::equal(agents, m_rows, {}, kinds, &AgentRow::agent)) {
        takeOver(agents);
        takePlaceInTabOrder();
    }
    for (AgentRow *row : m_rows) {
        row->refresh();
    }
    setVisible(!m_rows.empty());
    update();
}

void AgentList::takeOver(const std::vector<const AgentAdapter *> &agents) {
    std::vector<AgentRow *> before = std::exchange(m_rows, {});
    for (const AgentAdapter *agent : agents) {
        const auto known = std::ranges::find(before, agent->kind(), &AgentRow::agent);
        if (known != before.end()) {
            m_rows.push_back(*known);
            before.erase(known);
        } else {
            m_rows.push_back(new AgentRow(*agent, m_connections, m_detail, this));
        }
        m_layout->addWidget(m_rows.back());
    }
    for (AgentRow *row : before) {
        // The focus may be on the button that was just pressed here, and must not move to another
        // row's.
        if (containsFocus(*row)) {
            setFocus();
        }
        row->hide();
        row->deleteLater();
    }
}

/// Controls that are made later would come last in the tab order. The list has had its place in it
/// from the start, so the rows are put after the list, which accepts the focus only for that
/// moment.
void AgentList::takePlaceInTabOrder() {
    setFocusPolicy(Qt::TabFocus);
    QWidget *before = this;
    for (const AgentRow *row : m_rows) {
        for (QWidget *control : row->findChildren<QWidget *>()) {
            if (control->focusPolicy() & Qt::TabFocus) {
                setTabOrder(before, control);
                before = control;
            }
        }
    }
    setFocusPolicy(Qt::NoFocus);
}

void AgentList::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    for (std::size_t index = 1; index < m_rows.size(); ++index) {
        const int line = m_rows[index]->y() - agentSpace / 2;
        painter.fillRect(QRect(0, line, width(), 1), Colors::hairline);
    }
}

} // namespace morvane

#include "moc_AgentList.cpp"
