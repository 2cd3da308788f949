#include "PolicyVersions.h"

#include <stdexcept>

#include "tests/support/TempFolder.h"

namespace zupm::test {

namespace {

constexpr char kEmptyFile[] =
    "<R><PolicyRoot version='1'><PolicyGroup Path='0_4'><Policy/></PolicyGroup></PolicyRoot><TaskRoot/></R>";
constexpr const char16_t* kProduct = u"PRODUCT";
constexpr const char16_t* kSection = u"Filler";
constexpr int kSettings = 50;

std::u16string Name(int setting)
{
    return u"N" + Utf16(std::to_string(setting));
}

/// 4,000 characters or more: the version's letter, more of them in later versions.
std::u16string Value(std::uint32_t version)
{
    const std::uint32_t kind = version % PolicyVersions::kDistinct;
    return std::u16string(4'000 + 10 * kind, static_cast<char16_t>(u'a' + kind));
}

void Require(HRESULT code, const char* what)
{
    if (code != 0) {
        throw std::runtime_error(what + (" failed with " + std::to_string(code)));
    }
}

ProductClient FindOrMake(PolicyFileClient& file)
{
    ProductClient product;
    const HRESULT code = file.GetPolicy(kProduct, product);
    if (code == result::PolicyNotFound) {
        return file.NewPolicy(kProduct);
    }
    Require(code, "GetPolicy");
    return product;
}

}  // namespace

PolicyVersions::PolicyVersions()
{
    const TempFolder folder;
    const std::u16string path = folder.Write(u"policy.xml", kEmptyFile);
    PolicyFileClient file;
    Require(file.Load(path), "InitializeFile");
    for (std::uint32_t version = 0; version < kDistinct; ++version) {
        Edit(file, version);
        Require(file.Write(path), "WriteFile");
        m_bytes.push_back(ReadBytes(path));
    }
}

void PolicyVersions::Edit(PolicyFileClient& file, std::uint32_t version)
{
    ProductClient product = FindOrMake(file);
    const std::u16string value = Value(version);
    for (int setting = 0; setting < kSettings; ++setting) {
        Require(product.Put(kSection, Name(setting), value), "PutSectionSetting");
    }
    Require(file.Add(product), "AddPolicy");
}

std::optional<std::uint32_t> PolicyVersions::VersionOf(const PolicyFileClient& file)
{
    ProductClient product;
    if (file.GetPolicy(kProduct, product) != 0) {
        return std::nullopt;
    }
    const std::u16string first = product.Get(kSection, Name(0)).text.value_or(u"");
    const std::uint32_t version = first.empty() ? kDistinct : static_cast<std::uint32_t>(first.front() - u'a');
    const TextResult wanted{0, Value(version)};
    for (int setting = 0; setting < kSettings; ++setting) {
        if (product.Get(kSection, Name(setting)) != wanted) {
            return std::nullopt;
        }
    }
    return version;
}

bool PolicyVersions::Load(PolicyFileClient& file, std::u16string_view path, std::uint32_t version)
{
    return file.Load(path) == 0 && VersionOf(file) == version % kDistinct;
}

}  // namespace zupm::test
