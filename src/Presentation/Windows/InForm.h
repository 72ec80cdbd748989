#pragma once

#include <QComboBox>
#include <QSpinBox>
#include <QWheelEvent>

namespace morvane {

/// A control of a form that scrolls: the wheel over it scrolls the form, rather than change the
/// control unnoticed.
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
