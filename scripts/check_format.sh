#!/usr/bin/env bash
# Says where a source file is not laid out as .clang-format says: scripts/check_format.sh [--fix]
#
# With --fix the files are laid out anew. Ends with 77, for "skipped", when there is no clang-format 14: other versions
# differ in small things.
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

formatter=$(command -v clang-format-14 || command -v clang-format || true)
if [[ -z $formatter || $("$formatter" --version) != *"version 14."* ]]; then
  say "skipped: no clang-format 14; type: sudo apt-get install clang-format-14"
  exit 77
fi

cd "$root"
mapfile -d '' files < <(
  find . \( -path './build*' -o -path './.git' \) -prune -o \( -name '*.h' -o -name '*.cpp' -o -name '*.c' \) -print0
)
case ${1:-} in
  --fix)
    "$formatter" -i "${files[@]}"
    exit
    ;;
  '') ;;
  *) die "unknown option $1; type: scripts/check_format.sh [--fix]" ;;
esac

bad=0
for file in "${files[@]}"; do
  "$formatter" "$file" | diff -u --label "$file" --label "$file (as it should be)" "$file" - || bad=$((bad + 1))
done
((bad == 0)) || die "$bad of ${#files[@]} files are not laid out as agreed; type: scripts/check_format.sh --fix"
say "${#files[@]} files are laid out as agreed"
