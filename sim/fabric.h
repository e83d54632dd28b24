// The model of a fabric: plain data that a file describes, a test changes and commands.cpp renders
// into reply texts.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

inline constexpr unsigned kMaxSwitches = 239;
inline constexpr std::size_t kTrapDestinations = 5;

/// 64-bit counters of a port in the order in which they are printed. A counter that a port does
/// not set is 0.
inline constexpr std::array<const char*, 28> kCounterNames = {
    "TotalErrors",    "TotalTxFrames",   "TotalRxFrames",   "TotalTxWords",    "TotalRxWords",
    "FBusys",         "FRejects",        "Class2FramesIn",  "Class2FramesOut", "Class2WordsIn",
    "Class2WordsOut", "Class3FramesIn",  "Class3FramesOut", "Class3WordsIn",   "Class3WordsOut",
    "Class3Tosses",   "RxLinkResets",    "TxLinkResets",    "TotalLinkResets", "RxOfflineSeq",
    "TxOfflineSeq",   "TotalOfflineSeq", "LinkFailures",    "InvalidCRCs",     "DecodeErrors",
    "PrimSeqErrors",  "LossOfSyncs",     "InvDestAddr"};

struct Blade {
    std::string type = "NotApplicable";
    std::string instance = "0";
    std::string asicVersion = "1";
    std::string tempStatus = "Normal";      // Normal, Warm, Overheating
    std::string voltageStatus = "Good";     // Good, Bad
    std::vector<std::uint32_t> boardTemps;  // degrees Celsius, one per temperature sensor
    bool operator==(const Blade&) const = default;
};

struct Port {
    std::string runningType = "F";            // F, FL, E, G, GL, Unknown, ...
    std::string operState = "Online";         // Online, Offline, Down, Diagnostics
    std::string adminState = "Online";        // Online, Offline, Diagnostics
    std::string gbicType = "SL";              // SL, LL, EL, LC, SN, NotInstalled, ...
    std::string linkSpeed = "2Gb/s";          // 1Gb/s, 2Gb/s, 4Gb/s, 10Gb/s, Auto, ...
    std::string syncStatus = "SyncAcquired";  // or SyncLost
    std::string diagStatus = "Passed";        // or Failed
    std::string topologyType = "F";           // type of the port in the topology
    std::string wwn = "0000000000000000";     // 16 hexadecimal digits
    std::string portId = "000000";            // 6 hexadecimal digits
    std::string name = {};
    std::uint32_t maxCredit = 12;
    std::uint32_t minCredit = 1;  // bounds of a configurable buffer credit
    std::uint32_t topCredit = 255;
    std::map<std::string, std::uint64_t> counters = {};  // by a name of kCounterNames
    bool operator==(const Port&) const = default;
};

struct LogEntry {
    std::uint32_t id = 0;  // ascending within a switch
    std::string time;      // "Wed Nov 14 21:38:13 2026"
    std::string text;      // what follows "[id][time]"
    bool operator==(const LogEntry&) const = default;
};

/// A connection of a local port; links are numbered from 1 in the order of the list.
struct Link {
    std::string localNodeWwn = "0000000000000000";
    std::uint32_t localPort = 0;
    std::string localPortWwn = "0000000000000000";
    std::string remoteNodeWwn = "0000000000000000";
    std::uint32_t remotePort = 0;
    std::string remotePortWwn = "0000000000000000";
    std::string remoteAgentAddress = "0.0.0.0";
    std::uint32_t remoteAgentPort = 0;
    std::string remoteUnitType = "Unknown";  // Hub, Switch, Gateway, Converter, HBA, Other, ...
    std::string remoteConnId = "000000";     // 6 hexadecimal digits
    bool operator==(const Link&) const = default;
};

/// An entry of a switch's own name server, keyed by its port id.
struct NsEntry {
    std::string portId = "000000";
    std::string portWwn = "0000000000000000";
    std::string nodeWwn = "0000000000000000";
    std::uint32_t portNumber = 0;
    std::string classes = "3";  // "2,3"
    std::string fc4Types;       // bit map, 64 digits
    std::string portType = "N";
    std::string fabricPortName = "0000000000000000";
    std::string symPortName;
    std::string symNodeName;
    bool operator==(const NsEntry&) const = default;
};

struct TrapDestination {
    std::string address = "0.0.0.0";  // 0.0.0.0: none
    std::uint32_t port = 162;
    std::string severity = "warning";
    bool enabled = false;
    std::string version = "2";
    bool operator==(const TrapDestination&) const = default;
};

struct Switch {
    std::uint16_t domain = 1;  // 1..239
    std::string wwn = "0000000000000000";
    std::string symbolicName;
    std::string comment;
    std::string type = "FabricSwitch";
    std::string operState = "Online";  // Online, Offline, Diagnostics, Down
    std::string adminState = "Online";
    std::string brandName = "Sample Fabrics";
    std::string chassisSerial = "0";
    std::string uuid = "00000000000000000000000000000000";
    std::string ipAddress = "0.0.0.0";
    std::string agentAddress = "0.0.0.0";  // where it is the local switch; 0.0.0.0: nowhere else
    std::string resetReason = "PowerUp";
    std::uint32_t chassis = 1;
    std::uint32_t uptime = 0;  // seconds when the simulator starts; it goes on from there

    // Firmware. A switch whose activeVer is empty does not know that query; its version is then
    // softwareVersions[activeVersion].
    std::string activeVer;
    std::string activeVersion;
    std::string flasherVersion;
    std::map<std::string, std::string> softwareVersions;

