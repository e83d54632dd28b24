// A fabric as its readings tell: the last whole one, which replaces the one before at once, and the
// throughput of the last hour. Times are seconds since 1970, rates bytes per second.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <vector>

#include "exporter/walk.h"

namespace fcexporter {

// Negative: not known.
struct Rates {
    float send = -1;
    float receive = -1;
};

struct Link {
    std::uint32_t number = 0;
    std::uint64_t remoteNode = 0;  // WWN
    std::uint64_t remotePort = 0;
};

struct Port {
    Row values;            // kPortColumns
    std::string attached;  // names of the switch or the devices at the other end, as last known
    std::vector<Link> links;
    std::size_t logins = 0;
    Rates rates;  // since the reading before
};

struct Event {
    std::string time;  // "14112026 213813": day, month and year
    std::string text;  // "[number][time]..."
};

struct Switch {
    bool answers = false;
    double silentSince = 0;
    Row values;                            // kSwitchColumns
    std::map<std::uint32_t, Row> sensors;  // kSensorColumns; by number from 1
    std::map<std::uint32_t, Port> ports;   // by the switch's own number from 0
    std::size_t devices = 0;               // in its part of the name server
    std::vector<Event> events;             // the newest ones, oldest first
};

struct Reading {
    double started = 0;
    double duration = 0;
    std::map<std::uint64_t, Switch> switches;  // by WWN
};

// Taken at most every half minute: an hour of them are 960 octets for a port.
struct Sample {
    double time = 0;
    std::map<std::uint64_t, std::vector<Rates>> rates;  // by WWN and number of the port
};

// What others see of a fabric.
struct Seen {
    std::shared_ptr<const Reading> reading;  // the last whole one; at first an empty one
    std::vector<std::shared_ptr<const Sample>> samples;  // of the last hour, oldest first
    bool up = false;                                     // the last reading succeeded
    std::string error;                                   // why not
    std::uint64_t readings = 0;                          // failed ones included
    std::uint64_t errors = 0;
};

struct Fabric {
    const Target target;
    const double interval;
    Session session;  // of the thread that reads
    mutable std::mutex mutex;
    Seen seen;  // guarded by the mutex
};

using Fabrics = std::vector<std::unique_ptr<Fabric>>;

Seen Look(const Fabric& fabric);

// Reads until told to stop.
void ReadOn(Fabric& fabric, const std::stop_token& stop);

// Reads everything once (reading.cpp). What the reading before knows of silent switches,
// of events and of what is attached is taken over. 0, or -1: see the session's error.
int ReadFabric(Session& session, const Reading& before, Reading& reading);

double Now();

// "10:00:02:00:00:00:01:00"
std::string WwnText(std::uint64_t wwn);

// The switch's name, or its WWN while it has none.
std::string NameOf(std::uint64_t wwn, const Switch& unit);

}  // namespace fcexporter
