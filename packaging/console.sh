# A text console without a display server: the way to its screen, and its keyboard. Sourced by ./run, whose $menu and
# $run_dir it uses.

is_console() { tty | grep -q '^/dev/tty[0-9]'; }

# may_use GROUP FILE...: whether this user may read and write one of the files that are there; else says what mends it.
may_use() {
    local group=$1 file there=
    shift
    for file in "$@"; do
        [ -e "$file" ] || continue
        [ ! -r "$file" ] || [ ! -w "$file" ] || return 0
        there=$file
    done
    [ -z "$there" ] ||
        say "$(id -un) may not use $there; this mends it: sudo usermod -aG $group $(id -un), then log in again"
    return 1
}

# Exports the platform that gives a screen here; fails when none does. The radio paints with the processor, so the
# plainest way comes first: the kernel's mode setting with plain buffers works with every driver, spares the OpenGL
# libraries, and the kernel itself brings the text back when the radio ends, however it ends. eglfs is for drivers that
# have no plain buffers, /dev/fb0 for kernels that have nothing else.
choose_console_screen() {
    local connected card way size
    export QT_QPA_FB_HIDECURSOR=1 QT_QPA_EGLFS_HIDECURSOR=1
    # Qt leaves the terminal alone: Ctrl-C is heard, and a radio that was killed leaves nothing to be put right.
    export QT_QPA_ENABLE_TERMINAL_KEYBOARD=1 QT_QPA_PRESERVE_CONSOLE_STATE=1
    export QT_QPA_KMS_CONFIG=$run_dir/screen.json QT_QPA_EGLFS_KMS_CONFIG=$run_dir/screen.json
    for connected in $(grep -lx connected /sys/class/drm/card*-*/status 2>/dev/null); do
        card=${connected#/sys/class/drm/}
        card=/dev/dri/${card%%-*}
        may_use video "$card" || continue
        printf '{ "device": "%s", "hwcursor": false }\n' "$card" >"$QT_QPA_KMS_CONFIG"
        for way in linuxfb eglfs; do
            export QT_QPA_PLATFORM=$way QT_QPA_FB_DRM=1
            size=$(timeout 60 "$menu" --measure-screen 2>/dev/null) || continue
            say "drawing to the console's screen, $size ($card by $way)"
            return 0
        done
    done
    unset QT_QPA_FB_DRM QT_QPA_KMS_CONFIG QT_QPA_EGLFS_KMS_CONFIG
    may_use video /dev/fb0 || return 1
    export QT_QPA_PLATFORM=linuxfb:fb=/dev/fb0:nographicsmodeswitch
    size=$(timeout 60 "$menu" --measure-screen 2>/dev/null) || return 1
    say "drawing to the console's screen, $size (/dev/fb0)"
}

# What is typed on a console reaches its terminal too, whoever else hears the keyboard. It is read from there until
# the radio ends, so that no letter of a password waits for the shell, and none appears in the picture.
terminal_before=
take_terminal() {
    terminal_before=$(stty -g)
    stty -echo -icanon
    printf '\033[?25l'
    if may_use input /dev/input/event*; then
        # The layout that the console has; the letters of a keyboard that Qt reads itself would be American.
        if [ -r /etc/default/keyboard ]; then
            export XKB_DEFAULT_LAYOUT XKB_DEFAULT_VARIANT
            XKB_DEFAULT_LAYOUT=$(. /etc/default/keyboard && printf %s "${XKBLAYOUT:-}")
            XKB_DEFAULT_VARIANT=$(. /etc/default/keyboard && printf %s "${XKBVARIANT:-}")
        fi
        cat </dev/tty >/dev/null 2>&1 9>&- &
    else
        say "until then the terminal's own keys are the remote control"
        terminal_keys </dev/tty >/dev/null 2>&1 9>&- &
    fi
    terminal_reader=$!
}

give_terminal_back() {
    [ -n "$terminal_before" ] || return 0
    kill -TERM "$terminal_reader" 2>/dev/null || true
    wait "$terminal_reader" 2>/dev/null || true
    while read -rs -t 0.01 -n 1000; do :; done </dev/tty
    [ "${QT_QPA_PLATFORM#linuxfb:}" = "$QT_QPA_PLATFORM" ] || printf '\033[2J\033[H' # no kernel takes the picture away
    printf '\033[?25h'
    stty "$terminal_before"
    terminal_before=
}

# A console's keys as they arrive in its terminal, sent to the radio as the remote's.
terminal_keys() {
    local key more
    while IFS= read -rsN1 key; do
        if [ "$key" = $'\e' ]; then
            # What follows at once belongs to it; a lone Escape is followed by nothing.
            while IFS= read -rsN1 -t 0.02 more; do
                key+=$more
                [[ $key =~ ^$'\e'(\[\[?[A-Z]|\[[0-9]+~)$ ]] && break
            done
        fi
        case $key in
        $'\e[A') key=up ;;
        $'\e[B') key=down ;;
        $'\e[C') key=right ;;
        $'\e[D') key=left ;;
        $'\n') key=enter ;;
        $'\e') key=escape ;;
        $'\177') key=backspace ;;
        $'\e[3~') key=delete ;;
        $'\e[1~') key=home ;;
        $'\e[4~') key=end ;;
        $'\e[5~') key=pageup ;;
        $'\e[6~') key=pagedown ;;
        $'\e[[A') key=red ;;
        $'\e[[B') key=green ;;
        $'\e[[C') key=yellow ;;
        $'\e[[D') key=blue ;;
        [[:print:]]) "$menu" key text "$key" && continue ;;
        *) continue ;;
        esac
        "$menu" key "$key" || true
    done
}
