# What `cmake --install` installs. Clients link the component as zuPolicyManager::zuPolicyManager, inside this tree and
# outside it.
include(CMakePackageConfigHelpers)

add_library(zuPolicyManager INTERFACE)
add_library(zuPolicyManager::zuPolicyManager ALIAS zuPolicyManager)
target_include_directories(zuPolicyManager INTERFACE ${PROJECT_SOURCE_DIR}/include)
target_compile_features(zuPolicyManager INTERFACE cxx_std_17)

if(WIN32)
    # Clients reach the component through the system's runtime and never link it.
    target_link_libraries(zuPolicyManager INTERFACE ole32 oleaut32)
    set(resourceFolder ${CMAKE_INSTALL_BINDIR})
else()
    # A client calls no function of the component by name. But the component must be in its process, where it announces
    # its classes.
    target_link_libraries(zuPolicyManager INTERFACE
        -Wl,--push-state,--no-as-needed zuPolicyManager64 -Wl,--pop-state zucomrt)
    # The system's folder of libraries belongs to all packages, so the resource modules have a folder of their own in it.
    set(resourceFolder ${CMAKE_INSTALL_LIBDIR}/zuPolicyManager)
    install(TARGETS zucomrt LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    # The run paths are the same in the build tree and installed. For a run path that it must replace, CMake reserves
    # room with ':' at the end. The loader takes an empty entry for the current folder, where anybody may have planted a
    # library.
    set_target_properties(zuPolicyManager64 zucomrt PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
    set_target_properties(zupolicy PROPERTIES
        INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
endif()

install(TARGETS zuPolicyManager64
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS zupolicy RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# JSON Schemas of what the tool prints and reads.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/tools/zupolicy/schemas DESTINATION ${CMAKE_INSTALL_DATADIR}/zuPolicyManager)

include(cmake/Help.cmake)

# The component loads its texts from its own folder only: from that folder itself, natively also from a folder in it.
install(FILES ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/AgentRes.dll DESTINATION ${resourceFolder})
install(FILES ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/0407/AgentRes.dll DESTINATION ${resourceFolder}/0407)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zuPolicyManager DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/zuPolicyManager)
configure_package_config_file(cmake/zuPolicyManagerConfig.cmake.in
    ${PROJECT_BINARY_DIR}/zuPolicyManagerConfig.cmake
    INSTALL_DESTINATION ${packageFolder}
    PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zuPolicyManagerConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/zuPolicyManagerConfig.cmake
    ${PROJECT_BINARY_DIR}/zuPolicyManagerConfigVersion.cmake
    DESTINATION ${packageFolder})

if(NOT WIN32)
    file(RELATIVE_PATH includeFromPc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /${CMAKE_INSTALL_INCLUDEDIR})
    set(ZUPM_PC_INCLUDEDIR "\${pcfiledir}/${includeFromPc}")
    configure_file(cmake/zuPolicyManager.pc.in ${PROJECT_BINARY_DIR}/zuPolicyManager.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/zuPolicyManager.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

# A client that links the component by this name. It is built with the tree, so it cannot become outdated.
add_subdirectory(examples/cpp)
