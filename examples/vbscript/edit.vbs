' Edits every policy and task of a policy file, in place and in turn with other editors: each policy gets a setting, each
' task a priority that is higher by one.
'
'   cscript //nologo edit.vbs <policy file>
Option Explicit

Const LockTimeout = 10000 ' milliseconds

' A collection does not change while the file does: it holds the names as they were when it was asked for.
Sub EditPolicies(file)
    Dim id, policy
    For Each id In file.PolicyIDs
        Set policy = file.GetPolicy(id)
        policy.PutSectionSetting "General", "EditedBy", "edit.vbs"
        file.AddPolicy policy, 1
    Next
End Sub

Sub EditTasks(file)
    Dim softwareID, taskID, task
    For Each softwareID In file.TaskSoftwareIDs
        For Each taskID In file.GetTaskIDs(softwareID)
            Set task = file.GetTask(softwareID, taskID)
            task.Priority = task.Priority + 1
            file.AddTask task, 1
        Next
    Next
End Sub

Dim file
Set file = CreateObject("ZuPolicyManager.PolicyFile")
file.OpenForEdit WScript.Arguments(0), LockTimeout
EditPolicies file
EditTasks file

' -1302: something that takes no lock changed the file meanwhile. The file is as that left it.
On Error Resume Next
file.CommitEdit 0
If Err.Number <> 0 Then
    WScript.Echo "edit.vbs: " & Err.Number & ": " & Err.Description
    WScript.Quit 1
End If
On Error GoTo 0
WScript.Echo "done"
