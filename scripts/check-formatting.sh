#!/usr/bin/env bash
# Checks that all C++ is formatted as .clang-format says; with --fix, formats it. Exit code 77 (skipped) where
# clang-format is not of the version that the project uses: others break lines elsewhere.
set -euo pipefail
cd "$(dirname "$0")/.."
version=14

if ! clang-format --version | grep -q " version $version\."; then
    echo "Übersprungen: $(clang-format --version), gebraucht wird Version $version"
    exit 77
fi
mode=(--dry-run -Werror)
[[ ${1:-} == --fix ]] && mode=(-i)
find src tests bench -name '*.cpp' -o -name '*.h' | sort | xargs clang-format "${mode[@]}"
