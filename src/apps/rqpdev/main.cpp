// rqpdev: the workspace program.
#include "shell/Application.h"

#include "RqVersion.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    // Answered before the toolkit starts, so that it works without a display.
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("rqpdev %s\n", RQ_VERSION);
            return 0;
        }
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::printf("usage: rqpdev [--no-splash] [PROJECT_DIRECTORY]\n"
                        "       rqpdev --version\n");
            return 0;
        }
    }
    return rqshell::runApplication(argc, argv);
}
