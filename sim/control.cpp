#include "sim/control.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "sim/frame.h"

namespace sim {
namespace {

using Words = std::vector<std::string>;
using AbsentSwitches = std::map<std::uint16_t, Control::Absent>;

constexpr std::size_t kMaxMessage = 1 << 16;
constexpr unsigned kMaxFlood = 1'000'000;  // some seconds; no other command is taken meanwhile

[[noreturn]] void Fail(const std::string& what) {
    throw std::invalid_argument(what);
}

std::uint32_t ToNumber(std::string_view text, std::uint32_t max) {
    std::uint32_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || number > max) {
        Fail("\"" + std::string(text) + "\" is not a number up to " + std::to_string(max));
    }
    return number;
}

std::uint16_t ToDomain(std::string_view text) {
    return static_cast<std::uint16_t>(ToNumber(text, kMaxDomain));
}

bool ToBool(const std::string& text, const char* yes, const char* no) {
    if (text != yes && text != no) {
        Fail("\"" + text + "\" is neither " + yes + " nor " + no);
    }
    return text == yes;
}

/// The state that a small word stands for: "offline" gives "Offline".
std::string ToState(const std::string& word, std::initializer_list<std::string_view> states) {
    std::string state = word;
    state[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(word[0])));
    if (std::find(states.begin(), states.end(), state) == states.end()) {
        Fail("\"" + word + "\" is none of its states");
    }
    return state;
}

Switch& FindSwitch(Fabric& fabric, std::uint16_t domain) {
    Switch* unit = fabric.Find(domain);
    if (unit == nullptr) {
        Fail("no switch has domain " + std::to_string(domain));
    }
    return *unit;
}

/// Sets a plain field by its key in a fabric file.
template <class T>
void SetField(T& part, const Fields<T>& fields, const std::string& key, const std::string& text) {
    const auto find = [&key](const auto& list) {
        return std::find_if(list.begin(), list.end(),
                            [&key](const auto& field) { return field.key == key; });
    };
    if (const auto field = find(fields.texts); field != fields.texts.end()) {
        if (text.size() > kMaxReplyText) {
            Fail("a text has at most " + std::to_string(kMaxReplyText) + " characters");
        }
        part.*(field->member) = text;
    } else if (const auto number = find(fields.numbers); number != fields.numbers.end()) {
        part.*(number->member) = ToNumber(text, UINT32_MAX);
    } else if (const auto flag = find(fields.bools); flag != fields.bools.end()) {
        part.*(flag->member) = ToBool(text, "true", "false");
    } else {
        Fail("no key is called \"" + key + "\"");
    }
}

/// "2.3", or "2.fan.1": the domain, what is in the middle, and a position.
struct Place {
    explicit Place(const std::string& text, bool hasMiddle = false) {
        const std::size_t first = text.find('.');
        const std::size_t last = text.rfind('.');
        if (first == text.npos || (first != last) != hasMiddle) {
            Fail("\"" + text + "\" is no such place");
        }
        domain = ToDomain(text.substr(0, first));
        middle = text.substr(first, last - first);
        number = ToNumber(text.substr(last + 1), UINT16_MAX);
    }

    template <class List>
    auto& In(List& list) const {
        if (number >= list.size()) {
            Fail("there is no number " + std::to_string(number) + " among " +
                 std::to_string(list.size()));
        }
        return list[number];
    }

    std::uint16_t domain = 0;
    std::string middle;
    std::size_t number = 0;
};

std::string Sent(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " notification sent" : " notifications sent");
}

// ---- The commands; `words` are those after the command's name.

std::string SetPort(Server& server, AbsentSwitches&, const Words& words) {
    const Place place(words[0]);
    return Sent(server.ChangeAndNotify([&](Fabric& fabric) {
        Port& port = place.In(FindSwitch(fabric, place.domain).ports);
        if (words.size() == 3) {
            SetField(port, PortFields(), words[1], words[2]);
            return;
        }
        port.operState = ToState(words[1], {"Offline", "Online", "Down", "Diagnostics"});
        if (port.operState != "Down") {  // nobody orders that
            port.adminState = port.operState;
        }
    }));
}

std::string SetSensor(Server& server, AbsentSwitches&, const Words& words) {
    const Place place(words[0], true);
    return Sent(server.ChangeAndNotify([&](Fabric& fabric) {
        Switch& unit = FindSwitch(fabric, place.domain);
        if (place.middle != ".supply" && place.middle != ".fan") {
            Fail("\"" + words[0] + "\" names neither a supply nor a fan");
        }
        place.In(place.middle == ".fan" ? unit.fans : unit.powerSupplies) =
            ToState(words[1], {"Good", "Bad"});
    }));
}

