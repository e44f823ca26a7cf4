# fish completion for xrf: the command itself knows what may follow.

function __xrf_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    for line in ($words[1] __complete $words[2..] "$typed" 2>/dev/null)
        if string match -q ':files*' -- $line
            for extension in (string split ' ' -- (string replace -r '^:files ?' '' -- $line))
                __fish_complete_suffix ".$extension"
            end
        else
            echo $line
        end
    end
end

complete -c xrf -f -a '(__xrf_complete)'
