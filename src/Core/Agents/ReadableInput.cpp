#include "Core/Agents/ReadableInput.h"

#include "Core/Ground/JsonMembers.h"
#include "Core/Ground/VisibleText.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace morvane {

namespace {

using Sign = ReadableInput::Sign;

/// In code units: words of every script take long to lay out, and far longer than single letters.
constexpr qsizetype mostProse = 16'384;

struct Member {
    QString key;
    std::string_view value;
    bool isTold = false;

    bool isText() const { return value.starts_with('"'); }
    QString text() const { return JsonMembers::decoded(value.substr(1, value.size() - 2)); }
};

using Members = QList<Member>;

Members membersOf(std::string_view object) {
    Members result;
    for (const auto &[key, value] : JsonMembers::of(object)) {
        result.append({JsonMembers::decoded(key), value});
    }
    return result;
}

/// The first member of this key, if it holds a text.
Member *textOf(Members &members, QLatin1StringView key) {
    const auto found = std::ranges::find(members, key, &Member::key);
    return found != members.end() && found->isText() ? &*found : nullptr;
}

/// Collects lines for as long as there is room for them.
class Page {
public:
    void add(Sign sign, QStringView text) {
        for (bool isLast = false; !isLast && !m_page.isCut;) {
            const qsizetype lineFeed = text.indexOf(u'\n');
            isLast = lineFeed < 0;
            const QStringView line = isLast ? text : text.first(lineFeed);
            // No text becomes shorter by being made visible.
            const QStringView kept = line.first(std::min(line.size(), m_room));
            if (sign == Sign::prose && kept.size() > m_room - (ReadableInput::limit - mostProse)) {
                sign = Sign::plain;
            }
            addVisible(sign, sign == Sign::prose ? VisibleText::paragraph(kept.toString())
                                                 : VisibleText::of(kept));
            text = isLast ? QStringView() : text.sliced(lineFeed + 1);
        }
    }

    /// Adds a line that holds only visible text.
    void addVisible(Sign sign, QString line) {
        m_page.isCut = m_page.isCut || m_room == 0;
        if (m_page.isCut) {
            return;
        }
        m_page.isCut = line.size() >= m_room;
        line.truncate(m_room - 1);
        if (m_page.isCut && !line.isEmpty() && line.back().isHighSurrogate()) {
            line.chop(1);
        }
        m_room -= line.size() + 1;
        m_page.lines.append({sign, line});
    }

    /// Adds a JSON value behind `head`, with a line for each of its members.
    void addJson(Sign sign, QString head, std::string_view value);

    void addUntold(const Members &members) {
        for (const Member &member : members) {
            if (!member.isTold) {
                addJson(Sign::aside, VisibleText::quoted(member.key) + QStringLiteral(": "),
                        member.value);
            }
        }
    }

    void cut() { m_page.isCut = true; }

    ReadableInput take() { return std::move(m_page); }

private:
    /// The part of a string's spelling that there may be room for.
    std::string_view shown(std::string_view spelled) const {
        constexpr std::size_t longestEscape = 6;
        return spelled.substr(0, longestEscape * static_cast<std::size_t>(m_room + 1));
    }

