#include "Presentation/Windows/SettingsWindow.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QVBoxLayout>

namespace morvane {

SettingsWindow::SettingsWindow() : ManagedWindow(tr("Morvane Settings")) {
    resize(560, 400);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    auto *text = new TextLabel(Typography::text(14), Colors::secondaryText, 0, this);
    text->setText(tr("Agents are connected in Morvane's menu: right-click its icon in the tray, or "
                     "the capsule at the top of the screen."));
    layout->addWidget(text);
    layout->addStretch();
}

} // namespace morvane
