#!/bin/sh
# Two games between Vorlek and Fairy-Max in the real xboard at 40 moves in 20 seconds: the match
# must finish, Vorlek must make no illegal move and write no error line other than its designed
# answer to the commands it does not know, and xboard must have nothing to say about it.
# Skips (status 77) when xboard, xvfb, xauth or fairymax is not installed.
set -u
engine="$1"
source_dir="$2"
out=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-xboard-test.XXXXXX") || exit 1
# A copy, so that a rebuild during the games does not change the engine under xboard.
cp "$engine" "$out/vorlek-engine" || exit 1
"$source_dir/tools/match.sh" -n 2 -t 0:20 -m 40 -o "$out" -v "$out/vorlek-engine" \
  -b "$source_dir/Aperture.txt" -w 400
status=$?
case $status in
  0) rm -rf "$out"; exit 0 ;;
  3) echo "SKIP: xboard, xvfb, xauth or fairymax is missing (apt-get install -y xboard xvfb xauth fairymax)"
     rm -rf "$out"; exit 77 ;;
  *) echo "FAIL: see $out"; exit 1 ;;
esac
