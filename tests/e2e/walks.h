// Sample fabrics, and reviewed files of tests/e2e/reviewed: NAME.txt is what a manager reads of the
// fabric NAME, snmpd-NAME.conf what the agent writes for the daemon.
//
// After a change that is meant to show, write them anew and review the difference:
//   SNMPMAIN_WRITE_REVIEWED=1 build/dev/bin/e2e_test --gtest_filter='*Reviewed*'
#pragma once

#include "tests/e2e/stack.h"

namespace e2e {

// The default fabric with uptimes that stand still: "builtin".
sim::Fabric StillFabric();

// What is rare, runs over or says nothing, and units, ports, lists and logins that lack something:
// "odd".
sim::Fabric OddFabric();

// Three units that have nothing: "bare".
sim::Fabric BareFabric();

// What is below an OID, in the order of a walk.
Values Reviewed(const std::string& name, const std::string& below = kFcmgmt);

// Whether a walk of each of the agent's subtrees gives what was reviewed.
testing::AssertionResult ReadsAsReviewed(const Stack& stack, const std::string& name);

// The text of a reviewed file, which is `current` when it is to be written anew.
std::string ReviewedText(const std::string& file, const std::string& current);

}  // namespace e2e