    ReadableInput m_page;
    qsizetype m_room = ReadableInput::limit + 1; ///< in code units, with a line break for each line
};

void Page::addJson(Sign sign, QString head, std::string_view value) {
    constexpr std::string_view blanks = " \t\r\n";
    constexpr qsizetype deepestIndent = 10;
    qsizetype depth = 0;
    QString line = std::move(head);
    const auto breakLine = [&] {
        addVisible(sign, line);
        // Deeper levels aren't indented any further.
        line = QString(2 * std::min(depth, deepestIndent), u' ');
    };
    while (!value.empty() && !m_page.isCut) {
        const char token = value.front();
        std::size_t length = 1;
        if (token == '"') {
            length = JsonMembers::stringLength(value);
            const auto spelled = shown(value.substr(1, length - 2));
            line += VisibleText::quoted(JsonMembers::decoded(spelled));
        } else if (token == '{' || token == '[') {
            line += QLatin1Char(token);
            const auto next = value.find_first_not_of(blanks, 1);
            const bool isEmpty = next != value.npos && (value[next] == '}' || value[next] == ']');
            if (isEmpty) {
                line += QLatin1Char(value[next]);
                length = next + 1;
            } else {
                ++depth;
                breakLine();
            }
        } else if (token == '}' || token == ']') {
            --depth;
            breakLine();
            line += QLatin1Char(token);
        } else if (token == ',') {
            line += QLatin1Char(token);
            breakLine();
        } else if (token == ':') {
            line += QStringLiteral(": ");
        } else if (blanks.find(token) == blanks.npos) {
            line += QLatin1Char(token);
        }
        value.remove_prefix(length);
    }
    addVisible(sign, line);
}

struct KeyPair {
    QLatin1StringView before;
    QLatin1StringView after;
};

constexpr std::array editKeys{
    KeyPair{QLatin1StringView("old_string"), QLatin1StringView("new_string")},
    KeyPair{QLatin1StringView("oldString"), QLatin1StringView("newString")},
    KeyPair{QLatin1StringView("old_str"), QLatin1StringView("new_str")}};

struct Edit {
    QString before;
    QString after;
};

/// The texts of an edit, whose members are then marked as told.
std::optional<Edit> takeEdit(Members &members) {
    for (const KeyPair &keys : editKeys) {
        Member *const before = textOf(members, keys.before);
        Member *const after = textOf(members, keys.after);
        if (before != nullptr && after != nullptr) {
            before->isTold = after->isTold = true;
            return Edit{before->text(), after->text()};
        }
    }
    return std::nullopt;
}

/// Lines with which both texts begin and end are shown once, as context of the change.
void addEdit(Page &page, const Edit &edit) {
    const auto linesOf = [](const QString &text) {
        return text.isEmpty() ? QStringList() : text.left(ReadableInput::limit).split(u'\n');
    };
    const QStringList before = linesOf(edit.before);
    const QStringList after = linesOf(edit.after);
    const auto head = std::ranges::mismatch(before, after).in1 - before.begin();
    const auto tailLimit = std::min(before.size(), after.size()) - head;
    const auto tail =
        std::min(std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend()).first -
                     before.rbegin(),
                 tailLimit);
    const auto add = [&page](Sign sign, const QStringList &lines) {
        for (const QString &line : lines) {
            page.add(sign, line);
        }
    };
    add(Sign::plain, before.first(head));
    add(Sign::removed, before.sliced(head, before.size() - head - tail));
    add(Sign::added, after.sliced(head, after.size() - head - tail));
    add(Sign::plain, before.last(tail));
    if (std::max(edit.before.size(), edit.after.size()) > ReadableInput::limit) {
        page.cut();
    }
}

using Reading = std::optional<ReadableInput> (*)(Members);

/// The lines of one text, followed by all other members.
std::optional<ReadableInput> readText(Members members, QLatin1StringView key,
                                      Sign sign = Sign::plain) {
    Member *const text = textOf(members, key);
    if (text == nullptr || text->text().trimmed().isEmpty()) {
        return std::nullopt;
    }
    text->isTold = true;
    Page page;
    page.add(sign, text->text());
    page.addUntold(members);
    return page.take();
}

std::optional<ReadableInput> readCommand(Members members) {
    return readText(std::move(members), QLatin1StringView("command"));
}

std::optional<ReadableInput> readPlan(Members members) {
    return readText(std::move(members), QLatin1StringView("plan"));
}

std::optional<ReadableInput> readEdit(Members members) {
    const auto edit = takeEdit(members);
    if (!edit) {
        return std::nullopt;
    }
    Page page;
    page.addUntold(members);
    addEdit(page, *edit);
    return page.take();
}

