/// Product policies.
#pragma once

#include <zuPolicyManager/client/Entry.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace zupm {

namespace client {

/// The settings of a policy.
class PolicySettings final : public SettingsOf<IPolicyProduct> {
public:
    using SettingsOf::SettingsOf;

    void HandBackTo(const client::File& file) const { Check(file.Object().AddPolicy(&Own(), 1)); }

private:
    [[nodiscard]] std::string Describe() const override { return "policy " + Shown(&IPolicyProduct::get_SoftwareID); }
};

}  // namespace client

/// One product's policy: a private copy, which a file has after HandBack and the disk after Save.
///
/// Lifetime  A value that owns its object and keeps its file's object alive; copies share both. What was moved from is
///           empty: Get() is null, and every other call throws Error (NotInitialised).
/// Threads   Any thread may call it, also several at once; only assignment needs care, as with any value.
/// Errors    Each call throws what Error.h lists.
class Policy : public client::Entry<Policy, IPolicyProduct, client::PolicySettings> {
public:
    /// An object that the caller has. `file` is what HandBack hands it to; null for none.
    explicit Policy(ComPtr<IPolicyProduct> object, std::shared_ptr<const client::File> file = nullptr)
        : Entry(std::make_shared<const client::PolicySettings>(std::move(object), std::move(file)))
    {
    }

    [[nodiscard]] std::string SoftwareId() const { return Access().Text(&IPolicyProduct::get_SoftwareID); }
    /// Error (Unexpected): XML cannot hold the ID.
    Policy& SetSoftwareId(std::string_view id) &
    {
        Put(&IPolicyProduct::put_SoftwareID, id);
        // The setter reports nothing, so only the getter shows whether the object took the ID.
        if (SoftwareId() != id) {
            client::ThrowCode(result::Unexpected, "the software ID of a policy");
        }
        return *this;
    }
    Policy SetSoftwareId(std::string_view id) && { return std::move(SetSoftwareId(id)); }

    /// The policy as XML text: a "PolicyData" document.
    [[nodiscard]] std::string Xml() const { return Access().Text(&IPolicyProduct::get_PolicyData); }
};

}  // namespace zupm
