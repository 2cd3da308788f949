// What the module carries besides its code, and what it asks of the system when it is loaded.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "tests/windows/Registration.h"

namespace zupm::test {

namespace {

/// The module as data, or loaded with its code run.
class LoadedModule {
public:
    explicit LoadedModule(DWORD flags) : m_module(LoadLibraryExW(ModulePath().c_str(), nullptr, flags)) {}
    ~LoadedModule() { FreeLibrary(m_module); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    [[nodiscard]] HMODULE Get() const { return m_module; }

private:
    HMODULE m_module;
};

std::string ResourceText(HMODULE module, const wchar_t* name, const wchar_t* type)
{
    const HRSRC place = FindResourceW(module, name, type);
    if (place == nullptr) {
        return {};
    }
    const auto* text = static_cast<const char*>(LockResource(LoadResource(module, place)));
    return {text, SizeofResource(module, place)};
}

/// The module's version resource.
class VersionInformation {
public:
    VersionInformation() : m_bytes(GetFileVersionInfoSizeW(ModulePath().c_str(), nullptr))
    {
        GetFileVersionInfoW(ModulePath().c_str(), 0, static_cast<DWORD>(m_bytes.size()), m_bytes.data());
    }

    [[nodiscard]] std::string Text(const wchar_t* name) const
    {
        const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\").append(name);
        const auto* text = static_cast<const wchar_t*>(Find(path.c_str()));
        return text == nullptr ? "(none)" : Narrow(text);
    }
    [[nodiscard]] const VS_FIXEDFILEINFO* Fixed() const { return static_cast<const VS_FIXEDFILEINFO*>(Find(L"\\")); }
    [[nodiscard]] std::array<WORD, 2> Translation() const
    {
        std::array<WORD, 2> translation{};
        if (const void* found = Find(L"\\VarFileInfo\\Translation"); found != nullptr) {
            std::memcpy(translation.data(), found, sizeof translation);
        }
        return translation;
    }

private:
    [[nodiscard]] const void* Find(const wchar_t* path) const
    {
        void* found = nullptr;
        UINT size = 0;
        return VerQueryValueW(m_bytes.data(), path, &found, &size) != 0 ? found : nullptr;
    }

    std::vector<char> m_bytes;
};

/// "1.2.3.0" of the two halves of a binary version.
std::string VersionText(DWORD high, DWORD low)
{
    return std::to_string(HIWORD(high)) + "." + std::to_string(LOWORD(high)) + "." + std::to_string(HIWORD(low)) + "." +
           std::to_string(LOWORD(low));
}

std::vector<HMODULE> g_disabled;

BOOL WINAPI NoteDisabled(HMODULE module)
{
    g_disabled.push_back(module);
    return TRUE;
}

/// Sends the process's calls of DisableThreadLibraryCalls to NoteDisabled for a while: the first bytes of its code
/// become a jump.
class NotedDisableCalls {
public:
    NotedDisableCalls()
        : m_code(
              reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "DisableThreadLibraryCalls")))
    {
        g_disabled.clear();
        Jump jump = kJumpToRax;
        auto* const target = reinterpret_cast<void*>(&NoteDisabled);
        std::memcpy(jump.data() + kTarget, &target, sizeof target);
        std::memcpy(m_before.data(), m_code, m_before.size());
        Write(jump);
    }
    ~NotedDisableCalls() { Write(m_before); }
    NotedDisableCalls(const NotedDisableCalls&) = delete;
    NotedDisableCalls& operator=(const NotedDisableCalls&) = delete;

private:
    using Jump = std::array<unsigned char, 12>;
    static constexpr Jump kJumpToRax{0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0};  ///< mov rax, ...; jmp rax
    static constexpr std::size_t kTarget = 2;

    void Write(const Jump& code) const
    {
        DWORD protection = 0;
        ASSERT_NE(VirtualProtect(m_code, code.size(), PAGE_EXECUTE_READWRITE, &protection), 0);
        std::memcpy(m_code, code.data(), code.size());
        VirtualProtect(m_code, code.size(), protection, &protection);
        FlushInstructionCache(GetCurrentProcess(), m_code, code.size());
    }

    void* m_code;
    Jump m_before{};
};

}  // namespace

TEST(ModuleResources, Manifest_NamesTheAssemblyAndRunsAsTheInvokerWithUserInterfaceAccess)
{
    const LoadedModule module(LOAD_LIBRARY_AS_DATAFILE);
    const std::string text = ResourceText(module.Get(), MAKEINTRESOURCEW(2), MAKEINTRESOURCEW(24));
    for (const std::string_view part :
         {"<assemblyIdentity type=\"win32\" name=\"zuPolicyManager64\" version=\"1.0.0.0\" "
          "processorArchitecture=\"amd64\"/>",
          "<requestedExecutionLevel level=\"asInvoker\" uiAccess=\"true\"/>"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    }
    EXPECT_EQ(text.find("<assemblyIdentity"), text.rfind("<assemblyIdentity"));
    EXPECT_EQ(text.find("<requestedExecutionLevel"), text.rfind("<requestedExecutionLevel"));
}

TEST(ModuleResources, String100_IsTheProjectsName)
{
    const LoadedModule module(LOAD_LIBRARY_AS_DATAFILE);
    std::wstring text(64, L'\0');
    text.resize(static_cast<std::size_t>(LoadStringW(module.Get(), 100, text.data(), static_cast<int>(text.size()))));
    EXPECT_EQ(Narrow(text), "zuPolicyManager");
}

TEST(ModuleResources, VersionInformation_IsTheProjects)
{
    const VersionInformation version;
    const std::string expected = std::string(ZUPM_VERSION) + ".0";
    const VS_FIXEDFILEINFO* const fixed = version.Fixed();
    ASSERT_NE(fixed, nullptr);
    EXPECT_EQ(VersionText(fixed->dwFileVersionMS, fixed->dwFileVersionLS), expected);
    EXPECT_EQ(VersionText(fixed->dwProductVersionMS, fixed->dwProductVersionLS), expected);
    EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
    EXPECT_EQ(fixed->dwFileOS, static_cast<DWORD>(VOS_NT_WINDOWS32));
    EXPECT_EQ(version.Translation(), (std::array<WORD, 2>{0x0409, 1200}));
    const std::pair<const wchar_t*, std::string> rows[] = {
        {L"FileDescription", "Policy manager component"},
        {L"FileVersion", expected},
        {L"InternalName", "zuPolicyManager64"},
        {L"OriginalFilename", "zuPolicyManager64.dll"},
        {L"ProductName", "zuPolicyManager"},
        {L"ProductVersion", expected},
    };
    for (const auto& [name, text] : rows) {
        EXPECT_EQ(version.Text(name), text) << Narrow(name);
    }
}

TEST(ModuleLoading, TurnsTheNotificationsOfThreadsOffForTheModuleAlone)
{
    const NotedDisableCalls noted;
    ASSERT_EQ(GetModuleHandleW(L"zuPolicyManager64.dll"), nullptr);
    const LoadedModule module(0);
    ASSERT_NE(module.Get(), nullptr);
    EXPECT_EQ(std::count(g_disabled.begin(), g_disabled.end(), module.Get()), 1);
}

}  // namespace zupm::test
