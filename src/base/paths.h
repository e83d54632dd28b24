// The agent's fixed paths, movable for tests and demonstrations. Any thread.
#pragma once

#include <string>

namespace snmpmain {

// The path below the folder that the environment variable SNMPMAIN_ROOT names, or the path itself
// where it is not set.
std::string RootedPath(const char* path);

}  // namespace snmpmain
