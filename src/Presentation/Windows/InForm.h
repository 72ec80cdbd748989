#pragma once

#include <QComboBox>
#include <QSpinBox>
#include <QWheelEvent>

namespace morvane {

/// A control of a form that scrolls: a wheel that turns over it scrolls the form, and changes
/// nothing that nobody looks at.
template <typename Control>
class InForm : public Control {
public:
    using Control::Control;

protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

using Picker = InForm<QComboBox>;
using Stepper = InForm<QSpinBox>;

} // namespace morvane
