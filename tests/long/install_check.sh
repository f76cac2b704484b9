#!/bin/sh
# Installs the build into a fresh prefix and plays through the installed launcher as a user would:
# from a folder of its own, with the data folder under $HOME or $XDG_DATA_HOME. Checks the layout,
# the xboard plugin file, that the installed book tool passes the installed book, that the book is
# copied on first use and a user's book is kept, that the game log lands in the data folder, and that
# nothing is written to the prefix or the folder the launcher was started from.
set -u
cmake="$1"
build="$2"
tmp=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-install-test.XXXXXX") || exit 1
trap 'rm -rf "$tmp"' EXIT
prefix="$tmp/prefix"
status=0
fail() { echo "FAIL: $1"; status=1; }

"$cmake" --install "$build" --prefix "$prefix" >"$tmp/install.out" 2>&1 || {
  cat "$tmp/install.out"
  echo "FAIL: cmake --install"
  exit 1
}

launcher="$prefix/games/vorlek"
[ -x "$launcher" ] || fail "no launcher at games/vorlek"
[ -x "$prefix/libexec/vorlek/vorlek" ] || fail "no engine at libexec/vorlek/vorlek"
[ -f "$prefix/share/vorlek/Aperture.txt" ] || fail "no book at share/vorlek/Aperture.txt"
# The book tool sits beside the launcher and loads the shipped book without a warning.
book_tool="$prefix/games/vorlek-book"
[ -x "$book_tool" ] || fail "no book tool at games/vorlek-book"
if ! "$book_tool" check "$prefix/share/vorlek/Aperture.txt" >"$tmp/book.out" 2>&1 ||
  grep -q 'warning' "$tmp/book.out"; then
  cat "$tmp/book.out"
  fail "the installed vorlek-book does not pass the installed book"
fi
# PREFIX/bin, on root's PATH as on every user's, leads to the same commands.
for command in vorlek vorlek-uci vorlek-book; do
  [ "$(readlink -f "$prefix/bin/$command")" = "$(readlink -f "$prefix/games/$command")" ] ||
    fail "bin/$command does not lead to games/$command"
done
"$prefix/bin/vorlek-uci" --version | grep -q '^vorlek-uci (Vorlek) ' || fail "bin/vorlek-uci does not run"
plugin="$prefix/share/games/plugins/xboard/vorlek.eng"
# The installed file is the shipped template with the launcher's path filled in.
sed "s|@VORLEK_LAUNCHER@|$launcher|" "$(dirname "$0")/../../packaging/vorlek.eng.in" >"$tmp/expected.eng"
cmp -s "$plugin" "$tmp/expected.eng" || fail "vorlek.eng is not the plugin file for $launcher"
# Where Fairy-Max is installed, its plugin file opens with the same marker line.
fairymax=/usr/share/games/plugins/xboard/fairymax.eng
if [ -f "$fairymax" ] && [ "$(head -n1 "$fairymax")" != "$(head -n1 "$plugin")" ]; then
  fail "the first line of vorlek.eng differs from Fairy-Max's"
fi
find "$prefix" -exec ls -ld {} + | sort >"$tmp/prefix.before"

mkdir "$tmp/home" "$tmp/start"
session() { printf 'xboard\nprotover 2\nnew\ne2e4\nquit\n'; }

# First use: the data folder is made under $HOME, the book copied, the log written there.
(cd "$tmp/start" && session | env -u XDG_DATA_HOME HOME="$tmp/home" "$launcher") >"$tmp/out1"
grep -q '^move [a-h][1-8][a-h][1-8]' "$tmp/out1" || fail "no move through the launcher"
data="$tmp/home/.local/share/vorlek"
cmp -s "$data/Aperture.txt" "$prefix/share/vorlek/Aperture.txt" || fail "the book was not copied to $data"
grep -qx 'Avversario: e2e4' "$data/partita.log" 2>/dev/null || fail "no game log in $data"

# A book the user changed is kept: with it the engine opens g1h3, which no shipped line plays first.
echo "g1h3" >"$data/Aperture.txt"
(cd "$tmp/start" && printf 'xboard\nprotover 2\ngo\nquit\n' | env -u XDG_DATA_HOME HOME="$tmp/home" "$launcher") >"$tmp/out2"
grep -qx 'move g1h3 ' "$tmp/out2" || fail "the user's book was not used"
[ "$(cat "$data/Aperture.txt")" = "g1h3" ] || fail "the user's book was overwritten"

# An absolute XDG_DATA_HOME is preferred to $HOME; a relative one is ignored, as the XDG rules say.
(cd "$tmp/start" && session | HOME="$tmp/home" XDG_DATA_HOME="$tmp/xdg" "$launcher") >"$tmp/out3"
if ! grep -q '^move ' "$tmp/out3" || [ ! -f "$tmp/xdg/vorlek/partita.log" ]; then
  fail "XDG_DATA_HOME was not used"
fi
(cd "$tmp/start" && session | HOME="$tmp/home2" XDG_DATA_HOME="relative" "$launcher") >"$tmp/out4"
[ -f "$tmp/home2/.local/share/vorlek/partita.log" ] || fail "a relative XDG_DATA_HOME was not ignored"

# With no folder to use, the launcher says so on standard error and fails.
if session | env -u HOME -u XDG_DATA_HOME "$launcher" >"$tmp/out5" 2>"$tmp/err5"; then
  fail "the launcher ran without HOME and XDG_DATA_HOME"
fi
grep -q 'vorlek:' "$tmp/err5" || fail "no message without HOME and XDG_DATA_HOME"

[ -z "$(ls -A "$tmp/start")" ] || fail "the launcher wrote into the folder it was started from"
find "$prefix" -exec ls -ld {} + | sort >"$tmp/prefix.after"
cmp -s "$tmp/prefix.before" "$tmp/prefix.after" || fail "something was written under the prefix"

[ $status -eq 0 ] && echo "ok: install layout, plugin file and launcher"
exit $status
