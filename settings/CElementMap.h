/// The index of one section's settings.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "settings/CElementRef.h"

namespace zupm {

/// The settings of one section by name, in code-unit order.
///
/// Lifetime  Owns its references, not the elements that they refer to.
/// Threads   None of its own; see CXMLDataObject.
class CElementMap {
public:
    using Index = std::map<std::u16string, std::unique_ptr<CElementRef>, std::less<>>;

    CElementMap() = default;
    virtual ~CElementMap() = default;
    CElementMap(const CElementMap&) = delete;
    CElementMap& operator=(const CElementMap&) = delete;

    /// Adds a setting. When the map has the name already, it stays as it is and the result is false. Throws
    /// std::bad_alloc.
    bool Insert(const std::u16string& name, const AdvXMLParser::Element& setting);

    /// Forgets a setting if the map has it.
    void Erase(std::u16string_view name) noexcept;

    [[nodiscard]] const Index& Settings() const noexcept { return m_settings; }

protected:
    /// Open to tests, which put an empty entry there.
    void InsertNothing(const std::u16string& name) { m_settings[name] = nullptr; }

private:
    Index m_settings;
};

}  // namespace zupm
