// A trap destination of a test's own.
#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

namespace snmpmain {

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

    // The messages that have arrived, and those that arrive within the time, as they came.
    std::vector<std::string> Take(int milliseconds = 0) {
        std::vector<std::string> messages;
        pollfd waiting{socket_, POLLIN, 0};
        char buffer[2048];
        while (::poll(&waiting, 1, milliseconds) > 0) {
            const ssize_t size = ::recv(socket_, buffer, sizeof(buffer), 0);
            messages.emplace_back(buffer, static_cast<std::size_t>(size));
        }
        return messages;
    }

  private:
    std::string address_;
    std::uint16_t port_ = 0;
    int socket_ = -1;
};

}  // namespace snmpmain
