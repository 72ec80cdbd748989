#include "Core/Usage/ClaudeLimits.h"

#include "Core/Settings/Defaults.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Usage/UsageFormat.h"

#include <algorithm>
#include <utility>

namespace morvane {

namespace {

/// Lower than for other failures, since the person's next turn brings a new token.
constexpr double mostBackoffExpired = 8;

/// The figures of an older status line don't count as current.
constexpr Seconds liveFor(300);

const QString lastWeeklyUtilization = QStringLiteral("lastWeeklyUtilization");
const QString lastWeeklyResetAt = QStringLiteral("lastWeeklyResetAt");
constexpr double fallOfReset = 0.1;

bool isOver(const std::optional<UsageWindow> &window, Date now) {
    return window && window->isOver(now);
}

/// The endpoint computes a window's reset anew for each answer, to within a second or two, and
/// status lines round it.
constexpr Seconds resetVaries(60);

bool isSameReset(const std::optional<Date> &one, const std::optional<Date> &other) {
    return one && other && std::chrono::abs(*one - *other) < resetVaries;
}

/// Utilization never falls within one window, so the lower figure is the older one.
bool isOlder(const std::optional<UsageWindow> &told, const std::optional<UsageWindow> &known) {
    return told && known && isSameReset(told->resetsAt, known->resetsAt) &&
           told->utilization < known->utilization;
}

/// A window keeps the reset it was first known by: with a different one, its milestones would be
/// announced again.
void keepReset(std::optional<UsageWindow> &window, std::optional<Date> &known) {
    if (!window || !window->resetsAt) {
        return;
    }
    if (isSameReset(window->resetsAt, known)) {
        window->resetsAt = known;
    } else {
        known = window->resetsAt;
    }
}

} // namespace

ClaudeLimits::ClaudeLimits(MorvaneSettings &settings, const UsagePorts &ports)
    : m_settings(settings), m_scheduler(ports.scheduler),
      m_credentials(ports.secrets, ports.scheduler, ports.background),
      m_endpoint(ports.https, ports.scheduler) {}

bool ClaudeLimits::approachingLimit() const {
    return m_settings.usageEnabled() && m_usage &&
           (isNearLimit(m_usage->session) || isNearLimit(m_usage->weekly) ||
            isNearLimit(m_usage->fable));
}

void ClaudeLimits::start() {
    m_unavailableReason.reset();
    startAnew();
}

void ClaudeLimits::turnOff() {
    stop();
    m_credentials.forget();
    m_usage.reset();
    m_lastLiveIngest.reset();
    m_claudeRetryAt.reset();
    m_unavailableReason = tr("turned off in Settings");
}

void ClaudeLimits::refreshNow() {
    m_keychainBlocked = false;
    m_forceNextClaudePoll = true;
    startAnew();
}

void ClaudeLimits::allowKeychain() {
    m_credentials.unblock();
    m_credentials.forget();
}

void ClaudeLimits::startAnew() {
    m_backoff.succeeded();
    scheduleClaude(Seconds(0));
}

void ClaudeLimits::scheduleClaude(Seconds delay) {
    m_claudeTimer = m_scheduler.after(delay, [this] { pollClaude(); });
}

/// A clock that was set back doesn't make an old status line fresh again.
bool ClaudeLimits::isFedLive() const {
    const Date now = m_scheduler.now();
    return m_lastLiveIngest && now < *m_lastLiveIngest + liveFor &&
           *m_lastLiveIngest < now + liveFor;
}

/// A wait beyond `longestRetry` comes from a clock that was set back, and is ignored.
Seconds ClaudeLimits::retryLeft() const {
    const Seconds left =
        m_claudeRetryAt ? Seconds(*m_claudeRetryAt - m_scheduler.now()) : Seconds(0);
    return left <= UsageEndpoint::longestRetry ? left : Seconds(0);
}

void ClaudeLimits::pollClaude() {
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

/// Once the person has turned the limits off, nothing is sent or published from here on.
void ClaudeLimits::takeCredential(const CredentialReader::Lookup &lookup) {
    if (!m_settings.usageEnabled()) {
        m_credentials.forget();
        return;
    }
    if (const auto *credential = std::get_if<Credential>(&lookup)) {
        if (credential->expiresAt && *credential->expiresAt < m_scheduler.now()) {
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
        failClaude(tr("no Claude Code credentials"));
        return;
    }
    // Polling ends here until the person restarts it.
    m_keychainBlocked = true;
    m_unavailableReason = tr("keychain locked — Morvane won't ask for your password");
    emit changed();
}

void ClaudeLimits::takeAnswer(const std::optional<HttpsAnswer> &answer) {
    if (!m_settings.usageEnabled()) {
        return;
    }
    if (!answer) {
        failClaude(tr("network error"));
        return;
    }
    switch (answer->status) {
    case 200:
        m_claudeRetryAt.reset();
        takeBody(answer->body);
        return;
    case 429: {
        const Date now = m_scheduler.now();
        m_claudeRetryAt = now + UsageEndpoint::retryAfter(answer->header("Retry-After"), now);
        failClaude(tr("rate limited — showing cached figures"));
        return;
    }
    case 401:
        m_credentials.forget();
        break;
    default:
        break;
    }
    failClaude(tr("usage endpoint returned %1").arg(answer->status));
}

void ClaudeLimits::takeBody(const QByteArray &body) {
    const auto usage = UsageFormat::parse(body, m_scheduler.now());
    if (!usage) {
        failClaude(tr("unexpected usage format"));
        return;
    }
    takeUsage(*usage);
    m_unavailableReason.reset();
    m_backoff.succeeded();
    emit changed();
    endClaudePoll();
}

/// Keeps the figures, unless the caller has reset them.
void ClaudeLimits::failClaude(const QString &reason, double mostBackoff) {
    m_unavailableReason = reason;
    m_backoff.failed(mostBackoff);
    emit changed();
    endClaudePoll();
}

void ClaudeLimits::endClaudePoll() {
    const Seconds interval =
        approachingLimit() ? Backoff::intervalNearLimit : Backoff::ordinaryInterval;
    scheduleClaude(std::max(m_backoff.of(interval), retryLeft()));
}

void ClaudeLimits::ingestLive(const QByteArray &data) {
    const Date now = m_scheduler.now();
    auto usage = UsageFormat::parseLive(data, now);
    // An idle session may redraw its status line, with the figures of its last turn.
    if (!usage || isOver(usage->session, now) || isOver(usage->weekly, now)) {
        return;
    }
    if (m_usage &&
        (isOlder(usage->session, m_usage->session) || isOlder(usage->weekly, m_usage->weekly))) {
        return;
    }
    // The status line never has this window.
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

void ClaudeLimits::takeUsage(Usage usage) {
    keepReset(usage.session, m_knownResets.session);
    keepReset(usage.weekly, m_knownResets.weekly);
    keepReset(usage.fable, m_knownResets.fable);
    detectWeeklyReset(usage);
    m_usage = usage;
    emit usageRead(usage);
}

/// Records when the weekly window was reset, for whoever looks into the defaults.
void ClaudeLimits::detectWeeklyReset(const Usage &usage) {
    if (!usage.weekly) {
        return;
    }
    Defaults &defaults = m_settings.defaults();
    const double utilization = usage.weekly->utilization;
    const QVariant last = defaults.value(lastWeeklyUtilization);
    if (last.toDouble() - utilization > fallOfReset) {
        const Seconds sinceEpoch = m_scheduler.now().time_since_epoch();
        defaults.setValue(lastWeeklyResetAt, sinceEpoch.count());
    }
    // A status line comes with every turn, and mostly with the same figure.
    if (last != QVariant(utilization)) {
        defaults.setValue(lastWeeklyUtilization, utilization);
    }
}

} // namespace morvane

#include "moc_ClaudeLimits.cpp"
