#pragma once

#include "Platform/Result.h"

#include <QByteArray>
#include <QCoreApplication>

#include <vector>

namespace morvane {

/// The hooks in a TOML settings file as a parser sees them, whatever comments stand around them. A
/// value; safe from any thread.
class TomlHookEntries {
    Q_DECLARE_TR_FUNCTIONS(TomlHookEntries)

public:
    enum class Form {
        none,      ///< there is no `hooks`
        tables,    ///< a [[hooks]] for each, to which more can be added
        emptyList, ///< `hooks = []`
        list,      ///< `hooks = [ … ]`, which is closed
        other,     ///< `hooks` is something else, such as a [hooks]
    };

    /// Fails, with the line, where the text is no TOML.
    static Result<TomlHookEntries> find(const QByteArray &text);

    Form form = Form::none;

    /// The line of `hooks`, from 1; 0 where there is none.
    qsizetype line = 0;

    /// How many entries call our script.
    qsizetype ours = 0;

    /// The text without those entries. Comments stay, but for those in a list that is left empty.
    QByteArray withoutOurs;

    /// The text with the lines of `emptyList` each behind `prefix`.
    QByteArray withListBehind(const QByteArray &prefix) const;

    /// What the file says without those entries, in a form that can be compared. An empty list of
    /// hooks is as good as none.
    QByteArray othersMeaning;

private:
    struct Range {
        qsizetype begin;
        qsizetype end;
    };
    Range m_list{0, 0};
};

} // namespace morvane
