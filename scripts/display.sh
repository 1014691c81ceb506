# shellcheck shell=bash disable=SC2154 # build comes from common.sh
# A virtual display for programs with windows; sourced after common.sh.

display_processes=()

# Starts one on a free number that the server itself picks, and sets DISPLAY.
start_display() {
  local report=$build/display.$$ log=$build/xvfb.log tries=0
  command -v Xvfb >/dev/null || die "Xvfb is missing; type: sudo apt-get install xvfb"
  mkdir -p "$build"
  : >"$report"
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$report" >"$log" 2>&1 </dev/null &
  display_processes+=("$!")
  until [[ -s $report ]]; do
    if ! kill -0 "$!" 2>/dev/null || ((++tries > 300)); then
      die "the virtual display did not start; see $log, then type: Xvfb -displayfd 1"
    fi
    sleep 0.1
  done
  DISPLAY=:$(<"$report")
  export DISPLAY
  rm -f "$report"
  say "virtual display $DISPLAY"
}

# Stops all that were started.
stop_display() {
  if ((${#display_processes[@]})); then
    kill "${display_processes[@]}" 2>/dev/null || true
    wait "${display_processes[@]}" 2>/dev/null || true
    display_processes=()
  fi
}
