# Completion of statpower for bash. Which words may stand next the program says itself, from its catalogue.
_statpower() {
    local word=${COMP_WORDS[COMP_CWORD]}
    mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" 2>/dev/null |
        cut -f 1)" -- "$word")
}
complete -o default -F _statpower statpower
