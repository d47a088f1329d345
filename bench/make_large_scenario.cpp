// Writes an invented scenario folder: make_large_scenario FOLDER ENTRIES.

#include <charconv>
#include <cstring>
#include <exception>
#include <iostream>

#include "bmc_simulator/large_scenario.h"

int main(int argc, char** argv) {
    int entries = -1;
    if (argc == 3) std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), entries);
    if (entries < 0) {
        std::cerr << "usage: make_large_scenario FOLDER ENTRIES\n";
        return 2;
    }
    try {
        simulators::MakeLargeScenario(argv[1], entries);
    } catch (const std::exception& error) {
        std::cerr << "make_large_scenario: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
