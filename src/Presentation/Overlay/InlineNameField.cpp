#include "Presentation/Overlay/InlineNameField.h"

#include "Platform/Scheduler.h"
#include "Presentation/Overlay/FieldWindow.h"
#include "Presentation/Overlay/InlineEditing.h"
#include "Presentation/Overlay/KeyWindowActivator.h"
#include "Presentation/Overlay/KeyablePanel.h"
#include "Presentation/Overlay/PanelContext.h"
#include "Presentation/Style/Colors.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>

namespace morvane {

namespace {

constexpr double cornerRadius = 5;
constexpr int textInset = 3;
constexpr QColor ground = Colors::white(0.08);
constexpr QColor edge = Colors::sRgb(0.48, 0.7, 1.0, 0.75);
constexpr QColor selection = Colors::sRgb(0.48, 0.7, 1.0, 0.45);

QPalette fieldPalette() {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, Colors::primaryText);
    palette.setColor(QPalette::PlaceholderText, Colors::tertiaryText);
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::HighlightedText, Colors::primaryText);
    return palette;
}

} // namespace

InlineNameField::InlineNameField(const Setup &setup, const PanelContext &context, QWidget *parent)
    : TextField(setup.initial, parent), m_editing(context.editing), m_scheduler(context.scheduler),
      m_setup(setup), m_activator(std::make_unique<KeyWindowActivator>(*this, context.scheduler,
                                                                       [this] { askInWindow(); })),
      m_focus(context.scheduler.after(Seconds(0), [this] { setFocus(); })) {
    setPlaceholderText(setup.placeholder);
    setAccessibleName(setup.title);
    setFrame(false);
    setPalette(fieldPalette());
    setTextMargins(textInset, 0, textInset, 0);
    selectAll();
    connect(this, &InlineNameField::typed, this, [this] { m_editing.renew(m_scheduler.now()); });
    connect(this, &InlineNameField::returnTyped, this, [this] { settle(Outcome::committed); });
    connect(this, &InlineNameField::escapeTyped, this, &InlineNameField::giveUp);
    QCoreApplication::instance()->installEventFilter(this);
    m_editing.begin(context.scheduler.now());
}

InlineNameField::~InlineNameField() {
    leave();
}

void InlineNameField::abandon() {
    settle(Outcome::cancelled);
}

void InlineNameField::goElsewhere() {
    settle(m_setup.commitsOnBlur ? Outcome::committed : Outcome::cancelled);
}

void InlineNameField::giveUp() {
    discard();
    settle(Outcome::cancelled);
}

void InlineNameField::askInWindow() {
    m_window = std::make_unique<FieldWindow>(m_setup);
    setReadOnly(true);
    setFocusPolicy(Qt::NoFocus);
    clearFocus();
    deselect();
    unsetCursor();
    connect(m_window.get(), &FieldWindow::edited, this, [this](const QString &text) {
        setText(text);
        m_editing.renew(m_scheduler.now());
    });
    connect(m_window.get(), &FieldWindow::commit, this, [this] { settle(Outcome::committed); });
    connect(m_window.get(), &FieldWindow::cancel, this, &InlineNameField::giveUp);
    m_window->openBelow(panelOnDesktop());
    update();
}

QRect InlineNameField::panelOnDesktop() const {
    const auto *panel = qobject_cast<const KeyablePanel *>(window());
    const QRect visible = panel != nullptr ? panel->visibleRect() : window()->rect();
    return {window()->mapToGlobal(visible.topLeft()), visible.size()};
}

void InlineNameField::settle(Outcome outcome) {
    if (m_settled) {
        return;
    }
    m_settled = true;
    leave();
    if (outcome == Outcome::committed) {
        emit commit(typedText());
    } else {
        emit cancel();
    }
    hide();
    deleteLater();
}

void InlineNameField::leave() {
    m_focus.cancel();
    m_activator.reset();
    m_window.reset();
    if (m_counts) {
        m_counts = false;
        m_editing.end();
    }
}

bool InlineNameField::commitsOnBlur() const {
    return m_setup.commitsOnBlur && !m_window;
}

/// Rows never take the focus, so a click on one isn't a loss of the focus; it has to commit here.
bool InlineNameField::eventFilter(QObject *watched, QEvent *event) {
    const auto isInPanel = [&] {
        return watched->isWidgetType() && static_cast<QWidget *>(watched)->window() == window();
    };
    if (event->type() == QEvent::MouseButtonPress && commitsOnBlur() && watched != this &&
        isInPanel()) {
        settle(Outcome::committed);
    } else if (event->type() == QEvent::Resize && m_window && isInPanel()) {
        m_window->makeWayFor(panelOnDesktop());
    }
    return TextField::eventFilter(watched, event);
}

/// A field that doesn't commit on a loss of the focus may be open without the keyboard; a click
/// takes it back.
void InlineNameField::mousePressEvent(QMouseEvent *event) {
    if (m_window) {
        m_window->bringToFront();
        return;
    }
    if (auto *panel = qobject_cast<KeyablePanel *>(window())) {
        panel->renewKey();
    }
    TextField::mousePressEvent(event);
}

void InlineNameField::focusOutEvent(QFocusEvent *event) {
    TextField::focusOutEvent(event);
    // The field's own menu takes the focus only while it is open, and hiding the panel confirms
    // nothing.
    if (commitsOnBlur() && event->reason() != Qt::PopupFocusReason && !window()->isHidden()) {
        settle(Outcome::committed);
    }
}

void InlineNameField::hideEvent(QHideEvent *event) {
    TextField::hideEvent(event);
    if (!event->spontaneous()) {
        abandon();
    }
}

void InlineNameField::paintEvent(QPaintEvent *event) {
    if (!m_window) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(edge, 1));
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                                cornerRadius);
    }
    TextField::paintEvent(event);
}

} // namespace morvane

#include "moc_InlineNameField.cpp"
