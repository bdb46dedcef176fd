# The real program, headless: each script, then what can go wrong.
file(GLOB e2e_scripts CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/e2e/*.script)
foreach(script IN LISTS e2e_scripts)
  get_filename_component(name ${script} NAME_WE)
  add_test(NAME e2e.${name} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
           COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/e2e/run.sh $<TARGET_FILE:seawarden> ${script})
endforeach()
add_test(NAME e2e.bad_input WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
         COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/e2e/bad_input.sh $<TARGET_FILE:seawarden>)
add_test(NAME e2e.exports COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/e2e/exports.sh $<TARGET_FILE:INTERFACE>)
add_test(NAME e2e.textures COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/e2e/textures.sh $<TARGET_FILE:seawarden-tf>)
