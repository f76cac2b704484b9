#!/bin/bash
# Analyses a position with vorlek-uci in ChessX's analysis pane, unattended, and keeps a screenshot
# and the UCI conversation.
#
#   tools/gui/chessx-analyse.sh [--engine-path PATH] [--lines N] [--interval-ms MS] [--pgn FILE]
#                               [--engine-dir DIR] [--out DIR] [--name NAME] [--display :N]
#                               [--keep]
#
#   --engine-path  the engine (default: build/release/vorlek-uci in the repository)
#   --lines        the pane's "Lines" (default 1); ChessX sends them as MultiPV
#   --interval-ms  the "Move Interval" (default 10000): ChessX analyses with "go movetime" of it
#   --pgn          a PGN file: the last position of its first game is analysed (default: the
#                  initial position)
#   --engine-dir   the engine's "Directory" (working folder; default: empty, as the engine dialog
#                  leaves it, and ChessX then starts the engine in its own working folder)
#   --out          folder for the results (default: the current folder)
#   --name         their base name (default: chessx-analysis-lN)
#   --display      X display (default :77); a virtual X server (Xvfb) is started there unless one
#                  already answers
#   --keep         keep the temporary folder (ChessX's settings, its output) and say where
#
# For example, from the repository, with the engine built:
#
#   tools/gui/chessx-analyse.sh --lines 3
#   tools/gui/chessx-analyse.sh --lines 3 --pgn tools/gui/middlegame.pgn --out /tmp/shots
#
# What it does: it makes a temporary HOME whose chessx.ini registers the engine as "Vorlek" (behind
# logging-engine.sh, which logs the conversation), selects it for the analysis pane, opens the pane
# as a window below the main window and sets the Move Interval; starts ChessX (with the PGN, then
# goes to the game's last position with the End key); types the lines into "Lines" and clicks
# "Analyze"; waits for the engine's bestmove (it comes after the move interval); takes a screenshot
# of the main window and the pane; clicks "Stop" (ChessX sends "quit"), waits for the engine to end
# and closes ChessX. Everything it started is ended on exit, also on a failure or a signal.
#
# Results: OUT/NAME.png (1100x770) and OUT/NAME.uci.log (">>" to the engine, "<<" from it).
# Exit status: 0 done; 1 a window or a line of the log did not come in time (said on standard
# error); 2 bad usage or a missing program.
#
# Needs: chessx, xvfb, xdotool, x11-utils, imagemagick (Debian packages). Written for ChessX 1.4.6
# (Debian 12): the pane's controls are clicked at fixed places in the pane's window.
set -euo pipefail

repo=$(cd "$(dirname "$(readlink -f "$0")")/../.." && pwd)
# shellcheck source=tools/gui/session.sh
. "$repo/tools/gui/session.sh"
engine=$repo/build/release/vorlek-uci
lines=1 interval=10000 pgn='' edir='' out=$PWD name='' display=:77 keep=0

while [ $# -gt 0 ]; do
  case $1 in
    --engine-path) engine=$2; shift 2 ;;
    --lines) lines=$2; shift 2 ;;
    --interval-ms) interval=$2; shift 2 ;;
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
[[ $lines =~ ^[0-9]+$ && $interval =~ ^[0-9]+$ ]] || usage 2
begin_run /usr/games/chessx:chessx "chessx-analysis-l$lines"

