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

/// A text field that stands in a row for as long as somebody types in it. Return commits, Escape
/// empties and cancels it, and whatever takes it off the screen cancels it; the first of them
/// settles it, and then it goes away by itself. While it is open it counts as editing and has the
/// keyboard; where a panel is given no keyboard, a small window of its own asks for the text
/// instead, and what stands in the row is no field to look at.
class InlineNameField : public TextField {
    Q_OBJECT

public:
    struct Setup {
        QString initial = {};
        QString placeholder = {};
        QString title = {};         ///< what it is for: to a screen reader, and above the window
                                    ///< that asks where a panel can't
        bool commitsOnBlur = false; ///< whether a loss of the focus commits as well
    };

    InlineNameField(const Setup &setup, const PanelContext &context, QWidget *parent);
    ~InlineNameField() override;

    /// Goes away without a commit, unless it is settled.
    void abandon();

signals:
    void commit(const QString &text);
    /// The text is what has been typed, unless the person has given it up.
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
    bool m_counts = true; ///< as editing
    std::unique_ptr<KeyWindowActivator> m_activator;
    std::unique_ptr<FieldWindow> m_window;
    Task m_focus;
};

} // namespace morvane
