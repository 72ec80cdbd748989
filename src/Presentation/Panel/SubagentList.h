#pragma once

#include "Core/Sessions/Session.h"
#include "Presentation/Panel/PanelButton.h"

#include <QList>

namespace morvane {

class TextLabel;

/// How many subagents a session has started in this turn; a click lists what they are for. Hidden
/// while there is none.
class SubagentList : public PanelButton {
    Q_OBJECT

public:
    explicit SubagentList(QWidget *parent);

    void setSubagents(const QList<Subagent> &subagents);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TextLabel *m_count;
    TextLabel *m_tasks;
};

} // namespace morvane
