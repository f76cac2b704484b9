#!/bin/sh
# Plays in a real terminal: the engine runs in a tmux pane (so standard input is a terminal and it takes
# console mode), in a folder with a book. e2e4 moves the pawn on the drawn board, "go" makes the engine
# answer for black, and "quit" ends the process and with it the session. Skips (77) without tmux.
set -u
# The pane starts in the book's folder: paths given relative to the caller's folder are made absolute.
engine=$(realpath "$1") && book=$(realpath "$2") || exit 1
command -v tmux >/dev/null 2>&1 || { echo "SKIP: tmux is not installed"; exit 77; }
dir=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-terminal-test.XXXXXX") && cp "$book" "$dir/Aperture.txt" || exit 1
# A private tmux server, so that no session of the user is seen or touched.
tm() { tmux -L "vorlek-test-$$" -f /dev/null "$@"; }
trap 'tm kill-server 2>/dev/null; rm -rf "$dir"' EXIT
fail() { echo "FAIL: $1"; cat "$dir/screen" 2>/dev/null; exit 1; }

# Waits up to 60 s until the whole pane, history included, shows at least $2 lines matching $1.
wait_for() {
  for _ in $(seq 1 300); do
    tm capture-pane -p -J -S - -t vorlek >"$dir/screen" 2>/dev/null
    [ "$(grep -c -e "$1" "$dir/screen")" -ge "$2" ] && return 0
    sleep 0.2
  done
  return 1
}

tm new-session -d -s vorlek -x 80 -y 60 -c "$dir" "$engine" || fail "tmux could not start the engine"
wait_for '^Comando: ' 1 || fail "no prompt at start"
tm send-keys -t vorlek e2e4 Enter
wait_for '^Comando: ' 2 || fail "no board after e2e4"
grep -qx '4 |   |   |   |   | P |   |   |   |' "$dir/screen" || fail "the pawn does not show on e4 after e2e4"
grep -qx '2 | P | P | P | P |   | P | P | P |' "$dir/screen" || fail "e2 is not empty after e2e4"
grep -qx '7 | p | p | p | p | p | p | p | p |' "$dir/screen" || fail "black moved although the engine plays no side"
# "go": the engine takes black, answers and draws the board once more, with a black piece moved.
tm send-keys -t vorlek go Enter
wait_for '^Comando: ' 3 || fail "no board after go"
grep -q '^move [a-h][1-8][a-h][1-8]' "$dir/screen" || fail "no move after go"
[ "$(grep -cx '7 | p | p | p | p | p | p | p | p |' "$dir/screen")" -lt 2 ] ||
  [ "$(grep -cx '8 | t | c | a | d | r | a | c | t |' "$dir/screen")" -lt 2 ] ||
  fail "the board after go shows black unmoved"

tm send-keys -t vorlek quit Enter
for _ in $(seq 1 150); do tm has-session -t vorlek 2>/dev/null || break; sleep 0.2; done
! tm has-session -t vorlek 2>/dev/null || fail "the session is still open after quit"
grep -qx "Avversario: e2e4" "$dir/partita.log" || fail "the log lacks the typed move"
echo "ok: e2e4 moved the pawn, go got an answer, quit ended the session"
