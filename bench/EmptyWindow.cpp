#include <QApplication>
#include <QWidget>

/// The least that a program of windows can show: one window of the kind that the capsule is, in its
/// place, with nothing in it.
int main(int argc, char **argv) {
    QApplication::setDesktopSettingsAware(false);
    QApplication application(argc, argv);
    QWidget window(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint);
    window.setGeometry(540, 0, 200, 40);
    window.show();
    return QApplication::exec();
}
