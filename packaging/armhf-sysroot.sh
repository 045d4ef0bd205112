#!/bin/bash
# Unpacks what the radio needs of Debian 12 for 32-bit ARM into a folder, for cross builds. No root, no emulation and
# no maintainer scripts; this machine's own package database is neither read nor written.
#
# usage: packaging/armhf-sysroot.sh SYSROOT CACHE
#   SYSROOT  created; an existing folder is replaced
#   CACHE    keeps the downloaded packages; with OFFLINE=1 nothing else is used
# MIRROR: a Debian mirror; when not given, the one this machine installs from.
set -euo pipefail
sysroot=${1:?usage: armhf-sysroot.sh SYSROOT CACHE}
cache=${2:?usage: armhf-sysroot.sh SYSROOT CACHE}
suite=bookworm
mirror=${MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' "Codename: $suite" 'Component: main' | head -n 1)}
[ -n "$mirror" ] || { echo "armhf-sysroot: this machine names no Debian mirror; set MIRROR" >&2; exit 1; }
packages=(
    libc6-dev libstdc++-12-dev
    qt6-base-dev qt6-qpa-plugins libqt6network6
    libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev gstreamer1.0-plugins-base gstreamer1.0-plugins-good
    libxcb1-dev libxcb-xkb-dev libxcb-randr0-dev
    libcurl4-openssl-dev libssl-dev nlohmann-json3-dev libboost1.81-dev
    libsqlite3-dev libsodium-dev libutf8proc-dev libseccomp-dev libgtest-dev
    libavformat-dev libavcodec-dev libavutil-dev libswresample-dev libtag1-dev libsndfile1-dev libuchardet-dev
    libturbojpeg0-dev libpng-dev libebur128-dev libkissfft-dev libxxhash-dev
    libflac-dev libcairo2-dev
    fonts-liberation
)
# Dependencies that are needed neither for linking nor for running tests.
unwanted=(perl perl-base 'perl-modules-*' 'libperl5.*' 'python3*' 'libpython3*' dpkg dpkg-dev tar passwd adduser debconf
    libllvm15 libgl1-mesa-dri qmake6-bin 'gir1.2-*')

mkdir -p "$cache/debs/partial"
cache=$(readlink -f "$cache")
root=$cache/apt
mkdir -p "$root"/etc/apt/{apt.conf.d,preferences.d,sources.list.d,trusted.gpg.d} \
    "$root"/var/lib/apt/lists/partial "$root"/var/lib/dpkg "$root"/var/cache/apt
: >"$root/var/lib/dpkg/status"
echo "deb [arch=armhf signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror $suite main" >"$root/etc/apt/sources.list"
cat >"$root/apt.conf" <<CONF
Dir "$root";
Dir::State "$root/var/lib/apt";
Dir::State::status "$root/var/lib/dpkg/status";
Dir::Cache "$root/var/cache/apt";
Dir::Cache::archives "$cache/debs";
Dir::Cache::pkgcache "";
Dir::Cache::srcpkgcache "";
Dir::Etc "$root/etc/apt";
Dir::Etc::main "/dev/null";
Dir::Etc::parts "$root/etc/apt/apt.conf.d";
APT::Architecture "armhf";
APT::Architectures { "armhf"; };
APT::Install-Recommends "false";
APT::Sandbox::User "root";
Acquire::Languages "none";
Acquire::GzipIndexes "true";
Acquire::Retries "3";
CONF
if [ -z "${OFFLINE:-}" ]; then
    APT_CONFIG=$root/apt.conf apt-get -q update
    APT_CONFIG=$root/apt.conf apt-get -q -y --download-only --no-install-recommends install "${packages[@]}"
fi

rm -rf "$sysroot"
mkdir -p "$sysroot"/usr/{lib,bin,sbin}
sysroot=$(readlink -f "$sysroot")
# Debian 12 has one /usr; unpacking must not replace these links by folders.
for folder in lib bin sbin; do ln -s "usr/$folder" "$sysroot/$folder"; done
for deb in "$cache"/debs/*.deb; do
    name=${deb##*/}
    name=${name%%_*}
    for pattern in "${unwanted[@]}"; do
        # shellcheck disable=SC2053 -- patterns
        [[ $name == $pattern ]] && continue 2
    done
    dpkg-deb --fsys-tarfile "$deb" | tar -x -C "$sysroot" --keep-directory-symlink --no-same-owner \
        --exclude=./usr/share/{doc,man,locale,gir-1.0,icons,gtk-doc,bug,lintian} --exclude='./usr/share/perl*' \
        --exclude='./var/*'
done
# An absolute link would lead out of the folder, and the linker would silently take a static library instead.
find "$sysroot" -type l -lname '/*' -printf '%P\t%l\n' |
    while IFS=$'\t' read -r path target; do ln -sfnr "$sysroot$target" "$sysroot/$path"; done
test -e "$sysroot/lib/ld-linux-armhf.so.3"