/// The objects of a list, or none when it has an element of another type.
QList<Members> objectsOf(std::string_view list) {
    QList<Members> result;
    list.remove_prefix(1);
    while (true) {
        list.remove_prefix(std::min(list.find_first_not_of(" \t\r\n,"), list.size()));
        if (!list.starts_with('{')) {
            return list.starts_with(']') ? result : QList<Members>();
        }
        const std::size_t length = JsonMembers::valueLength(list);
        result.append(membersOf(list.substr(0, length)));
        list.remove_prefix(length);
    }
}

std::optional<ReadableInput> readEdits(Members members) {
    const auto edits = std::ranges::find(members, QLatin1StringView("edits"), &Member::key);
    if (edits == members.end() || !edits->value.starts_with('[')) {
        return std::nullopt;
    }
    QList<Members> list = objectsOf(edits->value);
    if (list.isEmpty()) {
        return std::nullopt;
    }
    edits->isTold = true;
    Page page;
    page.addUntold(members);
    for (qsizetype number = 1; Members & one : list) {
        page.addVisible(Sign::aside,
                        QStringLiteral("@@ %1 / %2 @@").arg(number++).arg(list.size()));
        const auto edit = takeEdit(one);
        if (!edit) {
            return std::nullopt;
        }
        page.addUntold(one);
        addEdit(page, *edit);
    }
    return page.take();
}

std::optional<ReadableInput> readWrittenFile(Members members) {
    Member *const content = textOf(members, QLatin1StringView("content"));
    const bool hasPath = std::ranges::any_of(
        std::array{"file_path", "filePath", "path"},
        [&members](const char *key) { return textOf(members, QLatin1StringView(key)); });
    if (content == nullptr || !hasPath) {
        return std::nullopt;
    }
    content->isTold = true;
    Page page;
    page.addUntold(members);
    page.add(Sign::added, content->text());
    return page.take();
}

/// An object with only one of the texts that can be a call's detail needs no braces.
std::optional<ReadableInput> readSingleText(Members members) {
    constexpr std::array keys{"file_path", "path", "pattern", "url", "query"};
    const bool isSingle = members.size() == 1 && members[0].isText() &&
                          std::ranges::any_of(keys, [&members](const char *key) {
                              return members[0].key == QLatin1StringView(key);
                          });
    if (!isSingle || members[0].text().trimmed().isEmpty()) {
        return std::nullopt;
    }
    Page page;
    page.add(Sign::plain, members[0].text());
    return page.take();
}

} // namespace

ReadableInput ReadableInput::of(std::string_view value) {
    Page page;
    if (value.starts_with('"')) {
        page.add(Sign::plain, JsonMembers::decoded(value.substr(1, value.size() - 2)));
        return page.take();
    }
    const Members members = value.starts_with('{') ? membersOf(value) : Members();
    if (value.starts_with('{') && members.isEmpty()) {
        return {};
    }
    for (const Reading read :
         {&readEdit, &readEdits, &readCommand, &readWrittenFile, &readPlan, &readSingleText}) {
        if (auto result = read(members); result && !result->lines.isEmpty()) {
            return *result;
        }
    }
    page.addJson(Sign::plain, {}, value);
    return page.take();
}

ReadableInput ReadableInput::ofPlan(std::string_view value) {
    const auto plan = readText(value.starts_with('{') ? membersOf(value) : Members(),
                               QLatin1StringView("plan"), Sign::prose);
    return plan ? *plan : of(value);
}

ReadableInput ReadableInput::beside(std::string_view object, const QStringList &keys) {
    Members members = membersOf(object);
    members.removeIf([&keys](const Member &member) { return keys.contains(member.key); });
    Page page;
    page.addUntold(members);
    return page.take();
}

ReadableInput::Rest ReadableInput::beyond(const QString &visibleLine) const {
    if (lines.size() > 1) {
        return {lines.size() - 1, 0};
    }
    if (lines.isEmpty() || lines[0].text == visibleLine) {
        return {};
    }
    const qsizetype more = lines[0].text.toUcs4().size() - visibleLine.toUcs4().size();
    return {0, std::max<qsizetype>(1, more)};
}

} // namespace morvane
