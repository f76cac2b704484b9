#!/usr/bin/env python3
"""Plants the one-line faults of faults.py one at a time in a scratch git worktree, builds it, runs the
default suite's test binary and records which tests fail. Never run it on the checkout you work in: each
fault is written into the source and taken out again after its run.

  git worktree add --detach ../vorlek-faults HEAD
  tools/faults/plant.py ../vorlek-faults results.json          # every fault, resumable
  tools/faults/plant.py ../vorlek-faults results.json 12 40    # only these
  tools/faults/plant.py --summary results.json                 # caught, uncaught, caught by one test only
"""
import collections
import json
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from faults import FAULTS, UNOBSERVABLE  # noqa: E402

SUITE_TIMEOUT = 300  # seconds; a fault that makes a search endless fails as TIMEOUT


def run_suite(build):
    """The names of the failing tests, the suite run in two shards side by side."""
    failed, shards = set(), []
    for index in range(2):
        env = dict(os.environ, GTEST_TOTAL_SHARDS='2', GTEST_SHARD_INDEX=str(index))
        shards.append(subprocess.Popen([os.path.join(build, 'tests', 'vorlek_tests'), '--gtest_brief=1'], cwd=build,
                                       env=env, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True))
    for shard in shards:
        try:
            output, _ = shard.communicate(timeout=SUITE_TIMEOUT)
        except subprocess.TimeoutExpired:
            shard.kill()
            output, _ = shard.communicate()
            failed.add('TIMEOUT')
        for line in output.splitlines():
            if line.startswith('[  FAILED  ] ') and 'listed below' not in line:
                failed.add(line[13:].split(',')[0].split(' (')[0].strip())
        if shard.returncode not in (0, 1) and not failed:
            failed.add('CRASH %d' % shard.returncode)
    # A fault that hangs the engine leaves engines behind; they would slow every later run.
    subprocess.run(['pkill', '-KILL', '-f', os.path.join(build, 'vorlek')], check=False)
    return sorted(failed)


def plant_all(worktree, out, only):
    if subprocess.run(['git', '-C', worktree, 'diff', '--quiet']).returncode != 0:
        sys.exit('%s has changes: plant faults only in a clean scratch worktree' % worktree)
    build = os.path.join(worktree, 'build', 'faults')
    if not os.path.exists(os.path.join(build, 'CMakeCache.txt')):
        subprocess.run(['cmake', '-S', worktree, '-B', build, '-DCMAKE_BUILD_TYPE=Release'], check=True,
                       stdout=subprocess.DEVNULL)
    results = json.load(open(out)) if os.path.exists(out) else {}
    for i, (path, text, replacement, what) in enumerate(FAULTS):
        if (only and i not in only) or (not only and str(i) in results):
            continue
        source = os.path.join(worktree, path)
        original = open(source).read()
        if original.count(text) != 1:
            results[str(i)] = {'what': what, 'error': 'text found %d times' % original.count(text)}
        else:
            started = time.time()
            try:
                open(source, 'w').write(original.replace(text, replacement))
                built = subprocess.run(['cmake', '--build', build, '-j2'], capture_output=True, text=True)
                failed = run_suite(build) if built.returncode == 0 else None
            finally:
                open(source, 'w').write(original)
            results[str(i)] = ({'what': what, 'failed': failed} if failed is not None else
                               {'what': what, 'error': 'build failed', 'log': built.stdout[-800:]})
            print('%3d %-55s %s (%.0f s)' % (i, what, len(failed) if failed is not None else 'build failed',
                                             time.time() - started), flush=True)
        json.dump(results, open(out, 'w'), indent=1)
    subprocess.run(['cmake', '--build', build, '-j2'], capture_output=True)


def summary(out):
    results = json.load(open(out))
    caught = [k for k, r in results.items() if r.get('failed')]
    uncaught = [k for k, r in results.items() if r.get('failed') == []]
    errors = [k for k, r in results.items() if 'error' in r]
    print('planted %d, caught %d, uncaught %d, not planted %d' %
          (len(results) - len(errors), len(caught), len(uncaught), len(errors)))
    for k in uncaught:
        what = results[k]['what']
        print('  uncaught %3s %s%s' % (k, what, ' (changes nothing observable)' if what in UNOBSERVABLE else ''))
    for k in errors:
        print('  not planted %3s %s: %s' % (k, results[k]['what'], results[k]['error']))
    alone = collections.defaultdict(list)
    for k, r in results.items():
        if len(r.get('failed', [])) == 1:
            alone[r['failed'][0]].append(int(k))
    print('tests that alone catch a fault:')
    for test, faults in sorted(alone.items()):
        print('  %s %s' % (test, sorted(faults)))
    return 0 if all(results[k]['what'] in UNOBSERVABLE for k in uncaught) and not errors else 1


if __name__ == '__main__':
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    if sys.argv[1] == '--summary':
        sys.exit(summary(sys.argv[2]))
    plant_all(sys.argv[1], sys.argv[2], [int(a) for a in sys.argv[3:]])
