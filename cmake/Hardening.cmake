# The component runs in privileged processes, so every build is hardened. Sanitized builds are the exception: they have
# checks of their own.
add_library(zupm_hardening INTERFACE)
if(ZUPM_SANITIZE)
    target_compile_options(zupm_hardening INTERFACE
        -fsanitize=${ZUPM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
    target_link_options(zupm_hardening INTERFACE -fsanitize=${ZUPM_SANITIZE})
else()
    target_compile_options(zupm_hardening INTERFACE -fstack-protector-strong $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
    if(WIN32)
        # On Windows the stack protector is a library.
        target_link_options(zupm_hardening INTERFACE -fstack-protector-strong)
    else()
        target_link_options(zupm_hardening INTERFACE -Wl,-z,relro,-z,now)
    endif()
endif()
