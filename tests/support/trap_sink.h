// A trap destination of a test's own: a socket, and the traps that arrive there in readable form.
#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace snmpmain {

// An SNMP message as text: sequences in parentheses, "T4(" and "T7(" for the two kinds of traps,
// "t" for a time and "id" for a request id, which differ from message to message.
inline std::string DescribeBer(std::span<const std::uint8_t>& rest, bool inTrap2 = false) {
    const std::uint8_t tag = rest[0];
    std::size_t length = rest[1];
    std::size_t header = 2;
    if (length > 127) {
        header += length - 128;
        length = 0;
        for (std::size_t i = 2; i < header; ++i) {
            length = length * 256 + rest[i];
        }
    }
    std::span content = rest.subspan(header, length);
    rest = rest.subspan(header + length);
    if ((tag & 0x20) != 0) {
        std::string text = tag == 0x30 ? "(" : "T" + std::to_string(tag & 0x1F) + "(";
        bool first = tag == 0xA7;
        while (!content.empty()) {
            text += (text.back() == '(' ? "" : " ") + DescribeBer(content, first);
            first = false;
        }
        return text + ")";
    }
    std::string text;
    std::uint64_t number = 0;
    switch (tag) {
        case 0x02:
            for (const std::uint8_t octet : content) {
                number = number * 256 + octet;
            }
            return inTrap2 ? "id" : std::to_string(number);
        case 0x43:
            return "t";
        case 0x06:
            for (std::size_t i = 1; i < content.size(); ++i) {
                number = number * 128 + (content[i] & 0x7Fu);
                if ((content[i] & 0x80) == 0) {
                    text += "." + std::to_string(number);
                    number = 0;
                }
            }
            return std::to_string(content[0] / 40) + "." + std::to_string(content[0] % 40) + text;
        default:
            return "'" + std::string(content.begin(), content.end()) + "'";
    }
}

class TrapSink {
  public:
    // `address` in 127.0.0.0/8; the port is any that is free.
    explicit TrapSink(const std::string& address) : address_(address) {
        socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_in own{};
        own.sin_family = AF_INET;
        ::inet_aton(address.c_str(), &own.sin_addr);
        socklen_t size = sizeof(own);
        ::bind(socket_, reinterpret_cast<const sockaddr*>(&own), size);
        ::getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
        port_ = ntohs(own.sin_port);
    }
    ~TrapSink() {
        ::close(socket_);
    }
    TrapSink(const TrapSink&) = delete;
    TrapSink& operator=(const TrapSink&) = delete;

    const std::string& Address() const {
        return address_;
    }
    std::uint16_t Port() const {
        return port_;
    }

    // The traps that have arrived, and those that arrive within the time.
    std::vector<std::string> Take(int milliseconds = 0) {
        std::vector<std::string> traps;
        pollfd waiting{socket_, POLLIN, 0};
        std::uint8_t buffer[2048];
        while (::poll(&waiting, 1, milliseconds) > 0) {
            const ssize_t size = ::recv(socket_, buffer, sizeof(buffer), 0);
            std::span<const std::uint8_t> message(buffer, static_cast<std::size_t>(size));
            traps.push_back(DescribeBer(message));
        }
        return traps;
    }

  private:
    std::string address_;
    std::uint16_t port_ = 0;
    int socket_ = -1;
};

}  // namespace snmpmain
