// lmlauncher: the program the host application starts. The first character of the last argument
// is the UI type digit.
#include <cstdio>
#include <cstring>

#include "LMLauncher.h"

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--help") || !std::strcmp(argv[i], "-h")) {
            std::printf(
                "usage: lmlauncher [UI_TYPE]\n"
                "\n"
                "Runs the UI movie of a UI type (0-5: the first character of the last argument,\n"
                "or of the program name when there is no argument) under the host application.\n"
                "  LM_FLASHVARS    replaces the UI type's default flashvars\n"
                "  LM_NETWORK_IPC  the host's message queue socket\n"
                "  LM_MOVIE_DIR    where the runtime looks for the movie's .js file\n"
                "Exit status: 0 after a run; the host learns through the message queue how the\n"
                "program ended.\n");
            return 0;
        }
    }
    return LMLauncherMain(argc, argv);
}
