# Installs the build tree into a fresh prefix, runs the installed program, and builds and tests
# the consumer project against the installed package and pkg-config file.
# Variables: BUILD_DIR, PREFIX, CONSUMER_SOURCE, CONSUMER_BUILD, GENERATOR, BUILD_TYPE,
# CXX_COMPILER, LINKER_FLAGS.
foreach(variable BUILD_DIR PREFIX CONSUMER_SOURCE CONSUMER_BUILD GENERATOR)
    if(NOT DEFINED ${variable})
        message(FATAL_ERROR "${variable} is not set")
    endif()
endforeach()

file(REMOVE_RECURSE ${PREFIX} ${CONSUMER_BUILD})

execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX}
    RESULT_VARIABLE status OUTPUT_QUIET)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "installing into ${PREFIX} failed: ${status}")
endif()

foreach(file include/Vellum/Core/Export.h include/Vellum/KLV/Key.h)
    if(NOT EXISTS ${PREFIX}/${file})
        message(FATAL_ERROR "${file} is not installed")
    endif()
endforeach()

if(EXISTS ${PREFIX}/bin/vellum)
    execute_process(COMMAND ${PREFIX}/bin/vellum version
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0 OR NOT output MATCHES "^vellum ")
        message(FATAL_ERROR "the installed program does not run (${status}): ${output}")
    endif()
endif()

execute_process(COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${CONSUMER_SOURCE} ${CONSUMER_BUILD}
    --build-generator ${GENERATOR}
    --build-options -DCMAKE_PREFIX_PATH=${PREFIX} -DVELLUM_CONSUMER_PKGCONFIG=ON
        -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DCMAKE_CXX_COMPILER=${CXX_COMPILER}
        "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}"
    --test-command ${CMAKE_CTEST_COMMAND} --output-on-failure
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "the consumer does not build or run against the installed package")
endif()
