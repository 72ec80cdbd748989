#include "Presentation/Panel/UsageBars.h"

#include "Core/Ground/TimeFormat.h"
#include "Core/Sessions/SessionStore.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/UsagePoller.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Panel/AlertsNote.h"
#include "Presentation/Panel/LimitsPage.h"
#include "Presentation/Panel/RefreshButton.h"
#include "Presentation/Panel/SessionContextList.h"
#include "Presentation/Panel/UsageMilestoneBadge.h"
#include "Presentation/Panel/UsageMilestoneStyle.h"
#include "Presentation/Panel/UsageTabButton.h"
#include "Presentation/Style/ActivateLayouts.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

namespace morvane {

namespace {

constexpr int dividerGap = 10;
constexpr int pageGap = 8;
constexpr int headerGap = 8;
constexpr int tabGap = 2;
constexpr int smallSize = 10;
constexpr QColor dividerColor = Colors::white(0.1);
constexpr int listDivisor = 3;      ///< divisor of the panel's height, for the list
constexpr int smallListDivisor = 6; ///< the same where the list gives way
constexpr Seconds shortestInterval(30);
/// Texts are updated this long after they become outdated.
constexpr Seconds justAfter(0.002);

/// An agent's name for a plan, as a person would write it.
QString capitalized(const QString &plan) {
    QStringList words = plan.toLower().split(u' ', Qt::SkipEmptyParts);
    for (QString &word : words) {
        word[0] = word[0].toUpper();
    }
    return words.join(u' ');
}

} // namespace

UsageBars::UsageBars(const PanelContext &context, QWidget *parent)
    : QWidget(parent), m_context(context),
      m_title(new TextLabel(Typography::text(Typography::badgeSize, QFont::DemiBold),
                            Colors::secondaryText, 1, this)),
      m_buttons{new UsageTabButton(tr("Claude"), tr("Claude limits"), this),
                new UsageTabButton(tr("Codex"), tr("Codex limits"), this),
                new UsageTabButton(tr("Sessions"), tr("Session contexts"), this)},
      m_milestone(new UsageMilestoneBadge(UsageMilestoneBadge::Size::regular, this)),
      m_updated(new TextLabel(Typography::text(smallSize), Colors::tertiaryText, 1, this)),
      m_refresh(new RefreshButton(this)),
      m_claude(new LimitsPage(true, *new AlertsNote(this), this)),
      m_plan(new TextLabel(Typography::text(smallSize), Colors::tertiaryText, 1, this)),
      m_codex(new LimitsPage(false, *m_plan, this)),
      m_sessions(new SessionContextList(context, this)) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 1 + dividerGap, 0, 0);
    column->setSpacing(pageGap);
    column->addLayout(makeHeader());
    column->addWidget(m_claude);
    column->addWidget(m_codex);
    column->addWidget(m_sessions);
    for (const Tab tab : allTabs) {
        connect(button(tab), &UsageTabButton::clicked, this, [this, tab] { select(tab); });
    }
    connect(m_refresh, &RefreshButton::clicked, this,
            [this] { m_context.actions.onRefreshUsage(); });
}

QHBoxLayout *UsageBars::makeHeader() {
    auto *header = new QHBoxLayout;
    header->setSpacing(headerGap);
    header->addWidget(m_title);
    auto *tabs = new QHBoxLayout;
    tabs->setSpacing(tabGap);
    for (UsageTabButton *tab : m_buttons) {
        tabs->addWidget(tab);
    }
    header->addLayout(tabs);
    header->addStretch();
    header->addWidget(m_milestone);
    header->addWidget(m_updated);
    header->addWidget(m_refresh);
    return header;
}

void UsageBars::setContentHeightBudget(int budget) {
    m_contentHeightBudget = budget;
    limitList();
}

void UsageBars::setGivesWay(bool givesWay) {
    m_givesWay = givesWay;
    limitList();
}

void UsageBars::limitList() {
    m_sessions->setHeightLimit(m_contentHeightBudget /
                               (m_givesWay ? smallListDivisor : listDivisor));
}

void UsageBars::select(Tab tab) {
    m_selected = tab;
    refresh();
    emit contentResized();
}

bool UsageBars::hasClaudeData() const {
    return m_context.settings.usageEnabled() && m_context.usage.usage();
}

bool UsageBars::hasCodexData() const {
    return m_context.settings.usageEnabled() && m_context.usage.codexUsage();
}

QList<UsageBars::Tab> UsageBars::availableTabs() const {
    QList<Tab> result;
    if (hasClaudeData()) {
        result << Tab::claude;
    }
    if (hasCodexData()) {
        result << Tab::codex;
    }
    if (!m_context.store.activeSessions().isEmpty() || !m_context.store.openSessions().isEmpty()) {
        result << Tab::sessions;
    }
    return result.isEmpty() ? QList{Tab::claude} : result;
}

UsageBars::Tab UsageBars::current() const {
    const QList<Tab> available = availableTabs();
    return m_selected && available.contains(*m_selected) ? *m_selected : available.first();
}

