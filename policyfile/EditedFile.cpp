#include "policyfile/EditedFile.h"

#include "xml/Exceptions.h"
#include "xml/FileBuffer.h"

namespace zupm {

result::Code EditedFile::Open(std::u16string_view path, std::chrono::milliseconds patience)
{
    Close();
    result::Code code = OpenLocked(path, patience, m_file);
    if (code == result::Success) {
        code = m_file.Read(m_bytes);
    }
    if (code != result::Success) {
        Close();
    }
    return code;
}

void EditedFile::ReadText(std::u16string_view path, std::chrono::milliseconds patience, AdvXMLParser::XmlText& buffer,
                          AdvXMLParser::UTF_ENCODINGS& encoding)
{
    if (const result::Code code = Open(path, patience); code < 0) {
        throw AdvXMLParser::ReadWriteException(code);
    }
    AdvXMLParser::DecodeBuffer(m_bytes, buffer, encoding, true);
}

void EditedFile::Close() noexcept
{
    m_file.Close();
    m_bytes = std::string();
}

result::Code EditedFile::Rehearse(bool force) noexcept
{
    const result::Code code = force ? result::Success : CheckUnchanged();
    return code == result::Success ? m_file.RehearseReplace() : code;
}

result::Code EditedFile::Commit(ByteSource& bytes, bool force) noexcept
{
    const result::Code code = m_file.Replace(bytes, force ? nullptr : &m_bytes);
    if (code == result::Success || code == result::WrittenNotFlushed) {
        Close();
    }
    return code;
}

}  // namespace zupm
