# NOT RUN by this project's tests: they run under Wine, which has no PowerShell here. Written against the type library.
#
#   powershell -File policy.ps1 <policy file> <file to write>          (64-bit, with the component registered)
param([string] $Source, [string] $Target)

# A method or property by its name. The members that list names are additional ones: the object's type information, which
# PowerShell reads, describes the released interface and lacks them.
function Invoke-Member($Object, [string] $Name, [object[]] $Arguments = @()) {
    $kind = [Reflection.BindingFlags]::InvokeMethod -bor [Reflection.BindingFlags]::GetProperty
    , [System.__ComObject].InvokeMember($Name, $kind, $null, $Object, $Arguments)
}

# The names of one of the component's collections; an empty one gives none.
function Get-Names($Object, [string] $Name, [object[]] $Arguments = @()) {
    $names = Invoke-Member $Object $Name $Arguments
    $count = Invoke-Member $names 'Count'
    for ($i = 0; $i -lt $count; ++$i) {
        Invoke-Member $names 'Item' @($i)
    }
}

# The component's own error: calls wrap it in a MethodInvocationException, calls by name in a TargetInvocationException
# as well. Nothing for an error of another kind.
function Get-ComponentError($Exception) {
    while ($Exception -and $Exception -isnot [System.Runtime.InteropServices.COMException]) {
        $Exception = $Exception.InnerException
    }
    $Exception
}

function Show-Policies($File) {
    foreach ($softwareID in @(Get-Names $File 'PolicyIDs')) {
        "policy $softwareID"
        $policy = $File.GetPolicy($softwareID)
        foreach ($section in @(Get-Names $policy 'SectionNames')) {
            "  [$section]"
            foreach ($name in @(Get-Names $policy 'GetSettingNames' @($section))) {
                "    $name=" + (Invoke-Member $policy 'GetStoredSetting' @($section, $name))
            }
        }
    }
}

function Show-Tasks($File) {
    foreach ($softwareID in @(Get-Names $File 'TaskSoftwareIDs')) {
        foreach ($taskID in @(Get-Names $File 'GetTaskIDs' @($softwareID))) {
            "task $softwareID $taskID"
        }
    }
}

try {
    $file = New-Object -ComObject ZuPolicyManager.PolicyFile
    $file.InitializeFile($Source, 0)

    $policy = $file.GetPolicy('PRODUCTA1000')
    $policy.GetSectionSetting('General', 'ScanInterval')
    $policy.PutSectionSetting('General', 'ScanInterval', '15')
    $file.AddPolicy($policy, 1)

    $task = $file.CreateTask()
    $task.SoftwareID = 'PRODUCTA1000'
    $task.TaskID = '{task-9}'
    $task.Priority = 3
    $task.PutSectionSetting('Schedule', 'Hour', '4')
    $file.AddTask($task, 0)

    Show-Policies $file
    Show-Tasks $file
    $file.WriteFile($Target, 0)
} catch {
    $componentError = Get-ComponentError $_.Exception
    if (-not $componentError) { throw }
    # The component's result code, and the sentence for it.
    [Console]::Error.WriteLine("$($componentError.ErrorCode): $($componentError.Message)")
    exit 1
}
