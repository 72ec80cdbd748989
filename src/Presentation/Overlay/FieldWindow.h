#pragma once

#include "Presentation/Overlay/InlineNameField.h"

#include <QWidget>

namespace morvane {

/// A small separate window with one text field, for desktops that give no overlay the keyboard.
/// Owned by whoever needs the text, who may delete it in a slot of `commit` or `cancel`; main
/// thread.
class FieldWindow : public QWidget {
    Q_OBJECT

public:
    /// With `commitsOnBlur`, going on to another window commits the text.
    explicit FieldWindow(const InlineNameField::Setup &setup);

    /// Shows it below `panel`, in the desktop's points: an overlay is above every window and would
    /// hide a field under it.
    void openBelow(const QRect &panel);

    /// Moves out from under a panel that has grown.
    void makeWayFor(const QRect &panel);

    /// Raises it and asks for the keyboard, as far as the desktop allows.
    void bringToFront();

signals:
    /// The person changes the text.
    void edited(const QString &text);

    // One of the two is sent, once.
    void commit(); ///< on Return
    void cancel(); ///< on Escape, or when the window is closed

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void placeBelow(const QRect &panel);
    void commitText();
    void settle(void (FieldWindow::*outcome)());

    TextField *m_field;
    const bool m_commitsOnBlur;
    bool m_hadKeyboard = false;
    bool m_isSettled = false;
};

} // namespace morvane
