#include "Presentation/Windows/OnboardingWindow.h"

#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QCloseEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <QWindow>

namespace morvane {

namespace {

constexpr QSize windowSize(540, 540);

bool isFirstRun(const OnboardingWindow::Mode &mode) {
    return std::holds_alternative<OnboardingWindow::FirstRun>(mode);
}

} // namespace

OnboardingWindow::OnboardingWindow(const Mode &mode)
    : ManagedWindow(isFirstRun(mode) ? tr("Welcome to Morvane") : tr("New agent detected")) {
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setFixedSize(windowSize);
    if (isFirstRun(mode)) {
        write(tr("Welcome to Morvane"),
              tr("Connect your agents in Morvane's menu: right-click its icon in the tray, or the "
                 "capsule at the top of the screen. Whenever you don't find Morvane, start it "
                 "again."));
    } else {
        QStringList names;
        for (const AgentKind kind : std::get<NewAgents>(mode)) {
            names.append(displayName(kind));
        }
        write(QLocale(QLocale::English).createSeparatedList(names),
              tr("Connect what you use in Morvane's menu, under \"Connected agents\"."));
    }
}

void OnboardingWindow::write(const QString &heading, const QString &text) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(12);
    auto *title =
        new TextLabel(Typography::text(26, QFont::DemiBold), Colors::primaryText, 0, this);
    title->setText(heading);
    auto *body = new TextLabel(Typography::text(15), Colors::secondaryText, 0, this);
    body->setText(text);
    layout->addStretch(2);
    layout->addWidget(title);
    layout->addWidget(body);
    layout->addStretch(3);
}

/// The window can be moved by any place on it that does nothing else.
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
