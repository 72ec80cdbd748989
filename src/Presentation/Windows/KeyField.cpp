#include "Presentation/Windows/KeyField.h"

#include "Core/Settings/PanelKey.h"
#include "Presentation/Style/PlatformWords.h"

namespace morvane {

namespace {

/// Qt's scan codes are XKB key codes, which are 8 higher than the kernel's.
constexpr std::uint32_t keyCodeOffset = 8;

/// Whether the key is only held down together with another one.
bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

HotKey keyOf(const QKeyEvent &event) {
    const Qt::KeyboardModifiers held = event.modifiers();
    const std::uint32_t place = event.nativeScanCode();
    return {.keyCode = place > keyCodeOffset ? place - keyCodeOffset : 0,
            .symbol = QKeySequence(event.key()).toString(QKeySequence::PortableText),
            .super = held.testFlag(Qt::MetaModifier),
            .control = held.testFlag(Qt::ControlModifier),
            .alt = held.testFlag(Qt::AltModifier),
            .shift = held.testFlag(Qt::ShiftModifier)};
}

QString reason(PanelKey::Fault fault) {
    switch (fault) {
    case PanelKey::Fault::needsModifier:
        return KeyField::tr("Hold Super, Ctrl or Alt together with the key.");
    case PanelKey::Fault::isDigit:
        return KeyField::tr("The open panel needs %1 for its answers.")
            .arg(PlatformWords::digitShortcuts(1, PanelKey::digitCount));
    case PanelKey::Fault::isNoKey:
        break;
    }
    return KeyField::tr("That key can't be used.");
}

} // namespace

KeyField::KeyField(QWidget *parent) : FormButton({}, Role::ordinary, parent) {
    connect(this, &QAbstractButton::clicked, this, [this] { m_isListening ? end() : begin(); });
}

void KeyField::setKey(const HotKey &key) {
    m_key = key;
    showText();
}

void KeyField::showText() {
    // An ampersand in the key's name must not mark a mnemonic.
    QString key = PlatformWords::hotKey(m_key);
    setAccessibleName(tr("Key that opens the panel: %1").arg(m_isListening ? tr("press it") : key));
    setText(m_isListening ? tr("Press a key…") : key.replace(u'&', QLatin1String("&&")));
}

/// Grabs the whole keyboard, since a key that another program has would go there otherwise.
void KeyField::begin() {
    m_isListening = true;
    grabKeyboard();
    showText();
}

void KeyField::end() {
    m_escape.abandon();
    if (m_isListening) {
        m_isListening = false;
        releaseKeyboard();
        refuse({});
        showText();
    }
}

void KeyField::refuse(const QString &reason) {
    m_refusal = reason;
    setAccessibleDescription(reason);
    emit refusalChanged();
}

/// While the field listens, Tab and the window's shortcuts are keys like any other.
bool KeyField::event(QEvent *event) {
    if (m_isListening && event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    if (m_isListening && event->type() == QEvent::KeyPress) {
        keyPressEvent(static_cast<QKeyEvent *>(event));
        return true;
    }
    return FormButton::event(event);
}

void KeyField::keyPressEvent(QKeyEvent *event) {
    if (!m_isListening) {
        FormButton::keyPressEvent(event);
        return;
    }
    event->accept();
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        m_escape.begin(*event);
    } else if (!event->isAutoRepeat() && !isModifier(event->key())) {
        take(*event);
    }
}

/// Ends only on the release: the window would take an Escape that is still held for its own.
void KeyField::keyReleaseEvent(QKeyEvent *event) {
    if (m_escape.isEndedBy(*event)) {
        end();
    } else {
        FormButton::keyReleaseEvent(event);
    }
}

void KeyField::take(const QKeyEvent &event) {
    const HotKey key = keyOf(event);
    if (const auto fault = PanelKey::fault(key)) {
        refuse(reason(*fault));
        return;
    }
    end();
    emit chosen(key);
}

void KeyField::focusOutEvent(QFocusEvent *event) {
    end();
    FormButton::focusOutEvent(event);
}

void KeyField::hideEvent(QHideEvent *event) {
    end();
    FormButton::hideEvent(event);
}

} // namespace morvane

#include "moc_KeyField.cpp"
