# Completion of zupolicy for fish. The tool itself answers what can follow; fish selects and escapes.
function __zupolicy_complete
    set -l before (commandline --current-process --tokenize --cut-at-cursor)
    set -e before[1]
    set -l token (commandline --current-token --cut-at-cursor)
    # fish compares names with what was typed, by its own rules. The tool gets an option only, without quotes.
    set -l option (string match --regex -- '^--[a-z-]*=' $token)
    set -l current $option
    test -n "$option"; or set current (string match --regex -- '^-.*' $token)
    for answer in (command zupolicy __complete words (count $before) $before "$current" 2>/dev/null)
        if string match --quiet -- \t'*' $answer
            for file in (__fish_complete_path (string replace --regex -- '^--[a-z-]*=' '' $token))
                echo "$option$file"
            end
        else
            echo $answer
        end
    end
end
complete --command zupolicy --no-files --keep-order --arguments '(__zupolicy_complete)'
