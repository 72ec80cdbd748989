#pragma once

#include "Platform/HotKey.h"
#include "Presentation/Style/KeyStroke.h"
#include "Presentation/Windows/FormButton.h"

namespace morvane {

/// Chooses a key by pressing it: once clicked, the field takes the next key that will do for the
/// panel, even one that another program has. Escape or a loss of the focus leaves the key as it
/// was.
class KeyField : public FormButton {
    Q_OBJECT

public:
    explicit KeyField(QWidget *parent);

    void setKey(const HotKey &key);

    /// Why the last key that was pressed won't do; empty once one is chosen or the field stops
    /// listening.
    const QString &refusal() const { return m_refusal; }

signals:
    void chosen(const HotKey &key);
    void refusalChanged();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void begin();
    void end();
    void take(const QKeyEvent &event);
    void refuse(const QString &reason);
    void showText();

    HotKey m_key;
    QString m_refusal;
    bool m_isListening = false;
    KeyStroke m_escape;
};

} // namespace morvane
