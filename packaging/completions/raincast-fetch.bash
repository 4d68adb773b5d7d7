# SPDX-License-Identifier: MIT
# Completion of raincast-fetch for bash.
_raincast_fetch() {
    local cur prev words cword split
    _init_completion -s || return
    case $prev in
    --cache)
        _filedir -d
        return
        ;;
    --radar-server)
        _known_hosts_real -- "$cur"
        return
        ;;
    --frames | --interval) return ;;
    esac
    $split && return
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "--frames --interval --cache --radar-server --no-warnings --quiet
            --verbose --help --version" -- "$cur"))
    else
        COMPREPLY=($(compgen -W "N0R NCR N0Z N1P NTP N0V N0S" -- "$cur"))
    fi
} && complete -F _raincast_fetch raincast-fetch
