#include <QApplication>
#include <QWidget>

/// The least that a program with windows can show: one empty window of the capsule's kind, in the
/// capsule's place.
int main(int argc, char **argv) {
    QApplication::setDesktopSettingsAware(false);
    QApplication application(argc, argv);
    QWidget window(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint);
    window.setGeometry(540, 0, 200, 40);
    window.show();
    return QApplication::exec();
}
