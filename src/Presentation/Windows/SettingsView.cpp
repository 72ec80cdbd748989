#include "Presentation/Windows/SettingsView.h"

#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Core/Shell/UpdateManager.h"
#include "Core/Usage/UsagePoller.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"
#include "Presentation/Windows/AboutSection.h"
#include "Presentation/Windows/AgentsSection.h"
#include "Presentation/Windows/ApprovalsSection.h"
#include "Presentation/Windows/BehaviourSection.h"
#include "Presentation/Windows/DisplaysSection.h"
#include "Presentation/Windows/KeepFocusInSight.h"
#include "Presentation/Windows/PictureView.h"
#include "Presentation/Windows/PrivacySection.h"
#include "Presentation/Windows/RemovalSection.h"
#include "Presentation/Windows/SoundSection.h"
#include "Presentation/Windows/UpdatesSection.h"
#include "Presentation/Windows/UsageSection.h"
#include "Presentation/Windows/WindowFocusSection.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr int margin = 22;
constexpr int sectionSpace = 24;

} // namespace

SettingsView::SettingsView(const WindowContext &context, QWidget *parent)
    : QWidget(parent), m_connections(context.connections) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidget(makeForm(context));
    layout->addWidget(m_scroll, 1);
    layout->addWidget(makeFailureBar());
    keepFocusInSight(*this);
    connect(&context.settings, &MorvaneSettings::changed, this, &SettingsView::refresh);
    connect(&m_connections, &AgentConnections::statusChanged, this, &SettingsView::refresh);
    connect(&m_connections, &AgentConnections::lastErrorChanged, this, &SettingsView::refresh);
    connect(&context.usage, &UsagePoller::changed, this, &SettingsView::refresh);
    connect(&context.updates, &UpdateManager::changed, this, &SettingsView::refresh);
    look();
}

QWidget *SettingsView::makeForm(const WindowContext &context) {
    auto *form = new QWidget(m_scroll);
    auto *layout = new QVBoxLayout(form);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(sectionSpace);
    m_sections = {
        new AgentsSection(context, form),    new WindowFocusSection(context, form),
        new DisplaysSection(context, form),  new SoundSection(context, form),
        new ApprovalsSection(context, form), new UsageSection(context, form),
        new BehaviourSection(context, form), new PrivacySection(context, form),
        new UpdatesSection(context, form),   new AboutSection(form),
        new RemovalSection(context, form),
    };
    for (FormSection *section : m_sections) {
        layout->addWidget(section);
    }
    layout->addStretch();
    return form;
}

QWidget *SettingsView::makeFailureBar() {
    m_failureBar = new QWidget(this);
    m_failureBar->setAutoFillBackground(true);
    m_failureBar->setBackgroundRole(QPalette::Base);
    auto *layout = new QHBoxLayout(m_failureBar);
    layout->setContentsMargins(margin, 10, margin, 10);
    layout->setSpacing(8);
    layout->addWidget(new PictureView(15, SystemImage::exclamationmarkTriangleFill, Colors::warning,
                                      m_failureBar));
    m_failure =
        new TextLabel(Typography::text(Typography::bodySize), Colors::primaryText, 4, m_failureBar);
    layout->addWidget(m_failure, 1);
    return m_failureBar;
}

void SettingsView::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    look();
}

void SettingsView::refresh() {
    if (isVisible()) {
        look();
    }
}

void SettingsView::look() {
    for (FormSection *section : m_sections) {
        section->refresh();
    }
    m_failure->setText(m_connections.notice().value_or(QString()));
    m_failureBar->setVisible(!m_failure->text().isEmpty());
}

} // namespace morvane

#include "moc_SettingsView.cpp"
