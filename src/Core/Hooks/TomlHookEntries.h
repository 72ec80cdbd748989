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
        tables,    ///< a [[hooks]] for each hook; more can be added
        emptyList, ///< `hooks = []`
        list,      ///< `hooks = [ … ]`, to which no [[hooks]] can be added
        other,     ///< `hooks` is something else, such as a [hooks]
    };

    /// Fails, naming the line, where the text isn't valid TOML.
    static Result<TomlHookEntries> find(const QByteArray &text);

    Form form = Form::none;

    /// The line of `hooks`, from 1; 0 where there is none.
    qsizetype line = 0;

    /// How many entries call our script.
    qsizetype ours = 0;

    /// The text without those entries. Comments stay, but for those in a list that is left empty.
    QByteArray withoutOurs;

    /// The text with `prefix` before each line of an empty list of hooks.
    QByteArray withListBehind(const QByteArray &prefix) const;

    /// The meaning of the text without those entries, in a form that can be compared. An empty list
    /// of hooks equals none.
    QByteArray othersMeaning;

private:
    struct Range {
        qsizetype begin;
        qsizetype end;
    };
    Range m_list{0, 0};
};

} // namespace morvane
