#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "module/Registry.h"
#include "tests/comrt/RegistryTest.h"
#include "zuPolicyManager/Owners.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {
namespace {

constexpr HRESULT kBadFile = static_cast<HRESULT>(0x8007000Du);

class RegistryFile : public RegistryTest {
protected:
    [[nodiscard]] static mode_t ModeOf(const std::string& path)
    {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777;
    }
};

TEST_F(RegistryFile, ValuesAreReadBackByKeyAndName)
{
    EXPECT_EQ(ZuRegistrySetValue(u"Key\\Below", nullptr, u"default"), S_OK);
    EXPECT_EQ(ZuRegistrySetValue(u"Key\\Below", u"Näme", u"välue\n\"x\"\\"), S_OK);
    EXPECT_EQ(Value(u"key\\below", nullptr), u"default");
    EXPECT_EQ(Value(u"KEY\\Below", u"Näme"), u"välue\n\"x\"\\");
    EXPECT_EQ(m_folder.Read(u"registry"),
              "[Key]\n[Key\\Below]\n@=\"default\"\n\"N\xC3\xA4me\"=\"v\xC3\xA4lue%0A%22x%22\\\"\n");
}

TEST_F(RegistryFile, AnEmptyValueNameIsTheDefaultValue)
{
    EXPECT_EQ(ZuRegistrySetValue(u"K", u"", u"x"), S_OK);
    EXPECT_EQ(Value(u"K", nullptr), u"x");
}

TEST_F(RegistryFile, AMissingKeyOrValueGivesNotFoundAndANullOut)
{
    BSTR value = reinterpret_cast<BSTR>(std::uintptr_t{0x10});
    EXPECT_EQ(ZuRegistryGetValue(u"K", nullptr, &value), result::FileNotFound);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(ZuRegistryCreateKey(u"K"), S_OK);
    EXPECT_EQ(ZuRegistryGetValue(u"K", nullptr, &value), result::FileNotFound);
    EXPECT_EQ(ZuRegistryGetValue(u"K", u"n", &value), result::FileNotFound);
    EXPECT_EQ(ZuRegistryGetValue(nullptr, nullptr, &value), result::FileNotFound);
    EXPECT_EQ(ZuRegistryGetValue(u"K", nullptr, nullptr), E_POINTER);
}

TEST_F(RegistryFile, DeleteTree_SucceedsWhenThereIsNothingAndMakesNoFile)
{
    EXPECT_EQ(ZuRegistryDeleteTree(u"K"), S_OK);
    EXPECT_TRUE(m_folder.Names().empty());
    EXPECT_EQ(ZuRegistrySetValue(u"K\\L", nullptr, u"x"), S_OK);
    EXPECT_EQ(ZuRegistryDeleteTree(u"k"), S_OK);
    EXPECT_EQ(m_folder.Read(u"registry"), "");
}

TEST_F(RegistryFile, ABadFileIsRefusedByEveryFunctionAndNotOverwritten)
{
    for (const char* bad : {"nonsense\n", "[A]", "[A\xFF]\n", "[A\xED\xA0\x80]\n"}) {
        m_folder.Write(u"registry", bad);
        Bstr value;
        EXPECT_EQ(ZuRegistryGetValue(u"A", nullptr, value.Put()), kBadFile) << bad;
        EXPECT_EQ(ZuRegistrySetValue(u"A", nullptr, u"x"), kBadFile) << bad;
        EXPECT_EQ(ZuRegistryCreateKey(u"A"), kBadFile) << bad;
        EXPECT_EQ(ZuRegistryDeleteTree(u"A"), kBadFile) << bad;
        EXPECT_EQ(m_folder.Read(u"registry"), bad);
    }
}

TEST_F(RegistryFile, BadKeysAndTextsAreRefusedAndNothingIsWritten)
{
    constexpr OLECHAR kLone[] = {char16_t{0xD800}, 0};
    EXPECT_EQ(ZuRegistryCreateKey(nullptr), result::InvalidName);
    EXPECT_EQ(ZuRegistryCreateKey(u"A\\\\B"), result::InvalidName);
    EXPECT_EQ(ZuRegistryCreateKey(std::u16string(600, u'k').c_str()), result::NameTooLong);
    EXPECT_EQ(ZuRegistryCreateKey(kLone), result::NotValidInItsEncoding);
    EXPECT_EQ(ZuRegistrySetValue(u"A", kLone, u"x"), result::NotValidInItsEncoding);
    EXPECT_EQ(ZuRegistrySetValue(u"A", nullptr, kLone), result::NotValidInItsEncoding);
    EXPECT_FALSE(m_folder.Has(u"registry"));
}

TEST_F(RegistryFile, AChangeThatChangesNothingDoesNotWrite)
{
    ASSERT_EQ(ZuRegistrySetValue(u"K", u"n", u"v"), S_OK);
    struct stat before {};
    ASSERT_EQ(::stat(FileName().c_str(), &before), 0);
    EXPECT_EQ(ZuRegistrySetValue(u"K", u"n", u"v"), S_OK);
    EXPECT_EQ(ZuRegistryCreateKey(u"k"), S_OK);
    EXPECT_EQ(ZuRegistryDeleteTree(u"missing"), S_OK);
    struct stat after {};
    ASSERT_EQ(::stat(FileName().c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(RegistryFile, TheLockFileStaysUnderItsName)
{
    ASSERT_EQ(ZuRegistryCreateKey(u"K"), S_OK);
    EXPECT_EQ(m_folder.Names(), (std::vector<std::string>{"registry", "registry.lock"}));
    EXPECT_EQ(ModeOf(FileName() + ".lock") & 0077, 0u);
}

TEST_F(RegistryFile, ALockNameThatIsALinkIsNotFollowed)
{
    const std::string planted = (m_folder.Folder() / "planted").string();
    ASSERT_EQ(::symlink(planted.c_str(), (FileName() + ".lock").c_str()), 0);
    EXPECT_TRUE(FAILED(ZuRegistryCreateKey(u"K")));
    EXPECT_FALSE(m_folder.Has(u"planted"));
    EXPECT_FALSE(m_folder.Has(u"registry"));
}

TEST_F(RegistryFile, MissingFoldersAreMadeForTheirOwnerAlone)
{
    const std::string data = (m_folder.Folder() / "a" / "b").string();
    const ScopedVariable none("ZUREGISTRY", nullptr);
    const ScopedVariable xdg("XDG_DATA_HOME", data.c_str());
    EXPECT_EQ(ZuRegistryDeleteTree(u"K"), S_OK);
    EXPECT_FALSE(m_folder.Has(u"a"));
    EXPECT_EQ(ZuRegistryCreateKey(u"K"), S_OK);
    EXPECT_EQ(ModeOf(data), 0700u);
    EXPECT_EQ(ModeOf(data + "/zupolicymanager"), 0700u);
    EXPECT_EQ(ReadBytes(Utf16(data + "/zupolicymanager/registry")), "[K]\n");
}

TEST_F(RegistryFile, TheHomeFolderIsUsedWhenTheDataFolderIsUnsetOrRelative)
{
    const ScopedVariable none("ZUREGISTRY", "");
    const ScopedVariable home("HOME", m_folder.Folder().c_str());
    for (const char* data : {static_cast<const char*>(nullptr), "", "relative"}) {
        const ScopedVariable xdg("XDG_DATA_HOME", data);
        EXPECT_EQ(ZuRegistryCreateKey(u"K"), S_OK);
        const std::u16string path = m_folder.Path(u".local/share/zupolicymanager/registry");
        EXPECT_EQ(ReadBytes(path), "[K]\n");
        std::filesystem::remove(path);
    }
}

TEST_F(RegistryFile, WithoutAnyVariableNothingIsFound)
{
    const ScopedVariable none("ZUREGISTRY", nullptr);
    const ScopedVariable xdg("XDG_DATA_HOME", nullptr);
    for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
        const ScopedVariable home("HOME", value);
        Bstr out;
        EXPECT_EQ(ZuRegistryCreateKey(u"K"), result::FileNotFound);
        EXPECT_EQ(ZuRegistryGetValue(u"K", nullptr, out.Put()), result::FileNotFound);
        EXPECT_EQ(ZuRegistryDeleteTree(u"K"), result::FileNotFound);
    }
}

TEST_F(RegistryFile, ARegistryPathThatIsNotAbsoluteOrNotUtf8IsRefused)
{
    for (const char* path : {"registry", "./registry", "/tmp/\xFF"}) {
        const ScopedVariable variable("ZUREGISTRY", path);
        EXPECT_EQ(ZuRegistryCreateKey(u"K"), result::InvalidName) << path;
    }
}

TEST_F(RegistryFile, AFolderInPlaceOfTheFileIsRefused)
{
    ASSERT_EQ(::mkdir(FileName().c_str(), 0700), 0);
    EXPECT_EQ(ZuRegistryCreateKey(u"K"), result::AccessDenied);
    EXPECT_EQ(Value(u"K", nullptr), u"(none)");
}

TEST_F(RegistryFile, AFolderThatCannotBeMadeGivesItsCode)
{
    m_folder.Write(u"file", "");
    const ScopedVariable variable("ZUREGISTRY", (m_folder.Folder() / "file" / "x" / "registry").c_str());
    EXPECT_TRUE(FAILED(ZuRegistryCreateKey(u"K")));
    EXPECT_EQ(m_folder.Names(), std::vector<std::string>{"file"});
}

TEST_F(RegistryFile, TheSeamForRegistrationScriptsWritesTheSameFile)
{
    EXPECT_EQ(registry::CreateKey(u"CLSID"), result::Success);
    EXPECT_EQ(registry::SetValue(u"CLSID\\{1}", u"", u"Toy Class"), result::Success);
    EXPECT_EQ(registry::SetValue(u"CLSID\\{1}", u"Model", u"Free"), result::Success);
    EXPECT_EQ(m_folder.Read(u"registry"), "[CLSID]\n[CLSID\\{1}]\n@=\"Toy Class\"\n\"Model\"=\"Free\"\n");
    EXPECT_EQ(registry::DeleteTree(u"CLSID\\{1}"), result::Success);
    EXPECT_EQ(m_folder.Read(u"registry"), "[CLSID]\n");
}

TEST_F(RegistryFile, TheSeamForRegistrationScriptsRefusesEmbeddedNulls)
{
    const std::u16string cut(u"a\0b", 3);
    EXPECT_EQ(registry::CreateKey(cut), result::InvalidName);
    EXPECT_EQ(registry::SetValue(cut, u"n", u"v"), result::InvalidName);
    EXPECT_EQ(registry::SetValue(u"K", cut, u"v"), result::InvalidName);
    EXPECT_EQ(registry::SetValue(u"K", u"n", cut), result::InvalidName);
    EXPECT_EQ(registry::DeleteTree(cut), result::InvalidName);
    EXPECT_FALSE(m_folder.Has(u"registry"));
}

}  // namespace
}  // namespace zupm::test
