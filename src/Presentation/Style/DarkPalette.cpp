#include "Presentation/Style/DarkPalette.h"

#include "Presentation/Style/Colors.h"

namespace morvane {

namespace {

constexpr QColor window(28, 28, 30);
constexpr QColor field(38, 38, 40); // also the ground of menus
constexpr QColor button(58, 58, 60);

} // namespace

QPalette darkPalette() {
    QPalette result(button, window);
    result.setColor(QPalette::Base, field);
    result.setColor(QPalette::ToolTipBase, field);
    result.setColor(QPalette::ToolTipText, Colors::primaryText);
    // Otherwise disabled text would be embossed.
    result.setColor(QPalette::Disabled, QPalette::Light, Qt::transparent);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        result.setColor(role, Colors::primaryText);
        result.setColor(QPalette::Disabled, role, Colors::tertiaryText);
    }
    return result;
}

} // namespace morvane
