#!/usr/bin/env bash
# Sets the machine up, builds, and shows the library at work: with a display the demo application opens a sample
# picture; without one the sample images are converted through the real conversion dialog on a virtual display.
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"
# shellcheck source=scripts/display.sh
source "$root/scripts/display.sh"
# shellcheck source=scripts/wine_env.sh
source "$root/scripts/wine_env.sh"

samples=$build/samples

(($# == 0)) || die "no options are known; type: ./run.sh"
"$root/scripts/setup.sh"
say "making the sample images"
python3 "$root/scripts/make_samples.py" samples "$samples"

if [[ -n ${DISPLAY:-} ]]; then
  trap stop_wine EXIT
  ensure_wine_prefix
  window_manager yes
  picture=$(find "$samples" -name 'landscape 1.jpg' -print -quit)
  say "opening the demo application"
  "$root/scripts/wine_run.sh" "$build/bin/zvdemo.exe" "$(wine winepath -w "$picture")"
else
  trap 'stop_wine; stop_display' EXIT
  start_display
  ensure_wine_prefix
  window_manager no
  "$root/scripts/convert_samples.sh"
fi
