#pragma once

#include <QWidget>

#include <functional>

namespace morvane {

class TextField;

/// A small window of its own with one text field, for desktops on which no overlay is given the
/// keyboard. Owned by whoever needs the text, who may delete it from within the closures; main
/// thread.
class FieldWindow : public QWidget {
    Q_OBJECT

public:
    FieldWindow(const QString &title, const QString &initial, const QString &placeholder);

    /// Called whenever the person changes the text.
    std::function<void(const QString &text)> edited;

    /// Either `commit` is called, once, on Return, or `cancel`, once, when the person gives up.
    std::function<void()> commit;
    std::function<void()> cancel;

    /// Whether the text counts as it stands once the person has gone on to another window.
    bool commitsOnBlur = false;

    /// Shows it below the panel that it asks for, in the desktop's points: an overlay is above
    /// every window, and what lies under it would be typed blindly.
    void openBelow(const QRect &panel);

    /// Gives way to a panel that has grown.
    void makeWayFor(const QRect &panel);

    /// Brings it to the front with the keyboard, as far as the desktop lets it.
    void bringToFront();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void placeBelow(const QRect &panel);
    void commitText();
    void settle(std::function<void()> answer);

    TextField *m_field;
    bool m_hadKeyboard = false;
    bool m_isSettled = false;
};

} // namespace morvane