    // Logging
    std::string sysLogLevel = "Info";  // Critical, Warn, Info, Debug, None
    std::string devLogComp = "All";
    std::string devLogLevel = "Warn";

    // Time-out values in milliseconds and the bounds within which they can be configured
    std::uint32_t eDTov = 2000, eDTovMin = 10, eDTovMax = 20000;
    std::uint32_t rATov = 10000;
    std::uint32_t rTTov = 100, rTTovMin = 1, rTTovMax = 500;

    // SNMP settings
    std::string sysDescr = "Fibre Channel switch";
    std::string sysObjectId = "1.3.6.1.4.1.32473.1.1";
    std::string contact, location;
    std::string readComm = "public", writeComm = "private", trapComm = "public";
    bool trapAuth = false;
    bool v3Enable = false;
    std::string roUser, roAuthType = "None", roAuthPhrase, roPrivType = "None", roPrivPhrase;
    std::string rwUser, rwAuthType = "None", rwAuthPhrase, rwPrivType = "None", rwPrivPhrase;
    std::array<TrapDestination, kTrapDestinations> traps;

    bool principal = false;
    bool allow4GPorts = false;
    bool inbandEnable = true;
    bool eventSupport = true;  // takes private events
    bool silent = false;       // never answers

    std::vector<std::string> powerSupplies;  // Good, Bad
    std::vector<std::string> fans;           // Good, Bad
    std::vector<Blade> blades;
    std::vector<Port> ports;
    std::vector<LogEntry> log;  // oldest first
    std::vector<Link> links;
    std::vector<NsEntry> nameServer;

    /// Reply texts that go before everything above, by path ("Oper.Switch.Type"); none makes the
    /// query fail.
    std::map<std::string, std::optional<std::string>> values;

    bool operator==(const Switch&) const = default;
};

struct ZoneMember {
    std::string id;
    std::string type = "WWN";  // WWN, PortID, DomainPort
    bool operator==(const ZoneMember&) const = default;
};

/// A zone of the active zone set, or an alias (which has no type).
struct Zone {
    std::string name;
    std::string type = "Soft";  // Soft, Hard
    std::vector<ZoneMember> members;
    bool operator==(const Zone&) const = default;
};

struct Fabric {
    std::string mergeMode = "NonSW2";  // NonSW2, Interop_2, ...
    bool proxy = true;
    std::uint16_t localDomain = 1;
    bool endMark = false;  // a list ends with the text "*end*" rather than with an error
    std::string activeZoneSet;
    std::vector<Zone> zones;
    std::vector<Zone> aliases;
    std::vector<Switch> switches;  // in the order in which their domains are listed
    bool operator==(const Fabric&) const = default;

    /// The switch of a domain (0 = the local one), or none.
    const Switch* Find(std::uint32_t domain) const;
    Switch* Find(std::uint32_t domain);
    bool Interop() const {
        return mergeMode == "Interop_2";
    }
};

/// What a text field must look like, and how it reads in a reply.
enum class Form {
    kText,
    kOptional,  // an empty text means that the switch does not know the query
    kWwn,       // 16 hexadecimal digits
    kPortId,    // 6 hexadecimal digits
    kAddress,   // dotted IPv4 address, 8 hexadecimal digits in a reply
};

/// One row per plain field: its key in a fabric file, the path that reads it (for a part of a
/// switch, the path's last element; none when no query reads it), and where it is.
template <class T>
struct TextField {
    const char* key;
    const char* path;
    std::string T::*member;
    Form form = Form::kText;
};
template <class T>
struct NumberField {
    const char* key;
    const char* path;
    std::uint32_t T::*member;
};
template <class T>
struct BoolField {
    const char* key;
    const char* path;
    bool T::*member;
};
template <class T>
struct Fields {
    std::span<const TextField<T>> texts;
    std::span<const NumberField<T>> numbers = {};
    std::span<const BoolField<T>> bools = {};
};

const Fields<Switch>& SwitchFields();
const Fields<Blade>& BladeFields();
const Fields<Port>& PortFields();
const Fields<Link>& LinkFields();
const Fields<NsEntry>& NsFields();
const Fields<TrapDestination>& TrapFields();

/// A fabric file that cannot be read or makes no sense: "FILE:LINE: what is wrong".
struct FabricError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What keeps a model from being simulated (two switches of one domain, a local domain that is not
/// there, a WWN that is none ...), or an empty text. `culprit` receives the index of the switch at
/// fault, or the number of switches when it is none of them.
std::string CheckFabric(const Fabric& fabric, std::size_t* culprit = nullptr);

/// Three unlike switches (domains 1, 2 and 7; 2 is the local one).
Fabric DefaultFabric();

inline constexpr unsigned kMaxGeneratedNames = 14 * 256;

struct GeneratedSizes {
    unsigned names = 14;       // devices of each switch: name-server entries and links
    unsigned zoneMembers = 1;  // in all, 20 to a zone
};

/// `switches` like switches of 16 ports, domains from 1 up. Throws std::out_of_range outside 1 to
/// 239 switches or above kMaxGeneratedNames devices.
Fabric GenerateFabric(unsigned switches, const GeneratedSizes& sizes = {});

/// Reads a fabric file. Throws FabricError.
Fabric LoadFabric(const std::string& path);

/// As LoadFabric, from a text; `name` is what errors call it.
Fabric ParseFabric(std::string_view toml, const std::string& name);

/// The fabric as a text that LoadFabric reads back equal.
std::string PrintFabric(const Fabric& fabric);

}  // namespace sim
