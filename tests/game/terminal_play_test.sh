#!/bin/sh
# Plays in a real terminal: the engine runs in a tmux pane (so standard input is a terminal and it
# takes console mode), in a folder with a book. Typing e2e4 moves the pawn on the drawn board,
# "go" makes the engine answer for black, and "quit" ends the process and with it the session.
# Skips (status 77) when tmux is not installed.
set -u
engine="$1"
book="$2"
command -v tmux >/dev/null 2>&1 || { echo "SKIP: tmux is not installed"; exit 77; }

dir=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-terminal-test.XXXXXX") || exit 1
cp "$book" "$dir/Aperture.txt" || exit 1
# A private tmux server, so that no session of the user is seen or touched.
server="vorlek-test-$$"
tm() { tmux -L "$server" -f /dev/null "$@"; }
cleanup() {
  tm kill-server 2>/dev/null
  rm -rf "$dir"
}
trap cleanup EXIT

fail() {
  echo "FAIL: $1"
  echo "--- screen ---"
  cat "$dir/screen" 2>/dev/null
  exit 1
}

# The whole pane with its history, one line per screen line.
capture() { tm capture-pane -p -J -S - -t vorlek >"$dir/screen" 2>/dev/null; }

# Waits up to 60 s until the screen holds a line equal to $1 for the $2nd time (default 1).
wait_line() {
  want="${2:-1}"
  for _ in $(seq 1 300); do
    capture
    [ "$(grep -cxF -e "$1" "$dir/screen")" -ge "$want" ] && return 0
    sleep 0.2
  done
  return 1
}

# Waits until the screen ends with the prompt "Comando: " for the $1st time.
wait_prompt() {
  for _ in $(seq 1 300); do
    capture
    [ "$(grep -c '^Comando: ' "$dir/screen")" -ge "$1" ] && return 0
    sleep 0.2
  done
  return 1
}

tm new-session -d -s vorlek -x 80 -y 60 -c "$dir" "$engine" || fail "tmux could not start the engine"
wait_prompt 1 || fail "no prompt at start"

# Before any move: white pawns on the whole second rank.
tm send-keys -t vorlek e2e4 Enter
wait_line "4 |   |   |   |   | P |   |   |   |" || fail "the pawn does not show on e4 after e2e4"
wait_line "2 | P | P | P | P |   | P | P | P |" || fail "e2 is not empty after e2e4"
wait_line "7 | p | p | p | p | p | p | p | p |" || fail "black moved although the engine plays no side"

# "go": the engine takes black, answers and draws the board once more.
tm send-keys -t vorlek go Enter
for _ in $(seq 1 300); do
  capture
  grep -q '^move [a-h][1-8][a-h][1-8]' "$dir/screen" && break
  sleep 0.2
done
grep -q '^move [a-h][1-8][a-h][1-8]' "$dir/screen" || fail "no move after go"
wait_prompt 3 || fail "no board after the engine's move"
# Two boards so far: after e2e4 and after go. A black move changes rank 7 or rank 8 in the second.
[ "$(grep -cxF "7 | p | p | p | p | p | p | p | p |" "$dir/screen")" -lt 2 ] ||
  [ "$(grep -cxF "8 | t | c | a | d | r | a | c | t |" "$dir/screen")" -lt 2 ] ||
  fail "the board after go shows black unmoved"

tm send-keys -t vorlek quit Enter
for _ in $(seq 1 150); do
  tm has-session -t vorlek 2>/dev/null || break
  sleep 0.2
done
tm has-session -t vorlek 2>/dev/null && fail "the session is still open after quit"
[ -s "$dir/partita.log" ] || fail "no game log in the working folder"
grep -qx "Avversario: e2e4" "$dir/partita.log" || fail "the log lacks the typed move"
echo "ok: e2e4 moved the pawn, go got an answer, quit ended the session"
exit 0
