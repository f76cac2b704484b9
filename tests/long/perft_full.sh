#!/bin/sh
# Full public perft counts: depth 6 of the initial position, depth 5 of the others.
set -u
perft="$1"
status=0
check() {
  expected="$1"; depth="$2"; shift 2
  got=$("$perft" "$depth" "$@" 2>/dev/null | tail -n 1)
  if [ "$got" = "$expected" ]; then
    echo "ok   $depth $got $*"
  else
    echo "FAIL $depth got $got expected $expected $*"; status=1
  fi
}
check 119060324 6
check 193690690 5 r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1
check 11030083 6 8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1
check 15833292 5 r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1
check 15833292 5 r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1
check 89941194 5 rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8
check 164075551 5 r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10
exit $status
