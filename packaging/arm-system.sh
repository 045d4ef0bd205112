#!/bin/bash
# Unpacks what the radio needs of Debian 12 for ARM into a folder, for cross builds. No root, no emulation and no
# maintainer scripts; this machine's own package database is neither read nor written.
#
# usage: packaging/arm-system.sh armhf|arm64 FOLDER
#   FOLDER/system   the system: replaced in one step when it is complete, left as it is while it is up to date
#   FOLDER/debs     the downloaded packages; a run that was broken off goes on with them
# MIRROR: a Debian mirror; when not given, the one this machine installs from.
set -euo pipefail
usage='usage: arm-system.sh armhf|arm64 FOLDER'
architecture=${1:?$usage}
folder=${2:?$usage}
case $architecture in
armhf) loader=lib/ld-linux-armhf.so.3 ;;
arm64) loader=lib/ld-linux-aarch64.so.1 ;;
*) echo "$usage" >&2; exit 2 ;;
esac
say() { printf 'arm-system: %s\n' "$*"; }
suite=bookworm
packages=(
    libc6-dev libstdc++-12-dev
    qt6-base-dev qt6-qpa-plugins libqt6network6
    libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev gstreamer1.0-plugins-base gstreamer1.0-plugins-good
    libxcb1-dev libxcb-xkb-dev libxcb-randr0-dev
    libcurl4-openssl-dev libssl-dev nlohmann-json3-dev libboost1.81-dev libboost-locale1.81-dev
    libsqlite3-dev libpq-dev libsodium-dev libutf8proc-dev libseccomp-dev libgtest-dev
    libavformat-dev libavcodec-dev libavutil-dev libswresample-dev libtag1-dev libsndfile1-dev libuchardet-dev
    libturbojpeg0-dev libpng-dev libebur128-dev libkissfft-dev libxxhash-dev
    prometheus-cpp-dev libqrencode-dev libavahi-client-dev
    libflac-dev libcairo2-dev
    fonts-liberation
)
# Dependencies that are needed neither for linking nor for running tests.
unwanted=(perl perl-base 'perl-modules-*' 'libperl5.*' 'python3*' 'libpython3*' dpkg dpkg-dev tar passwd adduser debconf
    libllvm15 libgl1-mesa-dri qmake6-bin 'gir1.2-*')

system=$folder/system
made_by=$(sha256sum "${BASH_SOURCE[0]}")
made_by="$architecture ${made_by%% *}"
if [ "$(cat "$system/made-by" 2>/dev/null)" = "$made_by" ]; then
    exit 0
fi
mkdir -p "$folder/debs/partial"
folder=$(readlink -f "$folder")
system=$folder/system
exec 8>"$folder/lock"
flock 8
[ "$(cat "$system/made-by" 2>/dev/null)" != "$made_by" ] || exit 0 # another run has made it meanwhile

mirror=${MIRROR:-$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' "Codename: $suite" 'Component: main' | head -n 1)}
[ -n "$mirror" ] || { say "this machine names no Debian mirror; set MIRROR" >&2; exit 1; }
say "fetching Debian 12 for $architecture into $folder"
root=$folder/apt
mkdir -p "$root"/etc/apt/{apt.conf.d,preferences.d,sources.list.d,trusted.gpg.d} \
    "$root"/var/lib/apt/lists/partial "$root"/var/lib/dpkg "$root"/var/cache/apt
: >"$root/var/lib/dpkg/status"
echo "deb [arch=$architecture signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror $suite main" >"$root/etc/apt/sources.list"
cat >"$root/apt.conf" <<CONF
Dir "$root";
Dir::State "$root/var/lib/apt";
Dir::State::status "$root/var/lib/dpkg/status";
Dir::Cache "$root/var/cache/apt";
Dir::Cache::archives "$folder/debs";
Dir::Cache::pkgcache "";
Dir::Cache::srcpkgcache "";
Dir::Etc "$root/etc/apt";
Dir::Etc::main "/dev/null";
Dir::Etc::parts "$root/etc/apt/apt.conf.d";
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Install-Recommends "false";
APT::Sandbox::User "root";
Acquire::Languages "none";
Acquire::GzipIndexes "true";
Acquire::Retries "3";
CONF
export APT_CONFIG=$root/apt.conf
{ apt-get -q update && apt-get -q -y --download-only --no-install-recommends install "${packages[@]}"; } >"$folder/log" 2>&1 ||
    { tail -n 20 "$folder/log" >&2; say "the packages could not be fetched; the whole report: $folder/log" >&2; exit 1; }
# Of packages that were fetched before, only those that belong to this system.
mapfile -t debs < <(apt-get -q -y --print-uris --no-install-recommends install "${packages[@]}" --reinstall \
    -o Dir::Cache::archives="$root/none" | sed -n "s/^'[^']*' \([^ ]*\.deb\) .*/\1/p")
[ ${#debs[@]} -gt 0 ] || { say "no package was found" >&2; exit 1; }

fresh=$folder/system.new
rm -rf "$fresh"
mkdir -p "$fresh"/usr/{lib,bin,sbin}
# Debian 12 has one /usr; unpacking must not replace these links by folders.
for name in lib bin sbin; do ln -s "usr/$name" "$fresh/$name"; done
for deb in "${debs[@]}"; do
    name=${deb%%_*}
    for pattern in "${unwanted[@]}"; do
        # shellcheck disable=SC2053 -- patterns
        [[ $name == $pattern ]] && continue 2
    done
    dpkg-deb --fsys-tarfile "$folder/debs/$deb" | tar -x -C "$fresh" --keep-directory-symlink --no-same-owner \
        --exclude=./usr/share/{doc,man,locale,gir-1.0,icons,gtk-doc,bug,lintian} --exclude='./usr/share/perl*' \
        --exclude='./var/*'
done
# An absolute link would lead out of the folder, and the linker would silently take a static library instead.
find "$fresh" -type l -lname '/*' -printf '%P\t%l\n' |
    while IFS=$'\t' read -r path target; do ln -sfnr "$fresh$target" "$fresh/$path"; done
test -e "$fresh/$loader"
echo "$made_by" >"$fresh/made-by"
rm -rf "$system"
mv "$fresh" "$system"
