// Paints every state of the program into a folder, without a display.
// Usage: picture_book FOLDER [SCENE]...

#include "Pictures/Scenes.h"
#include "Presentation/Mascot/MenuBarIcon.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

using namespace morvane;

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: picture_book FOLDER [SCENE]...\n", stderr);
        return 2;
    }
    const QDir folder(arguments[1]);
    const QStringList wanted = arguments.mid(2);
    for (const Scene &scene : scenes()) {
        const QString name = QString::fromLatin1(scene.name);
        if (!wanted.isEmpty() && !wanted.contains(name)) {
            continue;
        }
        Stage stage(scene.screen);
        scene.play(stage);
        if (!stage.picture().save(folder.filePath(name + ".png"))) {
            std::fprintf(stderr, "%s can't be written\n", qPrintable(folder.filePath(name)));
            return 1;
        }
    }
    return 0;
}
