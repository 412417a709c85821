// rqpdev: the workspace program.
#include "shell/Application.h"

int main(int argc, char** argv) {
    return rqshell::runApplication(argc, argv);
}
