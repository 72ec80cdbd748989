#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <string_view>

namespace morvane {

/// All that a tool call is given, as a person may read it before they allow it: a command with its
/// line breaks, an edit or a written file as the lines that go and come, anything else as indented
/// JSON. Nothing in it is invisible or changes the order of what stands around it
/// (`VisibleText`), but for what prose is written with. A plain value.
struct ReadableInput {
    enum class Sign {
        plain,
        removed,
        added,
        aside, ///< not the matter itself: which file, which options
        prose, ///< a line of what is only read, by people and the agent
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

    /// Reads a JSON value as it is spelled, in what `JsonObject::parse` takes; an empty object says
    /// nothing. Safe from any thread.
    static ReadableInput of(std::string_view value);

    /// The same of a tool that shows a plan, whose text is prose for its first 16,384 code units.
    static ReadableInput ofPlan(std::string_view value);

    /// The members of an object but for those of these keys, all of them aside.
    static ReadableInput beside(std::string_view object, const QStringList &keys);

    /// What there is to read beyond a line that stands for it all, such as the call's detail.
    struct Rest {
        qsizetype lines = 0;      ///< more than the one
        qsizetype characters = 0; ///< where there is but one line
        bool isEmpty() const { return lines == 0 && characters == 0; }
    };
    Rest beyond(const QString &visibleLine) const;

    friend bool operator==(const ReadableInput &, const ReadableInput &) = default;
};

} // namespace morvane
