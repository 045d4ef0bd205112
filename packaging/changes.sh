# Changes that must outlive a power cut, as the radio and its owner make them: a station is renamed, a thumb is given, the
# volume is set. Sourced by packaging/check-cuts and, inside of the virtual machine, by packaging/check-image.
# Uses: radio COMMAND..., which runs a program as the radio's user; mark KIND NUMBER, called after each answer.

post() {
    exec 5<>/dev/tcp/127.0.0.1/7480
    printf 'POST /v1/%s HTTP/1.1\r\nHost: h\r\nConnection: close\r\nContent-Type: application/json\r\nAuthorization: Bearer %s\r\nContent-Length: %d\r\n\r\n%s' "$1" "$2" "${#3}" "$3" >&5
    cat <&5
    exec 5>&-
}
field() { grep -o "\"$1\":\"[^\"]*\"" | cut -d'"' -f4; }
# sign_in ACCOUNT: the file's account becomes the one whose station and tracks are changed: $songs are the tracks' names.
sign_in() {
    local partner answer
    partner=$(post partnerLogin x '{"deviceKey":"AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"}' | field partnerToken)
    user=$(post userLogin "$partner" "{\"loginType\":\"user\",\"userName\":\"$(sed -n 1p "$1")\",\"password\":\"$(sed -n 2p "$1")\"}" | field userToken)
    station=$(post getStationList "$user" '{}' | sed 's/{"allow/\n&/g' | grep '"allowRename":true' | field stationToken | head -n 1)
    answer=$(post getPlaylist "$user" "{\"stationToken\":\"$station\"}")
    mapfile -t songs < <(field songName <<<"$answer")
    mapfile -t tracks < <(field trackToken <<<"$answer")
    [ -n "$station" ] && [ "${#songs[@]}" -ge 3 ] && [ "${#songs[@]}" = "${#tracks[@]}" ] || { echo "no station with three tracks"; return 1; }
}
# change NUMBER: what each number changes is written in packaging/replay-cut.
change() {
    local up=false
    [ $(($1 / ${#songs[@]} % 2)) = 0 ] || up=true
    post renameStation "$user" "{\"stationToken\":\"$station\",\"newName\":\"cut $1\"}" | grep -q '"code":0' || return 1
    mark name "$1"
    post addFeedback "$user" "{\"trackToken\":\"${tracks[$1 % ${#songs[@]}]}\",\"isPositive\":$up}" | grep -q '"code":0' || return 1
    mark thumb "$1"
    radio velmora-menu set sound/volume $(($1 % 101)) >/dev/null || return 1
    mark volume "$1"
}
