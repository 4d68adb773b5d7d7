# SPDX-License-Identifier: MIT
# Completion of raincast-server for bash.
_raincast_server() {
    local cur prev words cword split
    _init_completion -s || return
    case $prev in
    --level3 | --publish | --cache)
        _filedir -d
        return
        ;;
    --roads)
        _filedir
        return
        ;;
    --live-frames | --live-fallback | --live-warnings)
        COMPREPLY=($(compgen -W "none" -- "$cur"))
        return
        ;;
    --detail)
        COMPREPLY=($(compgen -W "1 2 4" -- "$cur"))
        return
        ;;
    --replay | --contact | --hours | --listen | --sites) return ;;
    esac
    $split && return
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "--sample --level3 --live --live-frames --live-fallback --live-warnings
            --replay --contact --hours --listen --publish --sites --once --detail --roads --cache
            --end-with-parent --quiet --help --version" -- "$cur"))
    elif ((cword == 1)); then
        COMPREPLY=($(compgen -W "render" -- "$cur"))
    else
        _filedir
    fi
} && complete -F _raincast_server raincast-server
