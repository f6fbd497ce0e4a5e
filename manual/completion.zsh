#compdef colorio
# zsh completion for colorio
_colorio() {
    local answer program=${(Q)words[1]}
    local -a before answers names
    before=("${(@Q)words[2,CURRENT-1]}")
    answers=("${(@f)$($program __complete zsh $before "${(Q)PREFIX}" 2>/dev/null)}")
    for answer in $answers; do
        case $answer in
        :files) _files ;;
        :folders) _files -/ ;;
        '='*) names+=("${answer[2,-1]}") ;;
        esac
    done
    compadd -a names
}
_colorio "$@"
