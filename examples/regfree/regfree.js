// NOT RUN by this project's tests: Wine has no Microsoft.Windows.ActCtx.
//
// Uses the component without registration in a script host, whose own manifest says nothing about it.
//
//   cscript //nologo regfree.js <folder with the component> <policy file>
//
// The folder holds zuPolicyManager64.dll, AgentRes.dll, zuPolicyManager64.RegFree.manifest and a copy of regfree.manifest.
var folder = WScript.Arguments(0);
var policyFile = WScript.Arguments(1);

var context = new ActiveXObject("Microsoft.Windows.ActCtx");
context.Manifest = folder + "\\regfree.manifest";
var file = context.CreateObject("ZuPolicyManager.PolicyFile");
file.InitializeFile(policyFile, 1);
WScript.Echo(file.GetPolicy("PRODUCTA1000").GetSectionSetting("General", "ScanInterval"));
