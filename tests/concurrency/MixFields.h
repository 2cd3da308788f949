/// The properties of one product and one task that all threads share, and the enumerator.
#pragma once

#include "MixSections.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// One thread's part. Every text that is put is a letter for the property, then one digit again and again: what is read
/// is somebody's text, whole, and never another property's.
class MixFields {
public:
    /// `settings` is the thread's part of the task's settings.
    MixFields(ProductClient product, TaskClient task, TaskInfoClient pairs, const MixSections& settings,
              const TempFolder& folder, int thread, Random& random);

    [[nodiscard]] std::vector<MixStep> Steps();

private:
    void PutText();
    void GetText();
    void PutPriority();
    void GetPriority();
    void ProductId();
    void GetVersion();
    void WriteIniFile();
    void Enumerate();

    ProductClient m_product;
    TaskClient m_task;
    TaskInfoClient m_pairs;
    const MixSections* m_settings;
    const TempFolder* m_folder;
    int m_thread;
    Random* m_random;
};

}  // namespace zupm::test
