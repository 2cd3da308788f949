// Editing the file where it lies: IPolicyFileEdit.
#include <algorithm>
#include <utility>

#include "com/Strings.h"
#include "policyfile/CPolicyFile.h"
#include "xml/Exceptions.h"
#include "xml/FileBytes.h"

namespace zupm {

using AdvXMLParser::FileBytes;
using AdvXMLParser::TextSnapshot;

namespace {

/// Ends an edit whose document was not loaded. Not even a lack of memory may leave the file locked.
class UnlessLoaded {
public:
    explicit UnlessLoaded(EditedFile& edited) noexcept : m_edited(edited) {}
    ~UnlessLoaded()
    {
        if (!m_isLoaded) {
            m_edited.Close();
        }
    }
    UnlessLoaded(const UnlessLoaded&) = delete;
    UnlessLoaded& operator=(const UnlessLoaded&) = delete;

    void Keep() noexcept { m_isLoaded = true; }

private:
    EditedFile& m_edited;
    bool m_isLoaded = false;
};

/// Gives what reads the text of the file when it is loaded. All three arguments outlive it.
CPolicyFileData::ReadText ReaderOf(EditedFile& edited, const std::u16string& path, std::chrono::milliseconds& patience)
{
    return [&](AdvXMLParser::XmlText& buffer, AdvXMLParser::UTF_ENCODINGS& encoding) {
        edited.ReadText(path, patience, buffer, encoding);
    };
}

}  // namespace

HRESULT CPolicyFile::OpenForEdit(BSTR strPolicyFile, LONG lTimeout) noexcept
{
    return CallOf(IID_IPolicyFileEdit, u"CPolicyFile::OpenForEdit()", [&](std::u16string& detail) -> result::Code {
        const std::u16string path = TextOf(strPolicyFile);
        const CriticalSectionLock lock(m_lock);
        m_edited.Close();
        m_readOnly = 0;
        return LoadEdited(path, std::chrono::milliseconds(std::max(lTimeout, LONG{0})), detail);
    });
}

result::Code CPolicyFile::LoadEdited(const std::u16string& path, std::chrono::milliseconds patience,
                                     std::u16string& detail)
{
    UnlessLoaded guard(m_edited);
    const result::Code code = m_data.InitializeFile(path, ReaderOf(m_edited, path, patience), detail);
    if (code >= 0) {
        guard.Keep();
    }
    return code;
}

HRESULT CPolicyFile::HasFileChanged(LONG* plChanged) noexcept
{
    return CallOf(IID_IPolicyFileEdit, u"CPolicyFile::HasFileChanged()", [&]() -> result::Code {
        if (plChanged == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        if (!m_edited.IsOpen()) {
            return result::NotInitialised;
        }
        FileBytes loaded = m_data.LoadedBytes();
        const result::Code code = m_edited.CheckUnchanged(loaded);
        if (code != result::Success && code != result::FileChanged) {
            return code;
        }
        *plChanged = code == result::FileChanged ? 1 : 0;
        return result::Success;
    });
}

HRESULT CPolicyFile::RehearseCommit(LONG bForce) noexcept
{
    return CallOf(IID_IPolicyFileEdit, u"CPolicyFile::RehearseCommit()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (const result::Code code = CheckEditOpen(); code < 0) {
            return code;
        }
        FileBytes loaded = m_data.LoadedBytes();
        return m_edited.Rehearse(bForce != 0 ? nullptr : &loaded);
    });
}

HRESULT CPolicyFile::CommitEdit(LONG bForce) noexcept
{
    return CallOf(IID_IPolicyFileEdit, u"CPolicyFile::CommitEdit()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        return CommitOpenEdit(bForce != 0);
    });
}

result::Code CPolicyFile::CommitOpenEdit(bool force)
{
    const result::Code code = CheckEditOpen();
    return code < 0 ? code : Commit(m_edited, force);
}

result::Code CPolicyFile::Commit(EditedFile& file, bool force)
{
    try {
        m_data.StampVersions();
        TextSnapshot written = m_data.Snapshot();
        FileBytes bytes(written.Runs(), m_data.Encoding(), true);
        FileBytes loaded = m_data.LoadedBytes();
        const result::Code code = file.Commit(bytes, force ? nullptr : &loaded);
        if (code == result::Success || code == result::WrittenNotFlushed) {
            m_data.KeepAsLoaded(std::move(written));
        }
        return code;
    } catch (const AdvXMLParser::ReadWriteException& error) {
        return error.GetErrorCode();
    }
}

HRESULT CPolicyFile::EndEdit() noexcept
{
    return CallOf(IID_IPolicyFileEdit, u"CPolicyFile::EndEdit()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        m_edited.Close();
        return result::Success;
    });
}

result::Code CPolicyFile::CheckEditOpen() const noexcept
{
    return m_edited.IsOpen() && m_data.HasDocument() ? result::Success : result::NotInitialised;
}

}  // namespace zupm
