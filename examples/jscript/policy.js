// Loads a policy file, lists everything that it has, changes a product policy and a task, adds a new task, looks through
// the tasks, dumps one into an INI file, writes the policy file and reads it back.
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

// Calls `visit` with each name of a list.
function forEach(names, visit) {
    for (var all = new Enumerator(names); !all.atEnd(); all.moveNext()) {
        visit(all.item());
    }
}

// Every section of a product policy or task with its settings. Without macros, a value is read as it is stored.
function listSettings(entry) {
    var list = "";
    forEach(entry.SectionNames, function (section) {
        list += "[" + section + "] ";
        forEach(entry.GetSettingNames(section), function (name) {
            list += name + " ";
            if (entry.GetStoredSetting(section, name) !== entry.GetSectionSetting(section, name)) {
                list += "differs! ";
            }
        });
    });
    return list;
}

// The whole file: the product policies, then the tasks.
function listFile(file) {
    var list = "";
    forEach(file.PolicyIDs, function (softwareID) {
        list += softwareID + ": " + listSettings(file.GetPolicy(softwareID));
    });
    forEach(file.TaskSoftwareIDs, function (softwareID) {
        forEach(file.GetTaskIDs(softwareID), function (taskID) {
            list += softwareID + taskID + ": " + listSettings(file.GetTask(softwareID, taskID));
        });
    });
    return list;
}

function showNames(names) {
    expect("the number of policies", names.Count, 3);
    expect("a policy by its place", names(1), names.Item(1));
    expect("a place that the list does not have", failureOf(function () { return names.Item(3); }).number, -13);
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
showNames(file.PolicyIDs);
expect("everything that the file has", listFile(file),
    "PRODUCTA1000: [General] Enabled ScanInterval Greeting GreetingJa [Exclusions] Count Path0 Path1 " +
    "[Notify] Message Recipients PRODUCTB2000: [General] Enabled LogLevel [Proxy] PRODUCTC3000: [Limits] MaxThreads " +
    "Comment PRODUCTA1000{task-1}: [Schedule] Hour Minute [Scope] Targets PRODUCTA1000{task-2}: [Schedule] Weekday " +
    "PRODUCTB2000{task-1}: [Schedule] AtStart ");
expect("the version of a policy", file.GetPolicy("PRODUCTC3000").TakenVersion, "20231120174210");
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
