#include "Core/Usage/CredentialReader.h"

#include "Core/Ground/RegularFile.h"
#include "Core/Usage/UsageFormat.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace morvane {

namespace {

const QString service = QStringLiteral("Claude Code-credentials");
const QString file = QStringLiteral(".claude/.credentials.json");
constexpr qsizetype longestFile = 1'048'576;

/// A token that expires sooner may expire on its way.
constexpr Seconds margin(120);

} // namespace

CredentialReader::CredentialReader(SecretStore &store, Scheduler &scheduler,
                                   BackgroundPool &background)
    : m_scheduler(scheduler), m_background(background),
      m_tool(std::make_shared<SecurityTool>(store)) {}

void CredentialReader::read(std::function<void(const Lookup &)> use) {
    if (m_cached && isGood(*m_cached)) {
        use(*m_cached);
        return;
    }
    m_waiting.push_back(std::move(use));
    if (m_waiting.size() == 1) {
        m_background.compute([tool = m_tool] { return search(*tool); }, m_scheduler, this,
                             [this](const std::optional<Credential> &found) { take(found); });
    }
}

bool CredentialReader::isGood(const Credential &credential) const {
    return !credential.expiresAt || *credential.expiresAt >= m_scheduler.now() + margin;
}

/// Reads the file first, so that nobody who has one is bothered by the secret store.
std::optional<Credential> CredentialReader::search(SecurityTool &tool) {
    const auto bytes = RegularFile::head(QDir::home().filePath(file), longestFile);
    if (const auto credential = bytes ? parse(*bytes) : std::nullopt) {
        return credential;
    }
    const SecretStore::Answer answer = tool.run(service);
    const auto *secret = std::get_if<QByteArray>(&answer);
    return secret ? parse(*secret) : std::nullopt;
}

void CredentialReader::take(const std::optional<Credential> &found) {
    if (found) {
        m_cached = found;
    }
    const Lookup result = lookup();
    for (const auto &use : std::exchange(m_waiting, {})) {
        use(result);
    }
}

CredentialReader::Lookup CredentialReader::lookup() const {
    if (m_cached) {
        return *m_cached;
    }
    if (m_tool->isBlocked()) {
        return KeychainUnavailable{};
    }
    return Missing{};
}

std::optional<Credential> CredentialReader::parse(const QByteArray &bytes) {
    const QJsonObject oauth = QJsonDocument::fromJson(bytes).object()[u"claudeAiOauth"].toObject();
    const QByteArray token = oauth[u"accessToken"].toString().toUtf8();
    if (token.isEmpty()) {
        return std::nullopt;
    }
    const auto milliseconds = UsageFormat::doubleValue(oauth[u"expiresAt"]);
    return Credential{token, UsageFormat::dateAt(milliseconds.value_or(0) / 1000)};
}

} // namespace morvane

#include "moc_CredentialReader.cpp"
