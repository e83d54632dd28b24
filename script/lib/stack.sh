# The processes of a demonstration or measurement: simulator, snmpd, agent. Sourced by bash scripts
# with `set -euo pipefail`. Everything lives in a folder of its own and on a loopback address of its
# own, so that several stacks run side by side, up to three of one script; stack_stop ends all that
# was started and removes the folders.
#
# Needs BUILD, the build folder. Sets, for the stack begun last, STACK_ROOT (the folder),
# STACK_ADDRESS (where switch management and snmpd listen) and STACK_MANAGER (how net-snmp's tools
# reach snmpd).

STACK_PIDS=()
STACK_NAMES=()
STACK_ROOTS=()
STACK_PORT=1161

stack_new() {
    STACK_ROOT=$(mktemp -d /tmp/snmpmain.XXXXXX)
    STACK_ROOTS+=("$STACK_ROOT")
    # The process id makes the address unique among stacks that run at the same time.
    STACK_ADDRESS=127.$((64 * ${#STACK_ROOTS[@]} + ($$ >> 16) % 64)).$(($$ >> 8 & 255)).$((1 + $$ % 254))
    STACK_MANAGER=$STACK_ADDRESS:$STACK_PORT
    mkdir -p "$STACK_ROOT"/{var/agentx,var/run,var/ucd-snmp,kelmor/conf/etc}
    echo "hexOutputLength 0" >"$STACK_ROOT/snmp.conf" # a value, a line
    keep_snmp_in "$STACK_ROOT" "$STACK_ROOT/var/ucd-snmp"
    export SNMPMAIN_ROOT=$STACK_ROOT
}

# keep_snmp_in SETTINGS [KEPT]: net-snmp's programs read their settings in one folder and keep what they
# keep in the other, or in the same. Otherwise they would go to /etc/snmp, ~/.snmp and /var/lib/snmp, even
# to translate a name, and to the MIB modules that lie there.
keep_snmp_in() {
    export SNMPCONFPATH=$1 SNMP_PERSISTENT_DIR=${2:-$1} MIBS= MIBDIRS=
    unset SNMP_PERSISTENT_FILE MIBFILES
}

# Waits until a command succeeds: wait_until SECONDS NAME COMMAND... where NAME is the process that
# was started last. Tells its last words when it ended or the time is up.
wait_until() {
    local deadline=$((SECONDS + $1)) name=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        if ! kill -0 "$STACK_PID" 2>/dev/null || ((SECONDS >= deadline)); then
            last_words "$name"
            return 1
        fi
        sleep 0.05
    done
}

# last_words NAME: why a process is of no use.
last_words() {
    echo "$1 does not work; the end of its log:" >&2
    tail -n 10 "$STACK_ROOT/$1.log" >&2
}

# stack_start NAME COMMAND...: output goes to NAME.log; the process id is left in STACK_PID. The
# process ends with this script, however that ends.
stack_start() {
    local name=$1
    shift
    setpriv --pdeathsig KILL "$@" >"$STACK_ROOT/$name.log" 2>&1 </dev/null &
    STACK_PID=$!
    STACK_PIDS+=("$STACK_PID")
    STACK_NAMES+=("$name")
}

# Waits until one of the processes ends, and tells which.
stack_await_end() {
    local i
    wait -n "${STACK_PIDS[@]}" 2>/dev/null || true
    for i in "${!STACK_PIDS[@]}"; do
        kill -0 "${STACK_PIDS[i]}" 2>/dev/null || last_words "${STACK_NAMES[i]}"
    done
}

start_simulator() {
    stack_start switchsim "$BUILD/bin/switchsim" --listen "$STACK_ADDRESS" "$@"
    wait_until 10 switchsim grep -q listening "$STACK_ROOT/switchsim.log"
}

# switch_ctl COMMAND...: changes the simulated fabric.
switch_ctl() {
    "$BUILD/bin/switchsim" ctl --listen "$STACK_ADDRESS" "$@" >/dev/null
}

# Starts snmpd as on a switch: the agent writes its configuration, communities included, and has it
# read. What is this host's stands in a file beside that.
start_snmpd() {
    local conf=$STACK_ROOT/kelmor/conf/etc
    cat >"$conf/snmpd.local.conf" <<EOF
master agentx
agentXSocket $STACK_ROOT/var/agentx/master
agentXTimeout 120
agentXRetries 0
EOF
    stack_start snmpd env SNMPCONFPATH="$SNMP_PERSISTENT_DIR:$conf" \
        snmpd -f -LE 4 -I -smux -p "$STACK_ROOT/var/run/snmpd.pid" "udp:$STACK_MANAGER"
    wait_until 10 snmpd test -S "$STACK_ROOT/var/agentx/master"
}

start_agent() {
    # shellcheck disable=SC2086 # a program, perhaps behind an emulator
    stack_start snmpmain ${SNMPMAIN_AGENT:-"$BUILD/bin/snmpmain"} --remote "$STACK_ADDRESS" --notrap "$@"
    wait_until 60 snmpmain agent_answers
}

agent_answers() {
    [[ $(snmpget -v2c -c public -r 0 -Oqv "$STACK_MANAGER" .1.3.6.1.3.94.1.1.0) =~ ^[0-9]+$ ]]
}

# Starts the exporter, whose address is left in STACK_EXPORTER.
start_exporter() {
    STACK_EXPORTER=$STACK_ADDRESS:9943
    stack_start fcexporter "$BUILD/bin/fcexporter" --target "demo=$STACK_MANAGER" \
        --listen "$STACK_EXPORTER" --interval 5
    wait_until 20 fcexporter exporter_has_read
}

exporter_has_read() {
    exec {http}<>"/dev/tcp/${STACK_EXPORTER/://}" || return
    printf 'GET /metrics HTTP/1.0\r\n\r\n' >&$http
    local metrics
    metrics=$(cat <&$http)
    exec {http}>&-
    [[ $metrics == *'fcexporter_up{fabric="demo"} 1'* ]]
}

# From here on net-snmp's programs show names: they load the MIB modules, and show indexes in brackets.
load_modules() {
    export MIBS=ALL MIBDIRS=$PWD/mib:$PWD/mib/base
    echo "extendedIndex yes" >>"$SNMPCONFPATH/snmp.conf"
}

# Starts a trap receiver with the MIB modules loaded; traps go to snmptrapd.log, a line each.
TRAP_PORT=1162
start_trap_receiver() {
    echo "authCommunity log public" >"$STACK_ROOT/snmptrapd.conf"
    stack_start snmptrapd snmptrapd -f -n -C -c "$STACK_ROOT/snmptrapd.conf" -M "$PWD/mib:$PWD/mib/base" \
        -m ALL -OX -Lo -F '%v\n' "udp:$STACK_ADDRESS:$TRAP_PORT"
    wait_until 10 snmptrapd grep -q "NET-SNMP version" "$STACK_ROOT/snmptrapd.log"
}

# walk OID: every value below it, a line each, fast.
walk() {
    snmpbulkwalk -v2c -c public -On -t 5 "$STACK_MANAGER" "$1"
}

stack_stop() {
    local i
    for ((i = ${#STACK_PIDS[@]} - 1; i >= 0; i--)); do
        kill "${STACK_PIDS[i]}" 2>/dev/null || true
        wait "${STACK_PIDS[i]}" 2>/dev/null || true
    done
    rm -rf "${STACK_ROOTS[@]}"
    STACK_PIDS=() STACK_NAMES=() STACK_ROOTS=()
}
