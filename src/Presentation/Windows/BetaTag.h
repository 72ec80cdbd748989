#pragma once

#include "Presentation/Style/Badge.h"

namespace morvane {

/// Marks an agent whose adapter has not been tried against the real program.
class BetaTag : public Badge {
    Q_OBJECT

public:
    explicit BetaTag(QWidget *parent);
};

} // namespace morvane
