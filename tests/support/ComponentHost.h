/// The component inside a test program: the runtime started, the classes announced, the resource module in its place.
#pragma once

#include <string>

#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// Lives as long as the tests run. Its resource folder holds a copy of the English AgentRes.dll and no other language,
/// so that log texts do not depend on the user's.
class ComponentHost {
public:
    ComponentHost();
    ~ComponentHost();
    ComponentHost(const ComponentHost&) = delete;
    ComponentHost& operator=(const ComponentHost&) = delete;

    [[nodiscard]] HRESULT Started() const { return m_started; }

private:
    TempFolder m_resources;
    HRESULT m_started = S_OK;
};

/// Makes the component look for its resource module in another folder, for as long as it lives.
class ResourceFolder {
public:
    explicit ResourceFolder(const std::u16string& folder);
    ~ResourceFolder();
    ResourceFolder(const ResourceFolder&) = delete;
    ResourceFolder& operator=(const ResourceFolder&) = delete;
};

}  // namespace zupm::test
