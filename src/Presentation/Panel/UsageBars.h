#pragma once

#include "Platform/Task.h"
#include "Platform/Time.h"
#include "Presentation/Panel/UsageBar.h"

#include <array>
#include <optional>

class QHBoxLayout;

namespace morvane {

class LimitsPage;
struct PanelContext;
class RefreshButton;
class SessionContextList;
class TextLabel;
class UsageMilestoneBadge;
class UsageTabButton;

/// The panel's footer, below a divider: how far the limits of Claude and of Codex are used, and how
/// full the contexts of the live sessions are, each on a tab of its own. A single timer updates its
/// texts as they age, only while it is on screen.
class UsageBars : public QWidget {
    Q_OBJECT

public:
    enum class Tab { claude, codex, sessions };

    /// The context must outlive the bars.
    UsageBars(const PanelContext &context, QWidget *parent);

    /// The height of the whole panel, in points; the list of sessions may take a part of it.
    void setContentHeightBudget(int budget);

    /// Whether the list of sessions takes a smaller part, to leave more to what is above the
    /// footer.
    void setGivesWay(bool givesWay);

    /// Brings everything on show up to date.
    void refresh();

    /// The tabs that have something to show; always at least one.
    QList<Tab> availableTabs() const;

    /// The tab on show: the one that the person has chosen, while it is available, else the first.
    Tab current() const;

    /// A window's length for a person, in the largest unit that it is whole in: "5h", "1w".
    static QString scope(std::optional<int> minutes);

    QSize sizeHint() const override;

signals:
    /// The person has chosen another tab, which needs another height.
    void contentResized();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    static constexpr std::array allTabs{Tab::claude, Tab::codex, Tab::sessions};

    QHBoxLayout *makeHeader();
    void limitList();
    void select(Tab tab);
    bool hasClaudeData() const;
    bool hasCodexData() const;
    void showHeader(Tab tab, Date now);
    std::optional<Date> fetchedAt(Tab tab) const;
    void showClaude(Date now);
    void showCodex(Date now);
    void scheduleTexts(Tab tab, Date now);
    UsageTabButton *button(Tab tab) const { return m_buttons[static_cast<std::size_t>(tab)]; }

    const PanelContext &m_context;
    std::optional<Tab> m_selected;
    int m_contentHeightBudget = 0;
    bool m_givesWay = false;
    TextLabel *m_title;
    std::array<UsageTabButton *, allTabs.size()> m_buttons; ///< by tab
    UsageMilestoneBadge *m_milestone;
    TextLabel *m_updated;
    RefreshButton *m_refresh;
    LimitsPage *m_claude;
    TextLabel *m_plan;
    LimitsPage *m_codex;
    SessionContextList *m_sessions;
    Task m_texts;
};

} // namespace morvane
