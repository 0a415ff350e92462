#!/usr/bin/env bash
# Builds the Debian packages of this folder's state, into build/packages.
#
#   scripts/package.sh [<option of cmake --build> …]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/steps.sh
source scripts/dependencies.sh

install_packages "${packages_build[@]}" "${packages_webplayer[@]}" "${packages_runtime[@]}" "${packages_packaging[@]}"

lock_build package
build package "$@"
quietly build/package/hardening.log /usr/bin/python3 -B scripts/check-hardening.py build/package \
    || fail "Die Programme sind nicht gehärtet, siehe build/package/hardening.log"
rm -rf build/packages build/package/packages
quietly build/package/cpack.log cpack --config build/package/CPackConfig.cmake \
    || fail "Packen fehlgeschlagen, siehe build/package/cpack.log"
mkdir build/packages
mv build/package/packages/*.deb build/packages/
printf '%s\n' build/packages/*.deb
