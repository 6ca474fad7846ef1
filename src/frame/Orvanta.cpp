#include "Orvanta.h"

namespace OrvantaNS {

Orvanta::~Orvanta() = default;

} // namespace OrvantaNS
