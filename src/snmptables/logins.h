// The devices that have logged in at the F ports of a switch: the entries of the switch's own name
// server whose port ids begin with the port's domain and area, as many as the port has links.
//
// A walk reads every login, so the list and what the ports tell are kept: for three seconds, or
// until the switch tells that its name server has changed. The list is fetched whole, and kept only
// when the switch has answered to its end; a port is asked when a row needs it. Main thread only.
// "Get.Oper.NameServer.FirstNsEntry", ".NextNsEntry.%s", "Get.Oper.Link.Port.0.%u.LinkEntries",
// "Get.Oper.Topology.0.%u.LocalPortType", "Get.Oper.UserPort.0.%u.PortID"
#pragma once

#include <cstdint>

#include "src/snmptables/name_server.h"

namespace snmpmain {

struct Login {
    std::uint32_t port;
    std::uint32_t login;           // at the port, from 0
    char portId[kPortIdTextSize];  // of the device
};

// Sets the port id of the login at `port` with the number `login`. Returns 0, or -1 when there is
// none, or the switch does not answer.
int ReadLogin(std::uint32_t domain, Login& login);

// Moves to the first login from (port, login) on. Returns 0, or -1 when there is none, or the
// switch falls silent: waiting for each of its ports would take minutes.
int ReadNextLogin(std::uint32_t domain, Login& login);

// Forgets what is kept of a switch; of all.
void ForgetLogins(std::uint32_t domain);
void ResetLogins();

}  // namespace snmpmain
