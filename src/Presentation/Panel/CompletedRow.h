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
        bool showsAgent = false;        ///< names the agent, where there are several
        std::optional<int> badge;       ///< the position that a digit key opens, from 0
        std::optional<Session> session; ///< the record's own, while it exists
    };

    /// The context outlives the row, which reports the person's actions to it.
    CompletedRow(const PanelContext &context, QWidget *parent);

    /// Shows the record with its age at this moment.
    void setRecord(const CompletedRecord &record, const Details &details);
    const CompletedRecord &record() const { return m_record; }
    /// The position whose digit is on show.
    const std::optional<int> &badge() const { return m_badge; }

    bool isEditing() const override;
    bool holdsText() const override;
    void abandonEditing() override;

    /// Removes the digit: none opens this row any more.
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
    std::optional<Session> m_session; ///< as of the last decision about the strip
    ReplyStrip *m_strip = nullptr;    ///< none unless a reply is offered
};

} // namespace morvane
