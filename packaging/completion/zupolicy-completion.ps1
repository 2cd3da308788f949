# Completion of zupolicy for PowerShell. Put this line into the file that $PROFILE names:
#
#   . "C:\Program Files\zuPolicyManager\zupolicy-completion.ps1"
#
# The tool itself answers what can follow. Nothing of the line or of the answer is evaluated here.
Register-ArgumentCompleter -Native -CommandName zupolicy, zupolicy.exe -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)

    $before = @($commandAst.CommandElements | Select-Object -Skip 1 |
        Where-Object { $_.Extent.EndOffset -lt $cursorPosition } |
        ForEach-Object {
            if ($_ -is [System.Management.Automation.Language.StringConstantExpressionAst]) { $_.Value } else { $_.Extent.Text }
        })
    $current = $wordToComplete.Trim('"', "'")
    $encoding = [Console]::OutputEncoding
    try {
        [Console]::OutputEncoding = [System.Text.Encoding]::UTF8
        # An empty last argument may get lost on the way, so the number of words comes first.
        $answers = @(& zupolicy.exe __complete words $before.Count @before $current 2>$null)
    } finally {
        [Console]::OutputEncoding = $encoding
    }
    foreach ($answer in $answers) {
        $text, $description = $answer -split "`t", 2
        if ($text -eq '') {
            # PowerShell completes names of files when there is no answer.
            continue
        }
        $quoted = $text
        if ($text -notmatch '^[A-Za-z0-9_./\\:=-]+$') {
            $quoted = "'" + [System.Management.Automation.Language.CodeGeneration]::EscapeSingleQuotedStringContent($text) + "'"
        }
        if (-not $description) {
            $description = $text
        }
        [System.Management.Automation.CompletionResult]::new($quoted, $text, 'ParameterValue', $description)
    }
}
