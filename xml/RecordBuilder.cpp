#include "xml/RecordBuilder.h"

#include <utility>

namespace AdvXMLParser {

RecordBuilder::RecordBuilder(std::uint32_t textSize) : m_linker(m_records, 0), m_textSize(textSize)
{
    m_records.Reserve(1);
    m_records.Append({});
}

RecordStore RecordBuilder::Finish() noexcept
{
    m_records[0] = m_linker.Finish(m_textSize);
    return std::move(m_records);
}

}  // namespace AdvXMLParser
