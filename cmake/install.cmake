# The installed package: find_package(tq) and pkg-config tq. Both files find the rest of the package
# from where they lie, so that an installed tree can be moved as a whole.
include(CMakePackageConfigHelpers)

set(tq_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tq)
install(FILES ${tq_headers} ${tq_platform_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tq)
install(TARGETS tq tqplatform tq_platform EXPORT tq)
install(EXPORT tq NAMESPACE tq:: FILE tqTargets.cmake DESTINATION ${tq_package_dir})

configure_package_config_file(cmake/tqConfig.cmake.in tqConfig.cmake
                              INSTALL_DESTINATION ${tq_package_dir})
# Below 1.0 a minor version may break callers.
write_basic_package_version_file(tqConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tqConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/tqConfigVersion.cmake
        DESTINATION ${tq_package_dir})

file(RELATIVE_PATH tq_prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" tq_prefix_from_pc ${tq_prefix_from_pc})
configure_file(cmake/tq.pc.in tq.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tq.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
