# Completion of zupolicy for fish. The tool itself answers what can follow; fish selects and escapes.
function __zupolicy_complete
    set -l before (commandline --current-process --tokenize --cut-at-cursor)
    set -e before[1]
    set -l current (commandline --current-token --cut-at-cursor)
    # fish compares the beginnings of names by its own rules; only options are the tool's.
    string match --quiet -- '-*' $current; or set current ''
    for answer in (command zupolicy __complete words (count $before) $before "$current" 2>/dev/null)
        if string match --quiet -- \t'*' $answer
            set -l option (string match --regex -- '^--[^=]*=' $current)
            for file in (__fish_complete_path (string replace --regex -- '^--[^=]*=' '' (commandline --current-token --cut-at-cursor)))
                echo "$option$file"
            end
        else
            echo $answer
        end
    end
end
complete --command zupolicy --no-files --keep-order --arguments '(__zupolicy_complete)'
