#!/usr/bin/env bash
# Runs the benchmarks on the finished build and puts their tables into docs/performance.md. Called by ./test.sh --bench, which
# sets up the display and the Wine prefix.
# shellcheck source=../../scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/common.sh"

python3 "$root/tests/bench/run.py" "$build" --write "$root/docs/performance.md"
python3 "$root/tests/bench/pixel_bench.py" "$build" --write "$root/docs/performance.md"
python3 "$root/tests/bench/open_bench.py" "$build" --write "$root/docs/performance.md"
