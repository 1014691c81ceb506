# shellcheck shell=bash disable=SC2154 # build comes from common.sh
# Wine as this project uses it; sourced after common.sh. A WINEPREFIX from the environment is taken as it is; the
# default one lies in the build folder and is made on first use.

wine_own_prefix=$build/wine
export WINEPREFIX=${WINEPREFIX:-$wine_own_prefix}
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# Neither the questions for Mono and Gecko, nor entries in the user's desktop menus.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=;winemenubuilder.exe=d}
wine_bin="Z:${build//\//\\}\\bin"
if [[ ";${WINEPATH:-};" != *";$wine_bin;"* ]]; then
  export WINEPATH="$wine_bin${WINEPATH:+;$WINEPATH}"
fi

# Whether the prefix is one that we made, and so may change and end.
own_prefix() {
  [[ $WINEPREFIX == "$wine_own_prefix"* ]]
}

find_wineserver() {
  local candidate
  for candidate in "${WINESERVER:-}" "$(command -v wineserver || true)" /usr/lib/wine/wineserver{,64}; do
    if [[ -n $candidate && -x $candidate ]]; then
      printf '%s\n' "$candidate"
      return
    fi
  done
  die "wineserver is missing; type: sudo apt-get install wine64"
}

# Several tests may want the prefix at the same moment: the first one makes it, the others wait.
ensure_wine_prefix() {
  if [[ -f $WINEPREFIX/zv_ready ]] || { ! own_prefix && [[ -f $WINEPREFIX/system.reg ]]; }; then
    return
  fi
  command -v wine >/dev/null || die "wine is missing; type: sudo apt-get install wine wine64"
  mkdir -p "$build" "$WINEPREFIX"/home/{Desktop,Documents,Downloads,Music,Pictures,Videos}
  (
    flock 9
    [[ ! -f $WINEPREFIX/zv_ready ]] || exit 0
    # A home of its own keeps "Documents" and its like in the prefix instead of linking to the developer's folders.
    HOME=$WINEPREFIX/home wine wineboot -i >"$build/wineboot.log" 2>&1 9>&- </dev/null ||
      die "no Wine prefix in $WINEPREFIX; see $build/wineboot.log, then type: rm -r $WINEPREFIX"
    timeout 60 "$(find_wineserver)" -w 9>&- || true
    touch "$WINEPREFIX/zv_ready"
  ) 9>"$build/wine.lock"
}

# Starts the server of our own prefix and keeps it alive between the many short programs of a test run, which saves each
# one its start. Wine's background processes begin with the first program that has a window and keep that program's
# output open as long as they live, so the first one must not be a test: CTest would wait for the end of its output.
keep_wine() {
  if own_prefix; then
    "$(find_wineserver)" -p
    wine rundll32 kernel32.dll,GetTickCount </dev/null >/dev/null 2>&1 || true
  fi
}

# Says whether a window manager frames the windows of our own prefix. Without one, as on a virtual display, Wine would wait two
# seconds for its answer at every window and draw no title bars; told "no", it frames them itself. Another prefix is left as
# it is.
window_manager() {
  local managed=Y
  [[ $1 == yes ]] || managed=N
  if own_prefix; then
    wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d "$managed" /f </dev/null >/dev/null 2>&1
  fi
}

# Ends what still runs in our own prefix; another one may be in use by others.
stop_wine() {
  if own_prefix && [[ -d $WINEPREFIX ]]; then
    "$(find_wineserver)" -k 2>/dev/null || true
    timeout 20 "$(find_wineserver)" -w || true
  fi
}
