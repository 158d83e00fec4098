# Installs the libraries, their headers, a CMake package and a pkg-config file for each.
include(CMakePackageConfigHelpers)

target_include_directories(kvcalcul INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_include_directories(kv INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/interface>)
foreach(bibliotheque kvcalcul kv)
  target_include_directories(${bibliotheque} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/KVCalcul>)
endforeach()
install(TARGETS kvcalcul kv EXPORT KVCalculTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES Calcul/pInitCalcul/KVCalcul.h Calcul/pInitCalcul/KVCalculMaps.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KVCalcul/Calcul/pInitCalcul)
install(FILES interface/kv.h interface/kv.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KVCalcul)
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
# kv_pkgconfig(NAME LIBRARY DESCRIPTION): what pkg-config answers for a library.
function(kv_pkgconfig KV_PC_NOM KV_PC_BIBLIOTHEQUE KV_PC_DESCRIPTION)
  configure_file(cmake/bibliotheque.pc.in ${PROJECT_BINARY_DIR}/${KV_PC_NOM}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${KV_PC_NOM}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
kv_pkgconfig(kvcalcul KVCalcul "French income tax of return 2042, income of 2017: sessions on one return")
kv_pkgconfig(kv kv "French income tax of return 2042, income of 2017")
