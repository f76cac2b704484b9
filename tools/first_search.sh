#!/usr/bin/env bash
# Shows whether a fresh engine's first search runs at full speed: it sets up a middlegame with a
# 4-minute clock for both sides (the engine may start a new iteration for 1 s), lets the engine search
# it, then sets it up again, which clears the table, and lets it search the same way once more in the
# same process. Both searches do the same work, so they differ only in what the process had to fault in.
#
#   tools/first_search.sh ENGINE [DELAY]
#
# ENGINE: vorlek (the xboard protocol) or vorlek-uci (UCI, told by the name). DELAY: seconds between the
# handshake (for UCI: "uci", then "isready" answered) and the first "go" (default 5; 0 starts the search at
# once, as a tournament runner does). The engine runs in a temporary folder holding the shipped book. Prints, for each search, the depth reached, the nodes of all its
# iterations, the time it took and the nodes per second, then the first search's depth and speed as a
# ratio to the second's. Exit status 0 when the first search reached the second's depth, 1 when not,
# 2 on a usage error or when the engine misbehaved.
set -euo pipefail
engine=${1:?usage: tools/first_search.sh ENGINE [DELAY]}
delay=${2:-5}
root=$(cd "$(dirname "$0")/.." && pwd)
fen='r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10'
engine=$(cd "$(dirname "$engine")" && pwd)/$(basename "$engine")
work=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-first-search.XXXXXX")
trap 'rm -rf "$work"' EXIT
cp "$root/Aperture.txt" "$work/"
cd "$work"

coproc ENGINE { exec "$engine" 2>&1; }
# shellcheck source=tools/engine_pipe.sh
. "$root/tools/engine_pipe.sh"
uci=0
case $(basename "$engine") in *uci*) uci=1 ;; esac
# UCI: reads info lines until "bestmove"; prints "depth nodes centiseconds" (nodes and time of the whole
# search are on the last info line).
uci_search() {
  local depth=0 nodes=0 time=0 line
  while IFS= read -r -t 120 line <&"${ENGINE[0]}"; do
    case $line in
      bestmove*) echo "$depth $nodes $time"; return 0 ;;
      "info depth "*)
        depth=$(sed 's/.* depth \([0-9]*\).*/\1/' <<<"$line")
        nodes=$(sed 's/.* nodes \([0-9]*\).*/\1/' <<<"$line")
        time=$(($(sed 's/.* time \([0-9]*\).*/\1/' <<<"$line") / 10))
        ;;
    esac
  done
  echo "the engine gave no move" >&2
  exit 2
}
# Reads thinking lines until the engine's move; prints "depth nodes centiseconds" of the search.
search() {
  local depth=0 nodes=0 time=0 line
  while IFS= read -r -t 120 line <&"${ENGINE[0]}"; do
    case $line in
      move\ *) echo "$depth $nodes $time"; return 0 ;;
      *[0-9]*)
        read -r d _ t n _ <<<"$line"
        depth=$d
        time=$((10#$t))
        nodes=$((nodes + n))
        ;;
    esac
  done
  echo "the engine gave no move" >&2
  exit 2
}

if [ $uci -eq 1 ]; then
  send uci
  await uciok
  send isready
  await readyok
  sleep "$delay"
  send ucinewgame "position fen $fen" "go wtime 240000 btime 240000"
  read -r d1 n1 t1 < <(uci_search)
  send ucinewgame "position fen $fen" "go wtime 240000 btime 240000"
  read -r d2 n2 t2 < <(uci_search)
else
  send xboard "protover 2"
  IFS= read -r -t 10 feature <&"${ENGINE[0]}" || { echo "no feature line" >&2; exit 2; }
  sleep "$delay"
  send force "setboard $fen" "time 24000" "otim 24000" go
  read -r d1 n1 t1 < <(search)
  send force "setboard $fen" "time 24000" "otim 24000" go
  read -r d2 n2 t2 < <(search)
fi
send quit
wait "$ENGINE_PID" || true

nps() { awk -v n="$1" -v t="$2" 'BEGIN { printf "%.1f M", (t > 0) ? n / t / 10000 : 0 }'; }
printf 'go %s s after start\n' "$delay"
printf '  first search:  depth %2d, %10d nodes in %6.2f s, %s nodes/s\n' "$d1" "$n1" "$(awk -v t="$t1" 'BEGIN{print t/100}')" "$(nps "$n1" "$t1")"
printf '  second search: depth %2d, %10d nodes in %6.2f s, %s nodes/s\n' "$d2" "$n2" "$(awk -v t="$t2" 'BEGIN{print t/100}')" "$(nps "$n2" "$t2")"
awk -v n1="$n1" -v t1="$t1" -v n2="$n2" -v t2="$t2" -v d1="$d1" -v d2="$d2" 'BEGIN {
  r = (t1 > 0 && t2 > 0 && n2 > 0) ? (n1 / t1) / (n2 / t2) : 0
  printf "  first / second: depth %d / %d, speed ratio %.3f\n", d1, d2, r }'
[ "$d1" -ge "$d2" ]
