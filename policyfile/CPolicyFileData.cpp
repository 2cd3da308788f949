// Loading and closing.
#include "policyfile/CPolicyFileData.h"

#include <utility>

#include "com/Log.h"
#include "notices/NoticeFinder.h"
#include "platform/Files.h"
#include "settings/ParseFailure.h"
#include "settings/Schema.h"
#include "text/Decimal.h"
#include "xml/Exceptions.h"
#include "xml/FileBuffer.h"
#include "xml/Parser.h"

namespace zupm {

using AdvXMLParser::Attribute;
using AdvXMLParser::Document;
using AdvXMLParser::Element;
using AdvXMLParser::ElementChildren;

namespace {

/// Takes a "version" attribute over when there is one that can be read.
void ReadVersion(const Element& element, std::atomic<std::uint64_t>& version) noexcept
{
    try {
        if (const Attribute attribute = element.GetAttribute(schema::kVersion); !attribute.IsNull()) {
            version = static_cast<std::uint64_t>(ParseInt64(attribute.GetText()));
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): a version that cannot be read leaves the old one
    }
}

}  // namespace

CPolicyFileData::~CPolicyFileData()
{
    DeinitializeFile();
}

result::Code CPolicyFileData::InitializeFile(std::u16string path, std::u16string& detail)
{
    const auto read = [this](AdvXMLParser::XmlText& buffer, AdvXMLParser::UTF_ENCODINGS& encoding) {
        ReadBufferFromFile(m_path, buffer, encoding, true);
    };
    return InitializeFile(std::move(path), read, detail);
}

result::Code CPolicyFileData::InitializeFile(std::u16string path, const ReadText& read, std::u16string& detail)
{
    if (m_initialised) {
        DeinitializeFile();
    }
    m_path = std::move(path);
    RetireDocument();
    const result::Code code = Initialize(read, detail);
    m_initialised = code >= 0;
    return code;
}

result::Code CPolicyFileData::DeinitializeFile() noexcept
{
    static_cast<void>(DeinitializeTaskMap());
    static_cast<void>(DeinitializePolicyMap());
    m_loaded = {};
    m_document.reset();
    m_retired.clear();
    m_initialised = false;
    return result::Success;
}

CPolicyFileData::Documents CPolicyFileData::HoldDocuments() const
{
    Documents documents = m_retired;
    documents.push_back(m_document);
    return documents;
}

result::Code CPolicyFileData::Initialize(const ReadText& read, std::u16string& detail)
{
    // Given: see docs/given-oddities.md, "names of another class".
    constexpr std::u16string_view kReadFailed = u"CPolicyFile::Initialize() - Read policy file failed";
    try {
        return LoadDocument(read);
    } catch (const AdvXMLParser::InvalidTextException& error) {
        LogFailure(kReadFailed);
        DescribePlace(m_path, error.GetLine(), error.GetColumn(), result::SentenceFor(error.GetErrorCode()), detail);
        return error.GetErrorCode();
    } catch (const AdvXMLParser::ReadWriteException& error) {
        LogFailure(kReadFailed);
        return error.GetErrorCode();
    } catch (const AdvXMLParser::ParsingException& error) {
        return ReportParseFailure(u"CPolicyFile::Initialize()", m_path, error, detail);
    }
}

result::Code CPolicyFileData::LoadDocument(const ReadText& read)
{
    m_absolutePath = AbsolutePath(m_path);
    AdvXMLParser::XmlText buffer;
    read(buffer, m_encoding);
    std::unique_ptr<Document> document = AdvXMLParser::Parser().Parse(std::move(buffer), schema::kLevelsOfFile);
    if (!document) {
        return result::AllocationFailed;
    }
    ReadProperties(document->GetRoot());
    AdvXMLParser::TextSnapshot loaded = document->Snapshot();
    m_document = std::move(document);
    result::Code code = InitializePolicyMap();
    code = code < 0 ? code : InitializeTaskMap();
    if (code >= 0) {
        m_loaded = std::move(loaded);
    }
    return code;
}

// Given: see docs/given-oddities.md, "entries of a failed load".
void CPolicyFileData::RetireDocument()
{
    if (m_document) {
        // A load that failed while indexing left it. The entries that it made stay in the indexes, so it stays alive.
        m_retired.push_back(m_document);
        m_document.reset();
    }
}

void CPolicyFileData::ReadProperties(const Element& root)
{
    for (const Element child : ElementChildren(root)) {
        if (child.NameIs(schema::kPolicyRoot)) {
            ReadVersion(child, m_properties.policyVersion);
            m_properties.assignmentList.Set(child.GetAttribute(schema::kAssignmentList).GetText());
        } else if (child.NameIs(schema::kTaskRoot)) {
            ReadVersion(child, m_properties.taskVersion);
        }
    }
}

Notices CPolicyFileData::FindNotices() const
{
    const AdvXMLParser::TextRuns runs = m_document->Runs();
    if (runs.size() == 1) {
        return NoticeFinder(runs.front()).Find();
    }
    const std::string text = AdvXMLParser::Joined(runs);
    return NoticeFinder(text).Find();
}

Element CPolicyFileData::Root() const noexcept
{
    return m_document ? m_document->GetRoot() : Element();
}

}  // namespace zupm
