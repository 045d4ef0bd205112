# Screen and keyboard of a text console without a display server. Sourced by ./run; uses its $menu and $run_dir.

is_console() { tty | grep -q '^/dev/tty[0-9]'; }

# may_use GROUP FILE...: succeeds when this user may read and write one of the existing files; else says how to fix it.
may_use() {
    local group=$1 file there=
    shift
    for file in "$@"; do
        [ -e "$file" ] || continue
        [ ! -r "$file" ] || [ ! -w "$file" ] || return 0
        there=$file
    done
    [ -z "$there" ] ||
        say "$(id -un) may not use $there; to fix it: sudo usermod -aG $group $(id -un), then log in again"
    return 1
}

# Exports the Qt platform that finds a screen here; fails when none does. The radio paints in software, so the simplest
# way comes first: kernel mode setting with dumb buffers works with every driver, needs no OpenGL libraries, and the
# kernel restores the text console however the radio ends. eglfs is for drivers without dumb buffers, /dev/fb0 for kernels
# without mode setting.
choose_console_screen() {
    local connected card way size
    export QT_QPA_FB_HIDECURSOR=1 QT_QPA_EGLFS_HIDECURSOR=1
    # Qt leaves the terminal alone: Ctrl-C works, and a radio that was killed leaves nothing to restore.
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

# Keys typed on a console reach its terminal, too, even if the radio reads the keyboard. They are read from the terminal
# until the radio ends, so that no letter of a password reaches the shell or appears on the screen.
terminal_before=
take_terminal() {
    terminal_before=$(stty -g)
    stty -echo -icanon
    printf '\033[?25l'
    if may_use input /dev/input/event*; then
        # The console's layout; without it Qt would use the American one.
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
    [ "${QT_QPA_PLATFORM#linuxfb:}" = "$QT_QPA_PLATFORM" ] || printf '\033[2J\033[H' # here the kernel does not restore the text
    printf '\033[?25h'
    stty "$terminal_before"
    terminal_before=
}

# Reads keys from the console's terminal and sends them to the radio as remote keys.
terminal_keys() {
    local key more
    while IFS= read -rsN1 key; do
        if [ "$key" = $'\e' ]; then
            # Characters that follow at once belong to the key; nothing follows a lone Escape.
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
