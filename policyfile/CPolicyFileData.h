/// The model of a policy file.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "notices/Notices.h"
#include "policyfile/PolicyFileProperties.h"
#include "settings/CElementRef.h"
#include "settings/NameIndex.h"
#include "settings/NameList.h"
#include "xml/Document.h"
#include "xml/FileBytes.h"
#include "xml/TextRuns.h"
#include "xml/TextSnapshot.h"
#include "xml/UtfEncodings.h"
#include "xml/XmlText.h"
#include "zuPolicyManager/Results.h"

namespace zupm {

/// The document of a policy file and two indexes of references into it: products by software ID, tasks by software ID
/// and task ID.
///
/// Lifetime   Owns the document; references and handles are valid until DeinitializeFile.
/// Threads    None of its own; the owning CPolicyFile holds its lock around every call.
/// Errors     Result codes. Filling and emptying an index turn any exception into Unexpected and keep what was
///            inserted. The other operations pass out exceptions of memory and of characters that XML cannot hold.
/// Invariants Every reference in the indexes points into a document that this object keeps alive.
class CPolicyFileData {
public:
    using PolicyIndex = NameIndex<CPolicyRef>;
    using TaskMap = NameIndex<CTaskRef>;
    using TaskIndex = NameIndex<std::unique_ptr<TaskMap>>;
    using Documents = std::vector<std::shared_ptr<AdvXMLParser::Document>>;

    /// `properties` outlives the data.
    explicit CPolicyFileData(PolicyFileProperties& properties) noexcept : m_properties(properties) {}
    virtual ~CPolicyFileData();
    CPolicyFileData(const CPolicyFileData&) = delete;
    CPolicyFileData& operator=(const CPolicyFileData&) = delete;

    /// Closes what is loaded and loads another file. FileNotFound and the other codes of reading; SyntaxError with
    /// "file:line:column: reason" in `detail`; AllocationFailed (no document); Unexpected (while indexing). Only a
    /// result that is not negative makes the object initialised. A failure leaves no document, with one exception:
    /// Unexpected leaves the new document and the entries that were made from it. These entries stay beside those of
    /// the next load, until a load that succeeded is closed.
    [[nodiscard]] result::Code InitializeFile(std::u16string path, std::u16string& detail);
    /// The same for a file that `read` reads. It gives the text and the encoding, or throws ReadWriteException.
    using ReadText = std::function<void(AdvXMLParser::XmlText& buffer, AdvXMLParser::UTF_ENCODINGS& encoding)>;
    [[nodiscard]] result::Code InitializeFile(std::u16string path, const ReadText& read, std::u16string& detail);
    /// Empties the indexes and frees the document. Path, versions, assignment list and encoding stay. Always Success.
    result::Code DeinitializeFile() noexcept;

    [[nodiscard]] bool IsInitialised() const noexcept { return m_initialised; }
    [[nodiscard]] bool HasDocument() const noexcept { return m_document != nullptr; }
    [[nodiscard]] TaskIndex& Tasks() noexcept { return m_tasks; }

    /// Every document that a handle may point into at this moment. Who holds the list keeps them alive.
    [[nodiscard]] Documents HoldDocuments() const;
    /// True as long as no load has begun since HoldDocuments gave that list.
    [[nodiscard]] bool HasLoaded(const Documents& documents) const noexcept { return documents.back() == m_document; }

    /// Adds what the document holds to an index; of equal keys the first counts and the others are logged. Unexpected.
    [[nodiscard]] result::Code InitializePolicyMap() noexcept;
    [[nodiscard]] result::Code InitializeTaskMap() noexcept;
    /// Empties an index.
    [[nodiscard]] result::Code DeinitializePolicyMap() noexcept;
    [[nodiscard]] result::Code DeinitializeTaskMap() noexcept;

    /// NotInitialised, PolicyNotFound; `found` is written on success only and is valid until the index changes.
    [[nodiscard]] result::Code FindPolicyRef(std::u16string_view softwareId, const CPolicyRef*& found) const noexcept;
    /// NotInitialised, TaskNotFound, NotCreated (a software ID without a map); `found` is null then.
    [[nodiscard]] result::Code FindTaskRef(std::u16string_view softwareId, std::u16string_view taskId,
                                           const CTaskRef*& found) const noexcept;

