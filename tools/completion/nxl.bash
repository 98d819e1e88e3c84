# shellcheck shell=bash
# Completion of nxl's programs. Options and their values are those of the program's own --help:
#   --name word|word|FILE.ending   words in lower case are offered, FILE and endings stand for files
#   Families:, ... for --name:     words to offer, up to a colon, two blanks or more before what they mean

_nxl_offer() { mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen "$@" -- "$word"); }

# _nxl_list HEADING, a regular expression
_nxl_list() {
    _nxl_offer -W "$(awk -v heading="^$1\$" '
        $0 ~ heading { inside = 1; next }
        inside && !/^  / { exit }
        inside && /^  [a-z][a-z0-9]*(:[^ ]*)?  / { sub(/:.*/, ":", $1); print $1 }' <<<"$help")"
}

# _nxl_values WORD|WORD...
_nxl_values() {
    local value ending
    for value in ${1//|/ }; do
        ending=${value#FILE}
        case $value in
        FILE) _nxl_offer -f ;;
        FILE.* | .[a-z]*)
            [[ $ending != .so ]] || ending='.so*'
            _nxl_offer -f -X "!*$ending"
            _nxl_offer -d
            ;;
        [a-z]*)
            _nxl_offer -W "$value"
            continue
            ;;
        *) continue ;;
        esac
        compopt -o filenames 2>/dev/null # quotes blanks in names, and goes on behind a folder
    done
}

_nxl() {
    local IFS=$' \t\n' help rows value
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    [[ $word != = ]] || word='' # --name=value comes as three words
    [[ $before != = ]] || before=${COMP_WORDS[COMP_CWORD - 2]}
    COMPREPLY=()
    help=$("$1" --help 2>/dev/null) || return 0
    # A name and its values on each row; what the two leave free of the line explains them.
    rows=$(awk '/^  [-A-Z]/ { sub(/^  /, ""); sub(/  .*/, ""); sub(/^-[a-z],/, ""); print $1, $2 }' <<<"$help")
    value=$(awk -v name="$before" '$1 == name && $2 !~ /:$/ { print $2 }' <<<"$rows")
    if [[ $before == --* && -n $value ]]; then
        _nxl_values "$value"
        _nxl_list ".* for $before:"
    elif [[ $word == -* ]]; then
        _nxl_offer -W "$(awk '/^-/ { print $1 }' <<<"$rows")"
    else
        _nxl_values "$(awk '/^[A-Z]/ { print $2 }' <<<"$rows")"
        _nxl_list Families:
    fi
    # A value such as heat3d:N goes on behind its colon.
    [[ ${#COMPREPLY[@]} -ne 1 || ${COMPREPLY[0]} != *: ]] || compopt -o nospace 2>/dev/null
}

complete -F _nxl nxl-bench nxl-eig nxl-fir nxl-fit nxl-info nxl-solve
