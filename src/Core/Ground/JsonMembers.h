#pragma once

#include <QString>

#include <optional>
#include <string_view>
#include <vector>

/// The members of a JSON object as they are spelled, for passing on what no parser keeps exactly:
/// numbers of any size, lone surrogates, the order of keys. Safe from any thread.
namespace morvane::JsonMembers {

struct Member {
    std::string_view key;   ///< between its quotation marks, escapes as they stand
    std::string_view value; ///< without blanks around it
};

/// All members, in their order. The text must be one that `JsonObject::parse` accepts, or an object
/// within one; the members are views of it.
std::vector<Member> of(std::string_view object);

/// The value of the first member of this key, which is the one that `JsonObject` reads.
std::optional<std::string_view> find(std::string_view object, QStringView key);

/// Decodes what stands between a string's quotation marks. A lone surrogate stays one.
QString decoded(std::string_view spelled);

/// The length of the string that the text begins with, including its quotation marks.
std::size_t stringLength(std::string_view text);

/// The length of the number that the text begins with; 0 where JSON's grammar finds none.
std::size_t numberLength(std::string_view text);

/// The length of the value that the text begins with.
std::size_t valueLength(std::string_view text);

} // namespace morvane::JsonMembers