    /// What the two lookups find, in the order of the file: software IDs of policies, software IDs that have tasks, and
    /// the task IDs of one of them (none when it has no tasks).
    [[nodiscard]] NameList PolicyIds() const;
    [[nodiscard]] NameList TaskSoftwareIds() const;
    [[nodiscard]] NameList TaskIds(std::u16string_view softwareId) const;

    /// Appends an empty "TaskGroup" with a "Task" to the first "TaskRoot". ElementMissing, NotCreated,
    /// AllocationFailed. The index is the caller's to rebuild.
    [[nodiscard]] result::Code CreateTaskSlot(std::unique_ptr<CTaskRef>& slot);
    /// Appends a "Product" with that ID to the first "Policy". Codes and index as for CreateTaskSlot.
    [[nodiscard]] result::Code CreateProductSlot(std::u16string_view softwareId, std::unique_ptr<CPolicyRef>& slot);

    /// The largest "TaskVersion" of all groups, at least 0. Compared without sign: a negative one is larger than any
    /// positive one. Always Success.
    [[nodiscard]] result::Code GetHighestTaskVersion(std::uint64_t& version) const;

    /// Brings the version attributes up to date and gives groups without a "Path" the default one.
    void StampVersions();

    /// The document's text, in pieces that are valid until the next edit; there must be a document.
    [[nodiscard]] AdvXMLParser::TextRuns Runs() const { return m_document->Runs(); }
    /// The bytes of the file that was loaded, as they were then, without a second copy of them; empty when nothing is
    /// loaded. Valid until the next load; throws std::bad_alloc.
    [[nodiscard]] AdvXMLParser::FileBytes LoadedBytes() const { return {m_loaded.Runs(), m_encoding, true}; }
    /// The document's text as it is now. The document must be there, and outlives the snapshot.
    [[nodiscard]] AdvXMLParser::TextSnapshot Snapshot() const { return m_document->Snapshot(); }
    /// Makes the text that a snapshot holds the one of LoadedBytes: it was written where the file was loaded from.
    void KeepAsLoaded(AdvXMLParser::TextSnapshot written) noexcept { m_loaded = std::move(written); }
    /// The path that was loaded, as it is found from every folder.
    [[nodiscard]] const std::u16string& LoadedPath() const noexcept { return m_absolutePath; }

    /// What is odd in the document as it is now; there must be a document. Throws std::bad_alloc.
    [[nodiscard]] Notices FindNotices() const;

    /// The encoding of the last file whose bytes could be read as text, even if that text could not be parsed. It is
    /// the encoding of the document, if there is one.
    [[nodiscard]] AdvXMLParser::UTF_ENCODINGS Encoding() const noexcept { return m_encoding; }

private:
    // Given: see docs/given-oddities.md, "two loaders".
    [[nodiscard]] result::Code Initialize(const ReadText& read, std::u16string& detail);
    [[nodiscard]] result::Code LoadDocument(const ReadText& read);
    /// Sets the document of a load that failed while indexing aside.
    void RetireDocument();
    void ReadProperties(const AdvXMLParser::Element& root);

    /// The document element; null without a document.
    [[nodiscard]] AdvXMLParser::Element Root() const noexcept;
    /// `softwareId` is room for the product's ID.
    void AddPolicies(const AdvXMLParser::Element& policy, std::u16string& softwareId);
    /// `softwareId` and `taskId` are room for the group's IDs.
    void AddTasks(const AdvXMLParser::Element& group, std::u16string& softwareId, std::u16string& taskId);
    /// When the index has the keys already, it stays as it is and the result is false.
    [[nodiscard]] bool InsertTask(std::u16string_view softwareId, std::u16string_view taskId, const CTaskRef& task);

    std::shared_ptr<AdvXMLParser::Document> m_document;
    AdvXMLParser::TextSnapshot m_loaded;  ///< of `m_document`; empty unless the load succeeded
    Documents m_retired;                  ///< documents of failed loads, which entries of the indexes still point into
    std::u16string m_path;
    std::u16string m_absolutePath;
    bool m_initialised = false;
    PolicyFileProperties& m_properties;
    AdvXMLParser::UTF_ENCODINGS m_encoding = AdvXMLParser::UTF_ENCODINGS::Utf8;
    TaskIndex m_tasks;
    PolicyIndex m_policies;
};

}  // namespace zupm
