#!/usr/bin/env bash
# Converts the sample images through the real conversion dialog on the current display, and says where the results are.
# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=wine_env.sh
source "$root/scripts/wine_env.sh"

samples=$build/samples
results=$build/converted
rm -rf "$results"
mapfile -d '' files < <(find "$samples" -type f -not -path '*/damaged/*' -not -name '.*' -size +0 -print0 | sort -z)
((${#files[@]} > 0)) || die "there are no sample images in $samples; type: python3 scripts/make_samples.py samples $samples"

windows_files=()
for file in "${files[@]}"; do windows_files+=("$(wine winepath -w "$file")"); done
"$root/scripts/wine_run.sh" "$build/bin/zvconvert_samples.exe" "$(wine winepath -w "$results")" "${windows_files[@]}"
say "converted images: $results"
say "pictures of the dialog: $build/screenshots"
