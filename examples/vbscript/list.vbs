' Writes a whole policy file as a list: every policy and task with its sections and settings, as the file holds them.
'
'   cscript //nologo list.vbs <policy file> <text file to write>
'
' The text file is UTF-16, because a console shows only the characters of its code page.
Option Explicit

Dim output
Set output = CreateObject("Scripting.FileSystemObject").CreateTextFile(WScript.Arguments(1), True, True)

Sub WriteSections(entry)
    Dim section, name
    For Each section In entry.SectionNames
        output.WriteLine "  [" & section & "]"
        For Each name In entry.GetSettingNames(section)
            output.WriteLine "    " & name & "=" & entry.GetStoredSetting(section, name)
        Next
    Next
End Sub

Sub WritePolicies(file)
    Dim id, policy
    For Each id In file.PolicyIDs
        Set policy = file.GetPolicy(id)
        output.WriteLine "policy " & id & ", version " & policy.TakenVersion
        WriteSections policy
    Next
End Sub

Sub WriteTasks(file)
    Dim softwareID, taskID, task
    For Each softwareID In file.TaskSoftwareIDs
        For Each taskID In file.GetTaskIDs(softwareID)
            Set task = file.GetTask(softwareID, taskID)
            output.WriteLine "task " & softwareID & " " & taskID & ", version " & task.TakenVersion
            output.WriteLine "  " & task.DisplayName & ", " & task.TaskType & ", " & task.PlatformsSupported & ", " & _
                task.Priority & ", " & task.CreatorID
            WriteSections task
        Next
    Next
End Sub

Dim file
Set file = CreateObject("ZuPolicyManager.PolicyFile")
file.InitializeFile WScript.Arguments(0), 1
WritePolicies file
WriteTasks file
output.Close
WScript.Echo "done"
