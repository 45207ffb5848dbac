# Completes the words of brimley, brimley-console and brimley-company in bash. What there is to offer the programs say
# themselves: their --help is read.

# _brimley_section TITLE: the first words of the items below that title in the help text on standard input.
_brimley_section() {
    sed -nE "/^$1:/,/^\$/s/^  ([^ ]+).*/\\1/p"
}

_brimley_offer() {
    mapfile -t COMPREPLY < <(compgen "$@" -- "${COMP_WORDS[COMP_CWORD]}")
}

_brimley() {
    local help commands command='' word valued place=0 skip='' positionals
    COMPREPLY=()
    help=$("$1" --help 2>/dev/null) || return
    commands=$(_brimley_section Subcommands <<<"$help")
    local -a before=("${COMP_WORDS[@]:1:COMP_CWORD-1}")
    if [ -n "$commands" ]; then
        for word in "${before[@]}"; do
            grep -qxF -- "$word" <<<"$commands" && command=$word && break
        done
        # The commands themselves are offered where none stands yet.
        [ -z "$command" ] || help=$("$1" "$command" --help 2>/dev/null) || return
    fi

    case ${COMP_WORDS[COMP_CWORD]} in
    -*)
        _brimley_offer -W "$(_brimley_section Options <<<"$help" | sed 's/^-h,//')"
        return
        ;;
    esac
    if [ -n "$commands" ] && [ -z "$command" ]; then
        _brimley_offer -W "$commands"
        return
    fi

    # Which of the positionals is typed; the value of an option is none.
    valued=$(sed -nE 's/^  (--[a-z-]+) [A-Z]+([ =].*|$)/\1/p' <<<"$help")
    for word in "${before[@]}"; do
        case $skip$word in
        -*) grep -qxF -- "$word" <<<"$valued" && skip=value ;;
        "$command" | value*) skip= ;;
        *) place=$((place + 1)) ;;
        esac
    done
    if [ -n "$skip" ]; then
        [ "$3" != --path ] || _brimley_offer -d
        return
    fi
    mapfile -t positionals < <(_brimley_section Positionals <<<"$help")
    case ${positionals[place]:-} in
    COMPANY)
        _brimley_offer -d
        local -a folders=("${COMPREPLY[@]}")
        _brimley_offer -f -X '!*.brimley'
        COMPREPLY=("${folders[@]}" "${COMPREPLY[@]}")
        ;;
    DIR) _brimley_offer -d ;;
    esac
}

complete -o filenames -o default -F _brimley brimley brimley-console brimley-company
