#include <iostream>

#include "tessera/commands/runTessera.h"

int main(int count, char** arguments) {
    return tsr::runTessera({arguments + 1, arguments + count}, std::cin, std::cout, std::cerr);
}
