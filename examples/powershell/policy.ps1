# NOT RUN by this project's tests: they run under Wine, which has no PowerShell here. Written against the type library.
#
#   powershell -File policy.ps1 <policy file> <file to write>          (64-bit, with the component registered)
param([string] $Source, [string] $Target)

$file = New-Object -ComObject ZuPolicyManager.PolicyFile
try {
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

    # Both identifiers come back through references; the end of the list is an error.
    $tasks = $file.GetTaskInfo()
    $softwareID = ''
    $taskID = ''
    try {
        $tasks.GetFirst([ref] $softwareID, [ref] $taskID)
        while ($true) {
            "$softwareID $taskID"
            $tasks.GetNext([ref] $softwareID, [ref] $taskID)
        }
    } catch [System.Runtime.InteropServices.COMException] {
        if ($_.Exception.HResult -ne -1112) { throw }
    }

    $file.WriteFile($Target, 0)
} catch [System.Runtime.InteropServices.COMException] {
    # The component's result code, and the sentence for it.
    Write-Error "$($_.Exception.HResult): $($_.Exception.Message)"
    exit 1
}
