# Completion of zorvela-kit in fish. Sub-commands, options and values are those that the program lists.
complete -c zorvela-kit -n __fish_use_subcommand -l help
complete -c zorvela-kit -n __fish_use_subcommand -l version
for row in (zorvela-kit --list-options 2>/dev/null)
    set -l cells (string split \t -- $row)
    complete -c zorvela-kit -n __fish_use_subcommand -f -a $cells[1]
    set -l option -c zorvela-kit -n "__fish_seen_subcommand_from $cells[1]" -d $cells[6]
    for name in (string split , -- $cells[2])
        switch $name
            case '--*'
                set -a option -l (string sub -s 3 -- $name)
            case '-*'
                set -a option -s (string sub -s 2 -- $name)
        end
    end
    if string match -q '*{*' -- $cells[3]
        set -a option -x -a (string replace -ra '.*\{|\}' '' -- $cells[3] | string replace -a , ' ')
    else if test -n "$cells[3]"
        set -a option -r
    end
    complete $option
end
