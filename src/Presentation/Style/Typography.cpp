#include "Presentation/Style/Typography.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace morvane::Typography {

QFont text(int size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

QFont code(int size) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(size);
    return font;
}

} // namespace morvane::Typography
