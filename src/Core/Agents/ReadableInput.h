#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <string_view>

namespace morvane {

/// The whole input of a tool call, as a person may read it before they allow it: a command with its
/// line breaks, an edit or a written file as removed and added lines, anything else as indented
/// JSON. Characters that are invisible or reorder the text around them are written out
/// (`VisibleText`), except those that prose needs. A plain value.
struct ReadableInput {
    enum class Sign {
        plain,
        removed,
        added,
        aside, ///< secondary: which file, which options
        prose, ///< text that people and the agent only read
    };

    struct Line {
        Sign sign = Sign::plain;
        QString text;

        friend bool operator==(const Line &, const Line &) = default;
    };

    /// At most this many code units are kept, a line break counting as one.
    static constexpr qsizetype limit = 65'536;

    QList<Line> lines; ///< none when the agent has sent nothing
    bool isCut = false;

    /// Reads a JSON value as it is spelled in a text that `JsonObject::parse` accepts; an empty
    /// object has no lines. Safe from any thread.
    static ReadableInput of(std::string_view value);

    /// The same for a tool that shows a plan, which is prose in its first 16,384 code units.
    static ReadableInput ofPlan(std::string_view value);

    /// The members of an object except those with these keys, all as `Sign::aside`.
    static ReadableInput beside(std::string_view object, const QStringList &keys);

    /// How much there is to read beyond the line that summarises it, such as the call's detail.
    struct Rest {
        qsizetype lines = 0;      ///< in addition to the first
        qsizetype characters = 0; ///< if there is only one line
        bool isEmpty() const { return lines == 0 && characters == 0; }
    };
    Rest beyond(const QString &visibleLine) const;

    friend bool operator==(const ReadableInput &, const ReadableInput &) = default;
};

} // namespace morvane
