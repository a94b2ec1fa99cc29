# Deletes the folder PREFIX, installs the build tree BUILD there, and checks the installed files. PROGRAM
# is the path of the program relative to PREFIX, or empty if this build has no program. The program must
# start and find its libraries. DATA is the folder of the schema and the examples, relative to PREFIX.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
foreach(wanted include/ornwhatsnew/WhatsNew.h include/orncore/utility/Guid.h
        include/ornui/utility/ResourceManager.h include/ornappsupport/feature/FeatureService.h)
  if(NOT EXISTS ${PREFIX}/${wanted})
    message(FATAL_ERROR "not installed: ${wanted}")
  endif()
endforeach()
file(GLOB_RECURSE private RELATIVE ${PREFIX}/include ${PREFIX}/include/*/src/*)
if(private)
  message(FATAL_ERROR "private headers are installed: ${private}")
endif()
if(PROGRAM)
  foreach(wanted schema/host-description.schema.json examples/herbarium/host.json)
    if(NOT EXISTS ${PREFIX}/${DATA}/${wanted})
      message(FATAL_ERROR "not installed: ${DATA}/${wanted}")
    endif()
  endforeach()
  file(GLOB man_page ${PREFIX}/*/man/man1/ornwhatsnew.1 ${PREFIX}/man/man1/ornwhatsnew.1)
  if(NOT man_page)
    message(FATAL_ERROR "not installed: the man page")
  endif()
  execute_process(COMMAND ${PREFIX}/${PROGRAM} --version OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()
