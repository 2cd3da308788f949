/// The values of a policy file, read through the component.
#pragma once

#include <zuPolicyManager/Client.h>

#include <functional>
#include <string>
#include <vector>

#include "tools/zupolicy/model/Entry.h"

namespace zupm::model {

/// Loads a file to be read only; "-" is standard input. Throws Error; tool::Failure for a path that is not valid UTF-8.
[[nodiscard]] PolicyFile OpenToRead(const std::string& path);

/// Loads one file after another into the same object, which saves the making of an object for each.
///
/// Lifetime  What Open gave and what was taken from it must be gone at the next Open.
/// Threads   One thread at a time.
class FileReader {
public:
    /// As OpenToRead.
    [[nodiscard]] PolicyFile Open(const std::string& path);

private:
    ComPtr<IPolicyFile> m_object;
};

/// Loads from `path` what keeps its own name in messages. Throws Error, about `path`.
void Load(const PolicyFile& file, const std::string& path, bool readOnly);

/// Every section and setting that a lookup finds, also those that repeat a task's fields. Throws Error.
[[nodiscard]] Entry Read(const Policy& policy);
[[nodiscard]] Entry Read(const Task& task);

/// The policy or task of that ID; nothing when the file does not have it. Throws Error.
[[nodiscard]] std::optional<Entry> Find(const PolicyFile& file, const EntryId& id);

/// The policies of a file in file order, then its tasks, product by product. Throws Error.
[[nodiscard]] std::vector<EntryId> Ids(const PolicyFile& file);

}  // namespace zupm::model
