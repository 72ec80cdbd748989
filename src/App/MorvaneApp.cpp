#include "App/Launch.h"

int main(int argc, char **argv) {
    return morvane::launch(argc, argv);
}
