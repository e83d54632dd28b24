#include "src/link/worked_with.h"

#include <algorithm>
#include <functional>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace snmpmain {
namespace {

struct Noted {
    WorkedWith what;
    std::optional<std::size_t>
        reply;  // its hash: pass phrases are not kept. None: to be done again
};

struct State {
    std::mutex mutex;
    std::vector<Noted> noted;
};

State& state = *new State;  // the trap table update uses it until the process is gone

std::size_t HashOf(const Answer& answer, const ReplyText& reply) {
    return answer.outcome == Outcome::kAnswered
               ? std::hash<std::string_view>{}(std::string_view(reply.data()))
               : answer.code;
}

}  // namespace

void NoteWorkedWith(Worker worker, const char* command, ConversionType type, const Answer& answer,
                    const ReplyText& reply) {
    const std::lock_guard lock(state.mutex);
    const auto place = std::ranges::find_if(state.noted, [&](const Noted& one) {
        return one.what.worker == worker && one.what.command == command;
    });
    Noted& one = place == state.noted.end()
                     ? state.noted.emplace_back(Noted{{worker, command, type}, {}})
                     : *place;
    one.reply.reset();
    if (answer.outcome != Outcome::kNoAnswer) {
        one.reply = HashOf(answer, reply);
    }
}

void NoteWorkFailed(Worker worker) {
    const std::lock_guard lock(state.mutex);
    for (Noted& one : state.noted) {
        if (one.what.worker == worker) {
            one.reply.reset();
        }
    }
}

std::size_t CountWorkedWith() {
    const std::lock_guard lock(state.mutex);
    return state.noted.size();
}

bool GetWorkedWith(std::size_t number, WorkedWith& noted) {
    const std::lock_guard lock(state.mutex);
    if (number >= state.noted.size()) {
        return false;
    }
    noted = state.noted[number].what;
    return true;
}

bool DiffersFromWorkedWith(std::size_t number, const Answer& answer, const ReplyText& reply) {
    const std::lock_guard lock(state.mutex);
    return number < state.noted.size() && state.noted[number].reply != HashOf(answer, reply);
}

void ResetWorkedWith() {
    const std::lock_guard lock(state.mutex);
    state.noted.clear();
}

}  // namespace snmpmain
