# bash completion for plinket3-cli                         -*- shell-script -*-
# Commands and options come from the program's own help, so that there is no second list of them.
# compgen expands its words itself, hence the single quotes: names of files are not to be expanded a second time.
# shellcheck shell=bash disable=SC2016,SC2034,SC2207

_plinket3_cli() {
    local cur prev words cword split
    _init_completion -s || return

    local i program=${1/#\~\//$HOME/} commands engines command='' data=()
    commands=$("$program" --help 2>/dev/null | awk '/^Subcommands:/ { listed = 1; next } listed { print $1 }')
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            --data) data=(--data "${words[++i]}") ;;
            --data=*) data=("${words[i]}") ;;
            -*) ;;
            *)
                [[ -n $command || $'\n'$commands$'\n' != *$'\n'"${words[i]}"$'\n'* ]] || command=${words[i]}
                ;;
        esac
    done

    case $prev in
        --data)
            _filedir -d
            return
            ;;
        --rules)
            COMPREPLY=($(compgen -W 'auto kept engine' -- "$cur"))
            return
            ;;
        -e | --to)
            engines=$("$program" "${data[@]}" engines 2>/dev/null | sed 's/\.cfg\t.*//')
            COMPREPLY=($(compgen -W '$engines' -- "$cur"))
            return
            ;;
        --base)
            _filedir '@(deh|bex|wad)'
            return
            ;;
        --iwad | --data-wad)
            _filedir wad
            return
            ;;
        --lump | --thing | --weapon | --sprite)
            return
            ;;
    esac
    $split && return

    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W '$(_parse_help "$1") $(_parse_help "$1" "$command --help")' -- "$cur"))
        return
    fi
    case $command in
        '') COMPREPLY=($(compgen -W '$commands' -- "$cur")) ;;
        engines) ;;
        config) _filedir cfg ;;
        wad) _filedir wad ;;
        picture) _filedir '@(wad|ppm)' ;;
        uses | free | copy)
            _filedir '@(deh|bex|wad)'
            [[ $prev != "$command" ]] ||
                COMPREPLY+=($(compgen -W 'thing state sound sprite string weapon ammo action' -- "$cur"))
            ;;
        paste) _filedir ;;
        table) _filedir '@(deh|bex|wad|tbl)' ;;
        *) _filedir '@(deh|bex|wad)' ;;
    esac
} &&
    complete -F _plinket3_cli plinket3-cli
