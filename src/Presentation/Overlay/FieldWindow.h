#pragma once

#include "Presentation/Overlay/InlineNameField.h"

#include <QWidget>

namespace morvane {

/// A small window of its own with one text field, for desktops on which no overlay is given the
/// keyboard. Owned by whoever needs the text, who may delete it from within a slot of `commit` or
/// `cancel`; main thread.
class FieldWindow : public QWidget {
    Q_OBJECT

public:
    /// For `commitsOnBlur` the focus is lost once the person has gone on to another window.
    explicit FieldWindow(const InlineNameField::Setup &setup);

    /// Shows it below the panel that it asks for, in the desktop's points: an overlay is above
    /// every window, and what lies under it would be typed blindly.
    void openBelow(const QRect &panel);

    /// Gives way to a panel that has grown.
    void makeWayFor(const QRect &panel);

    /// Brings it to the front with the keyboard, as far as the desktop lets it.
    void bringToFront();

signals:
    /// The person changes the text.
    void edited(const QString &text);

    // Either is sent, once.
    void commit(); ///< on Return
    void cancel(); ///< the person gives up

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
