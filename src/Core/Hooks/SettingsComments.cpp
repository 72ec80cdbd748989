#include "Core/Hooks/SettingsComments.h"

#include "Core/Ground/RegularFile.h"
#include "Core/Ground/WholeFile.h"
#include "Core/Hooks/SettingsOrigin.h"

#include <QFileInfo>

#include <algorithm>
#include <span>
#include <string_view>

namespace morvane {

namespace {

/// A comment or a string: within it no other one can begin.
struct Stretch {
    std::string_view begin;
    std::string_view end;
    bool isComment = false;
    bool hasEscapes = false;
};

constexpr Stretch jsonStretches[] = {
    {.begin = "//", .end = "\n", .isComment = true},
    {.begin = "/*", .end = "*/", .isComment = true},
    {.begin = "\"", .end = "\"", .hasEscapes = true},
};
constexpr Stretch tomlStretches[] = {
    {.begin = "#", .end = "\n", .isComment = true},
    {.begin = R"(""")", .end = R"(""")", .hasEscapes = true},
    {.begin = "'''", .end = "'''"},
    {.begin = "\"", .end = "\"", .hasEscapes = true},
    {.begin = "'", .end = "'"},
};

/// The length of the stretch that the text begins with, including its delimiters.
std::size_t lengthOf(const Stretch &stretch, std::string_view text) {
    const bool isInLine = !stretch.isComment && stretch.begin.size() == 1;
    std::size_t at = stretch.begin.size();
    while (at < text.size() && !text.substr(at).starts_with(stretch.end) &&
           !(isInLine && text[at] == '\n')) {
        at += stretch.hasEscapes && text[at] == '\\' ? 2 : 1;
    }
    return std::min(at + stretch.end.size(), text.size());
}

} // namespace

QByteArrayList SettingsComments::commentsIn(const QByteArray &text) const {
    const bool isToml = m_settingsPath.endsWith(QLatin1String(".toml"));
    const std::span<const Stretch> stretches =
        isToml ? std::span<const Stretch>(tomlStretches) : std::span<const Stretch>(jsonStretches);
    QByteArrayList result;
    std::string_view rest(text.constData(), static_cast<std::size_t>(text.size()));
    while (!rest.empty()) {
        const auto found = std::ranges::find_if(
            stretches, [&](const Stretch &each) { return rest.starts_with(each.begin); });
        const std::size_t length = found == stretches.end() ? 1 : lengthOf(*found, rest);
        if (found != stretches.end() && found->isComment) {
            result << QByteArray(rest.data(), static_cast<qsizetype>(length)).trimmed();
        }
        rest.remove_prefix(length);
    }
    return result;
}

Result<void> SettingsComments::rescue(const QString &copyPath,
                                      const QByteArrayList &staying) const {
    const auto copy = SettingsOrigin::ownContent(copyPath);
    if (!copy || staying.contains(*copy)) {
        return {};
    }
    const QString path = m_settingsPath + QLatin1String(".morvane-comments");
    QByteArray rescued;
    if (const QFileInfo present(path); present.isFile() && !present.isSymbolicLink()) {
        const auto content = RegularFile::whole(path);
        if (!content) {
            return content.error();
        }
        rescued = *content;
    }
    const QByteArrayList held = staying + QByteArrayList{rescued};
    const auto isHeld = [&](const QByteArray &comment) {
        return std::ranges::any_of(held,
                                   [&](const QByteArray &text) { return text.contains(comment); });
    };
    if (std::ranges::all_of(commentsIn(*copy), isHeld)) {
        return {};
    }
    WholeFile file(path);
    file.setModel(copyPath);
    file.setMode(0600); // it may hold an earlier copy that only its owner could read
    return file.write(rescued.isEmpty() ? *copy : rescued + '\n' + *copy);
}

} // namespace morvane
