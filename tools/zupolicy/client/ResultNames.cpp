#include "tools/zupolicy/client/ResultNames.h"

#include <string_view>

namespace zupm::tool {
namespace {

struct Row {
    result::Code code;
    std::string_view name;
};

constexpr Row kRows[] = {
    {result::Success, "Success"},
    {result::Unexpected, "Unexpected"},
    {result::AllocationFailed, "AllocationFailed"},
    {result::NotInitialised, "NotInitialised"},
    {result::ReadOnly, "ReadOnly"},
    {result::CursorNotInitialised, "CursorNotInitialised"},
    {result::BadArgument, "BadArgument"},
    {result::PlatformException, "PlatformException"},
    {result::ElementMissing, "ElementMissing"},
    {result::SyntaxError, "SyntaxError"},
    {result::ListEmpty, "ListEmpty"},
    {result::EndOfList, "EndOfList"},
    {result::RecordMissing, "RecordMissing"},
    {result::SectionNotFound, "SectionNotFound"},
    {result::SettingNotFound, "SettingNotFound"},
    {result::NotCreated, "NotCreated"},
    {result::SectionStillMissing, "SectionStillMissing"},
    {result::PolicyNotFound, "PolicyNotFound"},
    {result::TaskNotFound, "TaskNotFound"},
    {result::FileLocked, "FileLocked"},
    {result::FileChanged, "FileChanged"},
    {result::WrittenNotFlushed, "WrittenNotFlushed"},
    {result::OwnerNotKept, "OwnerNotKept"},
    {result::GeneralFailure, "GeneralFailure"},
    {result::OutOfMemory, "OutOfMemory"},
    {result::FileNotFound, "FileNotFound"},
    {result::PathNotFound, "PathNotFound"},
    {result::TooManyOpenFiles, "TooManyOpenFiles"},
    {result::AccessDenied, "AccessDenied"},
    {result::WriteProtected, "WriteProtected"},
    {result::SharingViolation, "SharingViolation"},
    {result::NotSupported, "NotSupported"},
    {result::DiskFull, "DiskFull"},
    {result::InvalidName, "InvalidName"},
    {result::NameTooLong, "NameTooLong"},
    {result::FileTooLarge, "FileTooLarge"},
    {result::NotValidInItsEncoding, "NotValidInItsEncoding"},
    {result::QuotaExceeded, "QuotaExceeded"},
    {result::InputOutputError, "InputOutputError"},
};

}  // namespace

std::string NameOf(result::Code code)
{
    for (const Row& row : kRows) {
        if (row.code == code) {
            return std::string(row.name);
        }
    }
    return "unknown code";
}

}  // namespace zupm::tool
