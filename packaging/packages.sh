# Debian 12 packages by what they are needed for. Sourced by ./run, ./test and the package builder.
packages_build=(
    cmake ninja-build pkg-config g++ ccache lld
    qt6-base-dev qt6-base-dev-tools qt6-l10n-tools
    libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev
    libxcb1-dev libxcb-xkb-dev libxcb-randr0-dev
    libcurl4-openssl-dev libssl-dev nlohmann-json3-dev libboost1.81-dev libboost-locale1.81-dev gettext
    libsqlite3-dev libpq-dev libsodium-dev libutf8proc-dev libflac-dev libcairo2-dev
    libkissfft-dev libtag1-dev libsndfile1-dev libebur128-dev libturbojpeg0-dev libpng-dev libseccomp-dev libxxhash-dev
    libavformat-dev libavcodec-dev libswresample-dev libuchardet-dev prometheus-cpp-dev
    libqrencode-dev libavahi-client-dev
)
packages_run=(
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-alsa
    libqt6network6 xvfb
    fonts-liberation fonts-noto-core fonts-noto-cjk fonts-noto-color-emoji # names in every script
    alsa-utils
)
packages_speech=(speech-dispatcher speech-dispatcher-espeak-ng) # reads the focus aloud, where speech/enabled says so
packages_test=(postgresql libgtest-dev binutils xdotool iproute2 chromium chromium-driver firefox-esr dbus-daemon playerctl)
packages_pages=(npm) # tests of the pages fetch axe-core with it
packages_loudness=(ffmpeg python3) # tools/loudness
packages_artwork=(librsvg2-bin netpbm optipng)
packages_deploy=(nginx-light postgresql pgbouncer sqlite3 curl bc) # deploy/try
packages_deploy_store=(swift-proxy swift-account swift-container swift-object curl) # deploy/try-store
packages_tidy=(clang-format clang-tidy clang libclang-14-dev llvm-14-dev)
packages_fuzz=(clang libclang-rt-14-dev)
packages_package=(debhelper dpkg-dev libgtest-dev) # the last one to configure the contract tests
packages_package_check=(lintian mmdebstrap systemd iproute2)
packages_image=(mmdebstrap systemd-boot-efi squashfs-tools dosfstools mtools e2fsprogs fdisk binutils cpio)
packages_image_check=(qemu-system-x86 ovmf)
packages_image_cuts=(python3 python3-fusepy iproute2 e2fsprogs fdisk)
packages_arm=(g++-arm-linux-gnueabihf qemu-user)
packages_arm64=(g++-aarch64-linux-gnu qemu-user)

# install_missing PACKAGE...: installs the packages that are not installed yet. Uses the network only if one is missing.
install_missing() {
    local missing=() name
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            say "these packages are missing and there is no sudo; as root: apt-get install ${missing[*]}"
            return 1
        fi
        as_root=(sudo)
        say "installing ${#missing[@]} Debian packages with sudo: ${missing[*]}"
    else
        say "installing ${#missing[@]} Debian packages: ${missing[*]}"
    fi
    local log
    log=$(mktemp)
    # The first attempt may fail on a machine whose package lists were never fetched or are old.
    if "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}" >"$log" 2>&1 ||
        { "${as_root[@]}" apt-get update -q >>"$log" 2>&1 || true
          "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}" >>"$log" 2>&1; }; then
        rm -f "$log"
    else
        tail -n 20 "$log" >&2
        say "the packages could not be installed; the whole report: $log"
        return 1
    fi
}

# Reads ninja's output and shows the progress: one changing line on a terminal, else a line every hundred steps.
# Shows nothing if nothing is built; the check for new source files always runs and does not count.
show_building() {
    local preset=$1 line part step last='' begun=''
    while IFS= read -r line; do
        case $line in
        *'Re-checking globbed'*) continue ;;
        '['*/*']'*) ;;
        *) continue ;;
        esac
        [ -n "$begun" ] || say "building ($preset)"
        begun=1
        if [ -t 1 ]; then
            printf '\r\033[K%.100s' "$line"
            continue
        fi
        part=${line%%]*}
        part=${part#[}
        step=$((${part%/*} / 100))
        [ "$step" = "$last" ] && [ "${part%/*}" != "${part#*/}" ] || printf '%s\n' "$line"
        last=$step
    done
    [ -z "$begun" ] || [ ! -t 1 ] || printf '\r\033[K'
}

# build_preset NAME TARGET...: configures when needed and builds what is not up to date.
build_preset() {
    local preset=$1 log dir
    shift
    dir=build/$preset
    mkdir -p "$dir"
    log=$dir/build.log
    if [ ! -f "$dir/build.ninja" ] || [ CMakePresets.json -nt "$dir/build.ninja" ]; then
        say "configuring ($preset)"
        cmake --preset "$preset" >"$log" 2>&1 || { tail -n 40 "$log" >&2; return 1; }
    fi
    # The build ends when this script is killed.
    if NINJA_STATUS='[%f/%t] ' setpriv --pdeathsig TERM -- ninja -C "$dir" "$@" 2>&1 | tee "$log" |
        show_building "$preset"; then
        return 0
    fi
    grep -vE '^\[[0-9]+/[0-9]+\]' "$log" | tail -n 60 >&2
    say "the build failed; the whole report: $log"
    return 1
}
