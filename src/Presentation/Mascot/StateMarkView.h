#pragma once

#include "Core/Sessions/SessionState.h"

#include <QWidget>

#include <optional>

namespace morvane {

/// The mark of a state beside the mascot, in its colour; takes no room for a state without one.
class StateMarkView : public QWidget {
    Q_OBJECT

public:
    explicit StateMarkView(QWidget *parent);

    void setState(std::optional<SessionState> state);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::optional<SessionState> m_state;
};

} // namespace morvane
