# fish completion for colorio
function __colorio_complete
    set -l words (commandline -opc)
    set -l current (string unescape -- (commandline -ct); or commandline -ct)
    for answer in ($words[1] __complete fish $words[2..-1] "$current" 2>/dev/null)
        switch $answer
            case ':files'
                __fish_complete_path (commandline -ct)
            case ':folders'
                __fish_complete_directories (commandline -ct)
            case '*'
                string sub -s 2 -- $answer
        end
    end
end
complete -c colorio -f -a '(__colorio_complete)'
