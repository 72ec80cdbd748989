#include "Presentation/Notch/NotchVeil.h"

#include "Presentation/Notch/FadingContent.h"
#include "Presentation/Style/Colors.h"

#include <QPainter>

#include <algorithm>

namespace morvane {

NotchVeil::NotchVeil(QList<const FadingContent *> contents, QWidget *parent)
    : QWidget(parent), m_contents(std::move(contents)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void NotchVeil::setShell(const QPainterPath &shell) {
    m_shell = shell;
    setGeometry(parentWidget()->rect());
    update();
}

void NotchVeil::refresh() {
    setVisible(std::ranges::any_of(m_contents, [](const FadingContent *content) {
        return content->opacity() > 0 && content->opacity() < 1;
    }));
    update();
}

void NotchVeil::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(m_shell);
    for (const FadingContent *content : m_contents) {
        painter.fillRect(content->widget().geometry(),
                         Colors::faded(Colors::notchFill, 1 - content->opacity()));
    }
}

} // namespace morvane

#include "moc_NotchVeil.cpp"
