#!/bin/bash
# Runs a UCI engine and logs the conversation: every line the interface sends (">>") and every
# line the engine answers ("<<"), each with the time of day to the microsecond. Lines are passed
# on one at a time, unbuffered, so the engine gets each command as soon as it arrives, and an
# engine line is logged just before it is passed on, so the log keeps cause before effect.
#
#   tools/gui/logging-engine.sh [--engine-path PATH] [--log FILE] [-- ENGINE_ARGS...]
#
#   --engine-path  the engine (default: build/release/vorlek-uci in the repository)
#   --log          the log, appended to (default: $UCI_LOG, else /tmp/vorlek-uci.uci.log)
#
# Give an interface this script as the engine's command, or, for an interface that takes a
# command without arguments, a two-line script that runs it with yours:
#
#   #!/bin/sh
#   exec /path/to/vorlek/tools/gui/logging-engine.sh --log /tmp/chessx.uci.log "$@"
#
# The log also says when the engine started (with the working folder the interface gave it),
# when the interface closed its side, and the engine's exit status. On TERM, INT or HUP the
# engine is terminated too; when the engine ends, the script ends with its status.
set -euo pipefail

repo=$(cd "$(dirname "$(readlink -f "$0")")/../.." && pwd)
engine=$repo/build/release/vorlek-uci
log=${UCI_LOG:-}
while [ $# -gt 0 ]; do
  case $1 in
    --engine-path) engine=$2; shift 2 ;;
    --log) log=$2; shift 2 ;;
    --) shift; break ;;
    -h|--help) awk 'NR > 1 && !/^#/ {exit} NR > 1 {sub(/^# ?/, ""); print}' "$0"; exit 0 ;;
    *) break ;;
  esac
done
log=${log:-${TMPDIR:-/tmp}/$(basename "$engine").uci.log}
mkdir -p "$(dirname "$log")"

# fd 5: the log, opened once for appending; every record is a single write.
exec 5>>"$log"
record() {   # record TAG TEXT  ->  11:26:03.123456 >> go infinite
  local now=$EPOCHREALTIME
  printf '%(%H:%M:%S)T.%s %s %s\n' "${now%.*}" "${now#*.}" "$1" "$2" >&5
}

record '##' "start wrapper=$$ cwd=$PWD engine=$engine args=$*"
if [ ! -x "$engine" ]; then
  record '##' "not an executable: $engine"
  echo "logging-engine.sh: not an executable: $engine" >&2
  exit 127
fi

fifos=$(mktemp -d "${TMPDIR:-/tmp}/uci-log.XXXXXX")
mkfifo "$fifos/in" "$fifos/out"
"$engine" "$@" <"$fifos/in" >"$fifos/out" &
engine_pid=$!
exec 3>"$fifos/in" 4<"$fifos/out"
rm -rf "$fifos"   # the open descriptors keep the pipes alive

# Interface -> engine, in the background (its standard input given explicitly: a background job
# would otherwise read /dev/null). When the interface closes its side, the engine's input is closed.
exec 6<&0
(
  set +e
  exec 4<&- 1>&-
  while IFS= read -r line || [ -n "$line" ]; do
    record '>>' "$line"
    printf '%s\n' "$line" >&3 2>/dev/null || exit 0
  done
  record '##' "interface closed its side"
) <&6 &
writer_pid=$!
exec 3>&- 6<&-

# Engine -> interface, in the background: it ends when the engine closes its output.
(
  set +e
  while IFS= read -r line || [ -n "$line" ]; do
    record '<<' "$line"
    printf '%s\n' "$line"
  done
  record '##' "engine closed its output"
) <&4 &
reader_pid=$!
exec 4<&-

# shellcheck disable=SC2317  # called by the trap below
on_signal() {
  trap - TERM INT HUP
  kill -TERM "$engine_pid" "$writer_pid" 2>/dev/null || true
  record '##' "wrapper got a signal, engine $engine_pid terminated"
  exit 143
}
trap on_signal TERM INT HUP

rc=0
wait "$engine_pid" || rc=$?
wait "$reader_pid" || true     # every line of the engine passed on before the end is logged
record '##' "engine exited rc=$rc"
kill "$writer_pid" 2>/dev/null || true
exit "$rc"
