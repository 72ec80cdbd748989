#pragma once

#include <QString>

/// Makes everything in a text visible, for a person who has to judge it: characters that have no
/// glyph, or that reorder their neighbours, are written out, so that what is shown tells exactly
/// what was given. Letters that look alike stay as they are. Safe from any thread.
namespace morvane::VisibleText {

/// One line of text. A tab becomes "⇥" and three blanks. What can't be seen (control, format and
/// direction characters, blanks other than the usual one, lone surrogates, marks that pile up or
/// stand on a blank, a blank at the end) becomes its number, as in "⟨U+202E⟩"; so do "⇥" and "⟨"
/// themselves.
QString of(QStringView line);

/// What people write to each other, in several lines, and no machine interprets. A line is as in
/// `of`, except for what writing needs: all blanks look like the usual one, also at the end;
/// variation selectors behind emoji stay, and so do joiners within emoji and between letters that
/// they shape; and a letter may have as many marks as in Burmese.
QString paragraph(const QString &text);

/// The same, but equal for texts that look alike because of what `paragraph` lets pass, and empty
/// if there is nothing to see. If a part is written from right to left, the order can't be seen, so
/// texts of the same characters are equal.
QString look(const QString &text);

/// A name for a sentence: in one line, whatever it holds, and cut to `BoundedText::lineLength`.
QString name(const QString &text);

/// The text as a JSON string, between quotation marks, with JSON's escapes for what can't be seen.
QString quoted(QStringView text);

/// The first character of the text, which must not be empty; a lone surrogate counts as one.
char32_t firstCharacter(QStringView text);

} // namespace morvane::VisibleText
