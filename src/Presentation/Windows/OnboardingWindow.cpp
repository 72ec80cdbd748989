#include "Presentation/Windows/OnboardingWindow.h"

#include "Core/Hooks/AgentConnections.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <QWindow>

namespace morvane {

namespace {

constexpr QSize windowSize(540, 540);

} // namespace

OnboardingWindow::OnboardingWindow(const OnboardingView::Mode &mode, const WindowContext &context)
    : ManagedWindow(std::holds_alternative<OnboardingView::FirstRun>(mode)
                        ? tr("Welcome to Morvane")
                        : tr("New agent detected")),
      m_view(new OnboardingView(mode, context, this)) {
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setFixedSize(windowSize);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    connect(m_view, &OnboardingView::finished, this, &QWidget::close);
    // An agent may have been installed meanwhile.
    connect(this, &ManagedWindow::activated, &context.connections,
            &AgentConnections::refreshStatus);
}

void OnboardingWindow::refresh() {
    m_view->refresh();
}

/// The welcome comes only once, so no key closes it by accident.
void OnboardingWindow::keyPressEvent(QKeyEvent *event) {
    event->ignore();
}

/// The window can be dragged at any place that has no other use.
void OnboardingWindow::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        windowHandle()->startSystemMove();
    }
}

void OnboardingWindow::closeEvent(QCloseEvent *event) {
    event->accept();
    emit finished();
}

} // namespace morvane

#include "moc_OnboardingWindow.cpp"
