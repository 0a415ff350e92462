#!/usr/bin/env bash
# Long campaigns by hand against the built program: each acts at random, prints its seed, and ends with a failure
# when a word is lost.
#
#     scripts/soak.sh [walk] [-n <seeds>] [-s <seconds each>] [-j <at a time>] [-f <first seed>]
#     scripts/soak.sh long [-n <minutes>] [-f <seed>]
#     scripts/soak.sh kill [-n <kills>] [-f <seed>]
#     scripts/soak.sh store [-f <seed>]
#     scripts/soak.sh fuzz [-n <inputs for each parser>]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/steps.sh
source scripts/dependencies.sh

campaign=walk seeds= seconds=600 jobs=2 first=$RANDOM
if [[ ${1:-} == [a-z]* ]]; then
    campaign=$1
    shift
fi
while getopts n:s:j:f: option; do
    case $option in
        n) seeds=$OPTARG ;;
        s) seconds=$OPTARG ;;
        j) jobs=$OPTARG ;;
        f) first=$OPTARG ;;
        *) fail "Aufruf: scripts/soak.sh [walk] [-n Seeds] [-s Sekunden] [-j zugleich] [-f erster Seed]" ;;
    esac
done
case $campaign in
    walk) driver=tests/system/random_walk.py ;;
    store) exec scripts/store-campaigns.sh "$first" ;;
    fuzz) exec scripts/fuzz.sh "${seeds:-1000000}" ;;
    long | kill) ;;
    *) fail "unbekannte Kampagne: $campaign" ;;
esac

install_packages "${packages_build[@]}" "${packages_webplayer[@]}" "${packages_runtime[@]}" "${packages_virtual_desktop[@]}"
lock_build dev
build dev --target quillbar --target spotify-stand-in
case $campaign in
    long) exec /usr/bin/python3 -B tests/campaigns/soak_program.py build/dev/bin/quillbar "${seeds:-120}" "$first" ;;
    kill) exec /usr/bin/python3 -B tests/campaigns/kill_program.py build/dev/bin/quillbar "${seeds:-500}" "$first" ;;
esac
seeds=${seeds:-6}

results=$(mktemp --directory --tmpdir "quillbar-soak-$campaign-XXXXXX")
echo "$seeds Seeds ab $first, je $seconds s, $jobs zugleich; Ergebnisse in $results"
seq "$first" $((first + seeds - 1)) | xargs -P "$jobs" -I{} sh -c \
    "/usr/bin/python3 -B $driver --program build/dev/bin/quillbar --seed {} --seconds $seconds --keep '$results' \
        >'$results/{}.log' 2>&1; tail -n1 '$results/{}.log'" 9>&- || true

passed=$(cat "$results"/*.log | grep -cE '^seed .* nothing lost$' || true)
cat "$results"/*.log | awk '/^seed .* nothing lost$/ { actions += $3; words += $5; kills += $7 }
           END { print actions + 0 " Aktionen, " words + 0 " Wörter, " kills + 0 " Abstürze, nichts verloren" }'
((passed == seeds)) || fail "$((seeds - passed)) von $seeds Seeds sind gescheitert, siehe $results"
rm -r "$results"
