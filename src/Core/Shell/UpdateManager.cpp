#include "Core/Shell/UpdateManager.h"

#include "Core/Ground/AskWithin.h"
#include "Core/Settings/Defaults.h"
#include "Core/Shell/UpdatePackage.h"
#include "Core/Shell/UpdateSignature.h"
#include "Platform/BackgroundPool.h"
#include "Platform/PackageInstaller.h"
#include "Platform/Tools.h"

#include <QStandardPaths>

#include <utility>

namespace morvane {

namespace {

constexpr Seconds feedLimit(30);
constexpr Seconds packageLimit(1800);
constexpr Seconds day(86'400);
/// A timer of a whole day comes late if the machine sleeps, and one that was offline may be back.
constexpr Seconds lookInterval(3600);
/// A person who has just installed the program has other things to do, and may not want checks.
constexpr Seconds firstLook(600);

const QString automaticKey = QStringLiteral("SUEnableAutomaticChecks");
const QString lastCheckKey = QStringLiteral("SULastCheckTime");
const QString skippedKey = QStringLiteral("SUSkippedVersion");

/// Tells only which version runs, nothing else about the person; asks for uncompressed bytes.
HttpsRequest request(const QUrl &url, qsizetype maxAnswerSize) {
    return {url,
            {{"User-Agent", BuildInfo::userAgent()},
             {"Accept-Language", "*"},
             {"Accept-Encoding", "identity"}},
            std::nullopt,
            maxAnswerSize};
}

/// What an answer holds, or why it can't be used.
Result<QByteArray> bodyOf(const std::optional<HttpsAnswer> &answer) {
    if (!answer) {
        return Failure{UpdateManager::tr("Morvane's server can't be reached.")};
    }
    if (answer->status >= 300 && answer->status <= 399) {
        return Failure{UpdateManager::tr("Morvane's server points to another place, and Morvane "
                                         "doesn't go there.")};
    }
    if (answer->status != 200) {
        return Failure{
            UpdateManager::tr("Morvane's server answers with an error (%1).").arg(answer->status)};
    }
    return answer->body;
}

} // namespace

UpdateManager::UpdateManager(Defaults &defaults, const Means &means, UpdateSource source)
    : m_defaults(defaults), m_means(means), m_source(std::move(source)) {}

void UpdateManager::start() {
    if (!m_source.publicKey) {
        m_unavailableReason = tr("This build has no update signing key, so Morvane won't check for "
                                 "updates.");
    } else if (!m_source.feed) {
        m_unavailableReason = tr("This build has no update feed configured.");
    } else {
        m_isStarted = true;
        removeKept();
        checkAgainIn(lastUpdateCheckDate() ? Seconds(0) : firstLook);
    }
    emit changed();
}

void UpdateManager::checkAgainIn(Seconds time) {
    m_nextCheck = m_means.scheduler.after(time, [this] {
        checkDaily();
        checkAgainIn(lookInterval);
    });
}

bool UpdateManager::canCheck() const {
    return m_isStarted && m_phase != Phase::checking && m_phase != Phase::downloading;
}

bool UpdateManager::automaticChecks() const {
    const QVariant stored = m_defaults.value(automaticKey);
    return stored.typeId() != QMetaType::Bool || stored.toBool();
}

void UpdateManager::setAutomaticChecks(bool enabled) {
    m_defaults.setValue(automaticKey, enabled);
    if (!enabled && m_phase != Phase::checking && m_phase != Phase::downloading) {
        m_request.cancel();
    }
    emit changed();
}

std::optional<Date> UpdateManager::lastUpdateCheckDate() const {
    bool isNumber = false;
    const double stored = m_defaults.value(lastCheckKey).toDouble(&isNumber);
    return isNumber && stored > 0 && stored < 1e10 ? std::optional(Date{} + Seconds(stored))
                                                   : std::nullopt;
}

/// A last check in the future was recorded by a wrong clock.
bool UpdateManager::isDue() const {
    const auto last = lastUpdateCheckDate();
    const Date now = m_means.scheduler.now();
    return !last || *last > now || now - *last >= day;
}

/// Stays out of sight: what the person looks at, or hasn't answered yet, is left as it is.
void UpdateManager::checkDaily() {
    const bool isFree =
        canCheck() && !m_isExamining && m_phase != Phase::offered && m_phase != Phase::handedOver;
    if (isFree && automaticChecks() && isDue()) {
        askFeed();
    }
}

void UpdateManager::checkForUpdates() {
    if (canCheck()) {
        enter(Phase::checking);
        if (!m_isExamining) {
            askFeed();
        }
    }
}

void UpdateManager::askFeed() {
    m_request = askWithin(feedLimit, m_means.https, m_means.scheduler,
                          request(*m_source.feed, UpdateFeed::longestFeed + 1),
                          [this](const auto &answer) { takeFeed(answer); });
}

void UpdateManager::takeFeed(const std::optional<HttpsAnswer> &answer) {
    if (answer) {
        const Seconds now = m_means.scheduler.now().time_since_epoch();
        m_defaults.setValue(lastCheckKey, now.count());
    }
    const bool isAwaited = m_phase == Phase::checking;
    const auto understood = read(answer);
    const bool isNews = understood && UpdateFeed::isLater(m_offer.version, m_source.version);
    if (isAwaited && !understood) {
        fail(understood.error().message);
    } else if (isAwaited) {
        enter(isNews ? Phase::offered : Phase::upToDate);
    } else if (isNews && m_defaults.value(skippedKey) != m_offer.version) {
        enter(Phase::offered);
        emit updateFound();
    } else {
        emit changed();
    }
}

Result<void> UpdateManager::read(const std::optional<HttpsAnswer> &answer) {
    const auto feed = bodyOf(answer);
    if (!feed) {
        return feed.error();
    }
    const auto offer = UpdateFeed::parse(*feed, *m_source.feed);
    if (!offer) {
        return Failure{tr("Morvane can't make sense of what its server says about updates.")};
    }
    m_offer = *offer;
    return {};
}

void UpdateManager::download() {
    if (m_phase != Phase::offered) {
        return;
    }
    // One byte more shows that a package is too long.
    m_request = askWithin(packageLimit, m_means.https, m_means.scheduler,
                          request(m_offer.package, m_offer.size + 1),
                          [this](const auto &answer) { takePackage(answer); });
    enter(Phase::downloading);
}

/// No byte of the package is written to the disk before the signature of all of it is verified.
void UpdateManager::takePackage(const std::optional<HttpsAnswer> &answer) {
    const auto package = bodyOf(answer);
    if (!package) {
        fail(package.error().message);
        return;
    }
    if (package->size() != m_offer.size) {
        fail(tr("The update isn't as long as it should be. It was discarded."));
        return;
    }
    m_isExamining = true;
    m_means.background.compute(
        [package = *package, offer = m_offer, key = *m_source.publicKey]() -> Result<QString> {
            if (!UpdateSignature::isRight(offer.signature, package, key)) {
                return Failure{tr("The update isn't signed with Morvane's key. It was discarded.")};
            }
            return UpdatePackage::keep(package, offer.version);
        },
        m_means.scheduler, this,
        [this](const Result<QString> &kept) {
            if (kept) {
                examine(*kept);
            } else {
                reject(kept.error().message);
            }
        });
}

void UpdateManager::examine(const QString &path) {
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("dpkg-deb"));
    if (tool.isEmpty()) {
        reject(
            tr("The update is a Debian package, and there is no dpkg-deb here to look into it."));
        return;
    }
    m_means.tools.run({tool, UpdatePackage::question(path), {}},
                      [self = QPointer<UpdateManager>(this), path](const auto &fields) {
                          if (self && fields &&
                              UpdatePackage::isMorvane(*fields, self->m_offer.version)) {
                              self->handOver(path);
                          } else if (self) {
                              self->reject(tr("The package isn't the version of Morvane that it "
                                              "was said to be. It was discarded."));
                          }
                      });
}

void UpdateManager::reject(const QString &why) {
    const bool isAwaited = m_phase == Phase::downloading;
    dropKept();
    if (isAwaited) {
        fail(why);
    }
}

/// A check that the person has asked for meanwhile has waited for this.
void UpdateManager::dropKept() {
    m_isExamining = false;
    removeKept();
    if (m_phase == Phase::checking) {
        askFeed();
    }
}

void UpdateManager::handOver(const QString &path) {
    if (m_phase != Phase::downloading) {
        dropKept(); // the person has changed their mind meanwhile
        return;
    }
    m_isExamining = false;
    m_packagePath = path;
    m_installerOpened = m_means.installer.open(path);
    enter(Phase::handedOver);
}

void UpdateManager::skip() {
    if (m_phase == Phase::offered) {
        m_defaults.setValue(skippedKey, m_offer.version);
        dismiss();
    }
}

void UpdateManager::dismiss() {
    m_request.cancel();
    enter(Phase::idle);
}

void UpdateManager::discard() {
    m_nextCheck.cancel();
    dismiss();
    removeKept();
}

void UpdateManager::removeKept() {
    m_means.background.run(&UpdatePackage::discard);
}

void UpdateManager::enter(Phase phase) {
    m_phase = phase;
    emit changed();
}

/// A failure that nobody waits for is silent.
void UpdateManager::fail(const QString &why) {
    if (m_phase == Phase::checking || m_phase == Phase::downloading) {
        m_failure = why;
        m_phase = Phase::failed;
    }
    emit changed();
}

} // namespace morvane

#include "moc_UpdateManager.cpp"
