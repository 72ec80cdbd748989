#include "Core/Hooks/TomlHookEntries.h"

#include "Core/Hooks/HookPlan.h"

#define TOML_HEADER_ONLY 1
#define TOML_EXCEPTIONS 0
#include <algorithm>
#include <sstream>
#include <string_view>
#include <toml++/toml.h>

namespace morvane {

namespace {

/// Where the lines and the columns of a parser, which counts code points, lie among the bytes.
class TextPositions {
public:
    explicit TextPositions(const QByteArray &text)
        : m_text(text), m_lines{text.startsWith("\xEF\xBB\xBF") ? 3 : 0} {
        for (qsizetype end = text.indexOf('\n'); end >= 0; end = text.indexOf('\n', end + 1)) {
            m_lines.push_back(end + 1);
        }
    }

    qsizetype line(std::size_t number) const {
        return number > m_lines.size() ? m_text.size() : m_lines[number - 1];
    }

    qsizetype at(const toml::source_position &position) const {
        qsizetype offset = line(position.line);
        for (toml::source_index column = 1; column < position.column; ++column) {
            do {
                ++offset;
            } while (offset < m_text.size() && (m_text[offset] & 0xC0) == 0x80);
        }
        return std::min(offset, m_text.size());
    }

private:
    const QByteArray &m_text;
    std::vector<qsizetype> m_lines;
};

bool callsOurScript(const toml::node &entry) {
    const toml::table *table = entry.as_table();
    const auto command = table ? (*table)["command"].value<std::string_view>() : std::nullopt;
    return command && command->find(HookPlan::hookScriptMarker) != std::string_view::npos;
}

/// An entry with headers of its own below it, which no agent makes of ours, is left alone.
bool isFlat(const toml::node &entry) {
    return std::ranges::all_of(*entry.as_table(), [](const auto &member) {
        return !member.second.is_table() || member.second.as_table()->is_inline();
    });
}

bool isOurTomlEntry(const toml::node &entry) {
    return callsOurScript(entry) && isFlat(entry);
}

QByteArray meaning(const toml::table &root) {
    std::ostringstream text;
    text << toml::toml_formatter(root);
    return QByteArray::fromStdString(text.str());
}

/// Takes ranges out of a text; they come in order of their beginnings.
class Cutter {
public:
    explicit Cutter(const QByteArray &text) : m_text(text) {}

    void cut(qsizetype begin, qsizetype end) {
        m_result += m_text.mid(m_done, std::max<qsizetype>(begin - m_done, 0));
        m_done = std::max(m_done, end);
    }
    void put(const QByteArray &text) { m_result += text; }
    QByteArray result() const { return m_result + m_text.mid(m_done); }

private:
    const QByteArray &m_text;
    QByteArray m_result;
    qsizetype m_done = 0;
};

/// The header of each entry and the lines of its members, but not what stands between them.
QByteArray withoutTables(const QByteArray &text, const TextPositions &positions,
                         const toml::array &hooks) {
    std::vector<std::pair<std::size_t, std::size_t>> lines;
    for (const toml::node &entry : hooks) {
        if (!isOurTomlEntry(entry)) {
            continue;
        }
        lines.emplace_back(entry.source().begin.line, entry.source().begin.line);
        for (const auto &[key, value] : *entry.as_table()) {
            lines.emplace_back(key.source().begin.line, value.source().end.line);
        }
    }
    std::ranges::sort(lines);
    Cutter cutter(text);
    for (const auto &[first, last] : lines) {
        cutter.cut(positions.line(first), positions.line(last + 1));
    }
    return cutter.result();
}

TomlHookEntries::Form formOf(const toml::node &hooks) {
    using enum TomlHookEntries::Form;
    const toml::array *array = hooks.as_array();
    if (!array) {
        return other;
    }
    if (array->empty()) {
        return emptyList;
    }
    const toml::table *first = array->front().as_table();
    return first && !first->is_inline() ? tables : list;
}

void removeOurEntries(toml::array &hooks) {
    for (auto entry = hooks.begin(); entry != hooks.end();) {
        entry = isOurTomlEntry(*entry) ? hooks.erase(entry) : std::next(entry);
    }
}

/// Each entry with the comma that parts it from its neighbour.
QByteArray withoutMembers(const QByteArray &text, const TextPositions &positions,
                          const toml::array &hooks) {
    Cutter cutter(text);
    if (std::ranges::all_of(hooks, isOurTomlEntry)) {
        cutter.cut(positions.at(hooks.source().begin), positions.at(hooks.source().end));
        cutter.put("[]");
        return cutter.result();
    }
    qsizetype kept = -1; // where the last one that stays ends
    for (std::size_t i = 0; i < hooks.size(); ++i) {
        const bool isLast = i + 1 == hooks.size();
        const qsizetype end = positions.at(hooks[i].source().end);
        if (!isOurTomlEntry(hooks[i])) {
            kept = end;
        } else if (!isLast && kept < 0) {
            cutter.cut(positions.at(hooks[i].source().begin),
                       positions.at(hooks[i + 1].source().begin));
        } else {
            cutter.cut(kept, end);
            kept = end;
        }
    }
    return cutter.result();
}

} // namespace

Result<TomlHookEntries> TomlHookEntries::find(const QByteArray &text) {
    toml::parse_result parsed =
        toml::parse(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
    if (!parsed) {
        return Failure{
            tr("config.toml is no valid TOML at line %1").arg(parsed.error().source().begin.line)};
    }
    toml::table &root = parsed.table();
    TomlHookEntries result;
    result.withoutOurs = text;
    if (const auto found = root.find("hooks"); found != root.end()) {
        const TextPositions positions(text);
        const std::size_t line = found->first.source().begin.line;
        result.form = formOf(found->second);
        result.line = static_cast<qsizetype>(line);
        result.m_list = {positions.line(line), positions.line(found->second.source().end.line + 1)};
        if (toml::array *hooks = found->second.as_array()) {
            result.ours = std::ranges::count_if(*hooks, isOurTomlEntry);
            result.withoutOurs = result.form == Form::list ? withoutMembers(text, positions, *hooks)
                                                           : withoutTables(text, positions, *hooks);
            removeOurEntries(*hooks);
            if (hooks->empty()) {
                root.erase(found);
            }
        }
    }
    result.othersMeaning = meaning(root);
    return result;
}

QByteArray TomlHookEntries::withListBehind(const QByteArray &prefix) const {
    QByteArray lines = withoutOurs.mid(m_list.begin, m_list.end - m_list.begin);
    const bool endsLine = lines.endsWith('\n');
    lines.chop(endsLine ? 1 : 0);
    lines = prefix + lines.replace('\n', '\n' + prefix) + (endsLine ? "\n" : "");
    return withoutOurs.left(m_list.begin) + lines + withoutOurs.mid(m_list.end);
}

} // namespace morvane
