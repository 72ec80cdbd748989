#pragma once

#include "Core/Sessions/SessionState.h"

#include <QWidget>

#include <optional>

namespace morvane {

/// The mark of a state, in the state's colour, beside the mascot; hidden for a state without a
/// mark.
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
