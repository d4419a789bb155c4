#!/usr/bin/env bash
# Runs vagentd as a program of its own under the emulator (Wine) and checks it
# with the service suite's client tests (ServiceProgram.*), which it points at
# the service through VAGENT_SERVICE_PORT.
#
#   wine-service-test.sh run EMULATOR VAGENTD SUITE
#       vagentd run in the foreground answers the client tests.
#   wine-service-test.sh install EMULATOR VAGENTD SUITE
#       vagentd install registers it with Wine's service manager; net start
#       starts it, it answers, net stop stops it, vagentd uninstall removes it
#       and sc query no longer finds it.
#
# EMULATOR is CMake's emulator list with its entries separated by '|'. The last line
# is "wine service <mode>: passed" only when every step did what it should; a
# skipped client test counts as a failure.
set -uo pipefail

mode=$1
IFS='|' read -r -a emulator <<<"$2"
vagentd=$3
suite=$4

work=$(mktemp -d)
port=
service_pid=
installed=0

fail() {
    echo "wine service $mode: FAILED: $*"
    exit 1
}

cleanup() {
    if [[ -n "$service_pid" ]]; then
        kill "$service_pid" 2>/dev/null
        wait "$service_pid" 2>/dev/null
    fi
    if [[ $installed == 1 ]]; then
        timeout 15 "${emulator[@]}" net stop vagentd >/dev/null 2>&1
        timeout 15 "${emulator[@]}" "$vagentd" uninstall >/dev/null 2>&1
    fi
    rm -rf "$work"
}
trap cleanup EXIT

random_port() {
    echo $((20000 + RANDOM % 20000))
}

# Runs the client tests named by the filter against the port; passes only
# when exactly `count` of them ran and passed.
run_client() {
    local port=$1 filter=$2 count=$3
    local output
    output=$(VAGENT_SERVICE_PORT=$port timeout 40 "${emulator[@]}" "$suite" \
        --gtest_filter="$filter" --gtest_color=no 2>&1)
    echo "$output"
    grep -q "\[  PASSED  \] $count test" <<<"$output" || return 1
    ! grep -q "SKIPPED\|FAILED" <<<"$output"
}

# Waits up to 15 s for the foreground service to say that it listens.
wait_for_listening() {
    local port=$1
    for _ in $(seq 75); do
        if grep -q "vagentd listening on 127.0.0.1:$port" "$work/vagentd.out"; then
            return 0
        fi
        kill -0 "$service_pid" 2>/dev/null || return 1
        sleep 0.2
    done
    return 1
}

# Starts vagentd in the foreground at a free port, which it leaves in $port.
start_foreground() {
    for _ in 1 2 3; do
        port=$(random_port)
        timeout 50 "${emulator[@]}" "$vagentd" run --listen "127.0.0.1:$port" --workers 4 \
            >"$work/vagentd.out" 2>&1 &
        service_pid=$!
        if wait_for_listening "$port"; then
            return 0
        fi
        kill "$service_pid" 2>/dev/null
        wait "$service_pid" 2>/dev/null
        service_pid=
    done
    return 1
}

run_mode() {
    start_foreground || {
        cat "$work/vagentd.out"
        fail "vagentd did not report listening"
    }
    run_client "$port" 'ServiceProgram.*' 4 || fail "the client tests did not all pass"
}

install_mode() {
    port=$(random_port)
    timeout 20 "${emulator[@]}" "$vagentd" uninstall >/dev/null 2>&1
    timeout 20 "${emulator[@]}" "$vagentd" install --listen "127.0.0.1:$port" ||
        fail "vagentd install failed"
    installed=1
    timeout 20 "${emulator[@]}" sc query vagentd >"$work/query" 2>&1 ||
        fail "sc query does not find the installed service: $(cat "$work/query")"
    timeout 20 "${emulator[@]}" net start vagentd || fail "net start vagentd failed"
    local answered=0
    for _ in $(seq 10); do
        if run_client "$port" 'ServiceProgram.AnswersTheHostName' 1 >"$work/client" 2>&1; then
            answered=1
            break
        fi
        sleep 1
    done
    cat "$work/client"
    [[ $answered == 1 ]] || fail "the started service did not answer"
    timeout 20 "${emulator[@]}" net stop vagentd || fail "net stop vagentd failed"
    timeout 20 "${emulator[@]}" "$vagentd" uninstall || fail "vagentd uninstall failed"
    installed=0
    if timeout 20 "${emulator[@]}" sc query vagentd >"$work/query" 2>&1; then
        fail "sc query still finds the service after uninstall: $(cat "$work/query")"
    fi
}

case "$mode" in
    run) run_mode ;;
    install) install_mode ;;
    *) fail "unknown mode (run or install)" ;;
esac
echo "wine service $mode: passed"
