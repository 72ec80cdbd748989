#include "Presentation/Style/TextRows.h"

#include <QTextLayout>
#include <QTextOption>

namespace morvane {

QList<TextRow> textRows(const QString &text, const QFont &font, int width, qsizetype most) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QList<TextRow> rows;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        rows.append({line.textStart(), line.textLength()});
        if (rows.size() == most) {
            break;
        }
    }
    layout.endLayout();
    return rows;
}

} // namespace morvane
