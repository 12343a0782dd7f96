# Sources that follow from the comments of the public header.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

function(pqx_generate what output)
  set(header ${PROJECT_SOURCE_DIR}/include/pqx_video.h)
  add_custom_command(OUTPUT ${output}
                     DEPENDS ${header} ${PROJECT_SOURCE_DIR}/tools/contract/contract.py ${PROJECT_SOURCE_DIR}/tools/contract/generate.py
                     COMMAND ${Python3_EXECUTABLE} -B ${PROJECT_SOURCE_DIR}/tools/contract/generate.py ${header} ${what}
                             > ${output}
                     VERBATIM)
endfunction()
