# shellcheck shell=bash disable=SC2154 # build comes from common.sh
# Desks: places where programs with windows run side by side; sourced after display.sh and wine_env.sh. A desk has what is
# one per user on Windows (a display with its focus, a Wine prefix with its registry and temporary folder) and a processor:
# a window's messages go from the program to Wine's server, the display and back, and to wake the other processor each time
# costs more than all else.

# Opens a desk for each processor, MOST at most, and stays on the first one: open_desks MOST. A WINEPREFIX from the environment
# is that of the first.
open_desks() {
  local number processor prefix first_display='' first_prefix=$WINEPREFIX
  local -a processors
  mapfile -t processors < <(allowed_processors)
  desk_count=$((${#processors[@]} < $1 ? ${#processors[@]} : $1))
  rm -rf "$build/desks"
  mkdir -p "$build/desks"
  for ((number = 1; number <= desk_count; number++)); do
    processor=${processors[number - 1]}
    prefix=$first_prefix
    ((number == 1)) || prefix=$wine_own_prefix$number
    stay_on "$processor"
    start_display
    first_display=${first_display:-$DISPLAY}
    WINEPREFIX=$prefix
    ensure_wine_prefix
    keep_wine
    window_manager no
    printf 'DISPLAY=%q WINEPREFIX=%q processor=%q\n' "$DISPLAY" "$WINEPREFIX" "$processor" >"$build/desks/$number"
  done
  stay_on "${processors[@]}"
  DISPLAY=$first_display
  WINEPREFIX=$first_prefix
}

# Binds this shell and what it starts from now on: stay_on PROCESSOR... A system that does not let it goes on, and is slower.
stay_on() {
  taskset -cp "$(IFS=,; printf '%s' "$*")" "$BASHPID" >/dev/null 2>&1 || true
}

# The last one first: the system itself prefers the first one.
allowed_processors() {
  python3 -c 'import os; print(*sorted(os.sched_getaffinity(0), reverse=True), sep="\n")'
}

# Says to CTest which desks there are, so that it gives each test one of its own; prints the file's path.
desk_list() {
  local file=$build/desks/list.json ids
  ids=$(cd "$build/desks" && printf '{"id": "%s"},' [0-9]*)
  printf '{"version": {"major": 1, "minor": 0}, "local": [{"desks": [%s]}]}\n' "${ids%,}" >"$file"
  printf '%s\n' "$file"
}

# Goes to the desk that CTest gave this test, if it did.
go_to_desk() {
  local given=${CTEST_RESOURCE_GROUP_0_DESKS:-} processor
  if [[ $given =~ ^id:([0-9]+), ]]; then
    # shellcheck source=/dev/null # written by open_desks
    source "$build/desks/${BASH_REMATCH[1]}"
    export DISPLAY WINEPREFIX
    stay_on "$processor"
  fi
}

close_desks() {
  local desk processor
  for desk in "$build"/desks/[0-9]*; do
    [[ -f $desk ]] || continue
    # shellcheck source=/dev/null
    source "$desk"
    stop_wine
  done
  rm -rf "$build/desks"
  stop_display
}
