# bash completion for colorio: https://www.gnu.org/software/bash/manual/html_node/Programmable-Completion.html
_colorio() {
    local answer
    COMPREPLY=()
    while IFS= read -r answer; do
        case $answer in
        :files) compopt -o default ;;
        :folders) compopt -o dirnames ;;
        *) COMPREPLY+=("${answer:1}") ;;
        esac
    done < <("${1/#\~\//$HOME/}" __complete bash "${COMP_LINE:0:COMP_POINT}" "$COMP_WORDBREAKS" 2>/dev/null)
}
complete -F _colorio colorio
