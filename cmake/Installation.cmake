# Installs the library, its headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

target_include_directories(kvcalcul INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/KVCalcul>)
install(TARGETS kvcalcul EXPORT KVCalculTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES Calcul/pInitCalcul/KVCalcul.h Calcul/pInitCalcul/KVCalculMaps.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KVCalcul/Calcul/pInitCalcul)
install(FILES Calcul/cCalcul/Fiches.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KVCalcul/Calcul/cCalcul)

set(paquet ${CMAKE_INSTALL_LIBDIR}/cmake/KVCalcul)
install(EXPORT KVCalculTargets NAMESPACE KVCalcul:: DESTINATION ${paquet})
configure_package_config_file(cmake/KVCalculConfig.cmake.in ${PROJECT_BINARY_DIR}/KVCalculConfig.cmake
                              INSTALL_DESTINATION ${paquet})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KVCalculConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KVCalculConfig.cmake ${PROJECT_BINARY_DIR}/KVCalculConfigVersion.cmake
        DESTINATION ${paquet})

# The prefix is found from where the pkg-config file stands, so that the tree may be moved; from absolute directories it
# can't be.
cmake_path(IS_ABSOLUTE CMAKE_INSTALL_LIBDIR absolu)
if(absolu)
  set(KV_PC_PREFIXE ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH remonte /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" KV_PC_PREFIXE "\${pcfiledir}/${remonte}")
endif()
foreach(repertoire LIBDIR INCLUDEDIR)
  cmake_path(IS_ABSOLUTE CMAKE_INSTALL_${repertoire} absolu)
  if(absolu)
    set(KV_PC_${repertoire} ${CMAKE_INSTALL_${repertoire}})
  else()
    set(KV_PC_${repertoire} "\${prefix}/${CMAKE_INSTALL_${repertoire}}")
  endif()
endforeach()
configure_file(cmake/kvcalcul.pc.in ${PROJECT_BINARY_DIR}/kvcalcul.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kvcalcul.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
