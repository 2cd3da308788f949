/// The index of one section's settings.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "settings/CElementRef.h"
#include "settings/NameIndex.h"

namespace zupm {

/// The settings of one section by name.
///
/// Lifetime  Owns its references, not the elements that they refer to.
/// Threads   None of its own; see CXMLDataObject.
class CElementMap {
public:
    using Index = NameIndex<std::optional<CElementRef>>;

    CElementMap() = default;
    virtual ~CElementMap() = default;
    CElementMap(const CElementMap&) = delete;
    CElementMap& operator=(const CElementMap&) = delete;

    /// Adds a setting. When the map has the name already, it stays as it is and the result is false. Throws
    /// std::bad_alloc.
    bool Insert(std::u16string_view name, const AdvXMLParser::Element& setting);

    /// Makes room for that number of settings. Throws std::bad_alloc.
    void Reserve(std::size_t settings);

    /// Forgets a setting if the map has it.
    void Erase(std::u16string_view name) noexcept;

    [[nodiscard]] const Index& Settings() const noexcept { return m_settings; }

protected:
    /// Open to tests, which put an empty entry there.
    void InsertNothing(std::u16string_view name)
    {
        m_settings.Insert(name, [] { return std::nullopt; });
    }

private:
    Index m_settings;
};

}  // namespace zupm
