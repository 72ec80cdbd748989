#include "Core/Usage/UsagePoller.h"

#include "Core/Adapters/AgentRegistry.h"
#include "Core/Agents/AgentAdapter.h"
#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/CodexUsageReader.h"
#include "Core/Usage/UsageFormat.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

constexpr Seconds ordinaryInterval(300);
constexpr Seconds intervalNearLimit(120);
constexpr double nearLimit = UsageMilestone::thresholds.front();

constexpr double mostBackoff = 16;
/// The person's next turn brings a new token.
constexpr double mostBackoffExpired = 8;

/// A status line that is older tells nothing of now.
constexpr Seconds liveFor(300);
constexpr Seconds milestoneShownFor(6);

const QString lastWeeklyUtilization = QStringLiteral("lastWeeklyUtilization");
const QString lastWeeklyResetAt = QStringLiteral("lastWeeklyResetAt");
constexpr double fallOfReset = 0.1;

bool isNearLimit(const std::optional<UsageWindow> &window) {
    return window && window->utilization >= nearLimit;
}

bool isOver(const std::optional<UsageWindow> &window, Date now) {
    return window && window->isOver(now);
}

/// The endpoint reckons the reset of one window anew for each answer, to a second or two.
constexpr Seconds resetVaries(60);

/// What is used of one window never falls, so the lower figure is the older one.
bool isOlder(const std::optional<UsageWindow> &told, const std::optional<UsageWindow> &known) {
    return told && known && told->resetsAt && known->resetsAt &&
           std::chrono::abs(*told->resetsAt - *known->resetsAt) < resetVaries &&
           told->utilization < known->utilization;
}

} // namespace

UsagePoller::UsagePoller(MorvaneSettings &settings, const UsagePorts &ports, const QString &version,
                         const QUrl &endpoint)
    : m_settings(settings), m_ports(ports), m_version(version),
      m_credentials(ports.secrets, ports.scheduler, ports.background),
      m_endpoint(ports.https, ports.scheduler, endpoint) {}

bool UsagePoller::areOld(Date fetchedAt, Date now) {
    return now - fetchedAt > 2 * ordinaryInterval;
}

bool UsagePoller::approachingClaudeLimit() const {
    return m_settings.usageEnabled() && m_usage &&
           (isNearLimit(m_usage->session) || isNearLimit(m_usage->weekly) ||
            isNearLimit(m_usage->fable));
}

bool UsagePoller::approachingCodexLimit() const {
    return m_settings.usageEnabled() && m_codexUsage &&
           (isNearLimit(m_codexUsage->primary) || isNearLimit(m_codexUsage->secondary));
}

void UsagePoller::setEnabled(bool enabled) {
    if (enabled) {
        m_unavailableReason.reset();
        m_codexUnavailableReason.reset();
        startAnew();
    } else {
        stop();
        m_credentials.forget();
        m_usage.reset();
        m_codexUsage.reset();
        m_lastLiveIngest.reset();
        m_claudeRetryAt.reset();
        clearMilestone();
        m_unavailableReason = tr("turned off in Settings");
        m_codexUnavailableReason = m_unavailableReason;
    }
    emit changed();
}

void UsagePoller::refreshNow() {
    if (!m_settings.usageEnabled()) {
        return;
    }
    m_keychainBlocked = false;
    m_forceNextClaudePoll = true;
    startAnew();
    emit changed();
}

void UsagePoller::retryKeychainAccess() {
    m_credentials.unblock();
    m_credentials.forget();
    refreshNow();
}

/// Both lines ask at once, as though they had never failed.
void UsagePoller::startAnew() {
    m_backoffMultiplier = 1;
    m_codexBackoffMultiplier = 1;
    scheduleClaude(Seconds(0));
    scheduleCodex(Seconds(0));
}

void UsagePoller::stop() {
    m_claudeTimer.cancel();
    m_codexTimer.cancel();
}

void UsagePoller::scheduleClaude(Seconds delay) {
    m_claudeTimer = m_ports.scheduler.after(delay, [this] { pollClaude(); });
}

void UsagePoller::scheduleCodex(Seconds delay) {
    m_codexTimer = m_ports.scheduler.after(delay, [this] { pollCodex(); });
}

