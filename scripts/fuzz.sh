#!/usr/bin/env bash
# Parsers of foreign bytes over inputs that a driver makes, with the sanitizers for addresses and undefined
# behaviour; takes clang. What is found is kept in build/fuzz/found/, to become part of tests/fuzz/corpus/.
#   scripts/fuzz.sh [inputs for each target [target …]]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/steps.sh
source scripts/dependencies.sh

runs=${1:-1000000}
targets=("${@:2}")
if ((${#targets[@]} == 0)); then
    mapfile -t targets < <(ls tests/fuzz/corpus)
fi
install_packages "${packages_build[@]}" "${packages_fuzzing[@]}"
lock_build fuzz
build fuzz --target fuzz

# In memory, where there is some.
TMPDIR=$(mktemp --directory --tmpdir="$([[ -d /dev/shm ]] && echo /dev/shm || echo /tmp)" quillbar-fuzz-XXXXXX)
export TMPDIR
trap 'rm -r "$TMPDIR"' EXIT
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 TZ=Europe/Berlin
# The libraries below are not instrumented; what they hold at the end is theirs.
export ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1

status=0
for target in "${targets[@]}"; do
    found=build/fuzz/found/$target
    mkdir -p "$found" "build/fuzz/corpus/$target"
    options=(-runs="$runs" -max_len=8192 -timeout=60 -rss_limit_mb=2048 -seed="${SEED:-20261123}"
        -artifact_prefix="$found/" -verbosity=0 -print_final_stats=1)
    [[ -f tests/fuzz/dictionaries/$target.dict ]] && options+=(-dict="tests/fuzz/dictionaries/$target.dict")
    corpora=("build/fuzz/corpus/$target" "tests/fuzz/corpus/$target")
    [[ $target == applescript ]] && corpora+=(tests/fuzz/malformed)
    if QUILLBAR_FUZZ=$target build/fuzz/bin/fuzz "${options[@]}" "${corpora[@]}" >"$found/log" 2>&1; then
        echo "$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$found/log") inputs, nothing found"
    else
        echo "$target: see $found"
        status=1
    fi
done
exit $status
