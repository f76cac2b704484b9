#!/usr/bin/env bash
# Plays a match between Vorlek and another xboard engine (Fairy-Max by default) in the real
# xboard, run without a window under a virtual X server, and summarises it: Vorlek's wins,
# draws, losses and score, time forfeits, illegal moves, and every error line an engine wrote
# or xboard reported in its debug log.
#
#   tools/match.sh [-n GAMES] [-t MINUTES] [-m MOVES] [-i SECONDS] [-s SECONDS] [-u] [-o OUTDIR]
#                  [-e 'OPPONENT CMD'] [-v VORLEK_CMD] [-b BOOK] [-w SECONDS]
#   tools/match.sh -r -o OUTDIR [-n GAMES]
#
#   -n  games, colours alternating, Vorlek White in the first (default 2)
#   -t  minutes per time control, xboard's MIN[:SEC] form (default 1)
#   -m  moves per time control (default 40; 0 for the whole game)
#   -i  increment in seconds per move, fractions allowed (default none)
#   -s  a fixed time per move instead of a control, MIN[:SEC] as for -t (default none)
#   -u  play vorlek-uci, through polyglot as xboard runs UCI engines (default: vorlek)
#   -o  output folder for the PGN, the debug log and the engines' folders (default: new temp folder)
#   -e  opponent command line (default fairymax)
#   -v  Vorlek command line, e.g. an installed launcher (default: a copy of build/release/vorlek,
#       taken at the start so that a rebuild during the match does not touch it)
#   -b  opening book put into Vorlek's working folder (default: the repository's Aperture.txt)
#   -w  overall limit in seconds, after which xboard is stopped (default: from the control)
#   -r  play nothing: summarise the match already in OUTDIR again
#
# SIGINT or SIGTERM stops the match early; the games finished so far are still summarised.
# Vorlek runs in OUTDIR/vorlek (with the book) and XDG_DATA_HOME is OUTDIR/data, so an installed
# launcher keeps its book and game log there too. xboard's settings live in OUTDIR/home.
#
# Exit status: 0 the match completed, Vorlek wrote no error line (other than its designed answer
# to the commands it does not know) and made no illegal move, and xboard had nothing to say about
# it (rejected feature, broken pipe, exit); 1 otherwise (see the summary); 2 bad usage; 3 a needed
# program is missing (its Debian package is named; nothing is installed).
set -u

usage() {
  sed -n '7,24p' "$0" | sed 's/^# \{0,1\}//' >&2
  exit 2
}

repo=$(cd "$(dirname "$0")/.." && pwd)
games=2
minutes=1
moves=40
outdir=""
opponent="fairymax"
vorlek=""
book="$repo/Aperture.txt"
limit=""
reportOnly=0
gamesGiven=0
increment=""
moveTime=""
uci=0
while getopts "n:t:m:i:s:uo:e:v:b:w:rh" opt; do
  case "$opt" in
    n) games="$OPTARG"; gamesGiven=1 ;;
    t) minutes="$OPTARG" ;;
    m) moves="$OPTARG" ;;
    i) increment="$OPTARG" ;;
    s) moveTime="$OPTARG" ;;
    u) uci=1 ;;
    o) outdir="$OPTARG" ;;
    e) opponent="$OPTARG" ;;
    v) vorlek="$OPTARG" ;;
    b) book="$OPTARG" ;;
    w) limit="$OPTARG" ;;
    r) reportOnly=1 ;;
    *) usage ;;
  esac
