#!/bin/bash
# Analyses a position with vorlek-uci in Scid's analysis window, unattended, and keeps a screenshot
# and the UCI conversation.
#
#   tools/gui/scid-analyse.sh [--engine-path PATH] [--lines N] [--depth D] [--timeout S]
#                             [--pgn FILE] [--engine-dir DIR] [--out DIR] [--name NAME]
#                             [--display :N] [--keep]
#
#   --engine-path  the engine (default: build/release/vorlek-uci in the repository)
#   --lines        the analysis window's "Lines" (default 1); Scid sends them as MultiPv
#   --depth        the screenshot is taken once the engine has reported this depth for every line
#                  (default 8)
#   --timeout      the longest wait for that depth, in seconds (default 300)
#   --pgn          a PGN file: the last position of its first game is analysed (default: the
#                  initial position)
#   --engine-dir   the engine's "Directory" (working folder; default ".", as the engine dialog has
#                  it, which Scid takes as the folder of the scid program)
#   --out          folder for the results (default: the current folder)
#   --name         their base name (default: scid-analysis-lN)
#   --display      X display (default :77); a virtual X server (Xvfb) is started there unless one
#                  already answers
#   --keep         keep the temporary folder (Scid's settings, its output) and say where
#
# For example, from the repository, with the engine built:
#
#   tools/gui/scid-analyse.sh --lines 3 --depth 9
#   tools/gui/scid-analyse.sh --lines 3 --depth 9 --pgn tools/gui/middlegame.pgn --out /tmp/shots
#
# What it does: it makes a temporary HOME whose ~/.scid4.7/config/engines.dat registers the engine
# as "Vorlek", engine 1 (behind logging-engine.sh, which logs the conversation), and whose
# options.dat turns the tip of the day off; starts Scid (with the PGN, whose first game it shows,
# then goes to its last position with the End key). With no saved window layout, Scid opens the
# analysis window of engine 1 by itself and starts the engine without analysing; the script raises
# that window, steps "Lines" up to N (Scid sends each value), clicks the start button (Scid sends
# the position and "go infinite"), waits for depth D, takes a screenshot of Scid's main window,
# clicks the button again (Scid sends "stop") and closes Scid. Everything it started is ended on
# exit, also on a failure or a signal.
#
# Results: OUT/NAME.png and OUT/NAME.uci.log (">>" to the engine, "<<" from it).
# Exit status: 0 done; 1 a window or a line of the log did not come in time (said on standard
# error); 2 bad usage or a missing program.
#
# Needs: scid, xvfb, xdotool, x11-utils, imagemagick (Debian packages). Written for Scid 4.7.4
# (Debian 12): the analysis window's toolbar is clicked at fixed places.
set -euo pipefail

repo=$(cd "$(dirname "$(readlink -f "$0")")/../.." && pwd)
# shellcheck source=tools/gui/session.sh
. "$repo/tools/gui/session.sh"
engine=$repo/build/release/vorlek-uci
lines=1 depth=8 limit=300 pgn='' edir=. out=$PWD name='' display=:77 keep=0

while [ $# -gt 0 ]; do
  case $1 in
    --engine-path) engine=$2; shift 2 ;;
    --lines) lines=$2; shift 2 ;;
    --depth) depth=$2; shift 2 ;;
    --timeout) limit=$2; shift 2 ;;
    --pgn) pgn=$(readlink -f "$2"); shift 2 ;;
    --engine-dir) edir=$2; shift 2 ;;
    --out) out=$2; shift 2 ;;
    --name) name=$2; shift 2 ;;
    --display) display=$2; shift 2 ;;
    --keep) keep=1; shift ;;
    -h|--help) usage 0 ;;
    *) echo "$script: unknown argument $1" >&2; usage 2 ;;
  esac
done
[[ $lines =~ ^[0-9]+$ && $lines -ge 1 && $depth =~ ^[0-9]+$ && $limit =~ ^[0-9]+$ ]] || usage 2
[ "$edir" = . ] || edir=$(readlink -f "$edir")
begin_run /usr/games/scid:scid "scid-analysis-l$lines"

# A private HOME with Scid's settings: the engine as engine 1, no tip of the day.
export HOME=$work/home
mkdir -p "$HOME/.scid4.7/config"
cat >"$HOME/.scid4.7/config/engines.dat" <<EOF
engine {
  Name Vorlek
  Cmd  {$work/vorlek-uci}
  Args {}
  Dir  {$edir}
  Elo  0
  Time 0
  URL  {}
  UCI 1
  UCIoptions {}
}
EOF
echo 'set startup(tip) 0' >"$HOME/.scid4.7/config/options.dat"

cd "$work"
if [ -n "$pgn" ]; then
  /usr/games/scid "$pgn" >"$work/scid.out" 2>&1 &
  gui_pid=$!
  main=$(window 60 "^Scid - $(basename "$pgn")" --onlyvisible)
  xdotool windowfocus --sync "$main"
  xdotool key End
else
  /usr/games/scid >"$work/scid.out" 2>&1 &
  gui_pid=$!
  main=$(window 60 '^Scid - ' --onlyvisible)
fi

# The analysis window is a page of a notebook, possibly behind the "Notation" page: its tab is
# the first one, just above the page.
pane=$(window 60 '^Scid: Analysis: Vorlek')
eval "$(xdotool getwindowgeometry --shell "$pane")"   # X Y WIDTH HEIGHT
xdotool mousemove $((X + 60)) $((Y - 13)) click 1
pane=$(window 30 '^Scid: Analysis: Vorlek' --onlyvisible)
poll 30 "uciok in $log" grep -q '<< uciok' "$log"

# The toolbar is the bottom row of the analysis window: the start/stop button at x=18, the arrows
# of "Lines" at x=211 (up 24 px, down 14 px above the bottom).
pane_height=$(xwininfo -id "$pane" | awk '/Height:/ {print $2}')
if [ "$lines" -gt 1 ]; then
  if ! grep -qi '<< option name MultiPV ' "$log"; then
    echo "scid-analyse.sh: the engine declares no MultiPV option, so Scid offers one line" >&2
    exit 1
  fi
  for k in $(seq 2 "$lines"); do
    click 211 $((pane_height - 24))
    poll 30 "\"setoption name MultiPv value $k\" in $log" grep -qi ">> setoption name MultiPV value $k\$" "$log"
  done
fi

click 18 $((pane_height - 20))                          # start: position ..., go infinite
poll 60 "go infinite in $log" grep -q '>> go infinite' "$log"
if [ "$lines" -gt 1 ]; then
  poll "$limit" "depth $depth of line $lines in $log" grep -q "<< info depth $depth multipv $lines " "$log"
else
  poll "$limit" "depth $depth in $log" grep -q "<< info depth $depth " "$log"
fi
eval "$(xdotool getwindowgeometry --shell "$main")"
shot "$out/$name.png" "$X" "$Y" "$WIDTH" "$HEIGHT"
click 18 $((pane_height - 20))                          # stop
poll 30 "bestmove in $log" grep -q '<< bestmove' "$log"
end_run
