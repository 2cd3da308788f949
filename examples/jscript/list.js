// Prints a whole policy file as JSON, in the form of "zupolicy show --json": every policy and task with its sections and
// settings, as the file holds them.
//
//   cscript //nologo list.js <policy file>
//
// Characters beyond ASCII are written as \uXXXX, so the console's code page does not matter.
var path = WScript.Arguments(0);

function quoted(text) {
    var out = "", i, code;
    for (i = 0; i < text.length; ++i) {
        code = text.charCodeAt(i);
        if (code < 0x20 || code > 0x7E) {
            out += "\\u" + ("000" + code.toString(16)).slice(-4);
        } else {
            out += (code === 0x22 || code === 0x5C ? "\\" : "") + text.charAt(i);
        }
    }
    return "\"" + out + "\"";
}

function member(name, text) {
    return quoted(name) + ": " + quoted(text);
}

// The results of a function for each name of a collection, as a JSON array.
function arrayOf(names, toJson) {
    var items = [], i;
    for (i = 0; i < names.Count; ++i) {
        items.push(toJson(names.Item(i)));
    }
    return "[" + items.join(",\n") + "]";
}

function settingsOf(entry, section) {
    return arrayOf(entry.GetSettingNames(section), function (name) {
        return "{" + member("name", name) + ", " + member("value", entry.GetStoredSetting(section, name)) + "}";
    });
}

function sectionsOf(entry) {
    return quoted("sections") + ": " + arrayOf(entry.SectionNames, function (section) {
        return "{" + member("name", section) + ", " + quoted("settings") + ": " + settingsOf(entry, section) + "}";
    });
}

function policyToJson(file, softwareID) {
    var policy = file.GetPolicy(softwareID);
    return "{" + [member("softwareId", softwareID), member("version", policy.TakenVersion), sectionsOf(policy)].join(", ") +
        "}";
}

function taskToJson(file, softwareID, taskID) {
    var task = file.GetTask(softwareID, taskID);
    return "{" + [
        member("softwareId", softwareID), member("taskId", taskID), member("displayName", task.DisplayName),
        member("type", task.TaskType), member("platforms", task.PlatformsSupported),
        member("priority", String(task.Priority)), member("creator", task.CreatorID),
        member("version", task.TakenVersion), sectionsOf(task)
    ].join(", ") + "}";
}

// The tasks in one array: a collection holds those of one product.
function tasksToJson(file) {
    var items = [], products = file.TaskSoftwareIDs, tasks, i, j;
    for (i = 0; i < products.Count; ++i) {
        tasks = file.GetTaskIDs(products.Item(i));
        for (j = 0; j < tasks.Count; ++j) {
            items.push(taskToJson(file, products.Item(i), tasks.Item(j)));
        }
    }
    return "[" + items.join(",\n") + "]";
}

function fileToJson(file) {
    return "{" + [
        quoted("schema") + ": 1",
        member("file", path), member("policyVersion", file.VersionPolicy), member("taskVersion", file.VersionTask),
        member("assignmentList", file.PolicyAssignmentList),
        quoted("policies") + ": " + arrayOf(file.PolicyIDs, function (id) { return policyToJson(file, id); }),
        quoted("tasks") + ": " + tasksToJson(file)
    ].join(",\n") + "}";
}

try {
    var file = new ActiveXObject("ZuPolicyManager.PolicyFile");
    file.InitializeFile(path, 1);
    WScript.Echo(fileToJson(file));
} catch (e) {
    // The result code, and the component's sentence for it.
    WScript.Echo("list.js: " + e.number + ": " + e.message);
    WScript.Quit(1);
}
