/// Policies and tasks of one policy file that all threads share.
#pragma once

#include <map>

#include "MixStep.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// One thread's part: entries of its own, of which it knows what the file must hold. The file is loaded once and never
/// again, so nobody else takes them away.
class MixEntries {
public:
    /// `product` and `task` are changed by all threads, and put into the file all the same.
    MixEntries(PolicyFileClient& file, ProductClient product, TaskClient task, const TempFolder& folder, int thread,
               Random& random);

    [[nodiscard]] std::vector<MixStep> Steps();
    /// Finds every entry of its own in a file, and none that it removed.
    void Check(const PolicyFileClient& file);

private:
    void AddPolicy();
    void GetPolicy(const PolicyFileClient& file, const std::u16string& id) const;
    void RemovePolicy();
    void AddTask();
    void GetTask(const PolicyFileClient& file, const std::u16string& id) const;
    void RemoveTask();
    void CheckTaskInfo(const PolicyFileClient& file) const;
    void CheckLists(const PolicyFileClient& file) const;
    void AddShared();
    void WriteAndLoad();
    void WriteOverOthers();
    void GetBuffer();
    void GetProperties();

    [[nodiscard]] std::u16string AnyId() { return m_owner + Numbered(u"-", Pick(*m_random, 3)); }

    PolicyFileClient* m_file;
    ProductClient m_product;
    TaskClient m_task;
    const TempFolder* m_folder;
    std::u16string m_owner;
    Random* m_random;
    /// The value of the one setting of each.
    std::map<std::u16string, std::u16string> m_policies;
    std::map<std::u16string, std::u16string> m_tasks;
    int m_values = 0;
};

}  // namespace zupm::test
