// The GETNEXT resolution of every table shape: each walker finds the first row behind a request,
// rewrites the request to that row's OID and returns the row's index values. Returns 0, or -1 with
// the request untouched at the end of the column. No state is kept between calls: the order of the
// units is that of connUnitTbl at the moment. Main thread only.
#pragma once

#include <cstdint>

#include "src/snmpoid/snmp_headers.h"

namespace snmpmain {

// Index: unit id.
int GetNextUnit(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit);

// Index: unit id, revision number + 1. `revision` counts from 0.
int GetNextUnitRevision(const variable* vp, oid* name, std::size_t* length, std::uint16_t& unit,
                        std::uint32_t& revision);

}  // namespace snmpmain
