#pragma once

#include <QSpinBox>
#include <QWheelEvent>

namespace morvane {

/// A number in a form that scrolls: a wheel that turns over it scrolls the form, and changes
/// nothing that nobody looks at.
class Stepper : public QSpinBox {
    Q_OBJECT

public:
    using QSpinBox::QSpinBox;

protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

} // namespace morvane
