# The manual pages, made from the headers, the documents and the tools' own help; left out
# where there is no Python.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND AND NOT KEVAZOR_SANITIZE)
  set(man_folder ${PROJECT_BINARY_DIR}/man)
  set(man_tools $<TARGET_FILE:zorctl> $<TARGET_FILE:zornode>)
  if(TARGET zorlab)
    list(APPEND man_tools $<TARGET_FILE:zorlab>)
  endif()
  file(GLOB man_sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/docs/*.md ${PROJECT_SOURCE_DIR}/include/*.h)
  add_custom_command(OUTPUT ${man_folder}/made
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${man_folder}
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/man_pages.py
      ${PROJECT_SOURCE_DIR} ${man_folder} ${man_tools}
    COMMAND ${CMAKE_COMMAND} -E touch ${man_folder}/made
    DEPENDS ${PROJECT_SOURCE_DIR}/scripts/man_pages.py ${man_sources}
      ${PROJECT_SOURCE_DIR}/src/exports.list zorctl zornode
    VERBATIM)
  add_custom_target(man_pages ALL DEPENDS ${man_folder}/made)
  install(DIRECTORY ${man_folder}/man3 ${man_folder}/man5 ${man_folder}/man7
    DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT development)
  install(FILES ${man_folder}/man1/zorctl.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()
