#!/usr/bin/env bash
# Runs a program that we built: scripts/wine_run.sh PROGRAM.exe [ARGUMENT...]. CTest starts every test through this.
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
# shellcheck source=scripts/wine_env.sh
source "$root/scripts/wine_env.sh"
# shellcheck source=scripts/desks.sh
source "$root/scripts/desks.sh"

(($# > 0)) || die "no program; type: scripts/wine_run.sh PROGRAM.exe [ARGUMENT...]"
go_to_desk
ensure_wine_prefix
exec wine "$@"
