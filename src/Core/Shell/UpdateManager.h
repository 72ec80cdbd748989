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

/// Where updates come from, and whose they have to be.
struct UpdateSource {
    std::optional<QUrl> feed = BuildInfo::updateFeed();
    std::optional<QByteArray> publicKey = BuildInfo::updateKey();
    QString version = BuildInfo::version(); ///< what runs
};

/// Looks for newer versions of this program, once a day or when it is told to. It downloads one
/// only when the person wants it, keeps only what the maker has signed and what is later than what
/// runs, and leaves the installing to the desktop's own program. Owned by `AppController`; main
/// thread.
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
        upToDate,    ///< it has nothing newer
        offered,     ///< it has, and the person is to say what becomes of it
        downloading, ///< the package is fetched and looked at
        handedOver,  ///< the desktop's installer has the package, if there is one
        failed       ///< what was asked for last has come to nothing
    };

    /// Defaults and means must outlive the manager. Another source is for tests.
    UpdateManager(Defaults &defaults, const Means &means, UpdateSource source = {});

    /// Begins to look once a day, if there is anywhere to look. Called once.
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

    /// When the feed's server has last answered, whoever wanted it.
    std::optional<Date> lastUpdateCheckDate() const;

    Phase phase() const { return m_phase; }

    const QString &currentVersion() const { return m_source.version; }

    /// What can be had: from `offered` on.
    const UpdateOffer &offer() const { return m_offer; }

    /// Why it came to nothing, in sentences for the person: while `failed`.
    const QString &failure() const { return m_failure; }

    /// Where the package lies, and whether an installer could be asked: while `handedOver`.
    const QString &packagePath() const { return m_packagePath; }
    bool installerOpened() const { return m_installerOpened; }

    // What the person answers to an offer.

    void download();

    /// Not this version, unless the person asks again.
    void skip();

    /// Ends what is under way, and is idle again. A package that an installer has been given stays,
    /// until the next start.
    void dismiss();

    /// The same, for good: nothing that was downloaded is left, and no day's check comes any more.
    void discard();

signals:
    /// Anything that can be asked of this object may have changed.
    void changed();

    /// The daily check has an offer to make, and nobody is waiting for it.
    void updateFound();

private:
    void lookAgainIn(Seconds time);
    void checkDaily();
    bool isDue() const;
    void askFeed();
    void takeFeed(const std::optional<HttpsAnswer> &answer);
    Result<void> read(const std::optional<HttpsAnswer> &answer);
    void takePackage(const std::optional<HttpsAnswer> &answer);
    void lookInto(const QString &path);
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
    bool m_isExamining = false; ///< a package lies there of which nothing is decided yet
    UpdateOffer m_offer;
    QString m_failure;
    QString m_packagePath;
    bool m_installerOpened = false;
    Task m_nextLook;
    Task m_request; ///< the feed or the package
};

} // namespace morvane
