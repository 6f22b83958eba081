#include <iostream>

#include "handheld/commands/runHandheld.h"

int main(int count, char** arguments) {
    return tsr::runHandheld({arguments + 1, arguments + count}, std::cin, std::cout, std::cerr);
}
