# Completion of zupolicy for Bash. The tool itself answers what can follow, quoted for the place where it goes. Nothing of
# the line or of the answer is evaluated here.
_zupolicy() {
    local answer
    COMPREPLY=()
    while IFS= read -r answer; do
        if [[ $answer == $'\t'* ]]; then
            compopt -o default
        else
            COMPREPLY+=("${answer%%$'\t'*}")
        fi
    done < <(command zupolicy __complete line "${COMP_LINE:0:COMP_POINT}" "$COMP_WORDBREAKS" 2>/dev/null)
}
complete -o nosort -F _zupolicy zupolicy
