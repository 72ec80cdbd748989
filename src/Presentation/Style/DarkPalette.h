#pragma once

#include <QPalette>

namespace morvane {

/// The colours of menus and windows, chosen to go with the black of the panel.
QPalette darkPalette();

} // namespace morvane
