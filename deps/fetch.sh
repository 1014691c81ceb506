# shellcheck shell=bash
# Fetches and unpacks Debian source packages with apt, from the mirror that the machine is set up for, by a sources list
# and a folder of package lists of our own: the machine's apt set-up stays as it is, and no special rights are needed.

fetch_fail() {
  printf 'deps: %s\n' "$*" >&2
  exit 1
}

# Writes the deb-src list for the machine's release: mirror_list FILE
mirror_list() {
  local codename mirrors mirror
  codename=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
  # Both formats of sources that apt knows are understood by letting apt itself say what it would fetch.
  mirrors=$(apt-get update --print-uris 2>/dev/null | sed -n "s|^'\(.*\)/dists/$codename/InRelease'.*|\1|p" | sort -u)
  [[ -n $mirrors ]] || fetch_fail "apt knows no mirror for $codename; add a 'deb' line for it to /etc/apt/sources.list"
  for mirror in $mirrors; do
    printf 'deb-src %s %s main\ndeb-src %s %s-updates main\n' "$mirror" "$codename" "$mirror" "$codename"
  done >"$1"
}

# apt-get with our own lists: our_apt SOURCES ARGUMENT...
our_apt() {
  local state=$1/apt
  shift
  apt-get -o Dir::Etc::SourceList="$state/sources.list" -o Dir::Etc::SourceParts=/dev/null \
    -o Dir::State::Lists="$state/lists" -o Dir::Cache="$state/cache" -o APT::Sandbox::User="$(id -un)" \
    -o Acquire::Retries=3 -qq "$@"
}

# Makes sure that the .dsc and all files it names are in SOURCES and prints the version that is there. That is the
# pinned one, or, once the archive has dropped it, a later Debian revision (a security fix) of the same upstream version.
# fetch_source PACKAGE VERSION SOURCES
fetch_source() {
  local package=$1 version=$2 sources=$3 revision
  mkdir -p "$sources/apt/lists/partial" "$sources/apt/cache/archives/partial"
  if is_fetched "$package" "$version" "$sources"; then
    printf '%s\n' "$version"
    return
  fi
  if [[ ! -f $sources/apt/updated || -n $(find "$sources/apt/updated" -mmin +60) ]]; then
    mirror_list "$sources/apt/sources.list"
    our_apt "$sources" update >&2 || fetch_fail "no package lists; check the network, then type: sudo apt-get update"
    touch "$sources/apt/updated"
  fi
  for revision in "$version" $(later_revisions "$package" "$version" "$sources"); do
    if (cd "$sources" && our_apt "$sources" source --download-only --only-source "$package=$revision" >&2); then
      printf '%s\n' "$revision"
      return
    fi
  done
  fetch_fail "the mirror has neither $package $version nor a later revision of it; set a version that it has in deps/recipes"
}

# The archive's versions of PACKAGE with the upstream version of VERSION, lowest first:
# later_revisions PACKAGE VERSION SOURCES
later_revisions() {
  local candidate
  # shellcheck disable=SC2016 # apt replaces $(FILENAME)
  our_apt "$3" indextargets --format '$(FILENAME)' 'Created-By: Sources' | while read -r list; do
    /usr/lib/apt/apt-helper cat-file "$list"
  done | awk -v package="$1" '$1 == "Package:" { ours = $2 == package } ours && $1 == "Version:" { print $2 }' |
    sort -uV | while read -r candidate; do
    if [[ ${candidate%-*} == "${2%-*}" && $candidate != "$2" ]]; then
      printf '%s\n' "$candidate"
    fi
  done
}

dsc_name() {
  printf '%s_%s.dsc\n' "$1" "${2#*:}"
}

# Whether the .dsc and the files that it names are there, unharmed: is_fetched PACKAGE VERSION SOURCES
is_fetched() {
  local dsc
  dsc=$(dsc_name "$1" "$2")
  [[ -f $3/$dsc ]] || return 1
  (
    cd "$3" || exit 1
    sed -n '/^Checksums-Sha256:/,/^[^ ]/{s/^ \([0-9a-f]*\) [0-9]* /\1  /p}' "$dsc" | sha256sum --check --status
  )
}

# Unpacks the source and applies Debian's patches: unpack_source PACKAGE VERSION SOURCES FOLDER
unpack_source() {
  dpkg-source --no-check -x "$3/$(dsc_name "$1" "$2")" "$4"
}
