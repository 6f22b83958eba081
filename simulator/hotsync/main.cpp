#include <iostream>

#include <unistd.h>

#include "hotsync/runHotSync.h"

int main(int count, char** arguments) {
    return tsr::runHotSync(std::vector<std::string>(arguments + 1, arguments + count), std::cout, std::cerr,
                           isatty(STDOUT_FILENO) != 0);
}
