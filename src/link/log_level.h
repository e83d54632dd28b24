// The diagnostic log settings, kept by switch management.
#pragma once

namespace snmpmain {

// Reads whether switch management has enabled the "Snmp" component's log and at which level, and
// opens the diagnostic log (src/base/trace_log.h) accordingly; nothing changes while the component
// is not enabled. Returns 0, or -1 with a message on standard error when switch management does not
// answer. "Get.Oper.Switch.DevLogComp", "Get.Oper.Switch.DevLogLevel". Main thread only.
int InitLogLevel();

}  // namespace snmpmain
