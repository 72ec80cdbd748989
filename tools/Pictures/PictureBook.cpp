// Paints every state of the program into a folder, without a display.
// Usage: picture_book FOLDER [SCENE]...

#include "Pictures/Scenes.h"
#include "Pictures/WindowScenes.h"
#include "Presentation/Style/DarkPalette.h"

#include <QApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>

using namespace morvane;

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setPalette(darkPalette());
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: picture_book FOLDER [SCENE]...\n", stderr);
        return 2;
    }
    const QDir folder(arguments[1]);
    const QStringList wanted = arguments.mid(2);
    const auto paint = [&](const char *scene, const auto &picture) {
        const QString name = QString::fromLatin1(scene);
        if (!wanted.isEmpty() && !wanted.contains(name)) {
            return;
        }
        if (!picture().save(folder.filePath(name + ".png"))) {
            std::fprintf(stderr, "%s can't be written\n", qPrintable(folder.filePath(name)));
            std::exit(1);
        }
    };
    for (const Scene &scene : scenes()) {
        paint(scene.name, [&] {
            Stage stage(scene.screen);
            scene.play(stage);
            return stage.picture();
        });
    }
    for (const WindowScene &scene : windowScenes()) {
        paint(scene.name, scene.paint);
    }
    return 0;
}
