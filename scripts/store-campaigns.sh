#!/usr/bin/env bash
# The whole campaigns against the store, by hand: an hour or so. The tests run a slice of each.
#   scripts/store-campaigns.sh [seed]
set -euo pipefail
cd "$(dirname "$0")/.."
seed=${1:-20261123}

cmake --preset dev >/dev/null
cmake --build --preset dev --target store-campaign
export QT_QPA_PLATFORM=offscreen

status=0
build/dev/bin/store-campaign damage 1 || status=1
build/dev/bin/store-campaign faults 1 || status=1
build/dev/bin/store-campaign file-damage 1 || status=1
build/dev/bin/store-campaign file-faults 1 "$seed" || status=1
build/dev/bin/store-campaign power 1000 "$seed" || status=1
build/dev/bin/store-campaign kill 20000 "$seed" || status=1
exit $status
