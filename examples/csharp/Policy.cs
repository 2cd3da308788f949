// COMPILED, NOT RUN by this project's tests: they run under Wine, which has no .NET here. Written against the type library.
//
// Late bound, so it needs no generated assembly: csc Policy.cs (x64), with the component registered.
//
//   Policy.exe <policy file> <file to write>
using System;
using System.Collections;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;

internal static class Policy
{
    private static int Main(string[] arguments)
    {
        try
        {
            Edit(arguments[0], arguments[1]);
            return 0;
        }
        catch (COMException error)
        {
            // The component's result code, and the sentence for it.
            Console.Error.WriteLine("{0}: {1}", error.ErrorCode, error.Message);
            return 1;
        }
    }

    private static void Edit(string source, string target)
    {
        dynamic file = Activator.CreateInstance(Type.GetTypeFromProgID("ZuPolicyManager.PolicyFile", true));
        file.InitializeFile(source, 0);

        dynamic policy = file.GetPolicy("PRODUCTA1000");
        Console.WriteLine(policy.GetSectionSetting("General", "ScanInterval"));
        policy.PutSectionSetting("General", "ScanInterval", "15");
        file.AddPolicy(policy, 1);

        dynamic task = file.CreateTask();
        task.SoftwareID = "PRODUCTA1000";
        task.TaskID = "{task-9}";
        task.Priority = 3;
        task.PutSectionSetting("Schedule", "Hour", "4");
        file.AddTask(task, 0);

        ListPolicies(file);
        ListTasks(file);
        file.WriteFile(target, 0);
    }

    // Every policy with its sections and settings, as the file holds them.
    private static void ListPolicies(dynamic file)
    {
        foreach (string softwareID in Names(file, "PolicyIDs"))
        {
            Console.WriteLine("policy {0}", softwareID);
            object policy = file.GetPolicy(softwareID);
            foreach (string section in Names(policy, "SectionNames"))
            {
                Console.WriteLine("  [{0}]", section);
                foreach (string name in Names(policy, "GetSettingNames", section))
                {
                    Console.WriteLine("    {0}={1}", name, Call(policy, "GetStoredSetting", section, name));
                }
            }
        }
    }

    private static void ListTasks(object file)
    {
        foreach (string softwareID in Names(file, "TaskSoftwareIDs"))
        {
            foreach (string taskID in Names(file, "GetTaskIDs", softwareID))
            {
                Console.WriteLine("task {0} {1}", softwareID, taskID);
            }
        }
    }

    // The names of one of the component's collections; an empty one gives none.
    private static IEnumerable<string> Names(object target, string member, params object[] arguments)
    {
        return ((IEnumerable)Call(target, member, arguments)).Cast<string>();
    }

    // A method or property by its name. The members that list names are additional ones: the object's type information
    // describes the released interface and lacks them, so they are looked up by name.
    private static object Call(object target, string member, params object[] arguments)
    {
        try
        {
            return target.GetType().InvokeMember(member, BindingFlags.InvokeMethod | BindingFlags.GetProperty, null,
                target, arguments);
        }
        catch (TargetInvocationException wrapped)
        {
            // The call by name wraps what the component reported.
            var error = wrapped.InnerException as COMException;
            if (error == null)
            {
                throw;
            }
            throw new COMException(error.Message, error.ErrorCode);
        }
    }
}
