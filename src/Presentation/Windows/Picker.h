#pragma once

#include <QComboBox>
#include <QWheelEvent>

namespace morvane {

/// A choice in a form that scrolls: a wheel that turns over it scrolls the form, and changes
/// nothing that nobody looks at.
class Picker : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

} // namespace morvane
