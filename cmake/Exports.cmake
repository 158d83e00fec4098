# kv_exporte(TARGET LIST): makes the shared library export the names of the list, and nothing else.
#
# On ELF each name is also reachable with a leading underscore, but for the two functions of the period. On Windows the
# names carry the underscore, but for those two, which are stdcall; the import library joins them to the names that the
# header declares.
function(kv_exporte cible liste)
  file(STRINGS ${liste} noms REGEX "^[A-Za-z]")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${liste})
  if(WIN32)
    set(exports "EXPORTS\n")  # exported name = symbol
    set(imports "EXPORTS\n")  # symbol == exported name
    foreach(nom IN LISTS noms)
      set(symbole ${nom})
      set(exporte _${nom})
      if(nom MATCHES "^TPeriode")
        set(exporte ${nom})
        if(CMAKE_SIZEOF_VOID_P EQUAL 4)
          set(symbole ${nom}@4)
        endif()
      endif()
      string(APPEND exports "${exporte} = ${symbole}\n")
      string(APPEND imports "${symbole} == ${exporte}\n")
    endforeach()
    file(WRITE ${PROJECT_BINARY_DIR}/exports.def "${exports}")
    file(WRITE ${PROJECT_BINARY_DIR}/imports.def "${imports}")
    target_sources(${cible} PRIVATE ${PROJECT_BINARY_DIR}/exports.def)
    add_custom_command(TARGET ${cible} POST_BUILD VERBATIM
                       COMMAND ${CMAKE_DLLTOOL} -d ${PROJECT_BINARY_DIR}/imports.def -D $<TARGET_FILE_NAME:${cible}>
                               -l $<TARGET_LINKER_FILE:${cible}>)
    target_link_options(${cible} PRIVATE -static)  # no compiler runtime to ship
    set_target_properties(${cible} PROPERTIES PREFIX "")
  else()
    set(version "{ global:\n")
    foreach(nom IN LISTS noms)
      string(APPEND version "  ${nom};\n")
      if(NOT nom MATCHES "^TPeriode")
        string(APPEND version "  _${nom};\n")
        target_link_options(${cible} PRIVATE "LINKER:--defsym=_${nom}=${nom}")
      endif()
    endforeach()
    file(WRITE ${PROJECT_BINARY_DIR}/exports.map "${version}local: *; };\n")
    target_link_options(${cible} PRIVATE "LINKER:--version-script=${PROJECT_BINARY_DIR}/exports.map")
  endif()
endfunction()

# kv_exporte_prefixe(TARGET PREFIX): makes the shared library export the names that begin so, and nothing else. On
# Windows they are those that the header declares for export.
function(kv_exporte_prefixe cible prefixe)
  if(WIN32)
    target_link_options(${cible} PRIVATE -static)  # no compiler runtime to ship
    set_target_properties(${cible} PROPERTIES PREFIX "")
  else()
    file(WRITE ${PROJECT_BINARY_DIR}/${cible}.map "{ global: ${prefixe}*; local: *; };\n")
    target_link_options(${cible} PRIVATE "LINKER:--version-script=${PROJECT_BINARY_DIR}/${cible}.map")
  endif()
endfunction()
