// An agent's end of the link, for tests: builds request frames byte by byte and reads replies.
#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simtest {

using Bytes = std::vector<std::uint8_t>;

inline void Put(Bytes& bytes, std::size_t offset, std::uint64_t value, int size) {
    for (int i = 0; i < size; i++) {
        bytes[offset + static_cast<std::size_t>(i)] =
            static_cast<std::uint8_t>(value >> (8 * (size - 1 - i)));
    }
}

inline std::uint32_t Word(const Bytes& bytes, std::size_t offset, int size = 4) {
    std::uint32_t value = 0;
    for (int i = 0; i < size; i++) {
        value = value << 8 | bytes[offset + static_cast<std::size_t>(i)];
    }
    return value;
}

inline void Sum(Bytes& frame) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i + 4 < frame.size(); i++) {
        sum += frame[i];
    }
    Put(frame, frame.size() - 4, sum, 4);
}

/// A frame of the size that a text of that length has.
inline Bytes Frame(std::uint16_t type, const std::string& text, std::uint32_t target = 0,
                   std::uint32_t sequence = 0x10002) {
    const std::size_t rounded = (text.size() + 1) / 4 * 4;
    Bytes frame(rounded + 24);
    Put(frame, 0, 0x11000000, 4);
    Put(frame, 4, target, 4);
    Put(frame, 8, type, 2);
    Put(frame, 10, rounded + 8, 2);
    Put(frame, 12, sequence, 4);
    std::copy(text.begin(), text.end(), frame.begin() + 16);
    Sum(frame);
    return frame;
}

inline std::string Text(const Bytes& frame) {
    return reinterpret_cast<const char*>(frame.data()) + 16;
}

class Client {
  public:
    explicit Client(const char* server) {
        to_.sin_family = AF_INET;
        to_.sin_port = htons(5001);
        inet_pton(AF_INET, server, &to_.sin_addr);
        sockaddr_in self{};
        self.sin_family = AF_INET;
        self.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        (void)bind(fd_, reinterpret_cast<const sockaddr*>(&self), sizeof self);
    }
    ~Client() {
        close(fd_);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void Send(const Bytes& frame) {
        (void)sendto(fd_, frame.data(), frame.size(), 0, reinterpret_cast<const sockaddr*>(&to_),
                     sizeof to_);
    }

    std::optional<Bytes> Receive(int milliseconds = 2000) {
        pollfd ready{fd_, POLLIN, 0};
        if (poll(&ready, 1, milliseconds) != 1) {
            return std::nullopt;
        }
        Bytes bytes(2048);
        const ssize_t size = recv(fd_, bytes.data(), bytes.size(), 0);
        bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return bytes;
    }

    /// The reply text, or "(none)" when none comes.
    std::string Ask(std::uint16_t type, const std::string& text, std::uint32_t domain = 0,
                    int milliseconds = 2000) {
        Send(Frame(type, text, domain << 16, ++sequence_));
        const auto reply = Receive(milliseconds);
        return reply && Word(*reply, 12) == sequence_ ? Text(*reply) : "(none)";
    }

    std::string Get(const std::string& path, std::uint32_t domain = 0) {
        return Ask(1024, path, domain);
    }

  private:
    int fd_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in to_{};
    std::uint32_t sequence_ = 0x10001;
};

}  // namespace simtest
