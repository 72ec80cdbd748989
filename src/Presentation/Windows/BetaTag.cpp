#include "Presentation/Windows/BetaTag.h"

#include "Presentation/Style/Colors.h"

namespace morvane {

BetaTag::BetaTag(QWidget *parent) : Badge(parent) {
    setContent(tr("beta"), Colors::secondaryText,
               tr("Written from documentation but not yet tested against a real install."));
}

} // namespace morvane

#include "moc_BetaTag.cpp"
