#include "src/agent/options.h"

#include <getopt.h>

#include <cstdio>
#include <cstring>

namespace snmpmain {
namespace {

constexpr std::size_t kLongestAddress = 15;

constexpr option kLongOptions[] = {
    {"notrap", no_argument, nullptr, 'n'},
    {"remote", required_argument, nullptr, 'r'},
    {nullptr, 0, nullptr, 0},
};

void PrintUsage() {
    std::fputs("\nUsage: snmpmain [--remote 10.0.0.1] [--notrap]\n\n", stdout);
    std::fputs("  --remote  -r  indicates IP address of remote switch\n", stdout);
    std::fputs("  --notrap  -n  suppresses startup traps\n\n", stdout);
}

}  // namespace

int ParseOptions(int argc, char** argv, Options& options) {
    // The program has always been driven with the address as the third word of the command line;
    // that word is taken, wherever the option stands.
    constexpr int kAddressWord = 2;
    for (;;) {
        switch (::getopt_long(argc, argv, "nr:", kLongOptions, nullptr)) {
            case -1:
                return 0;
            case 0:
            case 1:
                break;
            case 'n':
                options.startupTrap = false;
                break;
            case 'r':
                if (std::strlen(::optarg) <= kLongestAddress) {
                    options.remoteAddress = argv[kAddressWord];
                }
                break;
            default:
                PrintUsage();
                return -1;
        }
    }
}

}  // namespace snmpmain
