/// The policy manager for C++ programs: values, ranges and exceptions over the component's interfaces. C++17, headers
/// only; links what zuPolicyManager.h needs.
///
///     zupm::Runtime runtime;
///     auto file = zupm::PolicyFile::Open("policy.xml");
///     for (auto& setting : file.Policy("PRODUCTA1000").Section("General")) {
///         std::cout << setting.Name() << '=' << setting.Value() << '\n';
///     }
///     file.Policy("PRODUCTA1000").Set("General", "ScanInterval", "15").Save();
///
///     class        is
///     Runtime      the component's runtime, started for this thread
///     PolicyFile   a policy file in memory
///     Edit         a policy file that is locked until it is replaced
///     Policy       a private copy of a product's policy; the file has it after HandBack, the disk after Save
///     Task         a private copy of a task, likewise
///     Section      a section of a policy or task: a range of settings
///     Setting      a setting: its name, its value, the value as it is stored
///     Notice       what is odd in a file
///     Error        a failed call; NotFound, Changed, Locked and others are derived from it (client/Error.h)
///
/// Texts    UTF-8 (std::string); one that is not valid is refused with InvalidText (client/Text.h). A value may hold
///          macros: Value gives it with macros expanded, Stored as it is in the file.
/// Lists    begin() and the calls that give a range take the names that there are at that moment, so a loop may change
///          what it walks over. Iterators are input iterators; for several passes copy into a container.
/// Objects  Each value owns its references, and Get() gives the interface. Destroy them all before the last Runtime.
///          Namespace zupm::client has what these classes are made of.
#pragma once

#include <zuPolicyManager/client/Edit.h>
#include <zuPolicyManager/client/Error.h>
#include <zuPolicyManager/client/Notice.h>
#include <zuPolicyManager/client/Policy.h>
#include <zuPolicyManager/client/PolicyFile.h>
#include <zuPolicyManager/client/Runtime.h>
#include <zuPolicyManager/client/Section.h>
#include <zuPolicyManager/client/Task.h>
