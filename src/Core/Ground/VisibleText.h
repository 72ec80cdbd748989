#pragma once

#include <QString>

/// Texts in which everything can be seen, for whoever has to judge them: what has no picture of its
/// own, or would change the order of what stands around it, is written out, so that it can be told
/// from what is shown what was given. Letters that look alike are left to look alike. Safe from any
/// thread.
namespace morvane::VisibleText {

/// One line of text. A tab becomes "⇥" and three blanks; what can't be seen (control, format and
/// direction characters, blanks that aren't the usual one, half surrogate pairs, marks that pile
/// up or stand on a blank, a blank at the end) its number, as in "⟨U+202E⟩"; and so does what these
/// are written with.
QString of(QStringView line);

/// What people write to each other, in several lines, and no machine takes for more than words. A
/// line is as `of` has it, but for what writing needs: all blanks look like the usual one, at the
/// end too; selectors behind emoji and joiners, within these and between letters that they shape,
/// stay as they are; and a letter may have as many marks as in Burmese.
QString paragraph(const QString &text);

/// The same made alike for texts that look alike by what `paragraph` lets pass, and empty where
/// there is nothing to be seen. Of words that are partly written from the right the order can't be
/// seen, so those of the same characters are alike.
QString look(const QString &text);

/// A name in a sentence: in one line, whatever it holds, and of no more characters than one takes.
QString name(const QString &text);

/// The text as a JSON string, between quotation marks, with the escapes of JSON for the same.
QString quoted(QStringView text);

/// The character that the text, which isn't empty, begins with; half of a surrogate pair is one by
/// itself.
char32_t firstCharacter(QStringView text);

} // namespace morvane::VisibleText
