#!/usr/bin/env bash
# Builds the fuzz targets (libFuzzer with AddressSanitizer and UndefinedBehaviorSanitizer, compiled
# straight from the engine's sources) and runs each for SECONDS seconds.
#
#   fuzz/run.sh SECONDS [TARGET...]     TARGET: command_loop, fen, book, uci (default: all four)
#
# Inputs that find new coverage are kept in fuzz/corpus-work/TARGET (not versioned); the seeds in
# fuzz/corpus/TARGET are read, never written. A crash, a leak or a broken invariant stops the run,
# leaves the input in build/fuzz/artifacts/ and makes the script fail.
# Environment: CXX (default clang++), FUZZ_FLAGS (extra libFuzzer options).
set -euo pipefail

usage() { echo "usage: fuzz/run.sh SECONDS [command_loop|fen|book|uci ...]" >&2; exit 2; }
[ $# -ge 1 ] || usage
seconds=$1
shift
[[ $seconds =~ ^[0-9]+$ ]] || usage
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(command_loop fen book uci)
for t in "${targets[@]}"; do
  [ -f "$(dirname "$0")/${t}_fuzz.cpp" ] || usage
done

root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build/fuzz
cxx=${CXX:-clang++}
common=(-std=c++20 -pthread -O1 -g -fno-omit-frame-pointer -fsanitize=address,undefined -fno-sanitize-recover=all
        -Wall -Wextra -I"$root")
mkdir -p "$build/obj" "$build/artifacts"

# The engine's sources, instrumented for coverage; rebuilt when a source or header is newer.
sources=("$root"/board/*.cpp "$root"/game/*.cpp "$root"/search/*.cpp "$root"/uci/*.cpp)
newest_header=$(ls -t "$root"/board/*.h "$root"/game/*.h "$root"/search/*.h "$root"/uci/*.h | head -n 1)
objects=()
stale=()
for src in "${sources[@]}"; do
  rel=${src#"$root"/}
  obj=$build/obj/${rel//\//_}.o
  objects+=("$obj")
  if [ ! -f "$obj" ] || [ "$src" -nt "$obj" ] || [ "$newest_header" -nt "$obj" ]; then
    stale+=("$src")
  fi
done
if [ ${#stale[@]} -gt 0 ]; then
  echo "fuzz: compiling ${#stale[@]} engine sources" >&2
  printf '%s\n' "${stale[@]}" | xargs -P 2 -I{} sh -c '
    src=$1; shift; rel=${src#'"$root"'/}
    exec "$@" -fsanitize=fuzzer-no-link -c "$src" -o "'"$build"'/obj/$(echo "$rel" | tr / _).o"
  ' _ {} "$cxx" "${common[@]}"
fi

for t in "${targets[@]}"; do
  "$cxx" "${common[@]}" -fsanitize=fuzzer "$root/fuzz/${t}_fuzz.cpp" "${objects[@]}" -o "$build/${t}_fuzz"
done

status=0
for t in "${targets[@]}"; do
  work=$root/fuzz/corpus-work/$t
  mkdir -p "$work"
  dict=()
  [ -f "$root/fuzz/$t.dict" ] && dict=(-dict="$root/fuzz/$t.dict")
  echo "fuzz: $t for $seconds s" >&2
  log=$build/$t.log
  # shellcheck disable=SC2086
  if "$build/${t}_fuzz" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=4096 \
      -print_final_stats=1 -artifact_prefix="$build/artifacts/$t-" "${dict[@]}" ${FUZZ_FLAGS:-} \
      "$work" "$root/fuzz/corpus/$t" >"$log" 2>&1; then
    grep -h 'stat::number_of_executed_units' "$log" | sed "s/^/$t: /"
  else
    status=1
    echo "fuzz: $t FAILED, see $log" >&2
    tail -n 40 "$log" >&2
  fi
done
exit $status
