' Loads a policy file, lists everything that it has, changes a product policy and a task, adds a new task, lists the tasks,
' dumps one into an INI file, writes the policy file and reads it back.
'
'   cscript //nologo policy.vbs <policy file> <file to write> <INI file to write>
'
' A failing call raises an error: Err.Number is the result code and Err.Description is its sentence.
Option Explicit

Const EndOfList = -1112

Dim source, target, iniFile
source = WScript.Arguments(0)
target = WScript.Arguments(1)
iniFile = WScript.Arguments(2)

Sub Expect(what, actual, expected)
    If actual <> expected Then
        WScript.Echo "FAILED " & what & ": got '" & actual & "', expected '" & expected & "'"
        WScript.Quit 1
    End If
    WScript.Echo "ok " & what
End Sub

Function OpenFile(path)
    Set OpenFile = CreateObject("ZuPolicyManager.PolicyFile")
    OpenFile.InitializeFile path, 0
End Function

' Every section of a product policy or task with its settings. Without macros, a value is read as it is stored.
Function ListSettings(entry)
    Dim section, name, list
    For Each section In entry.SectionNames
        list = list & "[" & section & "] "
        For Each name In entry.GetSettingNames(section)
            list = list & name & " "
            If entry.GetStoredSetting(section, name) <> entry.GetSectionSetting(section, name) Then list = list & "differs! "
        Next
    Next
    ListSettings = list
End Function

' The whole file: the product policies, then the tasks.
Function ListFile(file)
    Dim softwareID, taskID, list
    For Each softwareID In file.PolicyIDs
        list = list & softwareID & ": " & ListSettings(file.GetPolicy(softwareID))
    Next
    For Each softwareID In file.TaskSoftwareIDs
        For Each taskID In file.GetTaskIDs(softwareID)
            list = list & softwareID & taskID & ": " & ListSettings(file.GetTask(softwareID, taskID))
        Next
    Next
    ListFile = list
End Function

Sub ShowNames(names)
    Expect "the number of policies", names.Count, 3
    Expect "a policy by its place", names(1), names.Item(1)
    Dim number
    On Error Resume Next
    number = names.Item(3)
    number = Err.Number
    On Error GoTo 0
    Expect "a place that the list does not have", number, -13
End Sub

Sub ChangePolicy(file)
    Dim policy
    Set policy = file.GetPolicy("PRODUCTA1000")
    Expect "read a setting", policy.GetSectionSetting("General", "ScanInterval"), "60"
    policy.PutSectionSetting "General", "ScanInterval", "15"
    policy.Section = "Exclusions"
    policy.PutSetting "Path2", "E:\Neu & alt"
    Expect "read the current section", policy.GetSetting("Path2"), "E:\Neu & alt"
    Dim count
    policy.GetSectionSetting "Exclusions", "Count", count
    Expect "read into an argument", count, "2"
    policy.RemoveSetting "Exclusions", "Path0"
    policy.RemoveSection "Notify"
    file.AddPolicy policy, 1
End Sub

Sub ChangeTask(file)
    Dim task
    Set task = file.GetTask("PRODUCTA1000", "{task-1}")
    Expect "read a number", task.Priority, 5
    task.Priority = -7
    task.DisplayName = "Nachtlauf"
    file.AddTask task, 1
End Sub

Sub AddNewTask(file)
    Dim task
    Set task = file.CreateTask()
    task.SoftwareID = "PRODUCTD4000"
    task.TaskID = "{task-9}"
    task.DisplayName = "From a script"
    task.TaskType = "Scan"
    task.CreatorID = "VBSCRIPT"
    task.PlatformsSupported = "WIN"
    task.Priority = 3
    task.Section = "Schedule"
    task.PutSetting "Hour", "4"
    file.AddTask task, 0
    task.WriteTaskDataToIniFile iniFile
End Sub

' The identifiers come back in the two arguments; the end of the list is an error.
Function ListTasks(file)
    Dim tasks, softwareID, taskID, list
    Set tasks = file.GetTaskInfo()
    On Error Resume Next
    tasks.GetFirst softwareID, taskID
    Do While Err.Number = 0
        list = list & softwareID & taskID & " "
        tasks.GetNext softwareID, taskID
    Loop
    If Err.Number <> EndOfList Then list = list & "error " & Err.Number
    On Error GoTo 0
    ListTasks = list
End Function

Sub ShowFailure(file)
    Dim policy, number, description
    On Error Resume Next
    Set policy = file.GetPolicy("PRODUCTX9999")
    number = Err.Number
    description = Err.Description
    On Error GoTo 0
    Expect "a failing call's code", number, -1207
    Expect "a failing call's sentence", description, "There is no product policy with that software ID."
End Sub

Sub CheckWritten(path)
    Dim file, policy, task
    Set file = OpenFile(path)
    Set policy = file.GetPolicy("PRODUCTA1000")
    Expect "the changed setting", policy.GetSectionSetting("General", "ScanInterval"), "15"
    Expect "the added setting", policy.GetSectionSetting("Exclusions", "Path2"), "E:\Neu & alt"
    Set task = file.GetTask("PRODUCTA1000", "{task-1}")
    Expect "the changed number", task.Priority, -7
    Set task = file.GetTask("PRODUCTD4000", "{task-9}")
    Expect "the new task", task.GetSectionSetting("Schedule", "Hour"), "4"
    Expect "the version of the tasks", file.VersionTask = task.Version, True
End Sub

Sub CheckIni(path)
    Dim text
    text = CreateObject("Scripting.FileSystemObject").OpenTextFile(path).ReadAll()
    Expect "an identity field in the INI file", InStr(text, "CreatorSoftwareID=VBSCRIPT" & vbCrLf) > 0, True
    Expect "a setting in the INI file", InStr(text, "[Schedule]" & vbCrLf & "Hour=4" & vbCrLf) > 0, True
End Sub

Dim file
Set file = OpenFile(source)
ShowNames file.PolicyIDs
Expect "everything that the file has", ListFile(file), _
    "PRODUCTA1000: [General] Enabled ScanInterval Greeting GreetingJa [Exclusions] Count Path0 Path1 " & _
    "[Notify] Message Recipients PRODUCTB2000: [General] Enabled LogLevel [Proxy] PRODUCTC3000: [Limits] MaxThreads " & _
    "Comment PRODUCTA1000{task-1}: [Schedule] Hour Minute [Scope] Targets PRODUCTA1000{task-2}: [Schedule] Weekday " & _
    "PRODUCTB2000{task-1}: [Schedule] AtStart "
Expect "the version of a policy", file.GetPolicy("PRODUCTC3000").TakenVersion, "20231120174210"
ChangePolicy file
ChangeTask file
AddNewTask file
Expect "the list of tasks", ListTasks(file), _
    "PRODUCTA1000{task-1} PRODUCTA1000{task-2} PRODUCTB2000{task-1} PRODUCTD4000{task-9} "
ShowFailure file
file.WriteFile target, 0
CheckWritten target
CheckIni iniFile
WScript.Echo "done"
