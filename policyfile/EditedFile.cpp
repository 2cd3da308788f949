#include "policyfile/EditedFile.h"

#include <string>
#include <utility>

#include "xml/Exceptions.h"
#include "xml/FileBuffer.h"

namespace zupm {

result::Code EditedFile::Open(std::u16string_view path, std::chrono::milliseconds patience) noexcept
{
    Close();
    const result::Code code = OpenLocked(path, patience, m_file);
    if (code != result::Success) {
        Close();
    }
    return code;
}

void EditedFile::ReadText(std::u16string_view path, std::chrono::milliseconds patience, AdvXMLParser::XmlText& buffer,
                          AdvXMLParser::UTF_ENCODINGS& encoding)
{
    std::string bytes;
    result::Code code = Open(path, patience);
    code = code < 0 ? code : m_file.Read(bytes);
    if (code < 0) {
        throw AdvXMLParser::ReadWriteException(code);
    }
    AdvXMLParser::DecodeBuffer(std::move(bytes), buffer, encoding, true);
}

result::Code EditedFile::Rehearse(RepeatableBytes* loaded) noexcept
{
    const result::Code code = loaded == nullptr ? result::Success : CheckUnchanged(*loaded);
    return code == result::Success ? m_file.RehearseReplace() : code;
}

result::Code EditedFile::Commit(ByteSource& bytes, RepeatableBytes* loaded) noexcept
{
    const result::Code code = m_file.Replace(bytes, loaded);
    if (code == result::Success || code == result::WrittenNotFlushed) {
        Close();
    }
    return code;
}

}  // namespace zupm