QString UsageBars::scope(std::optional<int> minutes) {
    constexpr int hour = 60;
    constexpr int day = 24 * hour;
    constexpr int week = 7 * day;
    if (!minutes || *minutes < 1) {
        return tr("window");
    }
    if (*minutes % week == 0) {
        return tr("%1w").arg(*minutes / week);
    }
    if (*minutes % day == 0) {
        return tr("%1d").arg(*minutes / day);
    }
    return *minutes % hour == 0 ? tr("%1h").arg(*minutes / hour) : tr("%1m").arg(*minutes);
}

void UsageBars::refresh() {
    const Date now = m_context.scheduler.now();
    const Tab tab = current();
    showHeader(tab, now);
    m_claude->setVisible(tab == Tab::claude);
    m_codex->setVisible(tab == Tab::codex);
    m_sessions->setVisible(tab == Tab::sessions);
    switch (tab) {
    case Tab::claude:
        showClaude(now);
        break;
    case Tab::codex:
        showCodex(now);
        break;
    case Tab::sessions:
        m_sessions->showSessions();
        break;
    }
    activateLayouts(*this);
    scheduleTexts(tab, now);
}

void UsageBars::showHeader(Tab tab, Date now) {
    const QList<Tab> available = availableTabs();
    const bool hasChoice = available.size() > 1;
    for (const Tab each : allTabs) {
        button(each)->setVisible(hasChoice && available.contains(each));
        button(each)->setChecked(each == tab);
    }
    m_title->setText(tab == Tab::claude  ? tr("CLAUDE LIMITS")
                     : tab == Tab::codex ? tr("CODEX LIMITS")
                                         : tr("SESSIONS"));
    m_title->setVisible(!hasChoice);
    m_milestone->setMilestone(m_context.usage.activeMilestone());

    const auto fetched = fetchedAt(tab);
    m_updated->setVisible(fetched.has_value());
    if (fetched) {
        m_updated->setText(tr("updated %1").arg(TimeFormat::ago(*fetched, now)));
        m_updated->setColor(UsagePoller::areOld(*fetched, now) ? UsageMilestoneStyle::amber
                                                               : Colors::tertiaryText);
    }
    m_refresh->setVisible(m_context.actions.onRefreshUsage && tab != Tab::sessions);
    m_refresh->setEnabled(m_context.settings.usageEnabled());
}

/// When the figures on this tab were read; none where there are no figures.
std::optional<Date> UsageBars::fetchedAt(Tab tab) const {
    if (tab == Tab::claude && hasClaudeData()) {
        return m_context.usage.usage()->fetchedAt;
    }
    if (tab == Tab::codex && hasCodexData()) {
        return m_context.usage.codexUsage()->fetchedAt;
    }
    return std::nullopt;
}

void UsageBars::showClaude(Date now) {
    if (!hasClaudeData()) {
        m_claude->setUnavailable(m_context.usage.unavailableReason());
        return;
    }
    const Usage &usage = *m_context.usage.usage();
    QList<UsageLimit> limits;
    if (usage.session) {
        limits << UsageLimit{tr("Session"), tr("5h"), *usage.session, usage.fetchedAt};
    }
    if (usage.weekly) {
        limits << UsageLimit{tr("Weekly"), tr("7d"), *usage.weekly, usage.fetchedAt};
    }
    if (usage.fable && m_context.settings.showFableBar()) {
        limits << UsageLimit{tr("Model family"), tr("Fable"), *usage.fable, usage.fableReadAt};
    }
    m_claude->setLimits(limits, now);
}

void UsageBars::showCodex(Date now) {
    const CodexUsage &usage = *m_context.usage.codexUsage();
    QList<UsageLimit> limits;
    if (usage.primary) {
        limits << UsageLimit{tr("Primary"), scope(usage.primary->durationMinutes), *usage.primary,
                             usage.fetchedAt};
    }
    if (usage.secondary) {
        limits << UsageLimit{tr("Secondary"), scope(usage.secondary->durationMinutes),
                             *usage.secondary, usage.fetchedAt};
    }
    m_codex->setLimits(limits, now);
    const QString plan = usage.planType.value_or(QString());
    m_plan->setText(tr("ChatGPT %1 · official Codex rate limits").arg(capitalized(plan)));
    m_plan->setVisible(!plan.isEmpty());
}

/// One timer for all texts, aimed at the first that changes.
void UsageBars::scheduleTexts(Tab tab, Date now) {
    m_texts.cancel();
    if (!isVisible() || tab == Tab::sessions) {
        return;
    }
    const LimitsPage *page = tab == Tab::claude ? m_claude : m_codex;
    if (const auto change = page->untilTextsChange(now)) {
        m_texts = m_context.scheduler.after(std::max(shortestInterval, *change + justAfter),
                                            [this] { refresh(); });
    }
}

QSize UsageBars::sizeHint() const {
    return layout()->totalSizeHint();
}

void UsageBars::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    refresh();
}

void UsageBars::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    m_texts.cancel();
    m_sessions->scrollToTop();
}

void UsageBars::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), dividerColor);
}

} // namespace morvane

#include "moc_UsageBars.cpp"
