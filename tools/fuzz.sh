#!/usr/bin/env bash
# Builds the fuzz targets with clang's sanitizers and runs them.
#
#   tools/fuzz.sh [TARGET [SECONDS]]     TARGET: one of the targets, or "all" (the default)
#                                        SECONDS: of processor time for each target, 60 by default
#
# Prints one line for each target: how many inputs it ran, in how many seconds, how many points of the code they covered,
# and what it found.
# New inputs that reach new code are kept in build/fuzz/corpus/TARGET. An input that fails is written to
# build/fuzz/found/TARGET; after the fault is mended, move it to tests/fuzz/corpus/TARGET, where every test run repeats it.
# Exits with 1 when a target found a fault.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
cd "$root"
targets=()
for folder in tests/fuzz/corpus/*/; do targets+=("$(basename "$folder")"); done
seconds=${2:-60}

usage() {
    echo "usage: tools/fuzz.sh [TARGET [SECONDS]]; TARGET is all or one of: ${targets[*]}" >&2
    exit 2
}

[ $# -le 2 ] && [[ $seconds =~ ^[1-9][0-9]*$ ]] || usage
if [ $# -gt 0 ] && [ "$1" != all ]; then
    [[ " ${targets[*]} " == *" $1 "* ]] || usage
    targets=("$1")
fi

# The longest input that is useful for a target, in bytes.
longest() {
    case $1 in
    scripts) echo 600 ;;
    image) echo 1024 ;; # the sanitizers need seconds for the largest pictures that a longer file may claim
    *) echo 4096 ;;
    esac
}

# Asks a process to end after SECONDS of processor time, so that a busy machine does not shorten the search.
stop_after() { # PID SECONDS
    local used
    while sleep 1 && used=$(ps -o cputimes= -p "$1"); do
        if [ "$used" -ge "$2" ]; then
            kill -USR1 "$1"
            return
        fi
    done
}

# One line from libFuzzer's log. The counters of the last status line hold the coverage.
report() { # TARGET LOG RESULT
    local inputs coverage
    inputs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$2")
    coverage=$(grep -aoE ' cov: [0-9]+' "$2" | tail -n 1 | grep -oE '[0-9]+$' || true)
    printf 'fuzz  %-12s %9s inputs in %s s  coverage %6s  %s\n' "$1" "${inputs:-?}" "$seconds" "${coverage:-?}" "$3"
}

# The time limit of one input is in real time, and a busy machine may need many times as long as an idle one.
run_target() {
    local found=build/fuzz/found/$1 corpus=build/fuzz/corpus/$1 log=build/fuzz/$1.log
    mkdir -p "$found" "$corpus"
    build/fuzz/tests/fuzz/fuzz_"$1" "$corpus" tests/fuzz/corpus/"$1" -timeout=60 -rss_limit_mb=2048 \
        -max_len="$(longest "$1")" -len_control=0 -print_final_stats=1 -artifact_prefix="$found/" >"$log" 2>&1 &
    local fuzzer=$!
    stop_after $fuzzer "$seconds" &
    if wait $fuzzer; then
        report "$1" "$log" "nothing found"
    else
        report "$1" "$log" "FAULT: $log"
        return 1
    fi
}

tools/install-deps.sh --fuzz
cmake --preset fuzz >/dev/null
ninja -C build/fuzz "${targets[@]/#/fuzz_}"
# The drivers keep memory for the whole process, which the leak detector would report for each input.
export ASAN_OPTIONS=detect_leaks=0:allocator_may_return_null=1
failed=0
for target in "${targets[@]}"; do
    run_target "$target" || failed=1
done
exit $failed
