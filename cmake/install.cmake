# What find_package(KelDll) finds: KelDll::core, KelDll::desktop and the headers under include/keldll.
include(CMakePackageConfigHelpers)

set(config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/KelDll)

install(TARGETS keldll_core keldll_desktop EXPORT KelDllTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS keldll_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS keldll_spool RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR})
install(DIRECTORY src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/keldll FILES_MATCHING PATTERN "*.h")
install(EXPORT KelDllTargets NAMESPACE KelDll:: DESTINATION ${config_folder})

configure_package_config_file(cmake/KelDllConfig.cmake.in KelDllConfig.cmake
                              INSTALL_DESTINATION ${config_folder})
write_basic_package_version_file(KelDllConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KelDllConfig.cmake ${PROJECT_BINARY_DIR}/KelDllConfigVersion.cmake
        DESTINATION ${config_folder})
