/// One product's policy.
#pragma once

#include "tools/zupolicy/client/Entry.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::tool {

/// An Entry over IPolicyProduct.
class PolicyEntry final : public EntryOf<IPolicyProduct> {
public:
    using EntryOf::EntryOf;

    void HandBack(IPolicyFile& file) override { Check(file.AddPolicy(Object(), 1), Subject()); }
    void PutSoftwareId(std::u16string_view softwareId)
    {
        Check(Object()->put_SoftwareID(Bstr(softwareId).Get()), Subject());
    }
};

}  // namespace zupm::tool
