// The SNMP library's headers. They want to come in this order and are not made for our warnings.
#pragma once

#include <net-snmp/net-snmp-config.h>
//
#include <net-snmp/net-snmp-includes.h>
//
#include <net-snmp/agent/net-snmp-agent-includes.h>
