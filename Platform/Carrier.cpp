#include "Carrier.h"

#include <Platform/Bus/BusCarrier.h>

#include <utility>

namespace platform {
namespace {

Carrier *substitute = nullptr;

}  // namespace

Carrier *setCarrier(Carrier *carrier) { return std::exchange(substitute, carrier); }

Carrier &currentCarrier() { return substitute == nullptr ? busCarrier() : *substitute; }

}  // namespace platform
