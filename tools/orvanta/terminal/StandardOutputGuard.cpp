#include "terminal/StandardOutputGuard.h"

#include <iostream>

namespace OrvantaNS::command {

StandardOutputGuard::StandardOutputGuard() : saved_(std::cout.rdbuf(std::cerr.rdbuf())) {}

StandardOutputGuard::~StandardOutputGuard() { std::cout.rdbuf(saved_); }

} // namespace OrvantaNS::command
