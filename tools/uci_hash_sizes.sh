#!/usr/bin/env bash
# What each Hash size costs a fresh vorlek-uci started as a tournament runner starts it: the resident memory
# once "readyok" has come, the time from the start of the process to "readyok" (after "uci" and the
# option), and the time a "ucinewgame" takes after a search has filled the table (to the "readyok" of the
# "isready" that follows it).
#
#   tools/uci_hash_sizes.sh ENGINE [MEBIBYTES...]     (default sizes: 1 16 256 1024)
set -euo pipefail
engine=${1:?usage: tools/uci_hash_sizes.sh ENGINE [MEBIBYTES...]}
shift
sizes=("$@")
[ ${#sizes[@]} -gt 0 ] || sizes=(1 16 256 1024)
now() { date +%s%N; }
ms() { echo $((($2 - $1) / 1000000)); }
# shellcheck source=tools/engine_pipe.sh
. "$(dirname "$0")/engine_pipe.sh"

printf '%8s %14s %18s %16s\n' Hash "resident MiB" "start to readyok" "ucinewgame"
for size in "${sizes[@]}"; do
  start=$(now)
  coproc ENGINE { exec "$engine" 2>/dev/null; }
  send uci
  await uciok
  send "setoption name Hash value $size" isready
  await readyok
  ready=$(now)
  resident=$(awk '/^VmRSS:/ { printf "%d", $2 / 1024 }' "/proc/$ENGINE_PID/status")
  send "position startpos moves e2e4 e7e5" "go depth 9"
  await bestmove
  cleared=$(now)
  send ucinewgame isready
  await readyok
  done_=$(now)
  send quit
  wait "$ENGINE_PID" || true
  printf '%8s %14s %15s ms %13s ms\n' "$size" "$resident" "$(ms "$start" "$ready")" "$(ms "$cleared" "$done_")"
done
