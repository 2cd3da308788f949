/// The identity of a task.
#pragma once

#include <cstdint>
#include <string>

#include "xml/Node.h"

namespace zupm {

/// A task's own fields, as they were read or put. The next write-back brings them into XML.
struct TaskFields {
    // Given: see docs/given-oddities.md, "invalid".
    std::u16string taskId = u"invalid";
    std::u16string displayName = u"invalid";
    std::u16string softwareId = u"invalid";
    std::u16string platformsSupported = u"invalid";
    std::u16string creatorId = u"invalid";
    std::u16string taskType = u"invalid";
    // Given: see docs/given-oddities.md, "a version that lags".
    std::u16string version;  ///< the time stamp that was read; a write-back does not change it
    std::int32_t priority = 0;

    /// Reads every field that the elements have an attribute for, and leaves the others as they are.
    void Read(const AdvXMLParser::Element& group, const AdvXMLParser::Element& task);

    /// Throws AdvXMLParser::InvalidCharacterException when XML cannot hold one of the texts that a write-back writes.
    void RequireXml() const;
};

}  // namespace zupm
