// Traffic on a fabric's ports: their counters go up as if they were in use.
#pragma once

#include "sim/fabric.h"

namespace sim {

/// Adds what the online ports carry between two times, both in seconds since any moment. Each port
/// has a level of its own, up to 60 % of its speed, that swings over some minutes; one in eight has
/// errors now and then. Each switch has some ports that carry next to nothing.
void AddLoad(Fabric& fabric, double from, double to);

}  // namespace sim
