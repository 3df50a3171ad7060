// Prints the remote control's command table: `markdown` as the README shows it, `python`
// as python/qz7740_commands.py holds it.

#include "remote/Commands.h"

#include <cstring>
#include <iostream>

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "markdown") == 0) {
        std::cout << qz::remote::markdownTable();
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "python") == 0) {
        std::cout << qz::remote::pythonTable();
        return 0;
    }
    std::cerr << "usage: qz7740-commands markdown|python\n";
    return 2;
}
