#include "Presentation/Windows/OnboardingView.h"

#include "Core/Hooks/AgentConnections.h"
#include "Core/Settings/MorvaneSettings.h"
#include "Platform/MotionPreference.h"
#include "Platform/StatusItemHost.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Windows/FormButton.h"
#include "Presentation/Windows/OnboardingPage.h"
#include "Presentation/Windows/PageStack.h"
#include "Presentation/Windows/PictureView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace morvane {

namespace {

constexpr int sideWidth = 120;
constexpr int dotSide = 7;
constexpr int dotSpace = 6;

} // namespace

OnboardingView::OnboardingView(const Mode &mode, const WindowContext &context, QWidget *parent)
    : QWidget(parent), m_context(context), m_stack(new PageStack(context.scheduler, this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    addPages(mode);
    layout->addWidget(m_stack, 1);
    layout->addWidget(makeFooter());
    connect(&context.connections, &AgentConnections::statusChanged, this, &OnboardingView::refresh);
    connect(&context.connections, &AgentConnections::lastErrorChanged, this,
            &OnboardingView::refresh);
    connect(&context.settings, &MorvaneSettings::changed, this, &OnboardingView::refresh);
    connect(&context.statusItemHost, &StatusItemHost::presenceChanged, this,
            &OnboardingView::refresh);
    refresh();
}

void OnboardingView::addPages(const Mode &mode) {
    if (const auto *kinds = std::get_if<NewAgents>(&mode)) {
        addPage(OnboardingPage::newAgents(*kinds, m_context, m_stack));
    } else {
        addPage(OnboardingPage::welcome(m_context, m_stack));
        addPage(OnboardingPage::connectAgents(m_context, m_stack));
        addPage(OnboardingPage::ready(m_context, m_stack));
    }
}

void OnboardingView::addPage(OnboardingPage *page) {
    m_pages.push_back(page);
    m_stack->add(page);
}

QWidget *OnboardingView::makeFooter() {
    auto *footer = new QWidget(this);
    auto *layout = new QHBoxLayout(footer);
    layout->setContentsMargins(24, 14, 24, 22);
    const auto addSide = [&](FormButton::Role role, Qt::Alignment alignment) {
        auto *side = new QWidget(footer);
        side->setFixedWidth(sideWidth);
        auto *button = new FormButton({}, role, side);
        auto *inner = new QHBoxLayout(side);
        inner->setContentsMargins(0, 0, 0, 0);
        inner->addWidget(button, 0, alignment);
        layout->addWidget(side);
        return button;
    };
    m_back = addSide(FormButton::Role::ordinary, Qt::AlignLeft);
    m_back->setText(tr("&Back"));
    layout->addWidget(makeDots(), 1);
    m_next = addSide(FormButton::Role::primary, Qt::AlignRight);
    connect(m_back, &FormButton::clicked, this, [this] { go(m_step - 1); });
    connect(m_next, &FormButton::clicked, this, &OnboardingView::goOn);
    return footer;
}

QWidget *OnboardingView::makeDots() {
    auto *dots = new QWidget(this);
    auto *layout = new QHBoxLayout(dots);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(dotSpace);
    layout->addStretch();
    for (int index = 0; lastStep() > 0 && index <= lastStep(); ++index) {
        const auto paintDot = [this, index](QPainter &painter, const QRectF &frame) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(index == m_step ? Colors::primaryText : Colors::white(0.25));
            painter.drawEllipse(frame);
        };
        m_dots.push_back(new PictureView(dotSide, paintDot, dots));
        layout->addWidget(m_dots.back());
    }
    layout->addStretch();
    return dots;
}

void OnboardingView::go(int step) {
    m_step = step;
    m_stack->show(step, m_context.motion.isReduced() ? Motion::atOnce : Motion::animated);
    m_next->setFocus();
    refresh();
}

void OnboardingView::goOn() {
    if (m_step == lastStep()) {
        emit finished();
    } else {
        go(m_step + 1);
    }
}

bool OnboardingView::event(QEvent *event) {
    if (event->type() == QEvent::WindowDeactivate) {
        m_return.abandon();
    }
    return QWidget::event(event);
}

/// Return goes on unless the focused control uses it. Page Up and Page Down scroll the page, which
/// may hold no control whose focus would scroll it.
void OnboardingView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        m_return.begin(*event);
    } else if (event->matches(QKeySequence::MoveToNextPage)) {
        m_stack->scrollPage(QAbstractSlider::SliderPageStepAdd);
    } else if (event->matches(QKeySequence::MoveToPreviousPage)) {
        m_stack->scrollPage(QAbstractSlider::SliderPageStepSub);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void OnboardingView::keyReleaseEvent(QKeyEvent *event) {
    if (m_return.isEndedBy(*event)) {
        m_next->click();
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

void OnboardingView::refresh() {
    for (OnboardingPage *page : m_pages) {
        page->refresh();
    }
    for (PictureView *dot : m_dots) {
        dot->update();
    }
    m_back->setVisible(m_step > 0);
    m_next->setText(m_step == lastStep() ? tr("Done") : tr("Continue →"));
}

void OnboardingView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    QRadialGradient glow(QPointF(width() / 2.0, height() * 0.28), width() * 0.75);
    glow.setColorAt(0, Colors::onboardingGlow);
    glow.setColorAt(1, Colors::windowFill);
    painter.fillRect(rect(), glow);
}

} // namespace morvane

#include "moc_OnboardingView.cpp"
