#pragma once

#include <string_view>

namespace morvane {

/// The folder that a status line is about, if its name is spelled without escapes; otherwise empty.
[[nodiscard]] std::string_view folderIn(std::string_view status);

/// The first line of HEAD in the repository that the folder lies in; empty where there is none. Of
/// a repository's files, which may be anybody's, only the beginning is read.
[[nodiscard]] std::string_view headAround(std::string_view folder);

} // namespace morvane