/// A clock that was set back has not made it fresh again.
bool UsagePoller::isFedLive() const {
    const Date now = m_ports.scheduler.now();
    return m_lastLiveIngest && now < *m_lastLiveIngest + liveFor &&
           *m_lastLiveIngest < now + liveFor;
}

/// What is longer than a server is ever left alone comes from a clock that was set back.
Seconds UsagePoller::retryLeft() const {
    const Seconds left =
        m_claudeRetryAt ? Seconds(*m_claudeRetryAt - m_ports.scheduler.now()) : Seconds(0);
    return left <= UsageEndpoint::longestRetry ? left : Seconds(0);
}

void UsagePoller::pollClaude() {
    if (!m_settings.usageEnabled()) {
        m_unavailableReason = tr("turned off in Settings");
        emit changed();
        return;
    }
    const bool isForced = std::exchange(m_forceNextClaudePoll, false);
    if (!isForced && isFedLive()) {
        endClaudePoll();
        return;
    }
    if (!isForced && retryLeft() > Seconds(0)) {
        scheduleClaude(retryLeft()); // a long timer may be a moment early
        return;
    }
    m_credentials.read([this](const CredentialReader::Lookup &lookup) { takeCredential(lookup); });
}

/// From here on nothing is sent or published any more once the person has turned the limits off.
void UsagePoller::takeCredential(const CredentialReader::Lookup &lookup) {
    if (!m_settings.usageEnabled()) {
        m_credentials.forget();
        return;
    }
    if (const auto *credential = std::get_if<Credential>(&lookup)) {
        if (credential->expiresAt && *credential->expiresAt < m_ports.scheduler.now()) {
            m_usage.reset();
            failClaude(tr("token expired — run Claude Code to refresh"), mostBackoffExpired);
        } else {
            m_endpoint.ask(credential->accessToken,
                           [this](const auto &answer) { takeAnswer(answer); });
        }
        return;
    }
    m_usage.reset();
    if (std::holds_alternative<CredentialReader::Missing>(lookup)) {
        failClaude(tr("no Claude Code credentials"), mostBackoff);
        return;
    }
    // Only the person starts it again.
    m_keychainBlocked = true;
    m_unavailableReason = tr("keychain locked — Morvane won't ask for your password");
    emit changed();
}

void UsagePoller::takeAnswer(const std::optional<HttpsAnswer> &answer) {
    if (!m_settings.usageEnabled()) {
        return;
    }
    if (!answer) {
        failClaude(tr("network error"), mostBackoff);
        return;
    }
    switch (answer->status) {
    case 200:
        m_claudeRetryAt.reset();
        takeBody(answer->body);
        return;
    case 429: {
        const Date now = m_ports.scheduler.now();
        m_claudeRetryAt = now + UsageEndpoint::retryAfter(answer->header("Retry-After"), now);
        failClaude(tr("rate limited — showing cached figures"), mostBackoff);
        return;
    }
    case 401:
        m_credentials.forget();
        break;
    default:
        break;
    }
    failClaude(tr("usage endpoint returned %1").arg(answer->status), mostBackoff);
}

void UsagePoller::takeBody(const QByteArray &body) {
    const auto usage = UsageFormat::parse(body, m_ports.scheduler.now());
    if (!usage) {
        failClaude(tr("unexpected usage format"), mostBackoff);
        return;
    }
    takeUsage(*usage);
    m_unavailableReason.reset();
    m_backoffMultiplier = 1;
    emit changed();
    endClaudePoll();
}

/// The figures stay, unless whoever calls has taken them away.
void UsagePoller::failClaude(const QString &reason, double most) {
    m_unavailableReason = reason;
    m_backoffMultiplier = std::min(2 * m_backoffMultiplier, most);
    emit changed();
    endClaudePoll();
}

void UsagePoller::endClaudePoll() {
    const Seconds interval = approachingClaudeLimit() ? intervalNearLimit : ordinaryInterval;
    scheduleClaude(std::max(interval * m_backoffMultiplier, retryLeft()));
}

