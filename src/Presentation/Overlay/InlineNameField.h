#pragma once

#include "Platform/Task.h"
#include "Presentation/Overlay/TextField.h"

#include <memory>

namespace morvane {

class FieldWindow;
class InlineEditing;
class KeyWindowActivator;
class Scheduler;
struct PanelContext;

/// A text field that is in a row while somebody types in it. Return commits it, Escape empties and
/// cancels it, and being hidden cancels it; the first of these settles the field, which then
/// deletes itself. While it is open it counts as editing and has the keyboard. Where a panel gets
/// no keyboard, a `FieldWindow` asks for the text instead, and the row only shows the text.
class InlineNameField : public TextField {
    Q_OBJECT

public:
    struct Setup {
        QString initial = {};
        QString placeholder = {};
        QString title = {};         ///< what it is for: its name for screen readers, and the
                                    ///< title of the `FieldWindow`
        bool commitsOnBlur = false; ///< whether a loss of the focus commits as well
    };

    InlineNameField(const Setup &setup, const PanelContext &context, QWidget *parent);
    ~InlineNameField() override;

    /// Cancels the field, unless it is settled.
    void abandon();

    /// Closes the field because the person goes elsewhere: what commits on a loss of the focus is
    /// committed, the rest cancelled.
    void goElsewhere();

signals:
    void commit(const QString &text);
    /// The field still holds what was typed, unless the person has given it up.
    void cancel();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    enum class Outcome { committed, cancelled };

    void askInWindow();
    void giveUp();
    QRect panelOnDesktop() const;
    bool commitsOnBlur() const;
    void settle(Outcome outcome);
    void leave();

    InlineEditing &m_editing;
    Scheduler &m_scheduler;
    const Setup m_setup;
    bool m_settled = false;
    bool m_counts = true; ///< in `InlineEditing`, until it goes away
    std::unique_ptr<KeyWindowActivator> m_activator;
    std::unique_ptr<FieldWindow> m_window;
    Task m_focus;
};

} // namespace morvane