# A private HOME with ChessX's settings: no first-start questions, the engine, the pane's engine
# and move interval, the main window at 1100x600 with only the board and the game text (the saved
# state of its docks), the pane as a window of 1100x170 just below it.
export HOME=$work/home
export XDG_CONFIG_HOME=$HOME/.config XDG_DATA_HOME=$HOME/.local/share XDG_CACHE_HOME=$HOME/.cache
mkdir -p "$XDG_CONFIG_HOME/chessx" "$XDG_DATA_HOME"
ini=$XDG_CONFIG_HOME/chessx/chessx.ini
{
  cat <<EOF
[%General]
BuiltinDbInstalled=true
onlineVersionCheck=false
onlineTablebases=false

[Engines]
0\\Name=Vorlek
0\\Command=$work/vorlek-uci
0\\Protocol=UCI
EOF
  [ -z "$edir" ] || printf '0\\Directory=%s\n' "$(readlink -f "$edir")"
  cat <<EOF

[Analysis]
Engine=Vorlek

[Board]
AutoPlayerInterval=$interval

[MainWindow]
GameToolBar=false
BoardSplit=@ByteArray(\\0\\0\\0\\xff\\0\\0\\0\\x1\\0\\0\\0\\x1\\0\\0\\0\\xcc\\0\\xff\\xff\\xff\\xff\\x1\\0\\0\\0\\x1\\0)

[Geometry]
MainWindow=0, 0, 1100, 600, 1, 0
FloatingDocks=AnalysisDock1
FloatingDock\\AnalysisDock1\\geometry=@Rect(0 600 1100 170)
FloatingDock\\AnalysisDock1\\visible=true
EOF
  # Docks: Game Text shown; Help, Databases, Players, Game List and the rest hidden.
  cat <<'EOF'
Docks=@ByteArray(\0\0\0\xff\0\0\0\0\xfd\0\0\0\x2\0\0\0\0\0\0\x1H\0\0\x1\xfc\xfc\x2\0\0\0\x1\xfb\0\0\0\b\0H\0\x65\0l\0p\0\0\0\0>\0\0\x1\xfc\0\0\0\x8f\0\xff\xff\xff\0\0\0\x1\0\0\x2\x12\0\0\x1\xfc\xfc\x2\0\0\0\x2\xfc\0\0\0>\0\0\0\xee\0\0\0\0\0\xff\xff\xff\xfa\xff\xff\xff\xff\x2\0\0\0\x6\xfb\0\0\0\x1e\0\x46\0i\0\x63\0s\0\x43\0O\0n\0s\0o\0l\0\x65\0\x44\0o\0\x63\0k\0\0\0\0\0\xff\xff\xff\xff\0\0\x1P\0\xff\xff\xff\xfb\0\0\0\x12\0\x45\0v\0\x65\0n\0t\0L\0i\0s\0t\0\0\0\0\0\xff\xff\xff\xff\0\0\0w\0\xff\xff\xff\xfb\0\0\0\xe\0\x45\0\x63\0o\0L\0i\0s\0t\0\0\0\0\0\xff\xff\xff\xff\0\0\0w\0\xff\xff\xff\xfb\0\0\0\x14\0P\0l\0\x61\0y\0\x65\0r\0L\0i\0s\0t\0\0\0\0\0\xff\xff\xff\xff\0\0\0w\0\xff\xff\xff\xfb\0\0\0\x1e\0O\0p\0\x65\0n\0i\0n\0g\0T\0r\0\x65\0\x65\0\x44\0o\0\x63\0k\0\0\0\0\0\xff\xff\xff\xff\0\0\0\xc3\0\xff\xff\xff\xfb\0\0\0\x12\0\x44\0\x61\0t\0\x61\0\x62\0\x61\0s\0\x65\0s\0\0\0\0\0\xff\xff\xff\xff\0\0\0w\0\xff\xff\xff\xfc\0\0\0>\0\0\x1\xfc\0\0\0\xb2\x1\0\0\x1c\xfa\0\0\0\0\x2\0\0\0\x2\xfb\0\0\0\x18\0G\0\x61\0m\0\x65\0T\0\x65\0x\0t\0\x44\0o\0\x63\0k\x1\0\0\0\0\xff\xff\xff\xff\0\0\0\x95\0\xff\xff\xff\xfb\0\0\0\x10\0G\0\x61\0m\0\x65\0L\0i\0s\0t\0\0\0\0\0\xff\xff\xff\xff\0\0\0w\0\xff\xff\xff\0\0\x2\x34\0\0\x1\xfc\0\0\0\x4\0\0\0\x4\0\0\0\b\0\0\0\b\xfc\0\0\0\x1\0\0\0\x2\0\0\0\x6\0\0\0\x16\0\x46\0i\0l\0\x65\0T\0o\0o\0l\0\x42\0\x61\0r\x1\0\0\0\0\xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\0\x16\0\x45\0\x64\0i\0t\0T\0o\0o\0l\0\x42\0\x61\0r\x1\0\0\x1 \xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\0\x1e\0V\0i\0\x65\0w\0T\0o\0o\0l\0\x42\0\x61\0r\0M\0\x61\0i\0n\x1\0\0\x2\xf1\xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\0\x1e\0G\0\x61\0m\0\x65\0T\0o\0o\0l\0\x42\0\x61\0r\0M\0\x61\0i\0n\x1\0\0\x3\x8f\xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\0\x1a\0\x44\0\x62\0T\0o\0o\0l\0\x42\0\x61\0r\0M\0\x61\0i\0n\x1\0\0\x3\xce\xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\0\x1a\0S\0\x65\0\x61\0r\0\x63\0h\0T\0o\0o\0l\0\x42\0\x61\0r\x1\0\0\x4\r\xff\xff\xff\xff\0\0\0\0\0\0\0\0)
EOF
} >"$ini"

cd "$work"
if [ -n "$pgn" ]; then
  /usr/games/chessx "$pgn" >"$work/chessx.out" 2>&1 &
else
  /usr/games/chessx >"$work/chessx.out" 2>&1 &
fi
gui_pid=$!

main=$(window 60 'ChessX$' --onlyvisible)
pane=$(window 60 '^Analysis 1$' --onlyvisible)
if [ -n "$pgn" ]; then
  # The title names the file once its first game is on the board; End goes to its last position.
  window 60 "^$(basename "$pgn" .pgn) - ChessX\$" --onlyvisible >/dev/null
  xdotool windowfocus --sync "$main"
  xdotool key End
fi

# The pane's controls, from the left and right of its window: Lines (57,34), Analyze/Stop (W-45,34).
pane_width=$(xwininfo -id "$pane" | awk '/Width:/ {print $2}')
click 57 34
xdotool key ctrl+a
xdotool type "$lines"
xdotool key Tab

click $((pane_width - 45)) 34                     # Analyze
poll 60 "go command in $log" grep -q '>> go ' "$log"
poll $((interval / 1000 + 120)) "bestmove in $log" grep -q '<< bestmove' "$log"
shot "$out/$name.png" 0 0 1100 770
click $((pane_width - 45)) 34                     # Stop: ChessX sends "quit"
poll 30 "end of the engine in $log" grep -q '## engine exited' "$log"
end_run
