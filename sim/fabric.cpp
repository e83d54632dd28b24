#include "sim/fabric.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <set>

namespace sim {
namespace {

constexpr TextField<Switch> kSwitchTexts[] = {
    {"wwn", "Config.Mfg.WWN", &Switch::wwn, Form::kWwn},
    {"symbolic_name", "Config.Switch.SymName", &Switch::symbolicName},
    {"comment", "Config.Switch.Comment", &Switch::comment},
    {"type", "Oper.Switch.Type", &Switch::type},
    {"oper_state", "Oper.Switch.OperState", &Switch::operState},
    {"admin_state", "Config.Switch.AdminState", &Switch::adminState},
    {"brand_name", "Config.Mfg.BrandName", &Switch::brandName},
    {"chassis_serial", "Config.Mfg.ChassisSerialNum", &Switch::chassisSerial},
    {"uuid", "Oper.Mfg.UUID", &Switch::uuid},
    {"ip_address", "Config.System.IPAddress", &Switch::ipAddress, Form::kAddress},
    {"agent_address", nullptr, &Switch::agentAddress, Form::kAddress},
    {"reset_reason", "Oper.Switch.ResetReason", &Switch::resetReason},
    {"active_ver", "Oper.Switch.ActiveVer", &Switch::activeVer, Form::kOptional},
    {"active_version", "Oper.Switch.ActiveVersion", &Switch::activeVersion, Form::kOptional},
    {"flasher_version", "Oper.Switch.FlasherVersion", &Switch::flasherVersion, Form::kOptional},
    {"sys_log_level", "Oper.Switch.SysLogLevel", &Switch::sysLogLevel},
    {"dev_log_comp", "Oper.Switch.DevLogComp", &Switch::devLogComp},
    {"dev_log_level", "Oper.Switch.DevLogLevel", &Switch::devLogLevel},
    {"snmp_sys_descr", "Config.Snmp.SysDescr", &Switch::sysDescr},
    {"snmp_sys_object_id", "Config.Snmp.SysObjectID", &Switch::sysObjectId},
    {"snmp_contact", "Config.Snmp.Contact", &Switch::contact},
    {"snmp_location", "Config.Snmp.Location", &Switch::location},
    {"snmp_read_comm", "Config.Snmp.ReadComm", &Switch::readComm},
    {"snmp_write_comm", "Config.Snmp.WriteComm", &Switch::writeComm},
    {"snmp_trap_comm", "Config.Snmp.TrapComm", &Switch::trapComm},
    {"snmp_ro_user", "Config.Snmp.ROUser", &Switch::roUser},
    {"snmp_ro_auth_type", "Config.Snmp.ROAuthType", &Switch::roAuthType},
    {"snmp_ro_auth_phrase", "Config.Snmp.ROAuthPhrase", &Switch::roAuthPhrase},
    {"snmp_ro_priv_type", "Config.Snmp.ROPrivType", &Switch::roPrivType},
    {"snmp_ro_priv_phrase", "Config.Snmp.ROPrivPhrase", &Switch::roPrivPhrase},
    {"snmp_rw_user", "Config.Snmp.RWUser", &Switch::rwUser},
    {"snmp_rw_auth_type", "Config.Snmp.RWAuthType", &Switch::rwAuthType},
    {"snmp_rw_auth_phrase", "Config.Snmp.RWAuthPhrase", &Switch::rwAuthPhrase},
    {"snmp_rw_priv_type", "Config.Snmp.RWPrivType", &Switch::rwPrivType},
    {"snmp_rw_priv_phrase", "Config.Snmp.RWPrivPhrase", &Switch::rwPrivPhrase},
};

constexpr NumberField<Switch> kSwitchNumbers[] = {
    {"chassis", "Oper.Switch.Chassis", &Switch::chassis},
    {"uptime", nullptr, &Switch::uptime},  // it advances, so it is no rendered text
    {"e_d_tov", "Config.Switch.E_D_TOV", &Switch::eDTov},
    {"e_d_tov_min", "LowerRange.Switch.E_D_TOV", &Switch::eDTovMin},
    {"e_d_tov_max", "UpperRange.Switch.E_D_TOV", &Switch::eDTovMax},
    {"r_a_tov", "Config.Switch.R_A_TOV", &Switch::rATov},
    {"r_t_tov", "Config.Switch.R_T_TOV", &Switch::rTTov},
    {"r_t_tov_min", "LowerRange.Switch.R_T_TOV", &Switch::rTTovMin},
    {"r_t_tov_max", "UpperRange.Switch.R_T_TOV", &Switch::rTTovMax},
};

constexpr BoolField<Switch> kSwitchBools[] = {
    {"principal", "Oper.Switch.PrincipalSwitch", &Switch::principal},
    {"allow_4g_ports", "Config.Mfg.Allow4GPorts", &Switch::allow4GPorts},
    {"inband_enable", "Config.Switch.InbandEnable", &Switch::inbandEnable},
    {"snmp_trap_auth", "Config.Snmp.TrapAuth", &Switch::trapAuth},
    {"snmp_v3_enable", "Config.Snmp.V3SecurityEnable", &Switch::v3Enable},
    {"event_support", nullptr, &Switch::eventSupport},
    {"silent", nullptr, &Switch::silent},
};

constexpr TextField<Blade> kBladeTexts[] = {
    {"type", "Type", &Blade::type},
    {"instance", "Instance", &Blade::instance},
    {"asic_version", "AsicVersion", &Blade::asicVersion, Form::kOptional},
    {"temp_status", "TempStatus", &Blade::tempStatus},
    {"voltage_status", "VoltageStatus", &Blade::voltageStatus},
};

constexpr TextField<Port> kPortTexts[] = {
    {"running_type", "RunningType", &Port::runningType},
    {"oper_state", "OperState", &Port::operState},
    {"admin_state", "AdminState", &Port::adminState},
    {"gbic_type", "GBICType", &Port::gbicType},
    {"link_speed", "LinkSpeed", &Port::linkSpeed},
    {"sync_status", "SyncStatus", &Port::syncStatus},
    {"diag_status", "DiagStatus", &Port::diagStatus},
    {"topology_type", nullptr, &Port::topologyType},  // read below another path
    {"wwn", "WWN", &Port::wwn, Form::kWwn},
    {"port_id", "PortID", &Port::portId, Form::kPortId},
    {"name", "SymPortName", &Port::name},
};

constexpr NumberField<Port> kPortNumbers[] = {
    {"max_credit", "MaxCredit", &Port::maxCredit},
    {"min_credit", nullptr, &Port::minCredit},
    {"top_credit", nullptr, &Port::topCredit},
};

constexpr TextField<Link> kLinkTexts[] = {
    {"local_node_wwn", "LocalNodeWwn", &Link::localNodeWwn, Form::kWwn},
    {"local_port_wwn", "LocalPortWwn", &Link::localPortWwn, Form::kWwn},
    {"remote_node_wwn", "RemoteNodeWwn", &Link::remoteNodeWwn, Form::kWwn},
    {"remote_port_wwn", "RemotePortWwn", &Link::remotePortWwn, Form::kWwn},
    {"remote_agent_address", "RemoteAgentAddr", &Link::remoteAgentAddress, Form::kAddress},
    {"remote_unit_type", "RemoteUnitType", &Link::remoteUnitType},
    {"remote_conn_id", "RemoteConnID", &Link::remoteConnId, Form::kPortId},
};

constexpr NumberField<Link> kLinkNumbers[] = {
    {"local_port", "LocalPortNumber", &Link::localPort},
    {"remote_port", "RemotePortNumber", &Link::remotePort},
    {"remote_agent_port", "RemoteAgentPort", &Link::remoteAgentPort},
};

constexpr TextField<NsEntry> kNsTexts[] = {
    {"port_id", nullptr, &NsEntry::portId, Form::kPortId},  // the key of the entry
    {"port_wwn", "PortWwn", &NsEntry::portWwn, Form::kWwn},
    {"node_wwn", "NodeWwn", &NsEntry::nodeWwn, Form::kWwn},
    {"classes", "COSList", &NsEntry::classes},
    {"fc4_types", "FC4TypeBitMap", &NsEntry::fc4Types},
    {"port_type", "PortType", &NsEntry::portType},
    {"fabric_port_name", "FabricPortName", &NsEntry::fabricPortName, Form::kWwn},
    {"sym_port_name", "SymPortName", &NsEntry::symPortName},
    {"sym_node_name", "SymNodeName", &NsEntry::symNodeName},
};

constexpr NumberField<NsEntry> kNsNumbers[] = {
    {"port_number", "PortNumber", &NsEntry::portNumber},
};

constexpr TextField<TrapDestination> kTrapTexts[] = {
    {"address", "TrapAddr", &TrapDestination::address, Form::kAddress},
    {"severity", "TrapSeverity", &TrapDestination::severity},
    {"version", "TrapVersion", &TrapDestination::version, Form::kOptional},
};

constexpr NumberField<TrapDestination> kTrapNumbers[] = {
    {"port", "TrapPort", &TrapDestination::port},
};

constexpr BoolField<TrapDestination> kTrapBools[] = {
    {"enabled", "TrapEnable", &TrapDestination::enabled},
};

bool IsHex(std::string_view text, std::size_t digits) {
    return text.size() == digits && std::all_of(text.begin(), text.end(), [](unsigned char c) {
               return std::isxdigit(c) != 0;
           });
}

bool HasForm(const std::string& text, Form form) {
    in_addr address{};
    switch (form) {
        case Form::kWwn:
            return IsHex(text, 16);
        case Form::kPortId:
            return IsHex(text, 6);
        case Form::kAddress:
            return inet_pton(AF_INET, text.c_str(), &address) == 1;
        default:
            return true;
    }
}

const char* FormName(Form form) {
    switch (form) {
        case Form::kWwn:
            return "16 hexadecimal digits";
        case Form::kPortId:
            return "6 hexadecimal digits";
        case Form::kAddress:
            return "a dotted IPv4 address";
        default:
            return "a text";
    }
}

template <class T>
std::string CheckTexts(const T& part, const Fields<T>& fields, const std::string& where) {
    for (const TextField<T>& field : fields.texts) {
        if (!HasForm(part.*field.member, field.form)) {
            return where + field.key + " is \"" + part.*field.member + "\", expected " +
                   FormName(field.form);
        }
    }
    return {};
}

template <class Parts, class T>
std::string CheckParts(const Parts& parts, const Fields<T>& fields, const std::string& where) {
    for (std::size_t i = 0; i < parts.size(); i++) {
        if (std::string wrong = CheckTexts(parts[i], fields, where + std::to_string(i) + ": ");
            !wrong.empty()) {
            return wrong;
        }
    }
    return {};
}

std::string CheckSwitch(const Switch& unit) {
    const std::string where = "domain " + std::to_string(unit.domain) + ": ";
    for (std::string wrong : {CheckTexts(unit, SwitchFields(), where),
                              CheckParts(unit.ports, PortFields(), where + "port "),
                              CheckParts(unit.links, LinkFields(), where + "link "),
                              CheckParts(unit.nameServer, NsFields(), where + "name_server "),
                              CheckParts(unit.traps, TrapFields(), where + "trap ")}) {
        if (!wrong.empty()) {
            return wrong;
        }
    }
    std::set<std::string_view> ids;
    for (const NsEntry& entry : unit.nameServer) {
        if (!ids.insert(entry.portId).second) {
            return where + "two name_server entries have the port id " + entry.portId;
        }
    }
    for (std::size_t i = 1; i < unit.log.size(); i++) {
        if (unit.log[i].id <= unit.log[i - 1].id) {
            return where + "log entry ids must ascend, but " + std::to_string(unit.log[i].id) +
                   " follows " + std::to_string(unit.log[i - 1].id);
        }
    }
    for (std::size_t i = 0; i < unit.ports.size(); i++) {
        for (const auto& counter : unit.ports[i].counters) {
            if (std::find(kCounterNames.begin(), kCounterNames.end(), counter.first) ==
                kCounterNames.end()) {
                return where + "port " + std::to_string(i) + ": no counter is called \"" +
                       counter.first + "\"";
            }
        }
    }
    return {};
}

}  // namespace

const Fields<Switch>& SwitchFields() {
    static constexpr Fields<Switch> kFields{kSwitchTexts, kSwitchNumbers, kSwitchBools};
    return kFields;
}

const Fields<Blade>& BladeFields() {
    static constexpr Fields<Blade> kFields{kBladeTexts};
    return kFields;
}

const Fields<Port>& PortFields() {
    static constexpr Fields<Port> kFields{kPortTexts, kPortNumbers};
    return kFields;
}

const Fields<Link>& LinkFields() {
    static constexpr Fields<Link> kFields{kLinkTexts, kLinkNumbers};
    return kFields;
}

const Fields<NsEntry>& NsFields() {
    static constexpr Fields<NsEntry> kFields{kNsTexts, kNsNumbers};
    return kFields;
}

const Fields<TrapDestination>& TrapFields() {
    static constexpr Fields<TrapDestination> kFields{kTrapTexts, kTrapNumbers, kTrapBools};
    return kFields;
}

const Switch* Fabric::Find(std::uint32_t domain) const {
    const std::uint32_t wanted = domain == 0 ? localDomain : domain;
    for (const Switch& unit : switches) {
        if (unit.domain == wanted) {
            return &unit;
        }
    }
    return nullptr;
}

Switch* Fabric::Find(std::uint32_t domain) {
    return const_cast<Switch*>(static_cast<const Fabric*>(this)->Find(domain));
}

std::string CheckFabric(const Fabric& fabric, std::size_t* culprit) {
    std::size_t ignored = 0;
    std::size_t& index = culprit == nullptr ? ignored : *culprit;
    std::set<std::uint16_t> domains;
    std::set<std::string> wwns;
    for (index = 0; index < fabric.switches.size(); index++) {
        const Switch& unit = fabric.switches[index];
        const std::string domain = std::to_string(unit.domain);
        if (unit.domain < 1 || unit.domain > kMaxSwitches) {
            return "domain " + domain + " is outside 1..239";
        }
        if (!domains.insert(unit.domain).second) {
            return "two switches have domain " + domain;
        }
        if (!wwns.insert(unit.wwn).second) {
            return "two switches have the WWN " + unit.wwn;
        }
        if (std::string wrong = CheckSwitch(unit); !wrong.empty()) {
            return wrong;
        }
    }
    if (fabric.localDomain == 0 || fabric.Find(0) == nullptr) {
        return "no switch has the local domain " + std::to_string(fabric.localDomain);
    }
    return {};
}

}  // namespace sim
