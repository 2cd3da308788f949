/// A policy file that all threads load, edit and write, and objects that come and go.
#pragma once

#include "MixStep.h"
#include "tests/support/TempFolder.h"

namespace zupm::test {

/// One thread's part. Whoever loads takes away what the others added, so each result is one of a set.
class MixReloads {
public:
    /// `file` is loaded. `product` is shared too.
    MixReloads(PolicyFileClient& file, std::u16string path, ProductClient product, const TempFolder& folder,
               Random& random);

    [[nodiscard]] std::vector<MixStep> Steps();

private:
    void Load();
    void LoadFailing();
    void EditPolicy();
    void RemovePolicy();
    void EditTask();
    void Read();
    void Write();
    void ComeAndGo();

    PolicyFileClient* m_file;
    std::u16string m_path;
    ProductClient m_product;
    const TempFolder* m_folder;
    Random* m_random;
};

}  // namespace zupm::test
