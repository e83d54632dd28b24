#include "src/link/worked_with.h"

#include <algorithm>
#include <array>
#include <functional>
#include <mutex>
#include <string_view>
#include <vector>

namespace snmpmain {
namespace {

// A command, and the reply that each worker has had to it; none: the work is to be done again.
struct Noted {
    std::string command;
    ConversionType type;
    Workers workers;
    std::array<std::optional<std::size_t>, kWorkers> replies;
};

struct State {
    std::mutex mutex;
    std::vector<Noted> noted;  // entries keep their numbers
};

State& state = *new State;  // the trap table update uses it until the process is gone

std::size_t PlaceOf(Worker worker) {
    return static_cast<std::size_t>(worker);
}

Noted& EntryOf(const char* command, ConversionType type) {
    const auto found = std::ranges::find_if(
        state.noted, [&](const Noted& one) { return one.type == type && one.command == command; });
    return found == state.noted.end() ? state.noted.emplace_back(Noted{command, type, {}, {}})
                                      : *found;
}

}  // namespace

void ForgetWorkedWith(Worker worker) {
    const std::lock_guard lock(state.mutex);
    for (Noted& one : state.noted) {
        one.workers.reset(PlaceOf(worker));
    }
}

void NoteWorkedWith(Worker worker, const char* command, ConversionType type, const Answer& answer,
                    const ReplyText& reply) {
    const std::lock_guard lock(state.mutex);
    Noted& one = EntryOf(command, type);
    one.workers.set(PlaceOf(worker));
    one.replies[PlaceOf(worker)] = HashOfReply(answer, reply);
}

void NoteWorkFailed(Worker worker) {
    const std::lock_guard lock(state.mutex);
    for (Noted& one : state.noted) {
        one.replies[PlaceOf(worker)].reset();
    }
}

std::size_t CountWorkedWith() {
    const std::lock_guard lock(state.mutex);
    return state.noted.size();
}

bool GetWorkedWith(std::size_t number, std::string& command, ConversionType& type) {
    const std::lock_guard lock(state.mutex);
    if (number >= state.noted.size() || state.noted[number].workers.none()) {
        return false;
    }
    command = state.noted[number].command;
    type = state.noted[number].type;
    return true;
}

Workers WhoWorkedWithAnother(std::size_t number, const Answer& answer, const ReplyText& reply) {
    const auto hash = HashOfReply(answer, reply);
    Workers others;
    const std::lock_guard lock(state.mutex);
    if (!hash || number >= state.noted.size()) {
        return others;
    }
    const Noted& one = state.noted[number];
    for (std::size_t place = 0; place < kWorkers; ++place) {
        others[place] = one.workers[place] && one.replies[place] != hash;
    }
    return others;
}

std::optional<std::size_t> HashOfReply(const Answer& answer, const ReplyText& reply) {
    switch (answer.outcome) {
        case Outcome::kAnswered:
            return std::hash<std::string_view>{}(std::string_view(reply.data()));
        case Outcome::kRefused:
            return answer.code;
        case Outcome::kNoAnswer:
            break;
    }
    return std::nullopt;
}

void ResetWorkedWith() {
    const std::lock_guard lock(state.mutex);
    state.noted.clear();
}

}  // namespace snmpmain
