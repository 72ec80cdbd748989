#pragma once

#include "Core/Shell/BuildInfo.h"
#include "Core/Shell/UpdateFeed.h"
#include "Platform/HttpsClient.h"
#include "Platform/Result.h"
#include "Platform/Time.h"

#include <QObject>

#include <optional>

namespace morvane {

class BackgroundPool;
class Defaults;
class PackageInstaller;
class Scheduler;
class Tools;

/// Where updates come from, and whose signature they must have.
struct UpdateSource {
    std::optional<QUrl> feed = BuildInfo::updateFeed();
    std::optional<QByteArray> publicKey = BuildInfo::updateKey();
    QString version = BuildInfo::version(); ///< the running one
};

/// Looks for newer versions of this program, once a day or when it is told to. It downloads one
/// only when the person wants it, keeps only what the maker has signed and what is later than the
/// running version, and leaves the installation to the desktop's own program. Owned by
/// `AppController`; main thread.
class UpdateManager : public QObject {
    Q_OBJECT

public:
    struct Means {
        HttpsClient &https;
        Scheduler &scheduler;
        BackgroundPool &background;
        Tools &tools;
        PackageInstaller &installer;
    };

    enum class Phase {
        idle,        ///< nothing to tell
        checking,    ///< the person waits for what the feed says
        upToDate,    ///< the feed has nothing newer
        offered,     ///< the feed has a newer version, and the person is to decide
        downloading, ///< the package is fetched and examined
        handedOver,  ///< the desktop's installer has the package, if there is one
        failed       ///< the last check or download has failed
    };

    /// Defaults and means must outlive the manager. Another source is for tests.
    UpdateManager(Defaults &defaults, const Means &means, UpdateSource source = {});

    /// Begins the daily checks, if there are a feed and a key. Called once.
    void start();

    /// Whether a check is possible at this moment: never before `start`, or in a build without
    /// feed or key, and not while the person waits for one, or for a package.
    bool canCheck() const;

    /// Why this build can't look for updates; none where it can, and before `start`.
    const std::optional<QString> &unavailableReason() const { return m_unavailableReason; }

    /// Whether there are a feed and a key, so that a check is possible at all.
    bool isConfigured() const { return m_source.feed && m_source.publicKey; }

    /// Asks the feed now, because the person wants to know.
    void checkForUpdates();

    /// Whether the feed is asked once a day.
    bool automaticChecks() const;
    void setAutomaticChecks(bool enabled);

    /// When the feed's server last answered, to a daily check or to the person's.
    std::optional<Date> lastUpdateCheckDate() const;

    Phase phase() const { return m_phase; }

    const QString &currentVersion() const { return m_source.version; }

    /// The version on offer; valid from `offered` on.
    const UpdateOffer &offer() const { return m_offer; }

    /// Why it failed, in sentences for the person; valid while `failed`.
    const QString &failure() const { return m_failure; }

    /// Where the package lies, and whether an installer could be opened; valid while `handedOver`.
    const QString &packagePath() const { return m_packagePath; }
    bool installerOpened() const { return m_installerOpened; }

    // The person's answers to an offer.

    void download();

    /// Offers this version no more, unless the person asks for a check.
    void skip();

    /// Ends what is under way, and is idle again. A package that an installer has been given stays,
    /// until the next start.
    void dismiss();

    /// The same, for good: removes what was downloaded, and ends the daily checks.
    void discard();

signals:
    /// Anything that can be asked of this object may have changed.
    void changed();

    /// The daily check has an offer to make, and nobody is waiting for it.
    void updateFound();

private:
    void checkAgainIn(Seconds time);
    void checkDaily();
    bool isDue() const;
    void askFeed();
    void takeFeed(const std::optional<HttpsAnswer> &answer);
    Result<void> read(const std::optional<HttpsAnswer> &answer);
    void takePackage(const std::optional<HttpsAnswer> &answer);
    void examine(const QString &path);
    void reject(const QString &why);
    void dropKept();
    void handOver(const QString &path);
    void enter(Phase phase);
    void fail(const QString &why);
    void removeKept();

    Defaults &m_defaults;
    const Means m_means;
    const UpdateSource m_source;
    bool m_isStarted = false;
    std::optional<QString> m_unavailableReason;
    Phase m_phase = Phase::idle;
    bool m_isExamining = false; ///< a downloaded package is still being examined
    UpdateOffer m_offer;
    QString m_failure;
    QString m_packagePath;
    bool m_installerOpened = false;
    Task m_nextCheck;
    Task m_request; ///< the feed or the package
};

} // namespace morvane
