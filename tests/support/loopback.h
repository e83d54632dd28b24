// Loopback addresses of a test process's own, so that tests run side by side.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <unistd.h>

#include <string>

// An address that no other process of the tests uses; `lane`, 0 to 3, tells several apart.
inline std::string LoopbackAddress(int lane) {
    const int pid = ::getpid();
    return "127." + std::to_string(96 + lane * 32 + (pid >> 14) % 32) + "." +
           std::to_string(pid >> 7 & 127) + "." + std::to_string(1 + (pid & 127));
}

// The sender in a line of the simulator's log, "DOMAIN ADDRESS:PORT COMMAND ...".
inline sockaddr_in SenderInLog(const std::string& line) {
    const std::size_t begin = line.find(' ') + 1;
    const std::size_t colon = line.find(':', begin);
    sockaddr_in sender{};
    sender.sin_family = AF_INET;
    sender.sin_addr.s_addr = ::inet_addr(line.substr(begin, colon - begin).c_str());
    sender.sin_port = htons(static_cast<in_port_t>(std::stoi(line.substr(colon + 1))));
    return sender;
}
