#!/bin/sh
# Builds vorlek-uci as OpenBench's workers do, "make EXE=NAME CXX=COMPILER", in a copy of the sources where
# no cmake can be run, with each compiler at hand (g++, clang++), and checks the bench signature at depth 5.
set -u
source_dir="$1"
tmp=$(mktemp -d "${TMPDIR:-/tmp}/vorlek-make-test.XXXXXX") || exit 1
trap 'rm -rf "$tmp"' EXIT
status=0

# A cmake that fails, first on the PATH: the build must not need it.
mkdir "$tmp/bin"
printf '#!/bin/sh\necho "cmake called" >&2\nexit 1\n' >"$tmp/bin/cmake"
chmod +x "$tmp/bin/cmake"

built=0
for compiler in g++ clang++; do
  command -v "$compiler" >/dev/null || { echo "skip: $compiler is not installed"; continue; }
  copy="$tmp/src-$compiler"
  mkdir "$copy"
  (cd "$source_dir" && tar cf - Makefile CMakeLists.txt app board search game uci) | (cd "$copy" && tar xf -)
  if ! (cd "$copy" && PATH="$tmp/bin:$PATH" make -j2 EXE=engine-under-test CXX="$compiler") >"$tmp/make.log" 2>&1; then
    tail -n 30 "$tmp/make.log"
    echo "FAIL: make with $compiler"
    status=1
    continue
  fi
  last=$("$copy/engine-under-test" bench 5 | tail -n 1)
  case "$last" in
    "4556387 nodes "*" nps") echo "ok: $compiler: $last"; built=$((built + 1)) ;;
    *) echo "FAIL: $compiler: bench ended with: $last"; status=1 ;;
  esac
done
[ $built -gt 0 ] || { echo "no compiler built the engine"; status=1; }
exit $status
