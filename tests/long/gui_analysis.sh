#!/bin/bash
# vorlek-uci in the analysis of the real ChessX and Scid, each run without a window under a virtual X
# server by tools/gui/chessx-analyse.sh and tools/gui/scid-analyse.sh: the initial position analysed
# with 3 lines. The UCI conversation must show that the interface asked for 3 lines (setoption
# MultiPV 3, in the interface's spelling), that the engine answered with the third line
# ("info ... multipv 3 ..."), and that no book move was played: analysis shows the engine's search
# from the first move, although the book has the position.
#
#   tests/long/gui_analysis.sh PATH_TO_VORLEK_UCI SOURCE_DIR
#
# Each interface that is installed is checked. Skips (status 77), naming the Debian package, when
# neither chessx nor scid is installed, or when xvfb, xdotool, x11-utils or imagemagick is missing.
# Exit status 0 all checks passed, 1 a FAIL line says what went wrong (the logs are kept), 77 skipped.
set -u
engine=$1
source_dir=$2

have=()
missing=()
[ -x /usr/games/chessx ] && have+=(chessx) || missing+=(chessx)
[ -x /usr/games/scid ] && have+=(scid) || missing+=(scid)
if [ ${#have[@]} -eq 0 ]; then
  echo "skip: chessx and scid are not installed (Debian packages chessx, scid)"
  exit 77
fi
for need in Xvfb:xvfb xdotool:xdotool xdpyinfo:x11-utils xwininfo:x11-utils \
            import:imagemagick convert:imagemagick; do
  if ! command -v "${need%%:*}" >/dev/null 2>&1; then
    echo "skip: ${need%%:*} is not installed (Debian package ${need#*:})"
    exit 77
  fi
done
for gui in "${missing[@]}"; do
  echo "note: $gui is not installed (Debian package $gui): not checked"
done

out=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-gui-analysis.XXXXXX") || exit 1
# A copy with the shipped book beside it, as in the build and the install, so that a rebuild during
# the test does not change the engine under the interface and the book is there to be refused.
mkdir -p "$out/engine"
cp "$engine" "$out/engine/vorlek-uci" && cp "$source_dir/Aperture.txt" "$out/engine/" || exit 1

# A display number that no X server uses.
display=
for n in $(seq 90 199); do
  if [ ! -e "/tmp/.X$n-lock" ] && [ ! -e "/tmp/.X11-unix/X$n" ]; then display=:$n; break; fi
done
[ -n "$display" ] || { echo "FAIL: no free X display number in 90..199"; exit 1; }

# A signal (ctest's time limit) ends the script under way, which ends what it started.
child=''
trap '[ -z "$child" ] || kill "$child" 2>/dev/null; exit 143' TERM INT HUP

failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}

# check NAME LOG: the conversation of one analysis with 3 lines.
check() {
  local name=$1 log=$2
  if ! grep -Eq '<< info string book .*: [0-9]+ positions' "$log"; then
    fail "$name: the engine did not load the book (no \"info string book FILE: N positions\"), see $log"
  fi
  if ! grep -Eiq '>> setoption name multipv value 3$' "$log"; then
    fail "$name did not ask for 3 lines (no \"setoption name MultiPV value 3\"), see $log"
  fi
  if ! grep -Eq '<< info (.* )?multipv 3 .*pv ' "$log"; then
    fail "$name: the engine sent no third line (no \"info ... multipv 3 ... pv ...\"), see $log"
  fi
  if grep -q '<< info string book move' "$log"; then
    fail "$name: the engine played a book move in analysis: $(grep -m1 '<< info string book move' "$log")"
  fi
  if ! grep -q '<< bestmove ' "$log"; then
    fail "$name: the engine sent no bestmove, see $log"
  fi
}

for gui in "${have[@]}"; do
  case $gui in
    chessx)
      # ChessX analyses with "go movetime" of its Move Interval: 3 s is enough for 3 lines.
      "$source_dir/tools/gui/chessx-analyse.sh" --engine-path "$out/engine/vorlek-uci" --lines 3 \
        --interval-ms 3000 --out "$out" --name chessx --display "$display" >"$out/chessx.out" 2>&1 &
      child=$!
      name=ChessX ;;
    scid)
      # Scid analyses with "go infinite"; the script stops it once depth 4 of the third line came.
      "$source_dir/tools/gui/scid-analyse.sh" --engine-path "$out/engine/vorlek-uci" --lines 3 \
        --depth 4 --out "$out" --name scid --display "$display" >"$out/scid.out" 2>&1 &
      child=$!
      name=Scid ;;
  esac
  status=0
  wait "$child" || status=$?
  child=''
  if [ "$status" -ne 0 ]; then
    fail "$name: the analysis did not complete (status $status): $(tail -n 1 "$out/$gui.out")"
    continue
  fi
  check "$name" "$out/$gui.uci.log"
  if [ $failures -eq 0 ]; then
    echo "ok: $name asked for 3 lines and showed the engine's search: $(grep -c '<< info depth .* multipv 3 ' "$out/$gui.uci.log") iterations of 3 lines"
  fi
done

if [ $failures -ne 0 ]; then
  echo "the logs are in $out"
  exit 1
fi
rm -rf "$out"
exit 0
