# bash completion for harbrixctl(1)                                        -*- shell-script -*-
#
# Commands, options, operands and choices are read from the program's own help, so that they are those of the
# program that is installed. Names of shares and settings come from the running program, if there is one.

# The commands, a line each: "mount", "settings get". The first one of the overview is short, so that its line shows
# in which column the summaries begin.
_harbrixctl_commands() {
    "$1" --help 2>/dev/null | awk '
        /^Commands:/ { inside = 1; next }
        inside && $0 == "" { exit }
        inside { if (!column) { match($0, /^ +[a-z-]+ +/); column = RLENGTH }
                 name = substr($0, 3, column - 3); sub(/ +$/, "", name); print name }'
}

# What may stand at operand number $3 (from 0) of the command $2 whose help is $1: "NAME|ID", "FILE" and so on.
_harbrixctl_operand() {
    local usage=${1%%$'\n'*} words word place=0
    usage=${usage#"Usage: harbrixctl $2"}
    read -ra words <<<"${usage//[][]/}"
    for word in "${words[@]}"; do
        [[ $word == OPTION* ]] && continue
        ((place++ == $3)) && printf '%s' "$word" && return
    done
}

_harbrixctl_shares() {
    local name
    # One share an object, indented by four; JSON escapes the quote and the backslash.
    "$1" list --json 2>/dev/null | sed -n 's/^        "name": "\(.*\)",\{0,1\}$/\1/p' | while IFS= read -r name; do
        name=${name//\\\"/\"}
        printf '%s\n' "${name//\\\\/\\}"
    done
}

# What the setting $2 takes, where that is a choice: "true or false", "one of a, b".
_harbrixctl_values() {
    "$1" settings list 2>/dev/null | awk -v key="$2" '
        $1 == key && /  true or false$/ { print "true\nfalse" }
        $1 == key && sub(/.*  one of /, "") { gsub(/, /, "\n"); print }'
}

# Puts those of the lines of $1 that continue the word before the cursor into COMPREPLY, quoted for the shell.
_harbrixctl_offer() {
    local typed=$2 quoted=yes candidate
    case $typed in
        [\"\']*) typed=${typed:1} quoted=no ;; # readline closes the quotes
        *) typed=${typed//\\/} ;;
    esac
    while IFS= read -r candidate; do
        [[ -n $candidate && $candidate == "$typed"* ]] || continue
        [[ $quoted == no ]] || printf -v candidate %q "$candidate"
        COMPREPLY+=("$candidate")
    done <<<"$1"
}

_harbrixctl_offer_files() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "$1" -- "$2")
}

# $1: program, $2: what the help calls the value, $3: the word before the cursor
_harbrixctl_offer_value() {
    case $2 in
        'NAME|ID') _harbrixctl_offer "$(_harbrixctl_shares "$1")" "$3" ;;
        KEY) _harbrixctl_offer "$("$1" settings list 2>/dev/null | sed -n '2,$s/ .*//p')" "$3" ;;
        VALUE) _harbrixctl_offer "$(_harbrixctl_values "$1" "${COMP_WORDS[COMP_CWORD - 1]}")" "$3" ;;
        FILE) _harbrixctl_offer_files -f "$3" ;;
        FOLDER) _harbrixctl_offer_files -d "$3" ;;
        *\|*) _harbrixctl_offer "${2//|/$'\n'}" "$3" ;;
    esac
}

_harbrixctl() {
    local program=$1 current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    local commands command=${COMP_WORDS[1]} operands=2 help
    commands=$(_harbrixctl_commands "$program")
    if ((COMP_CWORD == 1)); then
        _harbrixctl_offer "$(cut -d ' ' -f 1 <<<"$commands" | uniq)"$'\n--help\n--version' "$current"
        return
    fi
    if [[ $'\n'$commands == *$'\n'"$command "* ]]; then
        if ((COMP_CWORD == 2)); then
            _harbrixctl_offer "$(sed -n "s/^$command //p" <<<"$commands")" "$current"
            return
        fi
        command+=" ${COMP_WORDS[2]}" operands=3
    fi
    # An unknown command stands nowhere in the list.
    [[ $'\n'$commands$'\n' == *$'\n'"$command"$'\n'* ]] || return
    # shellcheck disable=SC2086 # two words are two arguments
    help=$("$program" $command --help 2>/dev/null) || return

    # "--option=value" comes as three words.
    [[ $current == = ]] && current='' previous=${COMP_WORDS[COMP_CWORD - 1]}
    [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
    local kind
    if [[ $previous == --* ]]; then
        kind=$(sed -n "s/^  $previous <\([^>]*\)>.*/\1/p" <<<"$help")
        [[ $previous != --mount-point ]] || kind=FOLDER
        if [[ -n $kind ]]; then
            _harbrixctl_offer_value "$program" "$kind" "$current"
            return
        fi
    fi
    if [[ $current == -* ]]; then
        _harbrixctl_offer "$(sed -n 's/^  \(-., \)\{0,1\}\(--[a-z][a-z-]*\).*/\2/p' <<<"$help")" "$current"
        return
    fi

    # Which operand this is: options and their values do not count.
    local word place=0 isValue=no
    for word in "${COMP_WORDS[@]:operands:COMP_CWORD-operands}"; do
        if [[ $word == --* ]]; then
            isValue=no
            [[ -z $(sed -n "/^  $word </p" <<<"$help") ]] || isValue=yes
        elif [[ $word == = ]]; then
            isValue=yes
        elif [[ $isValue == yes ]]; then
            isValue=no
        else
            ((++place))
        fi
    done
    _harbrixctl_offer_value "$program" "$(_harbrixctl_operand "$help" "$command" "$place")" "$current"
} && complete -F _harbrixctl harbrixctl
