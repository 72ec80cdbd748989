#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace morvane {

/// Keeps from the program's windows that a key which is held has been let go. The server repeats
/// such a key as if it were let go and pressed again and again, in which Qt recognises a repetition
/// only if both have come at once. Lives as long as the application shows windows; main thread.
class X11HeldKeys : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit X11HeldKeys(QObject *parent = nullptr);

private:
    bool nativeEventFilter(const QByteArray &kind, void *message, qintptr *result) override;
};

} // namespace morvane
