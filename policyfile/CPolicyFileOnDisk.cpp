// The file that was loaded, and what is odd in it: the rest of IPolicyFileContents.
#include <algorithm>
#include <chrono>

#include "notices/CPolicyNotices.h"
#include "policyfile/CPolicyFile.h"

namespace zupm {

using AdvXMLParser::FileBytes;

namespace {

/// A file that is gone, with its folder or without, is no longer the one that was loaded.
result::Code ChangedWhenMissing(result::Code code) noexcept
{
    return code == result::FileNotFound || code == result::PathNotFound ? result::FileChanged : code;
}

}  // namespace

HRESULT CPolicyFile::get_HasChangedOnDisk(LONG* pVal) noexcept
{
    return CallOf(IID_IPolicyFileContents, u"CPolicyFile::get_HasChangedOnDisk()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        const CriticalSectionLock lock(m_lock);
        if (const result::Code code = CheckInitialised(); code < 0) {
            return code;
        }
        const result::Code code = CompareWithDisk();
        if (code != result::Success && code != result::FileChanged) {
            return code;
        }
        *pVal = code == result::FileChanged ? 1 : 0;
        return result::Success;
    });
}

result::Code CPolicyFile::CompareWithDisk()
{
    FileBytes loaded = m_data.LoadedBytes();
    return m_edited.IsOpen() ? m_edited.CheckUnchanged(loaded)
                             : ChangedWhenMissing(CompareFile(m_data.LoadedPath(), loaded));
}

HRESULT CPolicyFile::WriteIfUnchanged(LONG lTimeout) noexcept
{
    return CallOf(IID_IPolicyFileContents, u"CPolicyFile::WriteIfUnchanged()", [&]() -> result::Code {
        const CriticalSectionLock lock(m_lock);
        if (m_edited.IsOpen()) {
            return CommitOpenEdit(false);
        }
        if (const result::Code code = CheckInitialised(); code < 0) {
            return code;
        }
        const result::Code code = CheckWritable();
        return code < 0 ? code : WriteLoadedFile(std::chrono::milliseconds(std::max(lTimeout, LONG{0})));
    });
}

result::Code CPolicyFile::WriteLoadedFile(std::chrono::milliseconds patience)
{
    EditedFile file;
    if (const result::Code code = file.Open(m_data.LoadedPath(), patience); code < 0) {
        return ChangedWhenMissing(code);
    }
    // Also before anything is made ready for writing: a changed file leaves the document as it is.
    FileBytes loaded = m_data.LoadedBytes();
    const result::Code code = file.CheckUnchanged(loaded);
    return code < 0 ? code : Commit(file, false);
}

HRESULT CPolicyFile::get_Notices(IPolicyNotices** pVal) noexcept
{
    return CallOf(IID_IPolicyFileContents, u"CPolicyFile::get_Notices()", [&]() -> result::Code {
        if (pVal == nullptr) {
            return result::BadArgument;
        }
        Notices notices;
        {
            const CriticalSectionLock lock(m_lock);
            if (const result::Code code = CheckInitialised(); code < 0) {
                return code;
            }
            notices = m_data.FindNotices();
        }
        return CPolicyNotices::HandOut(std::move(notices), pVal);
    });
}

}  // namespace zupm
