# Steps of ./run and ./test: each says in one line what went wrong. Sourced; the caller sets -euo pipefail.
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
        echo "Warte auf einen anderen Lauf im Ordner build/$1 …"
        flock 9
    fi
}

# quietly <log> <command> …: the output goes to the log. If the command fails, shows the first errors.
quietly() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 9>&- && return
    grep -m5 -E '(error|Error|FAILED)[: ]' "$log" >&2 || tail -n5 "$log" >&2
    return 1
}

# build <preset> [<option of cmake --build> …]: configures, with the options in the array configure_options, and
# builds.
configure_options=()
build() {
    local preset=$1
    shift
    mkdir -p "build/$preset"
    quietly "build/$preset/configure.log" cmake --preset "$preset" "${configure_options[@]}" \
        || fail "Konfigurieren fehlgeschlagen, siehe build/$preset/configure.log"
    quietly "build/$preset/build.log" cmake --build --preset "$preset" --parallel "$(nproc)" "$@" \
        || fail "Bauen fehlgeschlagen, siehe build/$preset/build.log"
}
