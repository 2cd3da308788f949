// Loading and closing.
#include "policyfile/CPolicyFileData.h"

#include <utility>

#include "module/host/Log.h"
#include "platform/common/Decimal.h"
#include "platform/xml/Exceptions.h"
#include "platform/xml/FileBuffer.h"
#include "platform/xml/Parser.h"
#include "settings/ParseFailure.h"

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
        if (const Attribute attribute = element.GetAttribute(u"version"); !attribute.IsNull()) {
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
    if (m_initialised) {
        if (const result::Code code = DeinitializeFile(); code < 0) {
            return code;
        }
    }
    m_path = std::move(path);
    const result::Code code = Initialize(detail);
    m_initialised = code >= 0;
    return code;
}

result::Code CPolicyFileData::DeinitializeFile() noexcept
{
    static_cast<void>(DeinitializeTaskMap());
    static_cast<void>(DeinitializePolicyMap());
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

result::Code CPolicyFileData::Initialize(std::u16string& detail)
{
    constexpr std::u16string_view kReadFailed = u"CPolicyFile::Initialize() - Read policy file failed";
    try {
        return LoadDocument();
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

result::Code CPolicyFileData::LoadDocument()
{
    AdvXMLParser::XmlText buffer;
    ReadBufferFromFile(m_path, buffer, m_encoding, true);
    ReplaceDocument(AdvXMLParser::Parser().Parse(std::move(buffer)));
    if (!m_document) {
        return result::AllocationFailed;
    }
    ReadProperties();
    const result::Code code = InitializePolicyMap();
    return code < 0 ? code : InitializeTaskMap();
}

void CPolicyFileData::ReplaceDocument(std::unique_ptr<Document> document)
{
    std::shared_ptr<Document> shared = std::move(document);
    if (m_document) {
        // Left by a load that failed while indexing: the entries that it made stay in the indexes, so it stays too.
        m_retired.push_back(m_document);
    }
    m_document = std::move(shared);
}

void CPolicyFileData::ReadProperties()
{
    for (const Element child : ElementChildren(Root())) {
        if (child.NameIs(u"PolicyRoot")) {
            ReadVersion(child, m_properties.policyVersion);
            m_properties.assignmentList.Set(child.GetAttribute(u"AssignmentList").GetText());
        } else if (child.NameIs(u"TaskRoot")) {
            ReadVersion(child, m_properties.taskVersion);
        }
    }
}

Element CPolicyFileData::Root() const noexcept
{
    return m_document ? m_document->GetRoot() : Element();
}

}  // namespace zupm
