#include "EndToEnd/AccessibleTree.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QThread>

namespace {

constexpr const char *usage =
    "Usage: find_accessible [--extents] [--checked] ROLE NAME [SECONDS]\n"
    "Prints where on the screen the centre of the largest visible object of Morvane's is that has\n"
    "this role and name, as \"X Y\"; with --extents all of it, as \"LEFT TOP WIDTH HEIGHT\". "
    "With\n"
    "--checked only one that has a check mark. Waits up to SECONDS for one to appear. The status "
    "is 1 when there is none.\n";

void print(const QRect &extents, bool whole) {
    QTextStream out(stdout);
    if (whole) {
        out << extents.x() << ' ' << extents.y() << ' ' << extents.width() << ' '
            << extents.height() << '\n';
    } else {
        out << extents.center().x() << ' ' << extents.center().y() << '\n';
    }
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool whole = arguments.removeAll(QStringLiteral("--extents")) > 0;
    const bool checked = arguments.removeAll(QStringLiteral("--checked")) > 0;
    if (arguments.size() < 2) {
        QTextStream(stderr) << usage;
        return 2;
    }
    const qint64 patience = arguments.value(2).toInt() * 1000;
    using morvane::AccessibleTree;
    const auto mark = checked ? AccessibleTree::Mark::checked : AccessibleTree::Mark::any;
    AccessibleTree tree(QStringLiteral("Morvane"));
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        const QList<QRect> found = tree.find(arguments[0], arguments[1], mark);
        if (!found.isEmpty()) {
            print(found.first(), whole);
            return 0;
        }
        if (waited.elapsed() >= patience) {
            return 1;
        }
        QThread::msleep(50);
    }
}
