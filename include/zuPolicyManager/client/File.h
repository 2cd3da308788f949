/// What a policy file and the policies and tasks taken from it share.
#pragma once

#include <zuPolicyManager/Owners.h>
#include <zuPolicyManager/client/Error.h>
#include <zuPolicyManager/client/Names.h>
#include <zuPolicyManager/client/Runtime.h>
#include <zuPolicyManager/client/Text.h>
#include <zuPolicyManager/zuPolicyManager.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zupm {

/// How long a call waits for another editor of the file unless it is given another time.
inline constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(10);

namespace client {

/// Milliseconds for the interfaces; what is too long is the longest that they know.
[[nodiscard]] inline LONG ToMilliseconds(std::chrono::milliseconds timeout) noexcept
{
    using Count = std::chrono::milliseconds::rep;
    const auto longest = static_cast<Count>((std::numeric_limits<std::int32_t>::max)());
    return static_cast<LONG>((std::max)(Count{0}, (std::min)(timeout.count(), longest)));
}

/// A policy file object and the path that it was loaded from.
///
/// Lifetime  Shared by a PolicyFile and by what was taken from it.
/// Threads   Immutable; the object has a lock of its own.
class File {
public:
    File(ComPtr<IPolicyFile> object, std::string path) : m_object(std::move(object)), m_path(std::move(path))
    {
        if (!m_object) {
            ThrowEmpty();
        }
    }

    [[nodiscard]] IPolicyFile& Object() const noexcept { return *m_object; }
    [[nodiscard]] const std::string& Path() const noexcept { return m_path; }
    /// Another interface of the object. Throws Error.
    template <class Interface>
    [[nodiscard]] ComPtr<Interface> As() const
    {
        return Require<Interface>(m_object);
    }

    /// The path and what is in the file, for messages: "policy.xml: policy PRODUCTA1000".
    template <class... Parts>
    [[nodiscard]] std::string Subject(const Parts&... parts) const
    {
        const std::string inside = Join(parts...);
        return m_path + (m_path.empty() || inside.empty() ? "" : ": ") + inside;
    }

    /// Throws for a negative result; the parts name what the call was about.
    template <class... Parts>
    void Check(HRESULT result, const Parts&... parts) const
    {
        if (result < 0) {
            const std::string description = TakeDescription();
            ThrowFailed(static_cast<result::Code>(result), description, Subject(parts...), m_path);
        }
    }

    void Load(bool readOnly) const { Check(m_object->InitializeFile(Argument(m_path), readOnly ? 1 : 0)); }

    /// Writes the file if it is still the one that was loaded.
    void Save(std::chrono::milliseconds timeout) const
    {
        Check(As<IPolicyFileContents>()->WriteIfUnchanged(ToMilliseconds(timeout)));
    }

    /// The names of a getter of IPolicyFileContents.
    template <class Get>
    [[nodiscard]] std::vector<std::string> Names(const Get& get) const
    {
        ComPtr<IPolicyNames> names;
        Check(get(*As<IPolicyFileContents>(), names.Put()));
        return NamesOf(*names, [this](HRESULT result) { Check(result); });
    }

    /// The text that a call to IPolicyFileContents hands out for a setting; nothing when it does not exist. `entry`
    /// names the policy or task, for messages.
    template <class Get, class... Entry>
    [[nodiscard]] std::optional<std::string> FindText(const Get& get, std::string_view section, std::string_view name,
                                                      const Entry&... entry) const
    {
        Bstr text;
        const HRESULT result =
            get(*As<IPolicyFileContents>(), BSTR(Argument(section)), BSTR(Argument(name)), text.Slot());
        for (const result::Code missing :
             {result::PolicyNotFound, result::TaskNotFound, result::SectionNotFound, result::SettingNotFound}) {
            if (result == missing) {
                static_cast<void>(TakeDescription());
                return std::nullopt;
            }
        }
        Check(result, entry..., ": section \"", section, "\", setting \"", name, "\"");
        return ToText(text);
    }

private:
    ComPtr<IPolicyFile> m_object;
    std::string m_path;
};

}  // namespace client
}  // namespace zupm
