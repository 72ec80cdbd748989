#include "Presentation/Mascot/StateMark.h"

namespace morvane::StateMark {

QStringList rows(std::optional<SessionState> state) {
    const auto sign = [](auto... row) { return QStringList{QString::fromLatin1(row)...}; };
    switch (state.value_or(SessionState::idle)) {
    case SessionState::needsInput:
        return sign("..X..", "..X..", "..X..", ".....", "..X..");
    case SessionState::failed:
        return sign("X...X", ".X.X.", "..X..", ".X.X.", "X...X");
    case SessionState::done:
        return sign("....X", "...XX", "X.XX.", "XXX..", ".X...");
    case SessionState::working:
    case SessionState::idle:
        break;
    }
    return {};
}

QPainterPath shape(const QStringList &rows) {
    QPainterPath result;
    result.setFillRule(Qt::WindingFill);
    for (qsizetype row = 0; row < rows.size(); ++row) {
        for (qsizetype column = 0; column < rows[row].size(); ++column) {
            if (rows[row][column] == u'X') {
                result.addRect(static_cast<double>(column), static_cast<double>(row), 1, 1);
            }
        }
    }
    return result;
}

} // namespace morvane::StateMark
