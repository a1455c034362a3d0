# Installs the built tree into a scratch prefix and uses it as an outside program would.
set(prefix ${CMAKE_CURRENT_BINARY_DIR}/consumer/prefix)
function(add_consumer_test step)
    add_test(NAME consumer.${step}
             COMMAND ${CMAKE_COMMAND} -DSTEP=${step} -DBUILD_DIR=${PROJECT_BINARY_DIR} -DPREFIX=${prefix}
                     -DLIBDIR=${CMAKE_INSTALL_LIBDIR} -DCXX=${CMAKE_CXX_COMPILER}
                     -DSOURCE_DIR=${PROJECT_SOURCE_DIR}/tests/consumer -P
                     ${PROJECT_SOURCE_DIR}/tests/consumer/RunConsumer.cmake)
    set_tests_properties(consumer.${step} PROPERTIES TIMEOUT 300 SKIP_REGULAR_EXPRESSION "consumer test skipped")
endfunction()

add_consumer_test(install)
set_tests_properties(consumer.install PROPERTIES FIXTURES_SETUP installed_tree)
foreach(step find_package pkg_config exports)
    add_consumer_test(${step})
    set_tests_properties(consumer.${step} PROPERTIES FIXTURES_REQUIRED installed_tree)
endforeach()
