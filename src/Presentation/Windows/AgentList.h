#pragma once

#include "Presentation/Windows/AgentRow.h"

#include <QWidget>

#include <vector>

class QVBoxLayout;

namespace morvane {

/// A list of agents, a row each. A row is kept while its agent is listed, and so is the focus on
/// it.
class AgentList : public QWidget {
    Q_OBJECT

public:
    /// The connections must outlive the list.
    AgentList(AgentConnections &connections, AgentRow::Detail detail, QWidget *parent);

    /// Shows these agents, as they are now.
    void show(const std::vector<const AgentAdapter *> &agents);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void takeOver(const std::vector<const AgentAdapter *> &agents);
    void takePlaceInTabOrder();

    AgentConnections &m_connections;
    AgentRow::Detail m_detail;
    QVBoxLayout *m_layout;
    std::vector<AgentRow *> m_rows;
};

} // namespace morvane