done
[ $# -ge "$OPTIND" ] && usage
[[ "$games" =~ ^[1-9][0-9]*$ ]] || { echo "match: -n wants a positive number of games" >&2; exit 2; }
[[ "$moves" =~ ^[0-9]+$ ]] || { echo "match: -m wants a number of moves" >&2; exit 2; }
[[ "$minutes" =~ ^[0-9]+(:[0-5][0-9])?$ ]] || { echo "match: -t wants MIN or MIN:SEC" >&2; exit 2; }
[ -z "$limit" ] || [[ "$limit" =~ ^[1-9][0-9]*$ ]] || { echo "match: -w wants seconds" >&2; exit 2; }
[ -z "$increment" ] || [[ "$increment" =~ ^[0-9]+(\.[0-9]+)?$ ]] || { echo "match: -i wants seconds" >&2; exit 2; }
[ -z "$moveTime" ] || [[ "$moveTime" =~ ^[0-9]+(:[0-5][0-9])?$ ]] || { echo "match: -s wants MIN or MIN:SEC" >&2; exit 2; }
if [ "$reportOnly" -eq 1 ] && [ ! -d "$outdir" ]; then
  echo "match: -r wants the folder of a match, -o OUTDIR" >&2
  exit 2
fi

stopRequested=0
trap 'stopRequested=1' INT TERM

finished() {
  local count
  count=$(grep -c '^\[Result "' "$pgn" 2>/dev/null)
  echo "${count:-0}"
}

# Names the Debian packages of the programs a match needs that are not installed, and stops.
CheckPrograms() {
  # Debian puts xboard and the engines in /usr/games, which is not always on PATH.
  export PATH="$PATH:/usr/games"
  missing=()
  need() { command -v "$1" >/dev/null 2>&1 || missing+=("$2"); }
  need xboard xboard
  need xvfb-run xvfb
  need Xvfb xvfb
  need xauth xauth
  [ "$uci" -eq 0 ] || need polyglot polyglot
  read -r -a opponentWords <<<"$opponent"
  [ ${#opponentWords[@]} -gt 0 ] || { echo "match: -e wants a command" >&2; exit 2; }
  if [ "$opponent" = "fairymax" ]; then
    need fairymax fairymax
  elif ! command -v "${opponentWords[0]}" >/dev/null 2>&1; then
    missing+=("(opponent ${opponentWords[0]})")
  fi
  if [ ${#missing[@]} -gt 0 ]; then
    echo "match: missing: $(printf '%s\n' "${missing[@]}" | sort -u | tr '\n' ' ')" >&2
    echo "match: install them first, e.g. apt-get install -y xboard xvfb xauth fairymax polyglot" >&2
    exit 3
  fi
  [ -r "$book" ] || { echo "match: no book at $book" >&2; exit 2; }
}

# Starts xboard on a virtual X server, waits for the games or the limit, then ends the session.
PlayMatch() {
  rm -f "$pgn" "$debug" "$console"
  mkdir -p "$outdir/vorlek" "$outdir/opponent" "$outdir/data" "$outdir/home"
  cp "$book" "$outdir/vorlek/Aperture.txt" || exit 2
  if [ -z "$vorlek" ]; then
    program=vorlek
    [ "$uci" -eq 0 ] || program=vorlek-uci
    if [ ! -x "$repo/build/release/$program" ]; then
      echo "match: build the engine first (cmake --workflow --preset test), or give -v" >&2
      exit 2
    fi
    cp "$repo/build/release/$program" "$outdir/vorlek/$program-engine" || exit 2
    vorlek="$outdir/vorlek/$program-engine"
  fi

  # Overall limit: a game may run to 200 moves, each side using every control it reaches.
  if [ -z "$limit" ]; then
    controlSeconds=$((10#${minutes%%:*} * 60))
    [[ "$minutes" == *:* ]] && controlSeconds=$((controlSeconds + 10#${minutes##*:}))
    perControl=$([ "$moves" -gt 0 ] && echo "$moves" || echo 200)
    controls=$(((200 + perControl - 1) / perControl))
    perGame=$((2 * controls * controlSeconds))
    # 400 moves a game at most: each may add the increment, or take the fixed time.
    [ -z "$increment" ] || perGame=$((perGame + 400 * ${increment%%.*} + 400))
    if [ -n "$moveTime" ]; then
      moveSeconds=$((10#${moveTime%%:*} * 60))
      [[ "$moveTime" == *:* ]] && moveSeconds=$((moveSeconds + 10#${moveTime##*:}))
      perGame=$((400 * moveSeconds))
    fi
    limit=$((games * (perGame + 60) + 60))
  fi

  control=(-tc "$minutes" -mps "$moves")
  [ -z "$increment" ] || control+=(-inc "$increment")
  [ -z "$moveTime" ] || control=(-st "$moveTime")
  uciFlag=()
  [ "$uci" -eq 0 ] || uciFlag=(-fUCI)
  echo "match: $games games, ${control[*]}, Vorlek: $vorlek$([ "$uci" -eq 1 ] && echo ' (UCI, through polyglot)'), opponent: $opponent"
  echo "match: output in $outdir (limit ${limit}s)"

  export HOME="$outdir/home" XDG_DATA_HOME="$outdir/data"
  # Its own session, so that xboard, the X server and both engines can be stopped together.
  setsid xvfb-run -a -n $((100 + RANDOM % 400)) -s "-screen 0 1024x768x24" \
    xboard -noGUI -mg "$games" "${control[@]}" \
    -fcp "$vorlek" "${uciFlag[@]}" -fd "$outdir/vorlek" -scp "$opponent" -sd "$outdir/opponent" \
    -sgf "$pgn" -debug -debugfile "$debug" -autoCallFlag true -xponder \
    -saveSettingsOnExit false -autoInstall "" -soundProgram "" >"$console" 2>&1 </dev/null &
  session=$!

  start=$SECONDS
  while kill -0 "$session" 2>/dev/null; do
    if [ "$(finished)" -ge "$games" ]; then
      sleep 2 # the PGN's last lines and the final debug lines
      break
    fi
    if [ $((SECONDS - start)) -ge "$limit" ]; then
      echo "match: stopped after ${limit}s with $(finished) of $games games"
      break
    fi
    if [ "$stopRequested" -eq 1 ]; then
      echo "match: stopped on request with $(finished) of $games games"
      break
    fi
    sleep 2
  done
  # xboard does not always leave after the last game: end the whole session.
  if kill -0 "$session" 2>/dev/null; then
    kill -TERM -- -"$session" 2>/dev/null
    for _ in 1 2 3 4 5; do kill -0 "$session" 2>/dev/null || break; sleep 1; done
    kill -KILL -- -"$session" 2>/dev/null
  fi
  wait "$session" 2>/dev/null
  echo "match: $((SECONDS - start))s"
}

[ "$reportOnly" -eq 1 ] || CheckPrograms
if [ -z "$outdir" ]; then
  outdir=$(mktemp -d /tmp/vorlek-match.XXXXXX)
fi
mkdir -p "$outdir" || exit 2
outdir=$(cd "$outdir" && pwd)
pgn="$outdir/match.pgn"
debug="$outdir/xboard.debug"
console="$outdir/xboard.out"
if [ "$reportOnly" -eq 1 ]; then
  [ "$gamesGiven" -eq 1 ] || games=$(finished)
else
  PlayMatch
fi
complete=0
[ "$(finished)" -ge "$games" ] && complete=1

# One line per game: number, White, Black, result, the closing comment and the number of moves.
gameLines() {
  [ -f "$pgn" ] || return 0
  awk '
    function flush() {
      if (result == "") return
      text = moves
      gsub(/[ \t]+/, " ", text)
      reason = ""
      # The comment right before the final result token says how the game ended.
      if (match(text, /\{[^{}]*\} *(1-0|0-1|1\/2-1\/2|\*) *$/)) {
        reason = substr(text, RSTART + 1, RLENGTH)
        sub(/\}.*$/, "", reason)
      }
      last = 0
      n = split(text, word, " ")
      for (i = 1; i <= n; i++) if (word[i] ~ /^[0-9]+\.$/) last = word[i] + 0
      printf "%d\t%s\t%s\t%s\t%s\t%d\n", ++count, white, black, result, reason, last
      result = ""; moves = ""
    }
    /^\[Event / { flush() }
    /^\[White "/ { white = $0; sub(/^\[White "/, "", white); sub(/"\]$/, "", white) }
    /^\[Black "/ { black = $0; sub(/^\[Black "/, "", black); sub(/"\]$/, "", black) }
    /^\[Result "/ { result = $0; sub(/^\[Result "/, "", result); sub(/"\]$/, "", result) }
    /^\[/ { next }
    { moves = moves " " $0 }
    END { flush() }
  ' "$pgn"
}

wins=0 draws=0 losses=0 unscored=0
vorlekForfeits=0 opponentForfeits=0 vorlekIllegal=0 opponentIllegal=0
echo
echo "game  white - black  result  {how it ended}  moves"
while IFS=$'\t' read -r number white black result reason lastMove; do
  # Vorlek is the first engine: White in the odd games, unless the names tell otherwise.
  if [[ "$white" == *Vorlek* && "$black" != *Vorlek* ]]; then
    colour=white
  elif [[ "$black" == *Vorlek* && "$white" != *Vorlek* ]]; then
    colour=black
  elif ((number % 2 == 1)); then
    colour=white
  else
    colour=black
  fi
  case "$result/$colour" in
    1-0/white | 0-1/black) wins=$((wins + 1)); outcome=win ;;
    0-1/white | 1-0/black) losses=$((losses + 1)); outcome=loss ;;
    1/2-1/2/*) draws=$((draws + 1)); outcome=draw ;;
    *) unscored=$((unscored + 1)); outcome=none ;;
  esac
  lower=$(printf '%s' "$reason" | tr '[:upper:]' '[:lower:]')
  if [[ "$lower" == *"on time"* || "$lower" == *"time forfeit"* || "$lower" == *"flag"* ]]; then
    case "$outcome" in
      loss) vorlekForfeits=$((vorlekForfeits + 1)) ;;
      win) opponentForfeits=$((opponentForfeits + 1)) ;;
    esac
  fi
  if [[ "$lower" == *illegal* || "$lower" == *invalid* ]]; then
    case "$outcome" in
      loss) vorlekIllegal=$((vorlekIllegal + 1)) ;;
      win) opponentIllegal=$((opponentIllegal + 1)) ;;
    esac
  fi
  printf '%4d  %s - %s  %s  {%s}  %d\n' "$number" "$white" "$black" "$result" "$reason" "$lastMove"
done < <(gameLines)
played=$((wins + draws + losses))
halfPoints=$((2 * wins + draws))
score="$((halfPoints / 2))$([ $((halfPoints % 2)) -eq 1 ] && echo .5)"

# Lines that Vorlek answers with its error line by design, because xboard sends them in every
# match and the engine's command table has no row for them.
designed='^Error\(comando non previsto\): (random|computer|hard|easy|result( .*)?)$'
vorlekLines() { [ -f "$debug" ] && sed -n 's/^[0-9]* <first : //p' "$debug"; }
opponentLines() { [ -f "$debug" ] && sed -n 's/^[0-9]* <second: //p' "$debug"; }
vorlekErrors=$(vorlekLines | grep -E 'Error|Illegal|rror|llegal' | grep -Ev "$designed" | sort | uniq -c)
vorlekDesigned=$(vorlekLines | grep -E "$designed" | sed -E 's/(: result) .*/\1 .../' | sort | uniq -c)
opponentErrors=$(opponentLines | grep -Ei 'error|illegal' | sort | uniq -c)
# xboard's own lines: rejected features, engines that exited or could not be written to, odd
# endings. Those that name the first engine (Vorlek) count against it.
xboardLines=$(
  {
    [ -f "$debug" ] && grep -E '^[0-9]+ >(first |second): rejected' "$debug"
    [ -f "$debug" ] && grep -Ev '^[0-9]+ [<>](first |second)|^StartChildProcess' "$debug" |
      grep -Ei 'exit|terminat|crash|fail|killed|illegal|invalid|forfeit|error|signal|broken'
    [ -f "$console" ] && grep -Ei 'xboard|error|fail' "$console" | grep -Ev 'final score|Fatal IO error|^ALSA|aplay'
  } | sort | uniq -c
)
vorlekTrouble=$(printf '%s\n' "$xboardLines" | grep -Ei '>first : rejected|first (chess )?(program|engine|machine)')

echo
echo "Vorlek: +$wins =$draws -$losses, score $score/$played$([ "$unscored" -gt 0 ] && echo ", $unscored unfinished")"
echo "games: $played of $games$([ "$complete" -eq 1 ] || echo ' (match incomplete)')"
echo "time forfeits: Vorlek $vorlekForfeits, opponent $opponentForfeits"
echo "illegal moves: Vorlek $vorlekIllegal, opponent $opponentIllegal"
echo "Vorlek error lines: ${vorlekErrors:+$'\n'}${vorlekErrors:-none}"
echo "Vorlek refusals of commands it does not know (by design): ${vorlekDesigned:+$'\n'}${vorlekDesigned:-none}"
echo "opponent error lines: ${opponentErrors:+$'\n'}${opponentErrors:-none}"
echo "xboard complaints: ${xboardLines:+$'\n'}${xboardLines:-none}"
echo "PGN: $pgn"
echo "debug log: $debug"

if [ "$complete" -eq 1 ] && [ -z "$vorlekErrors" ] && [ -z "$vorlekTrouble" ] && [ "$vorlekIllegal" -eq 0 ]; then
  exit 0
fi
exit 1
