#include "src/base/words.h"

#include <cstring>

namespace snmpmain {

std::uint32_t FirstContained(const WordTable& table, const char* reply) {
    for (const Word& word : table.words) {
        if (std::strstr(reply, word.text) != nullptr) {
            return word.number;
        }
    }
    return table.otherwise;
}

std::uint32_t WholeWord(const WordTable& table, const char* reply) {
    for (const Word& word : table.words) {
        if (std::strcmp(reply, word.text) == 0) {
            return word.number;
        }
    }
    return table.otherwise;
}

}  // namespace snmpmain
