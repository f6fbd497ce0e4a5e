#include <iostream>
#include <string>
#include <vector>

#include "tool/interrupt_cleanup.h"
#include "tool/program.h"

int main(int count, char* arguments[]) {
    const tool::InterruptCleanup cleanup;
    return tool::run({arguments + 1, arguments + count}, std::cout, std::cerr, tool::detect_console_traits());
}