std::string SetBlade(Server& server, AbsentSwitches&, const Words& words) {
    const Place place(words[0]);
    return Sent(server.ChangeAndNotify([&](Fabric& fabric) {
        Blade& blade = place.In(FindSwitch(fabric, place.domain).blades);
        if (words.size() == 3) {
            SetField(blade, BladeFields(), words[1], words[2]);
        } else {
            blade.tempStatus = ToState(words[1], {"Normal", "Warm", "Overheating"});
        }
    }));
}

std::string SetSwitch(Server& server, AbsentSwitches&, const Words& words) {
    return Sent(server.ChangeAndNotify([&](Fabric& fabric) {
        FindSwitch(fabric, ToDomain(words[0])).operState =
            ToState(words[1], {"Offline", "Online", "Down", "Diagnostics"});
    }));
}

std::string SetKey(Server& server, AbsentSwitches&, const Words& words) {
    return Sent(server.ChangeAndNotify([&](Fabric& fabric) {
        SetField(FindSwitch(fabric, ToDomain(words[0])), SwitchFields(), words[1], words[2]);
    }));
}

std::string SetTrap(Server& server, AbsentSwitches&, const Words& words) {
    const Place place(words[0]);
    return Sent(server.ChangeAndNotify([&](Fabric& fabric) {
        place.In(FindSwitch(fabric, place.domain).traps) = {
            words[1], ToNumber(words[2], UINT16_MAX), words[3], ToBool(words[4], "on", "off"),
            words[5]};
    }));
}

std::string Leave(Server& server, AbsentSwitches& absent, const Words& words) {
    Control::Absent leaving;
    const std::size_t sent = server.ChangeAndNotify([&](Fabric& fabric) {
        Switch& unit = FindSwitch(fabric, ToDomain(words[0]));
        const auto place = &unit - fabric.switches.data();
        leaving = {std::move(unit), static_cast<std::size_t>(place)};
        fabric.switches.erase(fabric.switches.begin() + place);
        if (leaving.unit.principal && !fabric.switches.empty()) {
            fabric.switches.front().principal = true;
        }
    });
    const std::uint16_t domain = leaving.unit.domain;
    absent[domain] = std::move(leaving);
    return Sent(sent);
}

std::string Join(Server& server, AbsentSwitches& absent, const Words& words) {
    const auto found = absent.find(ToDomain(words[0]));
    if (found == absent.end()) {
        Fail("domain " + words[0] + " has not left the fabric");
    }
    const std::size_t sent = server.ChangeAndNotify([&](Fabric& fabric) {
        Switch unit = found->second.unit;
        unit.principal =
            unit.principal && std::none_of(fabric.switches.begin(), fabric.switches.end(),
                                           [](const Switch& each) { return each.principal; });
        const std::size_t place = std::min(found->second.place, fabric.switches.size());
        fabric.switches.insert(fabric.switches.begin() + static_cast<std::ptrdiff_t>(place),
                               std::move(unit));
    });
    absent.erase(found);
    return Sent(sent);
}

std::string NotifyRaw(Server& server, AbsentSwitches&, const Words& words) {
    return Sent(server.SendNotification(ToDomain(words[0]), words[1]));
}

std::string Flood(Server& server, AbsentSwitches&, const Words& words) {
    const std::uint16_t domain = ToDomain(words[1]);
    std::size_t sent = 0;
    for (std::uint32_t left = ToNumber(words[0], kMaxFlood); left > 0; left--) {
        sent += server.SendNotification(domain, words[2]);
    }
    return Sent(sent);
}

std::string SetValueOf(Server& server, AbsentSwitches&, const Words& words) {
    server.WithFabric([&](Fabric& fabric) {
        Switch& unit = FindSwitch(fabric, ToDomain(words[0]));
        if (words[2] == "--clear") {
            unit.values.erase(words[1]);
        } else {
            unit.values[words[1]] = words[2] == "--fail" ? std::nullopt : std::optional(words[2]);
        }
    });
    return "done";
}

std::string SetSilent(Server& server, AbsentSwitches&, const Words& words) {
    server.WithFabric([&](Fabric& fabric) {
        FindSwitch(fabric, ToDomain(words[0])).silent = ToBool(words[1], "on", "off");
    });
    return "done";
}

constexpr struct Command {
    std::string_view name;
    const char* arguments;
    std::size_t min, max;  // how many
    std::string (*run)(Server&, AbsentSwitches&, const Words&);
} kCommands[] = {
    {"port", "DOMAIN.PORT offline|online|down|diagnostics, or KEY TEXT", 2, 3, SetPort},
    {"sensor", "DOMAIN.supply|fan.NUMBER bad|good", 2, 2, SetSensor},
    {"blade", "DOMAIN.BLADE normal|warm|overheating, or KEY TEXT", 2, 3, SetBlade},
    {"switch", "DOMAIN offline|online|down|diagnostics", 2, 2, SetSwitch},
    {"set", "DOMAIN KEY TEXT", 3, 3, SetKey},
    {"trap", "DOMAIN.NUMBER ADDR PORT SEVERITY on|off VERSION", 6, 6, SetTrap},
    {"leave", "DOMAIN", 1, 1, Leave},
    {"join", "DOMAIN", 1, 1, Join},
    {"notify", "DOMAIN TEXT", 2, 2, NotifyRaw},
    {"flood", "COUNT DOMAIN TEXT", 3, 3, Flood},
    {"value", "DOMAIN PATH TEXT|--fail|--clear", 3, 3, SetValueOf},
    {"silent", "DOMAIN on|off", 2, 2, SetSilent},
};

