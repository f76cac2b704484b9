# tools/gui/session.sh — what the scripts that drive an interface under Xvfb share, sourced by them:
# the programs they need, a temporary folder and everything started in it ended on exit, waiting for a
# window or a log line with a time limit, a screenshot taken once the windows are still, the X server,
# the engine's command, which logs the UCI conversation, the start and the end of a run. The sourcing
# script sets `keep` (1: keep the temporary folder) first.

script=$(basename "$0")

# usage STATUS: the comment at the top of the script, up to "What it does".
usage() {
  awk 'NR > 1 && /^# What it does/ {exit} NR > 1 {sub(/^# ?/, ""); print}' "$0" >&$(($1 == 0 ? 1 : 2))
  exit "$1"
}

# click X Y: a left click at that place in the window $pane.
click() { xdotool mousemove --window "$pane" "$1" "$2" click 1; }

# needs PROGRAM:PACKAGE...: ends the script (status 2) naming the Debian package of a missing program.
needs() {
  local need
  for need in "$@"; do
    command -v "${need%%:*}" >/dev/null 2>&1 ||
      { echo "$script: ${need%%:*} is missing (Debian package ${need#*:})" >&2; exit 2; }
  done
}

# start_session PREFIX: the temporary folder $work; the interface ($gui_pid) and the X server ($xvfb_pid),
# when started, are ended with it on any exit.
start_session() {
  work=$(mktemp -d "${TMPDIR:-/tmp}/$1.XXXXXX")
  xvfb_pid='' gui_pid=''
  trap finish EXIT
  trap 'exit 143' TERM INT HUP
}
finish() {
  local rc=$?
  set +e
  if [ -n "$gui_pid" ]; then kill "$gui_pid" 2>/dev/null; wait "$gui_pid" 2>/dev/null; fi
  if [ -n "$xvfb_pid" ]; then kill "$xvfb_pid" 2>/dev/null; wait "$xvfb_pid" 2>/dev/null; fi
  if [ "$keep" = 1 ]; then echo "kept $work"; else rm -rf "$work"; fi
  exit "$rc"
}

# poll SECONDS WHAT COMMAND...: runs COMMAND every 0.1 s until it succeeds, at most SECONDS.
poll() {
  local limit=$1 what=$2
  shift 2
  local end=$((SECONDS + limit))
  until "$@" >/dev/null 2>&1; do
    if [ $SECONDS -ge $end ]; then
      echo "$script: no $what after ${limit} s" >&2
      return 1
    fi
    sleep 0.1
  done
}

# window SECONDS TITLE_REGEX [--onlyvisible]: the id of the first window with that title.
window() {
  local id
  id=$(timeout "$1" xdotool search --sync ${3:+"$3"} --name "$2" 2>/dev/null | head -1) || true
  [ -n "$id" ] || { echo "$script: no window \"$2\" after $1 s" >&2; return 1; }
  echo "$id"
}

# shot FILE.png X Y W H: a screenshot of that part of the screen, taken once two in a row, 0.3 s apart,
# are the same (the windows have finished painting).
shot() {
  local file=$1 geometry=${4}x${5}+${2}+${3}
  import -window root -crop "$geometry" +repage "ppm:$work/a.ppm"
  for _ in $(seq 1 30); do
    sleep 0.3
    import -window root -crop "$geometry" +repage "ppm:$work/b.ppm"
    cmp -s "$work/a.ppm" "$work/b.ppm" && break
    mv "$work/b.ppm" "$work/a.ppm"
  done
  convert "$work/a.ppm" -strip "$file"
}

# start_x DISPLAY: an Xvfb there unless an X server already answers.
start_x() {
  export DISPLAY=$1
  if ! xdpyinfo >/dev/null 2>&1; then
    Xvfb "$DISPLAY" -screen 0 1600x1000x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
    xvfb_pid=$!
    poll 30 "X server on $DISPLAY" xdpyinfo
  fi
}

# engine_command ENGINE LOG: writes $work/vorlek-uci, the command the interface is given, which runs ENGINE
# behind logging-engine.sh with its conversation logged to LOG.
engine_command() {
  cat >"$work/vorlek-uci" <<EOF
#!/bin/sh
exec "$repo/tools/gui/logging-engine.sh" --engine-path "$1" --log "$2" "\$@"
EOF
  chmod +x "$work/vorlek-uci"
}

# begin_run PROGRAM:PACKAGE NAME: checks $engine and $pgn and the programs a run needs, names the run's
# results ($name, NAME unless given; $out made absolute; $log emptied), starts the session, a private runtime
# folder, the X server on $display and the engine's command.
begin_run() {
  engine=$(readlink -f "$engine")
  [ -x "$engine" ] || { echo "$script: not an executable: $engine" >&2; exit 2; }
  [ -z "$pgn" ] || [ -r "$pgn" ] || { echo "$script: cannot read $pgn" >&2; exit 2; }
  needs "$1" Xvfb:xvfb xdotool:xdotool xdpyinfo:x11-utils xwininfo:x11-utils import:imagemagick convert:imagemagick
  name=${name:-$2}
  mkdir -p "$out"
  out=$(cd "$out" && pwd)
  log=$out/$name.uci.log
  : >"$log"
  start_session "${script%.sh}"
  export XDG_RUNTIME_DIR=$work/run
  mkdir -p "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
  start_x "$display"
  engine_command "$engine" "$log"
}

# end_run: says where the results are.
end_run() {
  echo "screenshot: $out/$name.png"
  echo "UCI log:    $log"
}
