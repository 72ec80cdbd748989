#include "Presentation/Panel/SessionContextRow.h"

#include "Core/Ground/BoundedText.h"
#include "Core/Sessions/Session.h"
#include "Presentation/Panel/AgentBadge.h"
#include "Presentation/Panel/ContextGauge.h"
#include "Presentation/Style/Colors.h"
#include "Presentation/Style/HelpText.h"
#include "Presentation/Style/TextLabel.h"
#include "Presentation/Style/Typography.h"

#include <QHBoxLayout>

#include <initializer_list>

namespace morvane {

namespace {

constexpr int modelSize = 9;
constexpr int noteSize = 10;

QColor colorOf(ContextPressure pressure) {
    switch (pressure) {
    case ContextPressure::comfortable:
        return Colors::quietAccent;
    case ContextPressure::filling:
        return Colors::fillingContext;
    case ContextPressure::tight:
        return Colors::tightContext;
    case ContextPressure::large:
        return Colors::quietText;
    }
    return Colors::quietText;
}

} // namespace

SessionContextRow::SessionContextRow(QWidget *parent)
    : QWidget(parent), m_agent(new AgentBadge(this)),
      m_name(new TextLabel(Typography::text(Typography::bodySize), Colors::primaryText, 1, this)),
      m_model(new TextLabel(Typography::text(modelSize), Colors::quietText, 1, this)),
      m_context(new TextLabel(Typography::text(Typography::bodySize), Colors::quietText, 1, this)),
      m_note(new TextLabel(Typography::text(noteSize), Colors::quietText, 1, this)),
      m_gauge(new ContextGauge(this)) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 2, 0, 2);
    row->setSpacing(8);
    row->addWidget(m_agent);
    auto *names = new QVBoxLayout;
    names->setSpacing(1);
    names->addStretch();
    names->addWidget(m_name);
    names->addWidget(m_model);
    names->addStretch();
    row->addLayout(names, 1);
    auto *figures = new QVBoxLayout;
    figures->setSpacing(4);
    figures->addStretch();
    for (QWidget *widget : std::initializer_list<QWidget *>{m_context, m_note, m_gauge}) {
        figures->addWidget(widget, 0, Qt::AlignRight);
    }
    figures->addStretch();
    row->addLayout(figures);
}

void SessionContextRow::setSession(const Session &session, bool showAgent) {
    m_agent->setAgent(showAgent ? std::optional(session.agent) : std::nullopt);
    m_name->setText(session.displayName());
    m_model->setText(session.model.value_or(QString()));
    m_model->setVisible(!m_model->text().isEmpty());
    showContext(session);
    QStringList words;
    for (const QLabel *label :
         std::initializer_list<QLabel *>{m_agent, m_name, m_model, m_context, m_note}) {
        if (!label->isHidden()) {
            words << BoundedText::of(label->text(), BoundedText::lineLength);
        }
    }
    setAccessibleName(words.join(QStringLiteral(", ")));
}

void SessionContextRow::showContext(const Session &session) {
    const auto pressure = session.contextPressure();
    const bool isLarge = pressure == ContextPressure::large;
    m_context->setVisible(pressure.has_value());
    m_gauge->setVisible(pressure && !isLarge);
    m_note->setVisible(!pressure || isLarge);
    m_note->setText(pressure ? tr("large window") : tr("no context data yet"));
    if (!pressure) {
        setHelpText(*this, {});
        return;
    }
    const int tokens = session.contextTokens.value_or(0);
    m_context->setText(tr("%1 ctx").arg(session.contextLabel().value_or(QString())));
    m_context->setColor(colorOf(*pressure));
    m_gauge->setTokens(tokens, colorOf(*pressure));
    setHelpText(*this, (isLarge ? tr("%1 tokens of context — past the 200k default, so this "
                                     "session runs a larger window.")
                                : tr("%1 tokens of context in the last request, against a "
                                     "standard 200k window."))
                           .arg(tokens));
}

} // namespace morvane

#include "moc_SessionContextRow.cpp"
