// Serves an emulated board for as long as a command runs: qz7740-emulated-board COMMAND...
// The command, and every program it starts, finds the board on the emulated USB bus as a
// program finds a board plugged in.

#include "emulated/EmulatedBoard.h"
#include "emulated/Preload.h"

#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: qz7740-emulated-board COMMAND [ARG...]\n");
        return 2;
    }
    qz::ensureUmockdevPreload(argv);
    qz::EmulatedBoard board;
    board.plug(1);
    const pid_t child = fork();
    if (child < 0) return 1;
    if (child == 0) {
        execvp(argv[1], argv + 1);
        std::perror(argv[1]);
        _exit(127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
