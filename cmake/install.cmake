# What goes where when the library is installed. Everything finds its neighbours relative to itself, so an installed
# tree can be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(targets pqx_video pqx_video_static pqx_vector_static)
if(NOT PQX_VECTOR_LIBRARY)
  list(APPEND targets pqx_vector)
endif()
foreach(target IN LISTS targets)
  string(REPLACE pqx_ "" name ${target})
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
endforeach()
install(TARGETS ${targets} EXPORT pqx_video INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/pqx_video.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES abi/contract.json DESTINATION ${CMAKE_INSTALL_DATADIR}/pqx_video)
install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/pqx_video)
configure_package_config_file(cmake/pqx_videoConfig.cmake.in pqx_videoConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(pqx_videoConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT pqx_video NAMESPACE pqx:: FILE pqx_videoTargets.cmake DESTINATION ${package_dir})
install(FILES ${PROJECT_BINARY_DIR}/pqx_videoConfig.cmake ${PROJECT_BINARY_DIR}/pqx_videoConfigVersion.cmake
        DESTINATION ${package_dir})

file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
foreach(name pqx_video pqx_vector)
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

if(TARGET pqxvideo)
  file(RELATIVE_PATH libraries_from_tool /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(pqxvideo PROPERTIES INSTALL_RPATH "$ORIGIN:$ORIGIN/${libraries_from_tool}")
  install(TARGETS pqxvideo)
  install(FILES docs/pqxvideo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT man)
endif()

if(PROJECT_IS_TOP_LEVEL)
  set(CPACK_GENERATOR TGZ)
  set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
  set(CPACK_STRIP_FILES ON)
  include(CPack)
endif()
