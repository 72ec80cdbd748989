#include "AccessibleTree.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QThread>

namespace {

constexpr const char *usage =
    R"(Usage: find_accessible [--extents|--name|--do ACTION] ROLE NAME [SECONDS]
Prints where on the screen the centre of the largest visible object of Morvane's is that has this
role and name, as "X Y"; with --extents all of it, as "LEFT TOP WIDTH HEIGHT". The name may go on
with further words. With --name it has only to begin so, and all of it is printed. With --do one of
its actions is done, such as Press. Waits up to SECONDS for one to appear; the status is 1 when there
is none.
)";

enum class Wanted { centre, extents, name, action };

Wanted takeWanted(QStringList &arguments) {
    if (arguments.removeAll(QStringLiteral("--do")) > 0) {
        return Wanted::action;
    }
    if (arguments.removeAll(QStringLiteral("--name")) > 0) {
        return Wanted::name;
    }
    return arguments.removeAll(QStringLiteral("--extents")) > 0 ? Wanted::extents : Wanted::centre;
}

void print(const morvane::AccessibleTree::Found &found, Wanted wanted) {
    QTextStream out(stdout);
    const QRect &extents = found.extents;
    switch (wanted) {
    case Wanted::centre:
        out << extents.center().x() << ' ' << extents.center().y() << '\n';
        break;
    case Wanted::extents:
        out << extents.x() << ' ' << extents.y() << ' ' << extents.width() << ' '
            << extents.height() << '\n';
        break;
    case Wanted::name:
        out << found.name << '\n';
        break;
    case Wanted::action:
        break;
    }
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const Wanted wanted = takeWanted(arguments);
    const QString action = wanted == Wanted::action ? arguments.value(0) : QString();
    arguments.removeAll(action);
    if (arguments.size() < 2) {
        QTextStream(stderr) << usage;
        return 2;
    }
    const qint64 patience = arguments.value(2).toInt() * 1000;
    using morvane::AccessibleTree;
    AccessibleTree tree(QStringLiteral("Morvane"));
    const auto naming =
        wanted == Wanted::name ? AccessibleTree::Naming::beginning : AccessibleTree::Naming::words;
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        const auto found = tree.find(arguments[0], arguments[1], naming);
        if (!found.isEmpty() && wanted == Wanted::action) {
            return tree.act(found.first(), action) ? 0 : 1;
        }
        if (!found.isEmpty()) {
            print(found.first(), wanted);
            return 0;
        }
        if (waited.elapsed() >= patience) {
            return 1;
        }
        QThread::msleep(50);
    }
}
