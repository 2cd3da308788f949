// NOT RUN by this project's tests: they run under Wine, which has no .NET here. Written against the type library.
//
// Late bound, so it needs no generated assembly: csc Policy.cs (x64), with the component registered.
using System;
using System.Reflection;
using System.Runtime.InteropServices;

internal static class Policy
{
    private static int Main(string[] arguments)
    {
        dynamic file = Activator.CreateInstance(Type.GetTypeFromProgID("ZuPolicyManager.PolicyFile", true));
        try
        {
            file.InitializeFile(arguments[0], 0);

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

            ListTasks(file.GetTaskInfo());
            file.WriteFile(arguments[1], 0);
            return 0;
        }
        catch (COMException error)
        {
            // The component's result code, and the sentence for it.
            Console.Error.WriteLine("{0}: {1}", error.ErrorCode, error.Message);
            return 1;
        }
    }

    // Out arguments of a late-bound call come back in the argument array when they are marked as by reference.
    private static void ListTasks(object tasks)
    {
        var byReference = new ParameterModifier(2);
        byReference[0] = true;
        byReference[1] = true;
        string method = "GetFirst";
        try
        {
            for (;;)
            {
                object[] identifiers = { "", "" };
                tasks.GetType().InvokeMember(method, BindingFlags.InvokeMethod, null, tasks, identifiers,
                    new[] { byReference }, null, null);
                Console.WriteLine("{0} {1}", identifiers[0], identifiers[1]);
                method = "GetNext";
            }
        }
        catch (TargetInvocationException end) when (end.InnerException is COMException)
        {
            // -1112: the end of the list; -1111: the list is empty.
        }
    }
}
