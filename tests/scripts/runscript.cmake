# Runs one batch script (with its design file, if it has one) and compares its standard output and exit status with the
# expected files beside it.
get_filename_component(dir ${SCRIPT} DIRECTORY)
get_filename_component(name ${SCRIPT} NAME_WE)
file(REMOVE_RECURSE ${WORKDIR})
file(MAKE_DIRECTORY ${WORKDIR})
# A design file NAME.sch beside the script is put in the working folder for it to open.
if(EXISTS ${dir}/${name}.sch)
  file(COPY ${dir}/${name}.sch DESTINATION ${WORKDIR})
endif()
execute_process(COMMAND ${BATCH} ${SCRIPT}
  WORKING_DIRECTORY ${WORKDIR}
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
set(expected_status 0)
if(EXISTS ${dir}/${name}.status)
  file(STRINGS ${dir}/${name}.status expected_status LIMIT_COUNT 1)
endif()
if(NOT status EQUAL expected_status)
  message(FATAL_ERROR "exit status ${status}, expected ${expected_status}\n${err}")
endif()
if(EXISTS ${dir}/${name}.out)
  file(READ ${dir}/${name}.out expected)
  if(NOT out STREQUAL expected)
    file(WRITE ${WORKDIR}/actual.out "${out}")
    message(FATAL_ERROR "output differs from ${name}.out; see ${WORKDIR}/actual.out\n${err}")
  endif()
endif()
