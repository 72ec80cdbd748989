#include "ModelEndpoint.h"

#include <QCoreApplication>

#include <cstdio>

/// Usage: model_endpoint FOLDER, where the requests are kept. Prints the port on descriptor 3, and
/// serves until it is ended.
int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const morvane::ModelEndpoint endpoint(QCoreApplication::arguments().value(1));
    if (endpoint.port() == 0) {
        return 1;
    }
    dprintf(3, "%d\n", int(endpoint.port()));
    return QCoreApplication::exec();
}
