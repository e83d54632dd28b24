// Reply words and the numbers they stand for, as small ordered tables. Any thread.
#pragma once

#include <cstdint>
#include <span>

namespace snmpmain {

struct Word {
    const char* text;
    std::uint32_t number;
};

struct WordTable {
    std::span<const Word> words;  // tested in order, the first match decides
    std::uint32_t otherwise;
};

// A command and what the words of its reply stand for.
struct WordQuestion {
    const char* command;
    WordTable words;
};

// The number of the first word that the reply contains.
std::uint32_t FirstContained(const WordTable& table, const char* reply);

// The number of the word that is the whole reply.
std::uint32_t WholeWord(const WordTable& table, const char* reply);

}  // namespace snmpmain
