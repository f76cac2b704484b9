#!/bin/bash
# vorlek-uci in the real xboard, through polyglot as xboard runs UCI engines: two games against
# Fairy-Max at 40 moves in 20 seconds (finished, no illegal move, no time forfeit, no error line, no
# complaint from xboard), then analysis mode, which must show the engine's thinking.
# Skips (status 77) when xboard, xvfb, xauth, fairymax or polyglot is not installed.
set -u
engine="$1"
source_dir="$2"
export PATH="$PATH:/usr/games"
for program in xboard xvfb-run xauth fairymax polyglot; do
  if ! command -v "$program" >/dev/null 2>&1; then
    echo "SKIP: $program is missing (apt-get install -y xboard xvfb xauth fairymax polyglot)"
    exit 77
  fi
done
out=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-xboard-uci-test.XXXXXX") || exit 1
# A copy, so that a rebuild during the games does not change the engine under xboard.
cp "$engine" "$out/vorlek-uci-engine" || exit 1

"$source_dir/tools/match.sh" -u -n 2 -t 0:20 -m 40 -o "$out/match" -v "$out/vorlek-uci-engine" \
  -b "$source_dir/Aperture.txt" -w 400
status=$?
if [ $status -ne 0 ] || ! grep -q '^time forfeits: Vorlek 0,' <("$source_dir/tools/match.sh" -r -o "$out/match"); then
  echo "FAIL: the match, see $out/match"
  exit 1
fi

# Analysis mode from the initial position for eight seconds: xboard's log must hold the thinking lines.
mkdir -p "$out/analysis/home" "$out/analysis/engine"
cp "$source_dir/Aperture.txt" "$out/analysis/engine/"
HOME="$out/analysis/home" setsid xvfb-run -a -n $((500 + RANDOM % 400)) -s "-screen 0 1024x768x24" \
  xboard -fcp "$out/vorlek-uci-engine" -fUCI -fd "$out/analysis/engine" -initialMode Analysis \
  -debug -debugfile "$out/analysis/xboard.debug" -saveSettingsOnExit false -autoInstall "" -soundProgram "" \
  >"$out/analysis/xboard.out" 2>&1 </dev/null &
session=$!
sleep 8
kill -TERM -- -"$session" 2>/dev/null
sleep 1
kill -KILL -- -"$session" 2>/dev/null
wait "$session" 2>/dev/null
lines=$(grep -cE '^[0-9]+ <first : [0-9]+ [-+][0-9]+ [0-9]+ [0-9]+' "$out/analysis/xboard.debug")
if [ "$lines" -lt 3 ]; then
  echo "FAIL: analysis mode showed $lines thinking lines, see $out/analysis"
  exit 1
fi
echo "ok: two games through polyglot, and $lines thinking lines in analysis mode"
rm -rf "$out"
exit 0