// ---- The socket. A command is one message, each word with a NUL after it; the answer is its exit
// status as a digit, and a text.

[[noreturn]] void ThrowErrno(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string SocketName(const std::string& address) {
    return "switchsim-" + address;
}

/// Binds (in the program) or connects (the client) a new socket.
int OpenSocket(const std::string& address, int (*attach)(int, const sockaddr*, socklen_t),
               const char* attempt) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    const std::string text = SocketName(address);
    const std::size_t length = std::min(text.size(), sizeof name.sun_path - 1);
    std::memcpy(name.sun_path + 1, text.data(), length);  // the NUL before it makes it abstract
    const int fd = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (fd < 0 ||
        attach(fd, reinterpret_cast<const sockaddr*>(&name),
               static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length)) != 0) {
        const int error = errno;
        close(fd);
        errno = error;
        ThrowErrno(attempt + (" the control socket @" + text));
    }
    return fd;
}

std::string ReceiveMessage(int fd) {
    std::string message(kMaxMessage, '\0');
    const ssize_t size = recv(fd, message.data(), message.size(), 0);
    message.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return message;
}

void SendMessage(int fd, const std::string& message) {
    (void)send(fd, message.data(), message.size(), MSG_NOSIGNAL);
}

void PrintHelp() {
    std::printf(
        "Usage: switchsim ctl [--listen ADDR] COMMAND ...\n"
        "Changes the fabric of the switchsim that listens on ADDR (127.0.0.1).\n\n");
    for (const Command& command : kCommands) {
        std::printf("  %-7s %s\n", std::string(command.name).c_str(), command.arguments);
    }
    std::printf("\nKEY is a plain one of a fabric file. DOMAIN 0 is the local switch.\n");
}

}  // namespace

Control::Control(Server& server, const std::string& address)
    : server_(server), fd_(OpenSocket(address, &::bind, "cannot bind")) {
    if (listen(fd_, 8) != 0) {
        const int error = errno;
        close(fd_);
        errno = error;
        ThrowErrno("cannot listen on the control socket");
    }
}

Control::~Control() {
    close(fd_);
}

std::string Control::Run(const std::vector<std::string>& words) {
    const std::string name = words.empty() ? "" : words[0];
    const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                      [&name](const Command& each) { return each.name == name; });
    if (command == std::end(kCommands)) {
        Fail("unknown command \"" + name + "\"; see switchsim ctl --help");
    }
    const Words rest(words.begin() + 1, words.end());
    if (rest.size() < command->min || rest.size() > command->max) {
        Fail("usage: " + name + " " + command->arguments);
    }
    return command->run(server_, absent_, rest);
}

void Control::ServeOne() {
    const int peer = accept4(fd_, nullptr, nullptr, SOCK_CLOEXEC);
    if (peer < 0) {
        return;
    }
    const timeval patience{1, 0};
    setsockopt(peer, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(peer, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    const std::string message = ReceiveMessage(peer);
    Words words;
    for (std::size_t begin = 0, end = 0; (end = message.find('\0', begin)) != message.npos;
         begin = end + 1) {
        words.push_back(message.substr(begin, end - begin));
    }
    std::string answer;
    try {
        answer = "0" + Run(words);
    } catch (const std::exception& error) {
        answer = std::string("1") + error.what();
    }
    SendMessage(peer, answer);
    close(peer);
}

int RunControlClient(std::vector<std::string> arguments) {
    std::string address = "127.0.0.1";
    if (arguments.size() > 1 && arguments[0] == "--listen") {
        address = arguments[1];
        arguments.erase(arguments.begin(), arguments.begin() + 2);
    }
    if (arguments.empty() || arguments[0] == "--help" || arguments[0] == "-h") {
        PrintHelp();
        return arguments.empty() ? 1 : 0;
    }
    std::string message;
    for (const std::string& word : arguments) {
        message.append(word).push_back('\0');
    }
    const int fd = OpenSocket(address, &::connect, "no switchsim answers at");
    SendMessage(fd, message);
    const std::string answer = ReceiveMessage(fd);
    close(fd);
    if (answer.starts_with('0')) {
        std::printf("%s\n", answer.c_str() + 1);
        return 0;
    }
    throw std::runtime_error("ctl: " + (answer.empty() ? "switchsim ended" : answer.substr(1)));
}

}  // namespace sim
