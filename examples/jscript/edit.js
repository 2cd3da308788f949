// Edits every policy and task of a policy file, in place and in turn with other editors: each policy gets a setting, each
// task a priority that is higher by one.
//
//   cscript //nologo edit.js <policy file>
var path = WScript.Arguments(0);
var lockTimeout = 10000;  // milliseconds

// The names of a collection as an array.
function listOf(names) {
    var list = [], i;
    for (i = 0; i < names.Count; ++i) {
        list.push(names.Item(i));
    }
    return list;
}

function editPolicies(file) {
    var ids = listOf(file.PolicyIDs), i, policy;
    for (i = 0; i < ids.length; ++i) {
        policy = file.GetPolicy(ids[i]);
        policy.PutSectionSetting("General", "EditedBy", "edit.js");
        file.AddPolicy(policy, 1);
    }
    return ids.length;
}

function editTasks(file) {
    var count = 0, products = listOf(file.TaskSoftwareIDs), ids, i, j, task;
    for (i = 0; i < products.length; ++i) {
        ids = listOf(file.GetTaskIDs(products[i]));
        for (j = 0; j < ids.length; ++j) {
            task = file.GetTask(products[i], ids[j]);
            task.Priority = task.Priority + 1;
            file.AddTask(task, 1);
            ++count;
        }
    }
    return count;
}

try {
    var file = new ActiveXObject("ZuPolicyManager.PolicyFile");
    file.OpenForEdit(path, lockTimeout);
    var policies = editPolicies(file);
    var tasks = editTasks(file);
    file.CommitEdit(0);
    WScript.Echo("edited " + policies + " policies and " + tasks + " tasks");
} catch (e) {
    // -1301: locked for too long; -1302: changed by something that takes no lock. The file is as it was.
    WScript.Echo("edit.js: " + e.number + ": " + e.message);
    WScript.Quit(1);
}
