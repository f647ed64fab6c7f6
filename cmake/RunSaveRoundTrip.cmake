# Builds a scene in one gzsh process and saves it, loads and saves it again in a second
# process, and checks that the first save equals the golden text and the second the first.
# Variables: GZSH, BUILD (script that builds the scene), GOLDEN (expected saved scene),
# WORKDIR (scratch directory).
file(REMOVE_RECURSE ${WORKDIR})
file(MAKE_DIRECTORY ${WORKDIR})
execute_process(COMMAND ${GZSH} ${BUILD} -c "scenesave first.gzs"
  WORKING_DIRECTORY ${WORKDIR} RESULT_VARIABLE rc ERROR_VARIABLE err)
if(NOT rc EQUAL 0 OR NOT err STREQUAL "")
  message(FATAL_ERROR "building the scene failed (${rc}): ${err}")
endif()
# A variable named in the scene must not change what loads.
execute_process(COMMAND ${GZSH} -c "set V injected; sceneload first.gzs; scenesave second.gzs"
  WORKING_DIRECTORY ${WORKDIR} RESULT_VARIABLE rc ERROR_VARIABLE err)
if(NOT rc EQUAL 0 OR NOT err STREQUAL "")
  message(FATAL_ERROR "loading the scene failed (${rc}): ${err}")
endif()
file(READ ${WORKDIR}/first.gzs first)
file(READ ${WORKDIR}/second.gzs second)
file(READ ${GOLDEN} golden)
set(failed FALSE)
if(NOT first STREQUAL golden)
  message("the saved scene differs from ${GOLDEN}")
  execute_process(COMMAND diff -u ${GOLDEN} ${WORKDIR}/first.gzs)
  set(failed TRUE)
endif()
if(NOT second STREQUAL first)
  message("saving the loaded scene gave other bytes")
  execute_process(COMMAND diff -u ${WORKDIR}/first.gzs ${WORKDIR}/second.gzs)
  set(failed TRUE)
endif()
if(failed)
  message(FATAL_ERROR "save round trip failed")
endif()