void UsagePoller::pollCodex() {
    if (!m_settings.usageEnabled()) {
        m_codexUnavailableReason = tr("turned off in Settings");
        emit changed();
        return;
    }
    if (std::exchange(m_codexPollInFlight, true)) {
        return;
    }
    m_ports.background.compute(
        [&dialogue = m_ports.dialogue, &scheduler = m_ports.scheduler, version = m_version] {
            return CodexUsageReader::read(dialogue, version, scheduler);
        },
        m_ports.scheduler, this, [this](const Result<CodexUsage> &result) { takeCodex(result); });
}

void UsagePoller::takeCodex(const Result<CodexUsage> &result) {
    m_codexPollInFlight = false;
    if (!m_settings.usageEnabled()) {
        return;
    }
    if (result) {
        m_codexUsage = *result;
        m_codexUnavailableReason.reset();
        m_codexBackoffMultiplier = 1;
    } else {
        m_codexUnavailableReason = result.error().message;
        m_codexBackoffMultiplier = std::min(2 * m_codexBackoffMultiplier, mostBackoff);
    }
    emit changed();
    const Seconds interval = approachingCodexLimit() ? intervalNearLimit : ordinaryInterval;
    scheduleCodex(interval * m_codexBackoffMultiplier);
}

void UsagePoller::ingestLive(const QByteArray &data, AgentKind agent) {
    if (!AgentRegistry::adapter(agent).statusLineFeed() || !m_settings.usageEnabled()) {
        return;
    }
    const Date now = m_ports.scheduler.now();
    auto usage = UsageFormat::parseLive(data, now);
    // A session that rests may draw its status line anew, with the figures of its last turn.
    if (!usage || isOver(usage->session, now) || isOver(usage->weekly, now)) {
        return;
    }
    if (m_usage &&
        (isOlder(usage->session, m_usage->session) || isOlder(usage->weekly, m_usage->weekly))) {
        return;
    }
    // The status line never tells that one.
    if (m_usage) {
        usage->fable = m_usage->fable;
        usage->fableReadAt = m_usage->fableReadAt;
    }
    m_lastLiveIngest = usage->fetchedAt;
    takeUsage(*usage);
    if (!m_keychainBlocked) {
        m_unavailableReason.reset();
    }
    emit changed();
}

void UsagePoller::takeUsage(const Usage &usage) {
    detectWeeklyReset(usage);
    m_usage = usage;
    evaluateMilestones(usage);
}

/// A record of when the week began anew, for whoever looks into the defaults.
void UsagePoller::detectWeeklyReset(const Usage &usage) {
    if (!usage.weekly) {
        return;
    }
    Defaults &defaults = m_settings.defaults();
    const double utilization = usage.weekly->utilization;
    const QVariant last = defaults.value(lastWeeklyUtilization);
    if (last.toDouble() - utilization > fallOfReset) {
        const Seconds sinceEpoch = m_ports.scheduler.now().time_since_epoch();
        defaults.setValue(lastWeeklyResetAt, sinceEpoch.count());
    }
    // A status line comes with every turn, and mostly with the same figure.
    if (last != QVariant(utilization)) {
        defaults.setValue(lastWeeklyUtilization, utilization);
    }
}

void UsagePoller::evaluateMilestones(const Usage &usage) {
    const auto milestone = m_alerts.nextMilestone(usage, m_ports.scheduler.now(),
                                                  milestoneEligibility && milestoneEligibility());
    if (!milestone) {
        return;
    }
    m_activeMilestone = milestone;
    m_milestoneDismissTask = m_ports.scheduler.after(milestoneShownFor, [this] {
        m_activeMilestone.reset();
        emit changed();
    });
    emit milestoneEvents(*milestone);
}

void UsagePoller::refreshMilestoneEligibility() {
    const auto before = m_activeMilestone;
    if (!m_settings.usageEnabled() || !milestoneEligibility || !milestoneEligibility()) {
        clearMilestone();
    } else if (m_usage) {
        evaluateMilestones(*m_usage);
    }
    if (m_activeMilestone != before) {
        emit changed();
    }
}

void UsagePoller::clearMilestone() {
    m_milestoneDismissTask.cancel();
    m_activeMilestone.reset();
}

} // namespace morvane

#include "moc_UsagePoller.cpp"
