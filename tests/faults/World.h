/// What operations under failing memory work on.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Outs.h"
#include "tests/support/PolicyFileClient.h"
#include "tests/support/TempFolder.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// The names in the file that a World loads. All too long to fit into a string object itself, so that every copy of one
/// is an allocation.
inline constexpr const char16_t* kProduct = u"PRODUCT-A-1000000000";
inline constexpr const char16_t* kOtherProduct = u"PRODUCT-B-2000000000";
inline constexpr const char16_t* kTask = u"{00000000-0000-0000-0000-000000000001}";
inline constexpr const char16_t* kOtherTask = u"{00000000-0000-0000-0000-000000000002}";
inline constexpr const char16_t* kSection = u"a section with a long name";
inline constexpr const char16_t* kSetting = u"a setting with a long name";
inline constexpr const char16_t* kOtherSetting = u"another setting of this section";
inline constexpr const char16_t* kValue = u"the value that the file has, with ä and <brackets>";
inline constexpr const char16_t* kNewName = u"a name that nothing in the file has";
inline constexpr const char16_t* kNewValue = u"the value that a test puts in its place";
inline constexpr std::u16string_view kFileName = u"policy.xml";
inline constexpr std::u16string_view kIniName = u"task.ini";

/// Everything that a client can see of the objects and of the folder.
struct Sight {
    std::vector<TextResult> texts;
    std::vector<HRESULT> lookups;
    std::vector<std::string> files;  ///< names and bytes

    friend bool operator==(const Sight&, const Sight&) = default;
};

/// For gtest messages.
void PrintTo(const Sight& sight, std::ostream* out);

/// One policy file that is loaded and open for edits, one product and one task taken out of it, an enumerator at its
/// first task; arguments and slots, made beforehand so that the operation alone allocates.
struct World {
    explicit World(const TempFolder& files);

    /// What a client sees of the policy file object; of the product; of the task; of the folder.
    [[nodiscard]] Sight OfFile() const;
    [[nodiscard]] Sight OfProduct() const;
    [[nodiscard]] Sight OfTask() const;
    [[nodiscard]] Sight OfFolder() const;
    /// All of these.
    [[nodiscard]] Sight OfAll() const;

    /// What is in the document, read by another object through a file of its own.
    [[nodiscard]] PolicyFileClient ReadBack() const;

    const TempFolder& folder;
    PolicyFileClient file;
    ProductClient product;
    TaskClient task;
    TaskInfoClient tasks;

    Bstr path;
    Bstr newPath;
    Bstr iniPath;
    Bstr softwareId{kProduct};
    Bstr taskId{kTask};
    Bstr section{kSection};
    Bstr setting{kSetting};
    Bstr newName{kNewName};
    Bstr newValue{kNewValue};

    OutText text;
    OutText second;
    OutNumber number;
    OutObject<IUnknown> object;
    OutObject<IPolicyTask> newTask;
    OutObject<IPolicyProduct> newPolicy;
    OutObject<IPolicyNames> names;
    ComPtr<IPolicyNames> list;        ///< null until an operation prepares it
    ComPtr<IEnumVARIANT> enumerator;  ///< likewise
};

}  // namespace zupm::test
