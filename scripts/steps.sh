# Steps of ./run and ./test: each says in a line what it does, how far it is, and what went wrong. Sourced; the
# caller sets -euo pipefail.
# shellcheck shell=bash

# fail <message>: ends the script.
fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# lock_build <preset>: waits until no other script builds this preset; holds until the script ends, by file
# descriptor 9. Programs that may outlive the script are to be started with it closed.
lock_build() {
    mkdir -p build
    exec 9>"build/.lock-$1"
    if ! flock -n 9; then
        echo "Waiting for another run in build/$1 …"
        flock 9
    fi
}

# quietly <log> <command> …: the output goes to the log. If the command fails, shows the first errors.
quietly() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 9>&- && return
    show_errors "$log"
    return 1
}

show_errors() {
    grep -m5 -E '(error|Error|FAILED)[: ]' "$1" >&2 || tail -n5 "$1" >&2
}

# watched <log> <state> <command> …: as quietly; on a terminal one line shows what <state> <log> prints meanwhile.
watched() {
    local log=$1 state=$2 pid status=0
    shift 2
    if [[ ! -t 1 ]]; then
        quietly "$log" "$@"
        return
    fi
    : >"$log"
    "$@" >"$log" 2>&1 9>&- &
    pid=$!
    # A script that is interrupted takes the command with it.
    trap 'kill "$pid" 2>/dev/null; exit 130' INT TERM
    while kill -0 "$pid" 2>/dev/null; do
        printf '\r\e[K%s' "$("$state" "$log")"
        sleep 0.5
    done
    wait "$pid" || status=$?
    trap - INT TERM
    printf '\r\e[K'
    ((status == 0)) || show_errors "$log"
    return "$status"
}

# As long as people say it.
duration() {
    if (($1 < 90)); then
        echo "$1 s"
    else
        echo "$((($1 + 30) / 60)) min"
    fi
}

# Where a build is: "137/412, about 3 min left".
build_state() {
    local state done_steps all_steps seconds
    state=$(tail -c 4000 "$1" | grep -aoE '^\[[0-9]+/[0-9]+ [0-9]+' | tail -n1) || return 0
    read -r done_steps all_steps seconds <<<"${state//[\[\/]/ }"
    printf 'Building: %d/%d' "$done_steps" "$all_steps"
    ((seconds < 5 || done_steps == 0)) \
        || printf ', about %s left' "$(duration $((seconds * (all_steps - done_steps) / done_steps)))"
}

# build <preset> [<option of cmake --build> …]: configures, with the options in configure_options, and builds.
configure_options=()
build() {
    local preset=$1 steps= start=$SECONDS
    shift
    mkdir -p "build/$preset"
    [[ -e build/$preset/build.ninja ]] || echo "Configuring build/$preset"
    if ! quietly "build/$preset/configure.log" cmake --preset "$preset" "${configure_options[@]}"; then
        name_missing_packages "build/$preset/configure.log"
        fail "configuring failed, see build/$preset/configure.log"
    fi
    # Of a first build all steps are known; two thirds of a second for each, as measured.
    if [[ ! -e build/$preset/.ninja_log ]]; then
        steps=$(ninja -C "build/$preset" -t commands | wc -l)
        echo "Building build/$preset: $steps steps, up to $(duration $((steps * 2 / 3 / $(nproc) + 1)))"
    fi
    NINJA_STATUS='[%f/%t %e] ' watched "build/$preset/build.log" build_state \
        cmake --build --preset "$preset" --parallel "$(nproc)" "$@" \
        || fail "building failed, see build/$preset/build.log"
    [[ -z $steps ]] || echo "Built build/$preset in $(duration $((SECONDS - start)))"
}
