#include "src/base/paths.h"

#include <cstdlib>

namespace snmpmain {

std::string RootedPath(const char* path) {
    const char* root = std::getenv("SNMPMAIN_ROOT");
    return root == nullptr ? std::string(path) : std::string(root) + path;
}

}  // namespace snmpmain
