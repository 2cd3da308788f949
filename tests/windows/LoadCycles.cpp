// Loads the module, makes an object, lets it throw inside, releases it and unloads the module, again and again, and
// prints what is lost in each cycle: thread-local storage slots and memory.
//
//   load_cycles <cycles>      0 when no slot is lost, and less than 2 KiB a cycle
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"
#include "tests/windows/Registration.h"

namespace {

using zupm::test::Bstr;
using zupm::test::ComPtr;

constexpr double kMostBytesACycle = 2048;
constexpr unsigned kWarmUp = 200;

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
using CanUnloadNow = HRESULT(WINAPI*)();

template <class Function>
Function Export(HMODULE module, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// True when the object refused the malformed file, which takes an exception inside the module, and a call by name
/// found its member.
bool UseObject(GetClassObject getClassObject, const std::u16string& malformed)
{
    ComPtr<IClassFactory> factory;
    if (FAILED(getClassObject(CLSID_PolicyFile, IID_IClassFactory, factory.PutVoid()))) {
        return false;
    }
    ComPtr<IPolicyFile> file;
    if (FAILED(factory->CreateInstance(nullptr, IID_IPolicyFile, file.PutVoid()))) {
        return false;
    }
    const Bstr path(malformed);
    if (file->InitializeFile(path.Get(), 0) != zupm::result::SyntaxError) {
        return false;
    }
    SetErrorInfo(0, nullptr);
    LPOLESTR name = const_cast<LPOLESTR>(L"AddTask");
    DISPID id = 0;
    return SUCCEEDED(file->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id)) && id == 1;
}

bool Cycle(const std::wstring& modulePath, const std::u16string& malformed)
{
    const HMODULE module = LoadLibraryW(modulePath.c_str());
    if (module == nullptr) {
        return false;
    }
    const bool used = UseObject(Export<GetClassObject>(module, "DllGetClassObject"), malformed);
    const bool idle = Export<CanUnloadNow>(module, "DllCanUnloadNow")() == S_OK;
    return FreeLibrary(module) != 0 && used && idle && GetModuleHandleW(L"zuPolicyManager64.dll") == nullptr;
}

/// The memory of its own that the process has committed, counted page by page.
std::size_t PrivateBytes()
{
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (const char* address = nullptr; VirtualQuery(address, &region, sizeof region) == sizeof region;
         address = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) {
            bytes += region.RegionSize;
        }
    }
    return bytes;
}

/// True when memory that is not given back shows in the count above.
bool SeesLeaks()
{
    constexpr std::size_t kBlocks = 8192;
    constexpr std::size_t kBlockBytes = 1024;
    const std::size_t before = PrivateBytes();
    std::vector<std::vector<char>> blocks(kBlocks, std::vector<char>(kBlockBytes));
    return PrivateBytes() >= before + kBlocks * kBlockBytes / 2;
}

/// How many thread-local storage slots the process could still take.
std::size_t FreeSlots()
{
    std::vector<DWORD> slots;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) {
        slots.push_back(slot);
    }
    for (const DWORD slot : slots) {
        TlsFree(slot);
    }
    return slots.size();
}

std::u16string WriteMalformedFile()
{
    const std::wstring path = zupm::test::BesideProgram(L"load_cycles.xml");
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, "<a><b></a>", 10, &written, nullptr);
    CloseHandle(file);
    return {path.begin(), path.end()};
}

}  // namespace

int main(int argc, char** argv)
{
    const unsigned cycles = argc > 1 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)) : 0;
    const std::wstring modulePath = zupm::test::ModulePath();
    const std::u16string malformed = WriteMalformedFile();
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    std::size_t slotsBefore = 0;
    std::size_t bytesBefore = 0;
    for (unsigned i = 0; i < kWarmUp + cycles; ++i) {
        if (i == kWarmUp) {
            slotsBefore = FreeSlots();
            bytesBefore = PrivateBytes();
        }
        if (!Cycle(modulePath, malformed)) {
            std::printf("cycle %u failed\n", i);
            return 1;
        }
    }
    const std::size_t slotsAfter = FreeSlots();
    const double growth =
        (static_cast<double>(PrivateBytes()) - static_cast<double>(bytesBefore)) / static_cast<double>(cycles);
    std::printf("%u cycles, %.1f bytes a cycle, free slots %zu then %zu\n", cycles, growth, slotsBefore, slotsAfter);
    DeleteFileW(zupm::test::BesideProgram(L"load_cycles.xml").c_str());
    if (!SeesLeaks()) {
        std::puts("the measurement does not see leaks");
        return 1;
    }
    return cycles > 0 && slotsAfter == slotsBefore && growth < kMostBytesACycle ? 0 : 1;
}
