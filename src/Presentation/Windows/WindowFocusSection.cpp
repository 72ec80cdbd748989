#include "Presentation/Windows/WindowFocusSection.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/PlatformWords.h"
#include "Presentation/Style/TextLabel.h"

#include <QHBoxLayout>

namespace morvane {

/// No permission can be asked for here: the window manager either lets windows be raised or
/// doesn't.
WindowFocusSection::WindowFocusSection(const WindowContext &context, QWidget *parent)
    : FormSection(tr("Window focus"), parent) {
    const auto add = [this](SystemImage image, const QColor &tint, const QString &text) {
        return addRow(image, tint, makeText(text))->parentWidget();
    };
    QWidget *granted = add(SystemImage::checkmarkCircleFill, Colors::connected, tr("Granted"));
    QWidget *refused = add(SystemImage::exclamationmarkCircle, Colors::warning, tr("Not granted"));
    addFooter(PlatformWords::windowFocusFooter());
    onRefresh([granted, refused, canFocusWindows = context.program.canFocusWindows] {
        granted->setVisible(canFocusWindows());
        refused->setVisible(!canFocusWindows());
    });
}

} // namespace morvane

#include "moc_WindowFocusSection.cpp"
