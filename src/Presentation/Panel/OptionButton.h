#pragma once

#include "Core/Agents/AgentQuestion.h"
#include "Presentation/Panel/PanelButton.h"

#include <QColor>

#include <optional>

namespace morvane {

/// One option of an agent's question: its label, with the description below it, over the whole
/// width of the strip.
class OptionButton : public PanelButton {
    Q_OBJECT

public:
    OptionButton(const AgentOption &option, const QColor &accent, std::optional<int> shortcutDigit,
                 QWidget *parent);

    /// The label, bounded for a screen reader.
    QString spokenLabel() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_accent;
};

} // namespace morvane
