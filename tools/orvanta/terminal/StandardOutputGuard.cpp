#include "terminal/StandardOutputGuard.h"

#include <iostream>

namespace OrvantaNS::command {

StandardOutputGuard::StandardOutputGuard() : saved_(std::cout.rdbuf(nullptr)) {}

StandardOutputGuard::~StandardOutputGuard() {
    std::cout.rdbuf(saved_); // Clears the state too, which printing to nowhere has set.
}

} // namespace OrvantaNS::command
