#pragma once

#include "Core/Sessions/CompletedRecord.h"
#include "Core/Sessions/Session.h"
#include "Presentation/Panel/ListRow.h"

#include <optional>

namespace morvane {

class Badge;
class PixelFrameView;
class ReplyStrip;
class TextLabel;

/// One finished session in the panel. A click opens it again. While its agent is still there, a
/// reply can be typed.
class CompletedRow : public ListRow {
    Q_OBJECT

public:
    struct Details {
        bool showsAgent = false;        ///< whose session it was, where there are several agents
        std::optional<int> badge;       ///< the position that a digit key opens, from 0
        std::optional<Session> session; ///< that the record is of, while it is there
    };

    /// The context outlives the row, which hands on to it what a person wants.
    CompletedRow(const PanelContext &context, QWidget *parent);

    /// The record as it is to be told now.
    void setRecord(const CompletedRecord &record, const Details &details);
    const CompletedRecord &record() const { return m_record; }
    /// The position of the digit on show.
    const std::optional<int> &badge() const { return m_badge; }

    bool isEditing() const override;
    bool holdsText() const override;
    void abandonEditing() override;

    /// No digit opens it any more.
    void outliveEntry() override;

protected:
    bool hitButton(const QPoint &position) const override;

private:
    const QWidget *strip() const override;
    void showBadge(std::optional<int> badge);
    void reopen();
    void showReply(const std::optional<Session> &session);

    CompletedRecord m_record;
    std::optional<int> m_badge;
    PixelFrameView *m_mark;
    Badge *m_digit;
    TextLabel *m_subtitle;
    std::optional<Session> m_session; ///< that the strip has last been looked up for
    ReplyStrip *m_strip = nullptr;    ///< while a reply is offered
};

} // namespace morvane
