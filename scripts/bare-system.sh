# shellcheck shell=bash
# Sourced by scripts that prove something in a bare Debian 12. Needs root. After common.sh.

require_root() {
  [ "$(id -u)" -eq 0 ] && return
  echo "$0: a new root file system needs root" >&2
  exit 1
}

# bare_system [FOLDER] makes the system in FOLDER, which stays, or in one that goes afterwards, and
# sets system to it. Debian comes from where this machine gets it; if it knows no place, debootstrap
# does. FOLDER may hold a system already, which is then taken.
bare_system() {
  local suite=bookworm mirror
  if ! command -v debootstrap >/dev/null; then
    DEBIAN_FRONTEND=noninteractive quietly build/logs/bare-setup.log \
      sh -c 'apt-get -qq update && apt-get -qq install --yes --no-install-recommends debootstrap'
  fi
  if [ $# -gt 0 ]; then
    mkdir -p "$1"
    system=$(realpath "$1")
  else
    system=$(mktemp -d "${TMPDIR:-/tmp}/xrf-bare.XXXXXX")
    trap 'rm -rf --one-file-system "$system"' EXIT
  fi
  # shellcheck disable=SC2016
  mirror=$(apt-get indextargets --format '$(REPO_URI) $(SUITE) $(COMPONENT)' 'Created-By: Packages' |
    awk -v suite=$suite '$2 == suite && $3 == "main" && !found { found = 1; print $1 }')
  eval "$(apt-config shell http_proxy Acquire::http::Proxy https_proxy Acquire::https::Proxy)"
  [ -z "${http_proxy-}" ] || export http_proxy
  [ -z "${https_proxy-}" ] || export https_proxy
  if [ ! -e "$system/etc/debian_version" ] || [ -d "$system/debootstrap" ]; then
    quietly build/logs/bare-debootstrap.log debootstrap --variant=minbase \
      --include=git,ca-certificates $suite "$system" ${mirror:+"$mirror"}
  fi
  apt-config dump | grep -E '^Acquire::https?::' >"$system/etc/apt/apt.conf.d/90host" || true
  cp -L /etc/resolv.conf /etc/hosts "$system/etc/"
}

# inside COMMAND runs a shell command in the system. The mounts live in a namespace of their own and
# end with it.
inside() {
  # shellcheck disable=SC2016
  unshare --mount --pid --fork bash -euc '
    mount -t proc proc "$1/proc"
    mount --rbind /dev "$1/dev"
    mount -t tmpfs -o mode=1777 tmpfs "$1/tmp"
    exec chroot "$1" env -i HOME=/root LANG=C.UTF-8 TERM=dumb \
      PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin bash -euc "$2"
  ' inside "$system" "$1"
}
