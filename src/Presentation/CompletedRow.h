#pragma once

#include "Core/CompletedRecord.h"

#include <QWidget>

namespace morvane {

class AgentBadge;
class PixelFrameView;
class TextLabel;

/// One finished session in the panel.
class CompletedRow : public QWidget {
    Q_OBJECT

public:
    explicit CompletedRow(QWidget *parent);

    void setRecord(const CompletedRecord &record, Date now, bool showsAgent);

private:
    PixelFrameView *m_mark;
    TextLabel *m_name;
    AgentBadge *m_agent;
    TextLabel *m_subtitle;
};

} // namespace morvane
