#pragma once

#include <QPalette>

namespace morvane {

/// The colours of menus and windows, which stand beside the black of the panel.
QPalette darkPalette();

} // namespace morvane
