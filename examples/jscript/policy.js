// Loads a policy file, changes a product policy and a task, adds a new task, looks through the tasks, dumps one into an
// INI file, writes the policy file and reads it back.
//
//   cscript //nologo policy.js <policy file> <file to write> <INI file to write>
//
// A failing call throws: e.number is the result code and e.message is its sentence. JScript passes arguments by value, so
// it cannot get the two identifiers that GetFirst and GetNext return. This script only counts the tasks and asks for those
// that it knows.
var source = WScript.Arguments(0);
var target = WScript.Arguments(1);
var iniFile = WScript.Arguments(2);

function expect(what, actual, expected) {
    if (actual !== expected) {
        WScript.Echo("FAILED " + what + ": got '" + actual + "', expected '" + expected + "'");
        WScript.Quit(1);
    }
    WScript.Echo("ok " + what);
}

function openFile(path) {
    var file = new ActiveXObject("ZuPolicyManager.PolicyFile");
    file.InitializeFile(path, 0);
    return file;
}

// The code of a failing call, and its sentence.
function failureOf(call) {
    try {
        call();
    } catch (e) {
        return { number: e.number, message: e.message };
    }
    return { number: 0, message: "" };
}

function changePolicy(file) {
    var policy = file.GetPolicy("PRODUCTA1000");
    expect("read a setting", policy.GetSectionSetting("General", "ScanInterval"), "60");
    policy.PutSectionSetting("General", "ScanInterval", "15");
    policy.Section = "Exclusions";
    policy.PutSetting("Path2", "E:\\Neu & alt");
    expect("read the current section", policy.GetSetting("Path2"), "E:\\Neu & alt");
    policy.RemoveSection("Notify");
    file.AddPolicy(policy, 1);
}

function changeTask(file) {
    var task = file.GetTask("PRODUCTA1000", "{task-1}");
    expect("read a number", task.Priority, 5);
    task.Priority = -7;
    file.AddTask(task, 1);
}

function addNewTask(file) {
    var task = file.CreateTask();
    task.SoftwareID = "PRODUCTD4000";
    task.TaskID = "{task-9}";
    task.CreatorID = "JSCRIPT";
    task.Priority = 3;
    task.PutSectionSetting("Schedule", "Hour", "4");
    file.AddTask(task, 0);
    task.WriteTaskDataToIniFile(iniFile);
}

// The first result of an enumerator shows whether the list is empty.
function lookThrough(file) {
    var tasks = file.GetTaskInfo();
    var first = failureOf(function () { tasks.GetFirst("", ""); });
    var steps = 0;
    while (first.number === 0 && failureOf(function () { tasks.GetNext("", ""); }).number === 0) {
        ++steps;
    }
    return 1 + steps;
}

function checkWritten(path) {
    var file = openFile(path);
    expect("the changed setting", file.GetPolicy("PRODUCTA1000").GetSectionSetting("General", "ScanInterval"), "15");
    expect("the changed number", file.GetTask("PRODUCTA1000", "{task-1}").Priority, -7);
    expect("the new task", file.GetTask("PRODUCTD4000", "{task-9}").GetSectionSetting("Schedule", "Hour"), "4");
}

function checkIni(path) {
    var text = new ActiveXObject("Scripting.FileSystemObject").OpenTextFile(path).ReadAll();
    expect("an identity field in the INI file", text.indexOf("CreatorSoftwareID=JSCRIPT\r\n") >= 0, true);
    expect("a setting in the INI file", text.indexOf("[Schedule]\r\nHour=4\r\n") >= 0, true);
}

var file = openFile(source);
changePolicy(file);
changeTask(file);
addNewTask(file);
expect("the number of tasks", lookThrough(file), 4);
var failure = failureOf(function () { file.GetPolicy("PRODUCTX9999"); });
expect("a failing call's code", failure.number, -1207);
expect("a failing call's sentence", failure.message, "There is no product policy with that software ID.");
file.WriteFile(target, 0);
checkWritten(target);
checkIni(iniFile);
WScript.Echo("done");
