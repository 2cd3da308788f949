/// Uses the component without registration in a program whose own manifest says nothing about it, such as a plug-in of
/// another program. An activation context takes the place of the manifest: it names a manifest file, which names the
/// component's assembly, and the folder with the component.
///
/// Usage: activation_context MANIFEST FOLDER FILE      MANIFEST is regfree.manifest or one like it
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "UseComponent.h"

namespace {

/// Makes an activation context the thread's current one for as long as this lives. Every creation of an object and
/// every call through a proxy needs it.
class ActivationContext {
public:
    /// `folder` ends with a backslash.
    ActivationContext(const wchar_t* manifest, const std::wstring& folder)
    {
        ACTCTXW description{};
        description.cbSize = sizeof description;
        description.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
        description.lpSource = manifest;
        description.lpAssemblyDirectory = folder.c_str();
        m_context = CreateActCtxW(&description);
        if (m_context == INVALID_HANDLE_VALUE) {
            throw std::runtime_error("CreateActCtx failed: " + std::to_string(GetLastError()));
        }
        if (ActivateActCtx(m_context, &m_cookie) == 0) {
            ReleaseActCtx(m_context);
            throw std::runtime_error("ActivateActCtx failed: " + std::to_string(GetLastError()));
        }
    }
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ~ActivationContext()
    {
        DeactivateActCtx(0, m_cookie);
        ReleaseActCtx(m_context);
    }

private:
    HANDLE m_context;
    ULONG_PTR m_cookie = 0;
};

void Use(wchar_t** arguments)
{
    const ActivationContext context(arguments[1], std::wstring(arguments[2]) + L"\\");
    Show(arguments[3]);
}

}  // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 4) {
        std::fputs("usage: activation_context MANIFEST FOLDER FILE\n", stderr);
        return 2;
    }
    int exitCode = 1;
    if (CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) >= 0) {
        try {
            Use(arguments);
            exitCode = 0;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "activation_context: %s\n", error.what());
        }
        CoUninitialize();
    }
    return exitCode;
}
