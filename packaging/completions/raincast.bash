# SPDX-License-Identifier: MIT
# Completion of raincast for bash.
_raincast() {
    local cur prev words cword split
    _init_completion -s || return
    case $prev in
    --page-file | --screenshot | --loop)
        _filedir
        return
        ;;
    --product)
        COMPREPLY=($(compgen -W "N0R NCR N0Z N1P NTP N0V N0S" -- "$cur"))
        return
        ;;
    --nmea)
        COMPREPLY=($(compgen -W "serial: tcp: udp: gpsd: file:" -- "$cur"))
        [[ $COMPREPLY == *: ]] && compopt -o nospace
        return
        ;;
    --radar-server | --basemap-server)
        _known_hosts_real -- "$cur"
        return
        ;;
    --geometry | --live-arguments | --site | --welcome) return ;;
    esac
    $split && return
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "--page-file --geometry --screenshot --loop --nmea --radar-server
            --basemap-server --live-arguments --site --product --welcome --help --version" -- "$cur"))
    else
        _filedir raincast
    fi
} && complete -F _raincast raincast
