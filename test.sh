#!/usr/bin/env bash
# Sets the machine up, builds everything and runs every test.
#
#   ./test.sh                everything: Windows build under Wine, portable parts under sanitizers, short fuzzing
#   ./test.sh --no-host      the Windows build alone
#   ./test.sh --build-only   build, run nothing; modules and programs stand in build/bin
#   ./test.sh --bench        build, then run the benchmark and print its table
#
# WINEPREFIX from the environment is used when set, else build/wine.
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"
# shellcheck source=scripts/display.sh
source "$root/scripts/display.sh"
# shellcheck source=scripts/wine_env.sh
source "$root/scripts/wine_env.sh"
# shellcheck source=scripts/desks.sh
source "$root/scripts/desks.sh"

mode='test'
with_host=yes
for option in "$@"; do
  case $option in
    --build-only) mode='build' ;;
    --bench) mode='bench' with_host=no ;;
    --no-host) with_host=no ;;
    *) die "unknown option $option; type: ./test.sh [--build-only | --bench] [--no-host]" ;;
  esac
done

passed=0
failed=0
skipped=0

# Runs the tests of a build folder and adds up its counts: run_tests NAME FOLDER CTEST-OPTION...
run_tests() {
  local name=$1 folder=$2 report=$2/ctest.xml counts bad idle
  shift 2
  say "testing $name"
  rm -f "$report"
  ctest --test-dir "$folder" --output-on-failure --no-tests=error --output-junit "$report" "$@" || {
    say "$name: failures above; to run them again type: ctest --test-dir $folder --rerun-failed --output-on-failure"
  }
  [[ -f $report ]] || die "no test ran in $folder; to see why type: ctest --test-dir $folder"
  counts=$(sed -n '/<testsuite /,/>/p' "$report" | tr '\n' ' ')
  bad=$(attribute failures "$counts")
  idle=$(($(attribute skipped "$counts") + $(attribute disabled "$counts")))
  passed=$((passed + $(attribute tests "$counts") - bad - idle))
  failed=$((failed + bad))
  skipped=$((skipped + idle))
}

attribute() {
  sed -n "s/.*[[:space:]]$1=\"\([0-9]*\)\".*/\1/p" <<<"$2"
}

if [[ $with_host == yes ]]; then
  "$root/scripts/setup.sh" --host
else
  "$root/scripts/setup.sh"
fi
if [[ $mode == build ]]; then
  say "built; modules and programs are in $build/bin"
  exit
fi

trap close_desks EXIT
if [[ $mode == bench ]]; then
  open_desks 1
  [[ -x $root/tests/bench/run.sh ]] || die "tests/bench/run.sh is missing; type: git checkout -- tests/bench"
  "$root/tests/bench/run.sh"
  exit
fi

if [[ $with_host == yes ]]; then
  if [[ -f $fuzz_build/build.ninja ]]; then
    run_tests fuzz "$fuzz_build" -L fuzz
  fi
  run_tests host "$host_build" --parallel "$(nproc)"
fi
open_desks 4
run_tests windows "$build" --parallel "$desk_count" --resource-spec-file "$(desk_list)"

say "all builds together:"
printf '%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
((failed == 0))
